#include "libraries/vbmp3/dsp/tap.h"

#include <algorithm>
#include <cmath>

namespace vbmp3 {
namespace {

uint32_t Sample16(float value) {
    if (std::isnan(value)) return 0;
    const float scaled = std::clamp(value * 32768.0f, -32768.0f, 32767.0f);
    return static_cast<uint16_t>(static_cast<int16_t>(std::lrintf(scaled)));
}

}  // namespace

Tap::Tap() : ring_(new std::atomic<uint32_t>[kFrames]) {
    for (int64_t i = 0; i < kFrames; ++i) ring_[i].store(0, std::memory_order_relaxed);
}

void Tap::write(int64_t firstFrame, std::span<const float> interleaved) {
    const auto frames = static_cast<int64_t>(interleaved.size() / 2);
    int64_t begin = begin_.load(std::memory_order_relaxed);
    const int64_t end = end_.load(std::memory_order_relaxed);
    // After a seek the numbers may begin again anywhere; what was written under other numbers is no neighbour then.
    if (firstFrame < begin || firstFrame > end) begin = firstFrame;
    const int64_t newEnd = firstFrame + frames;
    begin = std::max(begin, newEnd - kFrames);
    // The frames that are about to be overwritten are taken out of the range before, so that a reader who saw them can
    // find out.
    end_.store(std::min(firstFrame, end), std::memory_order_relaxed);
    begin_.store(begin, std::memory_order_seq_cst);
    for (int64_t i = std::max(int64_t{0}, frames - kFrames); i < frames; ++i) {
        const uint32_t packed = Sample16(interleaved[2 * i]) | Sample16(interleaved[2 * i + 1]) << 16;
        ring_[(firstFrame + i) & (kFrames - 1)].store(packed, std::memory_order_relaxed);
    }
    end_.store(newEnd, std::memory_order_release);
}

void Tap::read(int64_t firstFrame, int count, int16_t* left, int16_t* right) const {
    const int64_t end = end_.load(std::memory_order_acquire);
    for (int i = 0; i < count; ++i) {
        const int64_t frame = firstFrame + i;
        const uint32_t packed =
            frame >= 0 && frame < end ? ring_[frame & (kFrames - 1)].load(std::memory_order_acquire) : 0;
        left[i] = static_cast<int16_t>(packed & 0xffff);
        right[i] = static_cast<int16_t>(packed >> 16);
    }
    const int64_t begin = begin_.load(std::memory_order_relaxed);
    for (int i = 0; i < count && firstFrame + i < begin; ++i) left[i] = right[i] = 0;
}

}  // namespace vbmp3
