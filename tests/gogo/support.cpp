#include "tests/gogo/support.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace gogo::test {

Samples Music(int sampleRate, int channels, int64_t frames) {
    std::mt19937 random(7);
    std::normal_distribution<float> noise(0, 1);
    Samples samples(static_cast<size_t>(frames) * static_cast<size_t>(channels));
    const int64_t beat = sampleRate / 4;
    for (int64_t start = 0, n = 0; start < frames; start += beat, ++n) {
        const double hertz = 110 * std::exp2(static_cast<double>((n * 7) % 24) / 12);
        const int64_t end = std::min(frames, start + 4 * beat);
        for (int64_t i = start; i < end; ++i) {
            const double time = static_cast<double>(i - start) / sampleRate;
            double tone = 0;
            for (int k = 1; k <= 8; ++k) tone += std::sin(2 * std::numbers::pi * hertz * k * time) / k;
            const double hit =
                n % 2 == 0 && time < 0.05 ? static_cast<double>(noise(random)) * std::exp(-time * 90) : 0;
            for (int c = 0; c < channels; ++c) {
                const double side = channels == 1 ? 1 : (n + c) % 2 == 0 ? 1 : 0.4;
                samples[static_cast<size_t>(i * channels + c)] +=
                    static_cast<float>(0.13 * side * tone * std::exp(-4 * time) + 0.15 * hit);
            }
        }
    }
    for (float& sample : samples) sample = std::clamp(sample, -0.95f, 0.95f);
    return samples;
}

Bytes Wave(const Samples& samples, int sampleRate, int channels) {
    return vbmp3::test::WaveFile(sampleRate, channels, vbmp3::test::ToInt16(samples));
}

double DifferenceDb(const Samples& a, const Samples& b, int channels, int64_t begin, int64_t end) {
    double sound = 1e-12, error = 1e-12;
    for (size_t i = static_cast<size_t>(begin * channels); i < static_cast<size_t>(end * channels); ++i) {
        const double x = static_cast<double>(a[i]), y = i < b.size() ? static_cast<double>(b[i]) : 0;
        sound += x * x;
        error += (x - y) * (x - y);
    }
    return 10 * std::log10(error / sound);
}

int64_t Encode(const Settings& settings, int threads) {
    Error error = Error::None;
    const auto coder = Coder::open(settings, threads, error);
    if (!coder) return -static_cast<int64_t>(error);
    int64_t frames = 0;
    while (!coder->finished()) {
        if (const Error failed = coder->processFrame(); failed != Error::None) return -static_cast<int64_t>(failed);
        ++frames;
    }
    return frames;
}

}  // namespace gogo::test
