// The last seconds of the sound that left the chain, found again by the number of the output frame, so that the caller
// sees the sound being heard and not the one being decoded. Written by the output thread, read by any; never blocks.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace vbmp3 {

class Tap {
  public:
    Tap();

    // Output thread: `interleaved` stereo frames that begin with output frame `firstFrame`.
    void write(int64_t firstFrame, std::span<const float> interleaved);
    // Output frames from `firstFrame` on into `left` and `right`, `count` each; frames no longer or not yet there are
    // 0.
    void read(int64_t firstFrame, int count, int16_t* left, int16_t* right) const;

    void setSampleRate(int rate) { sampleRate_.store(rate, std::memory_order_relaxed); }
    int sampleRate() const { return sampleRate_.load(std::memory_order_relaxed); }

  private:
    // 2.7 s at 192 kHz: more than the longest output buffer. A power of two.
    static constexpr int64_t kFrames = int64_t{1} << 19;

    std::unique_ptr<std::atomic<uint32_t>[]> ring_;  // left in the low 16 bits, right in the high ones
    std::atomic<int64_t> begin_{0};
    std::atomic<int64_t> end_{0};
    std::atomic<int> sampleRate_{44100};
};

}  // namespace vbmp3
