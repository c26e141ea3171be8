// What playing costs: one second of sound at 44.1 kHz through the chain, in blocks of a decoder's frame. The counter
// `share_percent` is the share of one core while playing.
#include <benchmark/benchmark.h>

#include "libraries/vbmp3/dsp/chain.h"
#include "libraries/vbmp3/dsp/equalizer_curve.h"
#include "libraries/vbmp3/dsp/spectrum.h"
#include "tests/vbmp3/support.h"

namespace vbmp3 {
namespace {

constexpr int kRate = 44100;
constexpr size_t kBlock = 1152;

// Noise with the level of loud music, so that the equalizer's boosts call for the limiter now and then.
std::vector<int16_t> Music(int seconds) {
    std::vector<int16_t> samples(2 * static_cast<size_t>(seconds) * kRate);
    uint32_t state = 1;
    double low = 0.0;
    for (int16_t& sample : samples) {
        state = state * 1664525 + 1013904223;
        low += 0.2 * (static_cast<int32_t>(state) / 2147483648.0 - low);
        sample = static_cast<int16_t>(low * 30000.0);
    }
    return samples;
}

struct Setting {
    bool decode, equalizer, spectrum;
    int pitch;
};

void Play(benchmark::State& state, Setting setting) {
    SoundSettings settings;
    if (setting.equalizer) settings.setEqualizer(BandGains{20, 50, 0, -20, 30, 10, -20, 50, 30, 10});
    settings.applyEqualizer();
    settings.setPitch(setting.pitch);
    Tap tap;
    Chain chain(settings, &tap, kRate);
    chain.reset(0, 0, 0);
    SpectrumAnalyzer analyzer;
    const std::vector<int16_t> pcm = Music(20);
    std::vector<uint8_t> mp3;
    std::unique_ptr<Source> source;
    if (setting.decode) {
        mp3 = test::Mp3File(kRate, 2, pcm);
        source = test::OpenBytes(mp3);
    }
    std::vector<float> raw(pcm.size());
    for (size_t i = 0; i < pcm.size(); ++i) raw[i] = static_cast<float>(pcm[i]) / 32768.0f;
    std::vector<float> block(2 * kBlock), out;
    int32_t levels[20];
    size_t at = 0;
    int64_t frames = 0;
    for (auto _ : state) {
        // One second, with the spectrum twenty times in it.
        for (size_t n = 0, ticks = 0; n < kRate; n += kBlock) {
            if (source) {
                if (source->read(block) < kBlock) source->seek(0);
            } else {
                if (at + 2 * kBlock > raw.size()) at = 0;
                std::copy_n(raw.begin() + static_cast<ptrdiff_t>(at), 2 * kBlock, block.begin());
                at += 2 * kBlock;
            }
            out.clear();
            chain.process(block, out);
            if (setting.spectrum && ++ticks % 2 == 0) analyzer.read(tap, chain.outputFrames() - 4096, levels);
            frames += kBlock;
        }
        benchmark::DoNotOptimize(out.data());
    }
    // Processor seconds for each second of sound: what a rate inverted gives, in percent.
    state.counters["share_percent"] = benchmark::Counter(static_cast<double>(frames) / kRate / 100.0,
                                                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK_CAPTURE(Play, chain_at_normal, Setting{false, false, false, 100})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Play, equalizer, Setting{false, true, false, 100})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Play, equalizer_spectrum, Setting{false, true, true, 100})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Play, pitch_130, Setting{false, false, false, 130})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Play, mp3, Setting{true, false, false, 100})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Play, mp3_equalizer_spectrum, Setting{true, true, true, 100})->Unit(benchmark::kMillisecond);

void Design(benchmark::State& state) {
    BandGains gains{20, 50, 0, -20, 30, 10, -20, 50, 30, 10};
    for (auto _ : state) {
        ++gains[0];
        gains[0] %= 120;
        benchmark::DoNotOptimize(DesignEqualizer(gains, kRate));
    }
}
BENCHMARK(Design)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vbmp3
