#include "libraries/vbmp3/dsp/limiter.h"

#include <algorithm>
#include <cmath>

namespace vbmp3 {
namespace {

constexpr float kCeiling = 32767.0f / 32768.0f;

bool WithinFullScale(std::span<const float> samples) {
    return std::all_of(samples.begin(), samples.end(), [](float sample) { return std::fabs(sample) <= kCeiling; });
}

}  // namespace

Limiter::Limiter(int sampleRate)
    : ahead_(sampleRate / 200),
      hold_(sampleRate * 3 / 100),
      release_(1.0 - std::exp(-1.0 / sampleRate)),
      disengage_(50.0 / sampleRate),
      delay_(2 * static_cast<size_t>(ahead_ + 1)),
      ramp_(static_cast<size_t>(ahead_ + 1)) {
    reset();
}

void Limiter::reset() {
    in_ = out_ = 0;
    atRest_ = ahead_ + 1;
    envelope_ = 1.0;
    std::fill(ramp_.begin(), ramp_.end(), 1.0);
    rampSum_ = static_cast<double>(ramp_.size());
    needs_.clear();
}

// Takes one frame and the gain that its place in time asks for.
void Limiter::push(float left, float right) {
    const auto slot = static_cast<size_t>(in_ % (ahead_ + 1));
    delay_[2 * slot] = left;
    delay_[2 * slot + 1] = right;
    double wanted = 1.0;
    if (engaged_) {
        const float peak = std::max(std::fabs(left), std::fabs(right));
        if (peak > kCeiling) {
            const double gain = static_cast<double>(kCeiling) / peak;
            while (!needs_.empty() && needs_.back().gain >= gain) needs_.pop_back();
            needs_.push_back({in_, gain});
        }
        while (!needs_.empty() && needs_.front().frame < in_ - ahead_ - hold_) needs_.pop_front();
        if (!needs_.empty()) wanted = needs_.front().gain;
        envelope_ = std::min(wanted, envelope_ + (1.0 - envelope_) * release_);
        if (envelope_ > 1.0 - 1e-5 && needs_.empty()) envelope_ = 1.0;
    } else {
        needs_.clear();
        envelope_ = std::min(1.0, envelope_ + disengage_);
    }
    rampSum_ += envelope_ - ramp_[slot];
    ramp_[slot] = envelope_;
    if (envelope_ < 1.0) {
        atRest_ = 0;
    } else if (++atRest_ == ahead_ + 1) {
        rampSum_ = static_cast<double>(ramp_.size());  // drops the rounding of the running sum
    }
    ++in_;
}

// Gives the oldest frame that waits, with the mean of the gains from it to its look-ahead: none of them is above what
// the frame needs.
void Limiter::emit(std::vector<float>& out) {
    const auto slot = static_cast<size_t>(out_ % (ahead_ + 1));
    const float gain = atRest() ? 1.0f : static_cast<float>(rampSum_ / static_cast<double>(ramp_.size()));
    for (size_t side = 0; side < 2; ++side) {
        const float value = delay_[2 * slot + side] * gain;
        // The rounding of the mean may leave a last bit too much.
        out.push_back(engaged_ && gain < 1.0f ? std::clamp(value, -kCeiling, kCeiling) : value);
    }
    ++out_;
}

void Limiter::process(std::span<const float> stereo, std::vector<float>& out) {
    while (!stereo.empty()) {
        const std::span<const float> block = stereo.first(std::min<size_t>(stereo.size(), 2048));
        stereo = stereo.subspan(block.size());
        if (atRest() && (!engaged_ || (needs_.empty() && WithinFullScale(block)))) {
            pass(block, out);
            continue;
        }
        for (size_t i = 0; i < block.size(); i += 2) {
            push(block[i], block[i + 1]);
            if (in_ - out_ == ahead_ + 1) emit(out);
        }
    }
}

// The ordinary case, nothing to lower: what process would do frame by frame, in one copy.
void Limiter::pass(std::span<const float> block, std::vector<float>& out) {
    const auto frames = static_cast<int64_t>(block.size() / 2);
    int64_t due = std::max<int64_t>(0, in_ - out_ + frames - (engaged_ ? ahead_ : 0));
    for (; due > 0 && out_ < in_; --due) emit(out);
    const auto direct = static_cast<ptrdiff_t>(2 * due);
    out.insert(out.end(), block.begin(), block.begin() + direct);
    in_ += due;
    out_ += due;
    for (auto sample = block.begin() + direct; sample != block.end(); sample += 2, ++in_)
        std::copy_n(sample, 2, delay_.begin() + 2 * (in_ % (ahead_ + 1)));
}

void Limiter::finish(std::vector<float>& out) {
    // Nothing is coming, so the gain stays where it is while the rest goes out.
    const auto last = static_cast<size_t>((in_ + ahead_) % (ahead_ + 1));
    const double held = ramp_[last];
    while (out_ < in_) {
        emit(out);
        const auto slot = static_cast<size_t>((out_ - 1) % (ahead_ + 1));
        rampSum_ += held - ramp_[slot];
        ramp_[slot] = held;
    }
}

}  // namespace vbmp3
