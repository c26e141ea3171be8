// Long files are encoded in parts side by side; what is heard and what is written must not tell.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>
#include <lame/lame.h>

#include "libraries/formats/mpeg_header.h"
#include "tests/gogo/support.h"

using namespace gogo;
using namespace gogo::test;

namespace {

constexpr int64_t kLength = 1152 * 2600;

// By one encoder from front to back.
Samples OneEncoder(const TempDir& dir, const Samples& sound, const Settings& settings) {
    lame_global_flags* lame = lame_init();
    lame_set_in_samplerate(lame, 44100);
    lame_set_out_samplerate(lame, 44100);
    lame_set_num_channels(lame, 2);
    lame_set_bWriteVbrTag(lame, 0);
    if (settings.vbrQuality >= 0) {
        lame_set_VBR(lame, vbr_default);
        lame_set_VBR_q(lame, settings.vbrQuality);
        lame_set_VBR_min_bitrate_kbps(lame, settings.bitRate);
        lame_set_VBR_hard_min(lame, 1);
    } else {
        lame_set_brate(lame, settings.bitRate);
    }
    lame_init_params(lame);
    Bytes bytes(sound.size() + 100000);
    const int got = lame_encode_buffer_interleaved_ieee_float(lame, sound.data(), static_cast<int>(sound.size() / 2),
                                                              bytes.data(), static_cast<int>(bytes.size()));
    const int rest = lame_encode_flush(lame, bytes.data() + got, static_cast<int>(bytes.size()) - got);
    lame_close(lame);
    bytes.resize(static_cast<size_t>(got + rest));
    Samples heard = DecodeByMpg123(dir.write("one.mp3", bytes)).samples;
    // Without an information frame nothing is cut off: the encoder's and the decoder's delay are still there.
    heard.erase(heard.begin(), heard.begin() + 2 * (576 + vbmp3::kDecoderDelay));
    heard.resize(sound.size());
    return heard;
}

class Parts : public testing::TestWithParam<std::pair<int, int>> {
  protected:
    TempDir dir;
};

TEST_P(Parts, SoundAsOneEncoderMakesItAndAreTheSameOnAnyNumberOfCores) {
    using namespace vbmp3::test;
    static const Samples sound = Music(44100, 2, kLength);
    // In floats, so that the one encoder is given just the same.
    Bytes floats(sound.size() * sizeof(float));
    std::memcpy(floats.data(), sound.data(), floats.size());
    Settings s;
    s.source = dir.write("source.wav", WaveFile(PcmFmt(3, 2, 44100, 32), floats));
    s.destination = dir.path("result.mp3");
    s.bitRate = GetParam().first;
    s.vbrQuality = GetParam().second;
    ASSERT_EQ(Encode(s, 1), 2601);
    const Bytes bytes = ReadBytes(s.destination);
    for (const int threads : {2, 3}) {
        ASSERT_EQ(Encode(s, threads), 2601);
        EXPECT_TRUE(ReadBytes(s.destination) == bytes) << threads;
    }

    const Decoded heard = DecodeByMpg123(s.destination);
    ASSERT_EQ(heard.frames(), kLength);
    const Samples one = OneEncoder(dir, sound, s);
    const auto largest = [](const Samples& a, const Samples& b, int64_t begin, int64_t end) {
        float most = 0;
        for (int64_t i = 2 * begin; i < 2 * end; ++i)
            most = std::max(most, std::abs(a[static_cast<size_t>(i)] - b[static_cast<size_t>(i)]));
        return most;
    };
    for (int part = 1; part < 3; ++part) {
        // A second on both sides of where the next part takes over.
        const int64_t seam = int64_t{kPartFrames} * part * 1152 - 576, begin = seam - 44100, end = seam + 44100;
        const double error = DifferenceDb(sound, heard.samples, 2, begin, end);
        const double oneError = DifferenceDb(sound, one, 2, begin, end);
        EXPECT_LT(error, oneError + 0.1);
        EXPECT_LE(largest(one, heard.samples, begin, end), largest(one, sound, begin, end));
        for (int64_t at = seam - 12 * 1152; at < seam + 40 * 1152; at += 4 * 1152)
            EXPECT_LT(DifferenceDb(sound, heard.samples, 2, at, at + 4 * 1152),
                      DifferenceDb(sound, one, 2, at, at + 4 * 1152) + 1)
                << (at - seam) / 1152;
    }
}

INSTANTIATE_TEST_SUITE_P(Settings, Parts,
                         testing::Values(std::pair(128, -1), std::pair(320, -1), std::pair(64, -1), std::pair(32, 2),
                                         std::pair(32, 6)));

TEST(ManyParts, ComeToTheirEndHoweverTheCallerAndTheThreadsAreOutOfStep) {
    const TempDir dir;
    Settings s;
    s.source = dir.write("long.wav", Wave(Samples(576 * 1024 * 12), 8000, 1));
    s.destination = dir.path("long.mp3");
    s.frequency = 8000;
    for (const int threads : {1, 2, 7}) {
        for (const int pauseEvery : {0, 700, 3000}) {
            Error error = Error::None;
            const auto coder = Coder::open(s, threads, error);
            ASSERT_TRUE(coder);
            int64_t frames = 0;
            while (!coder->finished()) {
                ASSERT_EQ(coder->processFrame(), Error::None);
                ++frames;
                // Long enough for the threads to have done all that they may.
                if (pauseEvery > 0 && frames % pauseEvery == 1)
                    std::this_thread::sleep_for(std::chrono::milliseconds(30));
            }
            EXPECT_EQ(frames, coder->frames());
        }
    }
    EXPECT_EQ(DecodeByMpg123(s.destination).frames(), 576 * 1024 * 12);
}

TEST(FrameRun, RefusesWhatIsNoRunOfFrames) {
    using namespace vbmp3::test;
    const Bytes file = Mp3File(44100, 2, ToneOf(44100, 2, 30000));
    FrameRun run;
    EXPECT_TRUE(run.assign(file, 0));
    for (const size_t cut : {static_cast<size_t>(1), static_cast<size_t>(3), file.size() - 1})
        EXPECT_FALSE(run.assign(Bytes(file.begin(), file.begin() + static_cast<long>(cut)), 0)) << cut;
    EXPECT_FALSE(run.assign(Bytes(1000, 0x55), 0));
}

}  // namespace
