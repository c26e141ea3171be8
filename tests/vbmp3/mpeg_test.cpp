// MPEG streams: lengths, gapless playing, seeking, and accuracy.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "libraries/vbmp3/decoder/mpeg_decoder.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"
#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

// Where `sound` fits `original` best, in frames; both interleaved stereo.
int BestLag(const std::vector<float>& sound, const std::vector<int16_t>& original, int channels) {
    int best = 0;
    double most = -1e30;
    for (int lag = -60; lag <= 60; ++lag) {
        double sum = 0;
        for (int i = 2000; i < 12000; ++i)
            sum += static_cast<double>(sound[static_cast<size_t>(2 * (i + lag))]) *
                   original[static_cast<size_t>(i * channels)];
        if (sum > most) {
            most = sum;
            best = lag;
        }
    }
    return best;
}

TEST(Mpeg, AFileWithTheEncodersCountsDecodesToExactlyTheEncodersInput) {
    struct Case {
        int rate, channels, bitRate;
    };
    for (const Case& c :
         {Case{44100, 2, 128}, Case{48000, 2, 320}, Case{32000, 1, 0}, Case{44100, 2, 0}, Case{22050, 2, 64},
          Case{24000, 1, 64}, Case{16000, 1, 0}, Case{11025, 1, 64}, Case{12000, 2, 64}, Case{8000, 1, 64}}) {
        SCOPED_TRACE(testing::Message() << c.rate << " Hz, " << c.channels << " channels, " << c.bitRate << " kbit/s");
        for (const int frames : {1, 1000, 30011}) {
            const auto original = Music(c.rate, c.channels, frames);
            StreamInfo info;
            const auto source = OpenBytes(Mp3File(c.rate, c.channels, original, {.bitRate = c.bitRate}), &info);
            ASSERT_TRUE(source);
            EXPECT_EQ(info.frames, frames);
            EXPECT_TRUE(info.exact);
            EXPECT_EQ(info.sampleRate, c.rate);
            EXPECT_EQ(info.mpeg->variableBitRate, c.bitRate == 0);
            if (c.bitRate != 0) {
                EXPECT_EQ(info.bitRate, c.bitRate * 1000);
            }
            const auto sound = ReadAll(*source);
            ASSERT_EQ(sound.size(), static_cast<size_t>(2 * frames));
            if (frames > 20000) {
                EXPECT_EQ(BestLag(sound, original, c.channels), 0);
            }
        }
    }
}

TEST(Mpeg, ASeekGivesTheSameSamplesAsReadingUpToThere) {
    const auto sound = Music(44100, 2, 120000);
    Bytes holed = Mp3File(44100, 2, sound, {.infoFrame = false});
    holed.insert(holed.begin() + 20000, 300000, 0);
    const std::pair<const char*, Bytes> cases[] = {
        {"constant", Mp3File(44100, 2, sound)},
        {"a hole of zeros", holed},
        // The bit reservoir reaches back over many small frames.
        {"low", Mp3File(32000, 1, Music(32000, 1, 120000), {.bitRate = 32})},
        {"without info frame", Mp3File(44100, 2, sound, {.infoFrame = false})},
        {"variable", Mp3File(44100, 2, sound, {.bitRate = 0})},
        {"MPEG-2", Mp3File(22050, 1, Music(22050, 1, 60000))},
        {"layer 1", ReadBytes(VBMP3_TEST_DATA "/layer1_48000.mp1")},
        {"Microsoft ADPCM", ReadBytes(VBMP3_TEST_DATA "/adpcm_ms.wav")},
        {"IMA ADPCM", ReadBytes(VBMP3_TEST_DATA "/adpcm_ima.wav")},
        {"layer 2", ReadBytes(VBMP3_TEST_DATA "/layer2_44100.mp2")},
        {"RMP", RmpFile(Mp3File(44100, 2, sound))},
        {"WAVE", WaveFile(44100, 2, sound)}};
    for (const auto& [name, file] : cases) {
        SCOPED_TRACE(name);
        const auto whole = ReadAll(*OpenBytes(file));
        const auto source = OpenBytes(file);
        const size_t frames = whole.size() / 2;
        std::mt19937 random(2);
        std::vector<float> piece(2 * 3000);
        for (int i = 0; i < 40; ++i) {
            // To the ends too, and twice to the same place.
            const size_t target = i == 0 ? frames - 1 : i == 1 ? 0 : i == 2 ? frames + 5 : random() % frames;
            source->seek(static_cast<int64_t>(target));
            size_t got = 0;
            while (got < piece.size() / 2) {
                const size_t more = source->read(std::span(piece).subspan(2 * got));
                if (more == 0) break;
                got += more;
            }
            const size_t expected = target >= frames ? 0 : std::min(piece.size() / 2, frames - target);
            ASSERT_EQ(got, expected) << "at " << target;
            for (size_t k = 0; k < 2 * got; ++k) ASSERT_NEAR(piece[k], whole[2 * target + k], 1e-6f) << "at " << target;
        }
    }
}

TEST(Mpeg, TheLengthOfAStreamWithoutCountsIsThatOfItsFrames) {
    const auto sound = Music(44100, 2, 88200);
    const auto encoded = [&](Mp3Options options) {
        options.infoFrame = false;
        return Mp3File(44100, 2, sound, options);
    };
    const Bytes plain = encoded({});
    const struct {
        const char* name;
        Bytes file;
        int samplesPerFrame;
        bool variableBitRate;
    } cases[] = {{"constant", plain, 1152, false},
                 {"variable", encoded({.bitRate = 0}), 1152, true},
                 {"checksums", encoded({.crc = true}), 1152, false},
                 {"free format", encoded({.bitRate = 168, .freeFormat = true}), 1152, false},
                 {"VBRI", WithVbri(plain, static_cast<uint32_t>(FrameOffsets(plain).size())), 1152, true},
                 {"layer 1", ReadBytes(VBMP3_TEST_DATA "/layer1_48000.mp1"), 384, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        StreamInfo info;
        const auto source = OpenBytes(c.file, &info);
        ASSERT_TRUE(source);
        const size_t decoded = ReadAll(*source).size() / 2;
        EXPECT_EQ(static_cast<int64_t>(decoded), info.frames);
        EXPECT_EQ(decoded % static_cast<size_t>(c.samplesPerFrame), 0u);
        EXPECT_EQ(info.mpeg->variableBitRate, c.variableBitRate);
        EXPECT_EQ(info.mpeg->freeFormat, std::string(c.name) == "free format");
        EXPECT_GT(decoded, 40000u);
    }
}

TEST(Mpeg, CountsOfAnInformationFrameAreBelievedWhenTheBytesCanHoldThem) {
    Bytes file = Mp3File(44100, 2, Music(44100, 2, 88200), {.bitRate = 0});
    const auto counts = std::search(file.begin(), file.end(), "Xing", "Xing" + 4) + 8;
    const Bytes whole(counts, counts + 8), none{0, 0, 0, 0}, one{0, 0, 0, 1}, most(4, 0xFF);
    const Bytes frames(whole.begin(), whole.begin() + 4), bytes(whole.begin() + 4, whole.end());
    for (const Bytes& told : {whole, most + most, most + bytes, most + none, one + bytes, one + one, one + most,
                              frames + one, frames + most, frames + none, none + bytes}) {
        std::copy(told.begin(), told.end(), counts);
        StreamInfo info;
        ASSERT_TRUE(OpenBytes(file, &info));
        EXPECT_NEAR(static_cast<double>(info.milliseconds()), 2000, 50) << testing::PrintToString(told);
    }
}

TEST(Mpeg, ZerosInFrontAreNoReasonToRefuseAFileAndOtherJunkIsWithinLimits) {
    const Bytes stream = Mp3File(44100, 2, Music(44100, 2, 20000));
    const auto expected = ReadAll(*OpenBytes(stream));
    EXPECT_EQ(ReadAll(*OpenBytes(Bytes(1 << 22) + stream)), expected);
    EXPECT_EQ(ReadAll(*OpenBytes(Bytes(1 << 19, 'x') + Bytes(1 << 22) + stream)), expected);
    EXPECT_FALSE(OpenBytes(Bytes(1 << 22, 'x') + stream));
}

TEST(Mpeg, EveryVersionAndLayerIsNamedAndIsTheToneItHolds) {
    const struct {
        Bytes file;
        const char* format;
        int version, layer;
    } cases[] = {
        {Mp3File(44100, 1, ToneOf(44100, 1, 20000)), "MPEG1 Layer3 44100Hz 128kbit/s Mono", 10, 3},
        {Mp3File(22050, 2, ToneOf(22050, 2, 20000), {.bitRate = 64}), "MPEG2 Layer3 22050Hz 64kbit/s Joint Stereo", 20,
         3},
        {Mp3File(11025, 1, ToneOf(11025, 1, 20000), {.bitRate = 64}), "MPEG2.5 Layer3 11025Hz 64kbit/s Mono", 25, 3},
        {ReadBytes(VBMP3_TEST_DATA "/layer1_48000.mp1"), "MPEG1 Layer1 48000Hz 192kbit/s Mono", 10, 1},
        {ReadBytes(VBMP3_TEST_DATA "/layer2_44100.mp2"), "MPEG1 Layer2 44100Hz 64kbit/s Mono", 10, 2},
        {ReadBytes(VBMP3_TEST_DATA "/layer2_22050.mp2"), "MPEG2 Layer2 22050Hz 64kbit/s Mono", 20, 2}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        StreamInfo info;
        const auto source = OpenBytes(c.file, &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(info.format, c.format);
        EXPECT_EQ(info.mpeg->first.version, c.version);
        EXPECT_EQ(info.mpeg->first.layer, c.layer);
        const auto sound = ReadAll(*source);
        EXPECT_NEAR(FrequencyOf(sound, info.sampleRate, 2000, sound.size() / 2 - 1500), 440, 2);
    }
}

TEST(Mpeg, RiffAroundTheFramesChangesNothingOfTheSound) {
    const Bytes stream = Mp3File(44100, 2, Music(44100, 2, 50000));
    const auto expected = ReadAll(*OpenBytes(stream));
    // What follows the data chunk must not be decoded: here it looks like frames.
    for (const Bytes& file : {RmpFile(stream), RmpFile(stream, stream), Mp3InWave(stream)}) {
        StreamInfo info;
        const auto source = OpenBytes(file, &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(ReadAll(*source), expected);
        EXPECT_EQ(info.frames, 50000);
    }
}

// ISO 11172-4 calls a decoder fully accurate when it differs from the reference by less than 2^-15 / sqrt(12) rms and
// 2^-14 at most. The reference is the decoder's plain arithmetic in floats, without any processor's extensions.
TEST(Mpeg, SamplesAreFullyAccurate) {
#ifdef _WIN32
    GTEST_SKIP() << "libmpg123 1.31 for MinGW never returns when a decoder is chosen by name: its config.h lets "
                    "_stricmp call itself";
#endif
    const Bytes file = Mp3File(44100, 2, Music(44100, 2, 100000), {.bitRate = 192, .infoFrame = false});
    const auto sound = ReadAll(*OpenBytes(file));

    const TempDir dir;
    const auto expected = DecodeByMpg123(dir.write("a.mp3", file), "generic", false).samples;
    ASSERT_GE(expected.size() + 2 * 1152, sound.size());

    const size_t count = std::min(expected.size(), sound.size());
    const auto rounded = ToInt16(sound);
    double square = 0, most = 0, squareRounded = 0, mostRounded = 0;
    const auto add = [](double difference, double& squares, double& greatest) {
        squares += difference * difference;
        greatest = std::max(greatest, std::abs(difference));
    };
    for (size_t i = 0; i < count; ++i) {
        add(static_cast<double>(sound[i]) - expected[i], square, most);
        add(rounded[i] / 32768.0 - std::clamp(static_cast<double>(expected[i]), -1.0, 32767 / 32768.0), squareRounded,
            mostRounded);
    }
    const double limit = std::pow(2, -15) / std::sqrt(12.0);
    EXPECT_LT(std::sqrt(square / static_cast<double>(count)), limit / 100);
    EXPECT_LT(most, std::pow(2, -14) / 100);
    EXPECT_LT(std::sqrt(squareRounded / static_cast<double>(count)),
              limit * 1.02);  // sixteen bits round by just that much
    EXPECT_LT(mostRounded, std::pow(2, -14));
}

}  // namespace
}  // namespace vbmp3::test
