// Signals to put in and measures to take of what comes out.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include "libraries/vbmp3/dsp/chain.h"

namespace vbmp3::test {

using Samples = std::vector<float>;  // interleaved stereo

struct Tone {
    double hz, amplitude;
};

// The same sum of tones left and right, the right one half as loud.
inline Samples Tones(const std::vector<Tone>& parts, int rate, double seconds) {
    const auto frames = static_cast<size_t>(seconds * rate);
    Samples samples(2 * frames);
    for (size_t i = 0; i < frames; ++i) {
        double sum = 0.0;
        double phase = 0.3;
        for (const Tone& part : parts) {
            sum += part.amplitude * std::sin(2.0 * std::numbers::pi * part.hz * static_cast<double>(i) / rate + phase);
            phase += 1.7;
        }
        samples[2 * i] = static_cast<float>(sum);
        samples[2 * i + 1] = static_cast<float>(sum / 2.0);
    }
    return samples;
}

inline Samples Noise(size_t frames, float amplitude, uint32_t seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> level(-amplitude, amplitude);
    Samples samples(2 * frames);
    for (float& sample : samples) sample = level(random);
    return samples;
}

// Amplitude of the tone at `hz` in one channel (0 left, 1 right) of frames [from, to), through a Hann window.
inline double AmplitudeAt(const Samples& samples, double hz, int rate, size_t from, size_t to, size_t channel = 0) {
    std::complex<double> sum = 0.0;
    double weights = 0.0;
    const std::complex<double> turn = std::polar(1.0, -2.0 * std::numbers::pi * hz / rate);
    const std::complex<double> windowTurn = std::polar(1.0, 2.0 * std::numbers::pi / static_cast<double>(to - from));
    std::complex<double> phase = 1.0, windowPhase = 1.0;
    for (size_t i = from; i < to; ++i, phase *= turn, windowPhase *= windowTurn) {
        const double weight = 0.5 - 0.5 * windowPhase.real();
        sum += weight * static_cast<double>(samples[2 * i + channel]) * phase;
        weights += weight;
    }
    return 2.0 * std::abs(sum) / weights;
}

// Frequency of a single tone, from the first and last upward crossing of zero in frames [from, to) of the left channel.
inline double FrequencyOf(const Samples& samples, int rate, size_t from, size_t to) {
    double first = -1.0, last = -1.0;
    int periods = -1;
    for (size_t i = from + 1; i < to; ++i) {
        const double before = samples[2 * i - 2], now = samples[2 * i];
        if (before < 0.0 && now >= 0.0) {
            last = static_cast<double>(i) - now / (now - before);
            if (first < 0.0) first = last;
            ++periods;
        }
    }
    return periods * rate / (last - first);
}

inline double PeakOf(std::span<const float> samples) {
    double peak = 0.0;
    for (const float sample : samples) peak = std::max(peak, std::fabs(static_cast<double>(sample)));
    return peak;
}

// The largest fourth difference of the left channel in frames [from, to): a click is broad-band, so it stands out in it
// although the tone itself is louder by far.
inline double Roughness(const Samples& samples, size_t from, size_t to) {
    double worst = 0.0;
    for (size_t i = from; i + 4 < to; ++i) {
        const auto at = [&](size_t k) { return static_cast<double>(samples[2 * (i + k)]); };
        worst = std::max(worst, std::fabs(at(0) - 4.0 * at(1) + 6.0 * at(2) - 4.0 * at(3) + at(4)));
    }
    return worst;
}

// Settings as they are wanted from the beginning.
struct Wanted : SoundSettings {
    explicit Wanted(const BandGains& gains, int pitch = 100) {
        equalize(gains);
        setPitch(pitch);
    }
    explicit Wanted(int pitch = 100, int factor = 1) {
        setPitch(pitch);
        setStepPitch(factor, 5);
    }
    void equalize(const std::optional<BandGains>& gains) {
        setEqualizer(gains);
        applyEqualizer();
    }
};

// A chain and all that has come out of it.
struct ChainRun {
    ChainRun(const SoundSettings& settings, int rate) : chain(settings, nullptr, rate) { chain.reset(0, 0, 0); }
    // Puts in frames [from, to) in blocks of a decoder's frame.
    void feed(const Samples& in, size_t from, size_t to, size_t block = 1152) {
        for (size_t i = from; i < to; i += block)
            chain.process(std::span(in).subspan(2 * i, 2 * std::min(block, to - i)), out);
    }

    Chain chain;
    Samples out;
};

inline Samples Through(const SoundSettings& settings, const Samples& in, int rate, size_t block = 1152) {
    ChainRun run(settings, rate);
    run.feed(in, 0, in.size() / 2, block);
    run.chain.finish(run.out);
    return run.out;
}

}  // namespace vbmp3::test
