#include "libraries/vbmp3/dsp/limiter.h"

#include <gtest/gtest.h>

#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

constexpr int kRate = 44100;

Samples Limited(const Samples& in, size_t block = 1152) {
    Limiter limiter(kRate);
    limiter.engage(true);
    Samples out;
    for (size_t i = 0; i < in.size(); i += 2 * block)
        limiter.process(std::span(in).subspan(i, std::min(2 * block, in.size() - i)), out);
    limiter.finish(out);
    return out;
}

TEST(Limiter, SoundWithinFullScalePassesUntouched) {
    const Samples in = Noise(10000, 0.99f);
    for (const size_t block : {1u, 100u, 10000u}) EXPECT_EQ(Limited(in, block), in);
}

TEST(Limiter, NothingLeavesAboveFullScaleAndNoSampleIsLost) {
    for (const float amplitude : {1.01f, 4.0f, 100.0f}) {
        Samples in = Noise(30000, amplitude);
        in[0] = amplitude;  // a peak that nothing foretells
        const Samples out = Limited(in);
        ASSERT_EQ(out.size(), in.size());
        EXPECT_LT(PeakOf(out), 1.0);
        EXPECT_GT(PeakOf(out), 0.5);
    }
}

TEST(Limiter, ALoudToneIsScaledAndNotBent) {
    for (const double hz : {60.0, 1000.0}) {
        const Samples in = Tones({{hz, 4.0}}, kRate, 2.0);
        const Samples out = Limited(in);
        const size_t from = kRate, to = 2 * kRate;
        EXPECT_NEAR(AmplitudeAt(out, hz, kRate, from, to), 1.0, 0.01) << hz;
        EXPECT_LT(AmplitudeAt(out, 3.0 * hz, kRate, from, to), 1e-4) << hz;
    }
}

TEST(Limiter, SwitchedOffItReturnsToBitExactWithoutAClick) {
    const Samples in = Tones({{200.0, 0.8}}, kRate, 1.0);
    Samples loud = in;
    for (size_t i = 0; i < 2 * 10000; ++i) loud[i] *= 2.0f;
    Limiter limiter(kRate);
    limiter.engage(true);
    Samples out;
    limiter.process(std::span(loud).first(2 * 20000), out);
    limiter.engage(false);
    limiter.process(std::span(loud).subspan(2 * 20000), out);
    limiter.finish(out);
    ASSERT_EQ(out.size(), in.size());
    EXPECT_TRUE(std::equal(out.begin() + 2 * 22000, out.end(), in.begin() + 2 * 22000));
    EXPECT_LT(Roughness(out, 12000, out.size() / 2), 1e-3);
}

}  // namespace
}  // namespace vbmp3::test
