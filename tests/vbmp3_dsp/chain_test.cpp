#include "libraries/vbmp3/dsp/chain.h"

#include <gtest/gtest.h>

#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

constexpr int kRate = 44100;

TEST(Chain, PositionsFollowTheTempoAcrossChangesSeeksAndTracks) {
    SoundSettings settings;
    ChainRun run(settings, kRate);
    Chain& chain = run.chain;
    chain.reset(7, 1000, 0);
    const Samples in(2 * kRate, 0.1f);
    run.feed(in, 0, kRate);
    settings.setStepPitch(6, 5);  // double speed from source frame 45100 on
    run.feed(in, 0, kRate);
    run.feed(in, 0, kRate);
    settings.setStepPitch(1, 5);
    run.feed(in, 0, kRate);
    const int64_t border = chain.beginTrack(8);
    run.feed(in, 0, kRate);
    chain.finish(run.out);
    EXPECT_EQ(border, 3 * kRate);
    EXPECT_EQ(chain.outputFrames(), 4 * kRate);
    EXPECT_EQ(run.out.size() / 2, 4u * kRate);

    const struct {
        int64_t output, track;
        double frame;
    } places[] = {{0, 7, 1000.0},
                  {100, 7, 1100.0},
                  {2 * kRate + 500, 7, 1000.0 + 3.0 * kRate + 500.0},
                  {3 * kRate - 1, 7, 999.0 + 4.0 * kRate},
                  {3 * kRate, 8, 0.0},
                  {3 * kRate + 77, 8, 77.0},
                  {-5, 7, 1000.0}};
    for (const auto& place : places) {
        const TrackPosition position = chain.position(place.output);
        EXPECT_EQ(position.track, place.track) << place.output;
        EXPECT_NEAR(position.frame, place.frame, 1.5) << place.output;
    }

    // In between it is the place that SoundTouch took, here from a sound that is everywhere the same.
    EXPECT_NEAR(chain.position(kRate + 500).frame, 1000.0 + kRate + 1000.0, 0.035 * kRate);

    // A seek while frame 3 · rate + 100 is being heard: what was prepared beyond is thrown away.
    chain.reset(8, 500000, 3 * kRate + 100);
    EXPECT_EQ(chain.outputFrames(), 3 * kRate + 100);
    EXPECT_NEAR(chain.position(3 * kRate + 110).frame, 500010.0, 1e-6);
    EXPECT_NEAR(chain.position(3 * kRate + 77).frame, 77.0, 1.5);
}

TEST(Chain, ATrackThatFollowsGoesOnThroughEqualizerAndPitchWithoutASeam) {
    // One tone cut into two tracks must sound as if it had not been cut.
    const Samples in = Tones({{500.0, 0.3}}, kRate, 2.0);
    const Wanted settings(BandGains{0, 0, 60, 60, 0, -60}, 110);
    ChainRun cut(settings, kRate);
    cut.feed(in, 0, kRate);
    EXPECT_EQ(cut.chain.beginTrack(1), kRate);
    // The blocks of the second track begin at another place of the first one's grid, which must not matter.
    cut.feed(in, kRate, 2 * kRate);
    cut.chain.finish(cut.out);
    ASSERT_EQ(cut.out.size(), Through(settings, in, kRate).size());
    EXPECT_LT(Roughness(cut.out, kRate - 2000, kRate + 2000), 0.005);
}

TEST(Chain, AfterASeekNothingOfTheSoundBeforeIsLeft) {
    const Wanted settings(BandGains{60, -60, 60, -60, 60, -60, 60, -60, 60, -60}, 120);
    ChainRun run(settings, kRate);
    run.chain.process(Noise(20000, 0.9f), run.out);
    run.chain.reset(0, 0, 0);
    run.out.clear();
    run.chain.process(Samples(2 * 20000, 0.0f), run.out);
    run.chain.finish(run.out);
    ASSERT_EQ(run.out.size(), 2u * 20000u);
    EXPECT_EQ(PeakOf(run.out), 0.0);
}

TEST(Chain, FullScaleSoundWithEveryBoostStaysWithinFullScale) {
    for (const int pitch : {100, 130}) {
        const Wanted settings(BandGains{120, 120, 120, 120, 120, 120, 120, 120, 120, 120}, pitch);
        const Samples out = Through(settings, Noise(2 * kRate, 1.0f), kRate);
        EXPECT_LT(PeakOf(out), 1.0);
        EXPECT_GT(PeakOf(out), 0.9);
    }
}

TEST(Chain, SamplesThatAreNoNumbersDoNotSilenceWhatFollows) {
    Samples in = Tones({{440.0, 0.3}}, kRate, 1.0);
    in[2000] = NAN;
    in[3001] = INFINITY;
    in[4000] = -1e38f;
    const Samples out = Through(Wanted(BandGains{60, 60, 60}, 110), in, kRate);
    for (const float sample : out) ASSERT_TRUE(std::isfinite(sample));
    EXPECT_GT(PeakOf(std::span(out).last(kRate / 5)), 0.2);
}

}  // namespace
}  // namespace vbmp3::test
