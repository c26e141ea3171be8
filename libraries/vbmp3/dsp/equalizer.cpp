#include "libraries/vbmp3/dsp/equalizer.h"

#include <kissfft/kiss_fft.h>

#include <algorithm>
#include <cmath>

#include "libraries/vbmp3/dsp/equalizer_curve.h"

namespace vbmp3 {

struct Equalizer::Plan {
    explicit Plan(size_t points)
        : forward(kiss_fft_alloc(static_cast<int>(points), 0, nullptr, nullptr), kiss_fft_free),
          inverse(kiss_fft_alloc(static_cast<int>(points), 1, nullptr, nullptr), kiss_fft_free),
          time(points),
          bins(points),
          product(points) {}

    std::unique_ptr<kiss_fft_state, void (*)(void*)> forward, inverse;
    std::vector<kiss_fft_cpx> time, bins, product;
    bool transformed = false;  // bins are those of the present block
};

Equalizer::Equalizer(int sampleRate)
    : sampleRate_(sampleRate),
      taps_(static_cast<size_t>(EqualizerTaps(sampleRate))),
      fade_(std::min(taps_, static_cast<size_t>(sampleRate / 50))),
      plan_(std::make_unique<Plan>(2 * taps_)),
      history_(2 * taps_, 0.0f) {}

Equalizer::~Equalizer() = default;

void Equalizer::setGains(const std::optional<BandGains>& gains) {
    const bool flat = !gains || *gains == BandGains{};
    const std::optional<BandGains> wanted = flat ? std::nullopt : gains;
    if (wanted == gains_) return;
    gains_ = wanted;
    changing_ = true;
}

void Equalizer::reset() {
    kept_.clear();
    std::fill(history_.begin(), history_.end(), 0.0f);
    if (changing_) filter_ = gains_ ? makeFilter(*gains_) : nullptr;
    changing_ = false;
}

std::unique_ptr<Equalizer::Filter> Equalizer::makeFilter(const BandGains& gains) {
    const std::vector<float> taps = DesignEqualizer(gains, sampleRate_);
    // The inverse transform does not divide by its length, so the filter does.
    const float scale = 1.0f / static_cast<float>(2 * taps_);
    std::fill(plan_->time.begin(), plan_->time.end(), kiss_fft_cpx{0.0f, 0.0f});
    for (size_t i = 0; i < taps_; ++i) plan_->time[i].r = taps[i] * scale;
    kiss_fft(plan_->forward.get(), plan_->time.data(), plan_->product.data());
    auto filter = std::make_unique<Filter>(2 * taps_);
    for (size_t k = 0; k < 2 * taps_; ++k) (*filter)[k] = {plan_->product[k].r, plan_->product[k].i};
    return filter;
}

void Equalizer::remember(std::span<const float> stereo) {
    if (stereo.size() >= history_.size()) {
        std::copy(stereo.end() - static_cast<ptrdiff_t>(history_.size()), stereo.end(), history_.begin());
        return;
    }
    std::copy(history_.begin() + static_cast<ptrdiff_t>(stereo.size()), history_.end(), history_.begin());
    std::copy(stereo.begin(), stereo.end(), history_.end() - static_cast<ptrdiff_t>(stereo.size()));
}

void Equalizer::process(std::span<const float> stereo, std::vector<float>& out) {
    while (!stereo.empty()) {
        if (idle()) {
            out.insert(out.end(), stereo.begin(), stereo.end());
            remember(stereo);
            return;
        }
        const size_t block = 2 * (changing_ ? std::max(fade_, kept_.size() / 2) : taps_);
        const size_t take = std::min(block - kept_.size(), stereo.size());
        kept_.insert(kept_.end(), stereo.begin(), stereo.begin() + static_cast<ptrdiff_t>(take));
        stereo = stereo.subspan(take);
        if (kept_.size() == block) runBlock(block / 2, out);
    }
}

void Equalizer::finish(std::vector<float>& out) {
    if (!kept_.empty()) runBlock(kept_.size() / 2, out);
}

void Equalizer::runBlock(size_t frames, std::vector<float>& out) {
    plan_->transformed = false;
    if (filter_) {
        convolve(*filter_, frames, wet_);
    } else {
        wet_ = kept_;
    }
    if (changing_) {
        filter_ = gains_ ? makeFilter(*gains_) : nullptr;
        changing_ = false;
        if (filter_) {
            convolve(*filter_, frames, next_);
        } else {
            next_ = kept_;
        }
        // The two results are nearly in phase, so their amplitudes fade linearly.
        const size_t fade = std::min(fade_, frames);
        for (size_t i = 0; i < fade; ++i) {
            const float part = (static_cast<float>(i) + 0.5f) / static_cast<float>(fade);
            for (size_t s = 2 * i; s < 2 * i + 2; ++s) next_[s] = wet_[s] + (next_[s] - wet_[s]) * part;
        }
        wet_.swap(next_);
    }
    out.insert(out.end(), wet_.begin(), wet_.end());
    remember(kept_);
    kept_.clear();
}

void Equalizer::convolve(const Filter& filter, size_t frames, std::vector<float>& result) {
    Plan& plan = *plan_;
    if (!plan.transformed) {
        // Left is the real part and right the imaginary one: the filter is real, so that one transform serves both.
        for (size_t i = 0; i < taps_; ++i) plan.time[i] = {history_[2 * i], history_[2 * i + 1]};
        for (size_t i = 0; i < frames; ++i) plan.time[taps_ + i] = {kept_[2 * i], kept_[2 * i + 1]};
        std::fill(plan.time.begin() + static_cast<ptrdiff_t>(taps_ + frames), plan.time.end(),
                  kiss_fft_cpx{0.0f, 0.0f});
        kiss_fft(plan.forward.get(), plan.time.data(), plan.bins.data());
        plan.transformed = true;
    }
    for (size_t k = 0; k < 2 * taps_; ++k) {
        const kiss_fft_cpx x = plan.bins[k];
        const std::complex<float> h = filter[k];
        plan.product[k] = {x.r * h.real() - x.i * h.imag(), x.r * h.imag() + x.i * h.real()};
    }
    kiss_fft(plan.inverse.get(), plan.product.data(), plan.time.data());
    result.resize(2 * frames);
    for (size_t i = 0; i < frames; ++i) {
        result[2 * i] = plan.time[taps_ + i].r;
        result[2 * i + 1] = plan.time[taps_ + i].i;
    }
}

}  // namespace vbmp3
