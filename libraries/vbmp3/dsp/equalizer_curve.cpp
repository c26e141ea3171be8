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

Fft makeFft(int size, bool inverse) { return Fft(kiss_fftr_alloc(size, inverse, nullptr, nullptr), kiss_fftr_free); }

}  // namespace

int usableBands(int sampleRate) {
    return static_cast<int>(
        std::count_if(kBandHz.begin(), kBandHz.end(), [=](double hz) { return hz < sampleRate / 2.0; }));
}

int equalizerTaps(int sampleRate) {
    return static_cast<int>(std::bit_ceil(static_cast<unsigned>(std::max(sampleRate, 8000) * 0.035)));
}

std::vector<double> equalizerCurve(const BandGains& gains, int bands, const std::vector<double>& hz) {
    std::array<double, kBands> x{}, y{}, slope{};
    for (int i = 0; i < bands; ++i) {
        x[i] = std::log(kBandHz[i]);
        y[i] = gains[i] / 10.0;
    }
    // Slopes at the inner points: the weighted harmonic mean of the two secants, 0 at a peak or dip.
    for (int i = 1; i + 1 < bands; ++i) {
        const double left = x[i] - x[i - 1], right = x[i + 1] - x[i];
        const double before = (y[i] - y[i - 1]) / left, after = (y[i + 1] - y[i]) / right;
        if (before * after > 0.0) {
            const double w1 = 2.0 * right + left, w2 = right + 2.0 * left;
            slope[i] = (w1 + w2) / (w1 / before + w2 / after);
        }
    }
    std::vector<double> db(hz.size());
    for (size_t n = 0; n < hz.size(); ++n) {
        const double at = std::log(hz[n]);
        if (at <= x[0]) {
            db[n] = y[0];
        } else if (at >= x[bands - 1]) {
            db[n] = y[bands - 1];
        } else {
            const int i = static_cast<int>(std::upper_bound(x.begin(), x.begin() + bands, at) - x.begin()) - 1;
            const double width = x[i + 1] - x[i], t = (at - x[i]) / width, s = 1.0 - t;
            db[n] = (1.0 + 2.0 * t) * s * s * y[i] + t * t * (3.0 - 2.0 * t) * y[i + 1] +
                    width * t * s * (s * slope[i] - t * slope[i + 1]);
        }
    }
    return db;
}

std::vector<float> designEqualizer(const BandGains& gains, int sampleRate) {
    const int taps = equalizerTaps(sampleRate);
    // The cepstrum of a steep curve is long; eight times the taps keep its wrapped-around end below the rounding.
    const int size = taps * 8;
    std::vector<double> hz(size / 2 + 1);
    for (int k = 0; k <= size / 2; ++k) hz[k] = std::max(1.0, static_cast<double>(k) * sampleRate / size);
    const std::vector<double> db = equalizerCurve(gains, usableBands(sampleRate), hz);

    std::vector<kiss_fft_cpx> spectrum(size / 2 + 1);
    for (int k = 0; k <= size / 2; ++k)
        spectrum[k] = {static_cast<float>(db[k] * std::numbers::ln10 / 20.0 / size), 0.0f};
    const Fft forward = makeFft(size, false), inverse = makeFft(size, true);
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
