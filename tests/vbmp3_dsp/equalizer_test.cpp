#include "libraries/vbmp3/dsp/equalizer.h"

#include <gtest/gtest.h>

#include "libraries/vbmp3/dsp/equalizer_curve.h"
#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

std::vector<BandGains> Curves() {
    std::vector<BandGains> all = {
        {120, 120, 120, 120, 120, 120, 120, 120, 120, 120},
        {-120, -120, -120, -120, -120, -120, -120, -120, -120, -120},
        {120, -120, 120, -120, 120, -120, 120, -120, 120, -120},
    };
    std::mt19937 random(42);
    for (int i = 0; i < 12; ++i)
        for (int32_t& gain : all.emplace_back()) gain = static_cast<int32_t>(random() % 241) - 120;
    return all;
}

TEST(Equalizer, EveryBandHasItsGainWithinATenthOfADecibelWhateverTheOthersAre) {
    for (const int rate : {44100, 48000, 22050, 96000}) {
        const int bands = UsableBands(rate);
        std::vector<Tone> parts;
        for (int i = 0; i < bands; ++i) parts.push_back({kBandHz[i], 0.01});
        const Samples in = Tones(parts, rate, 1.0);
        for (const BandGains& gains : Curves()) {
            const Samples out = Through(Wanted(gains), in, rate);
            ASSERT_EQ(out.size(), in.size());
            for (int i = 0; i < bands; ++i) {
                for (const size_t channel : {0u, 1u}) {
                    const size_t from = rate / 4, to = rate;
                    const double gain = 20.0 * std::log10(AmplitudeAt(out, kBandHz[i], rate, from, to, channel) /
                                                          AmplitudeAt(in, kBandHz[i], rate, from, to, channel));
                    EXPECT_NEAR(gain, gains[i] / 10.0, 0.1)
                        << testing::PrintToString(gains) << ", " << kBandHz[i] << " Hz at " << rate;
                }
            }
        }
    }
}

TEST(Equalizer, OffOrFlatPassesEverySampleBitExactAndNoResultDependsOnTheSizeOfTheBlocks) {
    const Samples in = Noise(20000, 1.5f);  // decoders give values beyond full scale too
    const Wanted flat(BandGains{});
    Wanted switchedOff(BandGains{50});
    switchedOff.equalize(std::nullopt);
    const Wanted rock(BandGains{20, 50, 0, -20, 30, 10, -20, 50, 30, 10});
    const Samples whole = Through(rock, in, 44100, 20000);
    for (const size_t block : {1u, 7u, 1152u, 4097u}) {
        EXPECT_EQ(Through(flat, in, 44100, block), in);
        EXPECT_EQ(Through(switchedOff, in, 44100, block), in);
        EXPECT_EQ(Through(rock, in, 44100, block), whole) << block;
    }
}

TEST(Equalizer, GainsWaitForBeingAppliedAndAreLimitedToTwelveDecibels) {
    SoundSettings settings;
    settings.setEqualizer(BandGains{500, -500});
    EXPECT_EQ(settings.version(), 0u);
    settings.applyEqualizer();
    const std::optional<SoundValues> values = settings.read();
    ASSERT_TRUE(values);
    EXPECT_TRUE(values->equalizer);
    EXPECT_EQ(values->gains[0], 120);
    EXPECT_EQ(values->gains[1], -120);
}

TEST(Equalizer, ChangesWhilePlayingMakeNoClickAndLoseNoSample) {
    const int rate = 44100;
    const Samples in = Tones({{300.0, 0.2}}, rate, 4.0);
    Wanted settings;
    ChainRun run(settings, rate);
    const std::vector<std::optional<BandGains>> steps = {
        std::nullopt, BandGains{120, 120, 120, 120, 120, 120, 120, 120, 120, 120},
        BandGains{-120, -120, -120, -120, -120, -120, -120, -120, -120, -120}, BandGains{0, 0, 120}, std::nullopt};
    for (size_t step = 0; step < 40; ++step) {
        settings.equalize(steps[step % steps.size()]);
        run.feed(in, step * 4410, (step + 1) * 4410, 441);
    }
    Samples& out = run.out;
    run.chain.finish(out);
    ASSERT_EQ(out.size(), in.size());
    // A tone of 300 Hz at the greatest amplitude heard has this fourth difference itself; a jump of one per cent of
    // full scale would have ten times that of the fade.
    const double ownRoughness = std::pow(2.0 * std::numbers::pi * 300.0 / rate, 4) * PeakOf(out);
    EXPECT_LT(Roughness(out, 4410, in.size() / 2), ownRoughness + 2e-3);
    // Off again, the frames are those of the source at the same place: nothing has been shifted.
    EXPECT_TRUE(std::equal(out.end() - 2 * 2400, out.end(), in.end() - 2 * 2400));
}

}  // namespace
}  // namespace vbmp3::test
