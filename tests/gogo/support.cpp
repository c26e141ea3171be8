#include "tests/gogo/support.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace gogo::test {

Samples music(int sampleRate, int channels, int64_t frames) {
    std::mt19937 random(7);
    std::normal_distribution<float> noise(0, 1);
    Samples samples(size_t(frames) * size_t(channels));
    const int64_t beat = sampleRate / 4;
    for (int64_t start = 0, n = 0; start < frames; start += beat, ++n) {
        const double hertz = 110 * std::exp2(double((n * 7) % 24) / 12);
        const int64_t end = std::min(frames, start + 4 * beat);
        for (int64_t i = start; i < end; ++i) {
            const double time = double(i - start) / sampleRate;
            double tone = 0;
            for (int k = 1; k <= 8; ++k) tone += std::sin(2 * std::numbers::pi * hertz * k * time) / k;
            const double hit = n % 2 == 0 && time < 0.05 ? double(noise(random)) * std::exp(-time * 90) : 0;
            for (int c = 0; c < channels; ++c) {
                const double side = channels == 1 ? 1 : (n + c) % 2 == 0 ? 1 : 0.4;
                samples[size_t(i * channels + c)] += float(0.13 * side * tone * std::exp(-4 * time) + 0.15 * hit);
            }
        }
    }
    for (float& sample : samples) sample = std::clamp(sample, -0.95f, 0.95f);
    return samples;
}

Bytes wave(const Samples& samples, int sampleRate, int channels) {
    return vbmp3::test::waveFile(sampleRate, channels, vbmp3::test::toInt16(samples));
}

double differenceDb(const Samples& a, const Samples& b, int channels, int64_t begin, int64_t end) {
    double sound = 1e-12, error = 1e-12;
    for (size_t i = size_t(begin * channels); i < size_t(end * channels); ++i) {
        const double x = double(a[i]), y = i < b.size() ? double(b[i]) : 0;
        sound += x * x;
        error += (x - y) * (x - y);
    }
    return 10 * std::log10(error / sound);
}

int64_t encode(const Settings& settings, int threads) {
    Error error = Error::None;
    const auto coder = Coder::open(settings, threads, error);
    if (!coder) return -int64_t(error);
    int64_t frames = 0;
    while (!coder->finished()) {
        if (const Error failed = coder->processFrame(); failed != Error::None) return -int64_t(failed);
        ++frames;
    }
    return frames;
}

}  // namespace gogo::test
