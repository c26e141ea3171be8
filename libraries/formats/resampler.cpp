#include "libraries/formats/resampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vbmp3 {

Resampler::Resampler(int inputRate, int outputRate, int taps) : inputRate_(inputRate), outputRate_(outputRate) {
    // Going down, the sinc is stretched so that nothing above half the output rate is left.
    const double cutoff = std::min(1.0, static_cast<double>(outputRate) / inputRate) * 0.95;
    reach_ = static_cast<int>(
        std::min(1024.0, std::ceil(taps / 2 / std::min(1.0, static_cast<double>(outputRate) / inputRate))));
    const size_t width = static_cast<size_t>(2 * reach_);
    kernel_.resize((kPhases + 1) * width);
    for (int phase = 0; phase <= kPhases; ++phase) {
        double sum = 0;
        float* row = kernel_.data() + static_cast<size_t>(phase) * width;
        for (size_t tap = 0; tap < width; ++tap) {
            const double x = static_cast<double>(tap) + 1 - reach_ - static_cast<double>(phase) / kPhases;
            const double angle = std::numbers::pi * x * cutoff;
            const double sinc = std::abs(x) < 1e-9 ? cutoff : std::sin(angle) / (std::numbers::pi * x);
            const double place = x / reach_;  // Blackman window
            const double window = std::abs(place) >= 1 ? 0
                                                       : 0.42 + 0.5 * std::cos(std::numbers::pi * place) +
                                                             0.08 * std::cos(2 * std::numbers::pi * place);
            row[tap] = static_cast<float>(sinc * window);
            sum += row[tap];
        }
        for (size_t tap = 0; tap < width; ++tap) row[tap] = static_cast<float>(row[tap] / sum);
    }
    input_.assign(2 * static_cast<size_t>(reach_ - 1), 0.0f);
}

void Resampler::process(std::span<const float> stereo, std::vector<float>& out) {
    input_.insert(input_.end(), stereo.begin(), stereo.end());
    const size_t taps = static_cast<size_t>(2 * reach_);
    const size_t frames = input_.size() / 2;
    size_t begin = 0;
    while (begin + taps <= frames) {
        const double phase = static_cast<double>(fraction_) / outputRate_ * kPhases;
        const int row = static_cast<int>(phase);
        const float blend = static_cast<float>(phase - row);
        const float* low = kernel_.data() + static_cast<size_t>(row) * taps;
        const float* high = low + taps;
        const float* source = input_.data() + 2 * begin;
        float left = 0, right = 0;
        for (size_t tap = 0; tap < taps; ++tap) {
            const float weight = low[tap] + blend * (high[tap] - low[tap]);
            left += weight * source[2 * tap];
            right += weight * source[2 * tap + 1];
        }
        out.push_back(left);
        out.push_back(right);
        fraction_ += inputRate_;
        begin += static_cast<size_t>(fraction_ / outputRate_);
        fraction_ %= outputRate_;
    }
    begin = std::min(begin, frames);
    input_.erase(input_.begin(), input_.begin() + static_cast<long>(2 * begin));
}

void Resampler::finish(std::vector<float>& out) {
    const std::vector<float> silence(static_cast<size_t>(2 * reach_), 0.0f);
    process(silence, out);
}

}  // namespace vbmp3
