#include "libraries/vbmp3/dsp/equalizer_curve.h"

#include <kissfft/kiss_fftr.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <numbers>

namespace vbmp3 {
namespace {

using Fft = std::unique_ptr<kiss_fftr_state, void (*)(void*)>;

Fft MakeFft(int size, bool inverse) { return Fft(kiss_fftr_alloc(size, inverse, nullptr, nullptr), kiss_fftr_free); }

}  // namespace

int UsableBands(int sampleRate) {
    return static_cast<int>(
        std::count_if(kBandHz.begin(), kBandHz.end(), [=](double hz) { return hz < sampleRate / 2.0; }));
}

int EqualizerTaps(int sampleRate) {
    return static_cast<int>(std::bit_ceil(static_cast<unsigned>(std::max(sampleRate, 8000) * 0.035)));
}

std::vector<double> EqualizerCurve(const BandGains& gains, int bands, const std::vector<double>& hz) {
    std::array<double, kBands> decibels{};
    std::transform(gains.begin(), gains.end(), decibels.begin(), [](int32_t gain) { return gain / 10.0; });
    const quenlox::EqualizerResponse response(std::span<const double>(decibels).first(static_cast<size_t>(bands)));
    std::vector<double> db(hz.size());
    std::transform(hz.begin(), hz.end(), db.begin(), [&](double at) { return response.atLog(std::log(at)); });
    return db;
}

std::vector<float> DesignEqualizer(const BandGains& gains, int sampleRate) {
    const int taps = EqualizerTaps(sampleRate);
    // The cepstrum of a steep curve is long; eight times the taps keep its wrapped-around end below the rounding.
    const int size = taps * 8;
    std::vector<double> hz(size / 2 + 1);
    for (int k = 0; k <= size / 2; ++k) hz[k] = std::max(1.0, static_cast<double>(k) * sampleRate / size);
    const std::vector<double> db = EqualizerCurve(gains, UsableBands(sampleRate), hz);

    std::vector<kiss_fft_cpx> spectrum(size / 2 + 1);
    for (int k = 0; k <= size / 2; ++k)
        spectrum[k] = {static_cast<float>(db[k] * std::numbers::ln10 / 20.0 / size), 0.0f};
    const Fft forward = MakeFft(size, false), inverse = MakeFft(size, true);
    std::vector<float> time(size);
    kiss_fftri(inverse.get(), spectrum.data(), time.data());
    for (int n = 1; n < size / 2; ++n) time[n] *= 2.0f;
    std::fill(time.begin() + size / 2 + 1, time.end(), 0.0f);
    kiss_fftr(forward.get(), time.data(), spectrum.data());
    for (kiss_fft_cpx& bin : spectrum) {
        const double magnitude = std::exp(static_cast<double>(bin.r)) / size;
        bin = {static_cast<float>(magnitude * std::cos(bin.i)), static_cast<float>(magnitude * std::sin(bin.i))};
    }
    kiss_fftri(inverse.get(), spectrum.data(), time.data());

    std::vector<float> filter(time.begin(), time.begin() + taps);
    // The last quarter fades out, so that cutting the response leaves no ripple.
    const int fade = taps / 4;
    for (int i = 0; i < fade; ++i)
        filter[taps - fade + i] *= static_cast<float>(0.5 + 0.5 * std::cos(std::numbers::pi * (i + 0.5) / fade));
    return filter;
}

}  // namespace vbmp3
