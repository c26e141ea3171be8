#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

constexpr int kRate = 44100;

class SoundApi : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(vbmp3_init()); }
    void TearDown() override { vbmp3_free(); }

    void play(const std::vector<int16_t>& samples) { playFile(WaveFile(kRate, 2, samples)); }
    void playFile(const Bytes& file) {
        const std::string path = dir_.write("a", file);
        ASSERT_TRUE(vbmp3_open(path.c_str(), nullptr));
        ASSERT_TRUE(vbmp3_play());
    }

    TempDir dir_;
};

TEST_F(SoundApi, TheWaveIsThatOfThePositionBeingHeard) {
    // Every sample says at which millisecond it stands.
    std::vector<int16_t> samples(2 * 10 * kRate);
    for (int i = 0; i < 10 * kRate; ++i) samples[2 * i] = samples[2 * i + 1] = static_cast<int16_t>(i / 44.1);
    play(samples);
    ASSERT_TRUE(Eventually([] { return vbmp3_getPositionMs() > 300; }));
    std::array<int16_t, 1024> left{}, right{};
    const int64_t before = vbmp3_getPositionMs();
    ASSERT_TRUE(vbmp3_getWave(left.data(), right.data(), 1024));
    const int64_t after = vbmp3_getPositionMs();
    EXPECT_GE(left[0], before - 2);
    EXPECT_LE(left[0], after + 2);
    EXPECT_EQ(left, right);
    EXPECT_NEAR(left[1023], left[0] + 23, 1);

    // After a seek too, at once.
    ASSERT_TRUE(vbmp3_seek(7.0));
    ASSERT_TRUE(Eventually([] { return vbmp3_getPositionMs() > 7100; }));
    ASSERT_TRUE(vbmp3_getWave(left.data(), right.data(), 16));
    EXPECT_NEAR(left[0], static_cast<double>(vbmp3_getPositionMs()), 100.0);

    ASSERT_TRUE(vbmp3_pause());
    ASSERT_TRUE(vbmp3_getWave(left.data(), right.data(), 16));
    EXPECT_EQ(left[0], 0) << "paused, nothing is heard";
}

TEST_F(SoundApi, TheSpectrumShowsTheToneBeingHeard) {
    play(ToneOf(kRate, 2, 5 * kRate, 1000.0, 16000.0));
    std::array<int32_t, 20> levels{};
    // Band 10 holds 1000 Hz, the left channel; the right one is an octave above.
    EXPECT_TRUE(
        Eventually([&] { return vbmp3_getSpectrum(levels.data(), 20) && levels[10] > 850 && levels[13] > 850; }));
    EXPECT_LT(levels[3], 300);
    EXPECT_LT(levels[18], 300);
    ASSERT_TRUE(vbmp3_stop());
    ASSERT_TRUE(vbmp3_getSpectrum(levels.data(), 20));
    EXPECT_EQ(*std::max_element(levels.begin(), levels.end()), 0);
}

TEST_F(SoundApi, TheEqualizerIsHeardAtOnceOnWaveFilesAndOthersAfterAReload) {
    const auto samples = ToneOf(kRate, 2, 10 * kRate, 1000.0, 16000.0);
    const std::array<int32_t, 10> low{-120, -120, -120, -120, -120, -120, -120, -120, -120, -120};
    const auto loud = [] {
        std::array<int16_t, 1024> left{}, right{};
        vbmp3_getWave(left.data(), right.data(), 1024);
        return *std::max_element(left.begin(), left.end()) > 10000;
    };
    for (const bool wave : {true, false}) {
        ASSERT_TRUE(vbmp3_setEqualizer(nullptr));
        playFile(wave ? WaveFile(kRate, 2, samples) : Mp3File(kRate, 2, samples));
        ASSERT_TRUE(Eventually([&] { return vbmp3_getPositionMs() > 300 && loud(); }));
        ASSERT_TRUE(vbmp3_setEqualizer(low.data()));
        if (!wave) {
            ASSERT_TRUE(Eventually([] { return vbmp3_getPositionMs() > 1200; }));
            EXPECT_TRUE(loud());
            ASSERT_TRUE(vbmp3_reload());
        }
        EXPECT_TRUE(Eventually([&] { return !loud(); })) << (wave ? "WAVE" : "MPEG");
        EXPECT_EQ(vbmp3_getState(nullptr), 1);
    }
}

}  // namespace
}  // namespace vbmp3::test
