#include "libraries/vbmp3/dsp/tap.h"

#include <gtest/gtest.h>

#include <array>

#include "libraries/vbmp3/dsp/spectrum.h"
#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

TEST(Tap, GivesTheFramesAskedForAndSilenceForThoseNotThere) {
    Tap tap;
    Samples ramp(2 * 1000);
    for (size_t i = 0; i < 1000; ++i) {
        ramp[2 * i] = static_cast<float>(i) / 32768.0f;
        ramp[2 * i + 1] = -static_cast<float>(i) / 32768.0f;
    }
    tap.write(5000, ramp);
    std::array<int16_t, 4> left{}, right{};
    tap.read(5998, 4, left.data(), right.data());
    EXPECT_EQ(left, (std::array<int16_t, 4>{998, 999, 0, 0}));
    EXPECT_EQ(right, (std::array<int16_t, 4>{-998, -999, 0, 0}));
    tap.read(4998, 4, left.data(), right.data());
    EXPECT_EQ(left, (std::array<int16_t, 4>{0, 0, 0, 1}));

    // After a seek the numbers go on from the frame being heard, and what was ahead of it is gone.
    tap.write(5100, std::span(ramp).first(2 * 2));
    tap.read(5099, 4, left.data(), right.data());
    EXPECT_EQ(left, (std::array<int16_t, 4>{99, 0, 1, 0}));

    tap.write(7000, Samples{2.0f, -2.0f});
    tap.read(7000, 1, left.data(), right.data());
    EXPECT_TRUE(left[0] == 32767 && right[0] == -32768) << "overload is cut and does not wrap around";
}

TEST(Spectrum, AToneStandsInItsBandAtItsLevel) {
    SpectrumAnalyzer analyzer;
    for (const int rate : {44100, 22050, 96000}) {
        for (const double hz : {115.0, 1000.0, 8000.0}) {
            Tap tap;
            tap.setSampleRate(rate);
            tap.write(0, Tones({{hz, 1.0}}, rate, 1.0));
            std::array<int32_t, 20> levels{};
            analyzer.read(tap, rate / 2, levels);
            const auto loudest = std::max_element(levels.begin(), levels.end()) - levels.begin();
            const auto band = static_cast<int>(std::log(hz / 40.0) / std::log(400.0) * 20.0);
            EXPECT_EQ(loudest, band) << hz << " at " << rate;
            // The right channel is 6 dB below the left: together 2 dB below full scale in both.
            EXPECT_NEAR(levels[loudest], 1000.0 * (1.0 - 2.04 / 72.0), 30.0) << hz << " at " << rate;
            for (int i = 0; i < 20; ++i)
                if (std::abs(i - band) > 3) {
                    EXPECT_LT(levels[i], 350) << "band " << i << " of " << hz << " at " << rate;
                }
        }
    }
}

}  // namespace
}  // namespace vbmp3::test
