// WAVE files: every coding and downmix.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <string>

#include "libraries/formats/wave_format.h"
#include "libraries/vbmp3/tags/file_record.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

Bytes Extensible(Bytes fmt, uint32_t mask) {
    const uint8_t tag = fmt[0], bits = fmt[14];
    fmt[0] = 0xFE;
    fmt[1] = 0xFF;
    return fmt + Little(22, 2) + Little(bits, 2) + Little(mask, 4) + Little(tag, 2) +
           Bytes{0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
}

// A quarter, minus a half and the most negative value, each left and right.
Bytes ThreeFrames(int bytesPerSample, const std::function<uint64_t(double)>& coded) {
    Bytes data;
    for (const double value : {0.25, 0.25, -0.5, -0.5, -1.0, -1.0}) data = data + Little(coded(value), bytesPerSample);
    return data;
}

Bytes Integers(int bits) {
    return ThreeFrames(bits / 8, [&](double value) {
        return static_cast<uint64_t>(static_cast<int64_t>(std::ldexp(value, bits - 1)));
    });
}

TEST(Wave, SamplesOfEveryCodingComeOutAsTheirValue) {
    const Bytes eight = ThreeFrames(1, [](double value) { return static_cast<uint64_t>(value * 128 + 128); });
    const Bytes real = ThreeFrames(4, [](double value) { return std::bit_cast<uint32_t>(static_cast<float>(value)); });
    const Bytes wide = ThreeFrames(8, [](double value) { return std::bit_cast<uint64_t>(value); });
    Bytes twentyFmt = PcmFmt(1, 2, 48000, 24);
    twentyFmt[14] = 20;
    const std::pair<const char*, Bytes> cases[] = {
        {"8", WaveFile(PcmFmt(1, 2, 48000, 8), eight)},
        {"16", WaveFile(PcmFmt(1, 2, 48000, 16), Integers(16))},
        {"20 in 24", WaveFile(twentyFmt, Integers(24))},
        {"24", WaveFile(PcmFmt(1, 2, 48000, 24), Integers(24))},
        {"32", WaveFile(PcmFmt(1, 2, 48000, 32), Integers(32))},
        {"float", WaveFile(PcmFmt(3, 2, 48000, 32), real)},
        {"double", WaveFile(PcmFmt(3, 2, 48000, 64), wide)},
        {"extensible", WaveFile(Extensible(PcmFmt(1, 2, 48000, 24), 3), Integers(24))},
        {"extensible float", WaveFile(Extensible(PcmFmt(3, 2, 48000, 32), 3), real)}};
    for (const auto& [name, file] : cases) {
        SCOPED_TRACE(name);
        StreamInfo info;
        const auto source = OpenBytes(file, &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(FileTypeOf(info), VBMP3_TYPE_WAVE);
        EXPECT_EQ(info.frames, 3);
        EXPECT_EQ(ReadAll(*source), (std::vector<float>{0.25f, 0.25f, -0.5f, -0.5f, -1.0f, -1.0f}));
    }
}

TEST(Wave, LogarithmicCodingsFollowTheirTables) {
    // ITU-T G.711: the loudest and the softest codes and some of the middle of each law, as 16-bit values.
    const struct {
        int tag;
        const char* format;
        Bytes codes;
        std::vector<int16_t> values;
    } cases[] = {
        {6, "WAVE_FORMAT_ALAW", {0x2A, 0xAA, 0xD5, 0x55, 0xC5, 0xF5, 0x85}, {-32256, 32256, 8, -8, 264, 528, 4224}},
        {7, "WAVE_FORMAT_MULAW", {0x00, 0x80, 0xFF, 0x7F, 0xAF}, {-32124, 32124, 0, 0, 4092}}};
    for (const auto& c : cases) {
        StreamInfo info;
        const auto source = OpenBytes(WaveFile(PcmFmt(c.tag, 1, 8000, 8), c.codes), &info);
        ASSERT_TRUE(source);
        const auto stereo = ToInt16(ReadAll(*source));
        for (size_t i = 0; i < c.values.size(); ++i)
            EXPECT_EQ(stereo[2 * i], c.values[i]) << c.format << " " << static_cast<int>(c.codes[i]);
        EXPECT_EQ(FileTypeOf(info), 0);
        EXPECT_EQ(info.format, c.format);
    }
}

TEST(Wave, MoreChannelsAreMixedDownWithoutClipping) {
    const auto mixed = [](int channels, uint32_t mask, std::vector<float> frame) {
        std::vector<float> stereo(2);
        StereoMix(channels, mask).mix(frame, stereo);
        return stereo;
    };
    EXPECT_EQ(mixed(1, 0, {0.5f}), (std::vector<float>{0.5f, 0.5f}));
    EXPECT_EQ(mixed(2, 0, {0.5f, -1.0f}), (std::vector<float>{0.5f, -1.0f}));
    for (int channels = 3; channels <= 64; ++channels) {
        const auto loud = mixed(channels, 0, std::vector<float>(static_cast<size_t>(channels), 1.0f));
        EXPECT_LE(std::max(loud[0], loud[1]), 1.00001f) << channels;
        EXPECT_GT(std::min(loud[0], loud[1]), 0.3f) << channels;
    }
    // 5.1: left and left surround stay left, the centre goes to both, the bass to none.
    const auto left = mixed(6, 0x3F, {1, 0, 0, 0, 0, 0}), surround = mixed(6, 0x3F, {0, 0, 0, 0, 1, 0});
    EXPECT_GT(left[0], 0.4f);
    EXPECT_EQ(left[1], 0.0f);
    EXPECT_NEAR(surround[0], left[0] * 0.7071f, 1e-4);
    const auto centre = mixed(6, 0x3F, {0, 0, 1, 0, 0, 0});
    EXPECT_EQ(centre[0], centre[1]);
    EXPECT_EQ(mixed(6, 0x3F, {0, 0, 0, 1, 0, 0})[0], 0.0f);
}

TEST(Wave, AdpcmBlocksDecodeToTheToneThatWentIn) {
    const std::string data = VBMP3_TEST_DATA;
    for (const char* name : {"/adpcm_ms.wav", "/adpcm_ima.wav"}) {
        SCOPED_TRACE(name);
        StreamInfo info;
        const auto source = OpenBytes(ReadBytes(data + name), &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(FileTypeOf(info), 0);
        const auto sound = ReadAll(*source);
        ASSERT_EQ(static_cast<int64_t>(sound.size() / 2), info.frames);
        double error = 0, power = 0;
        for (size_t i = 0; i < 4000; ++i) {
            const double expected = 4096 / 32768.0 * std::sin(2 * M_PI * 440 * static_cast<double>(i) / 22050);
            error += std::pow(sound[2 * i] - expected, 2);
            power += expected * expected;
        }
        EXPECT_LT(error / power, 0.001);
    }
}

TEST(Wave, ContradictoryOrUnknownFormatsAreRefused) {
    const Bytes data(400, 1);
    const auto refused = [&](Bytes fmt) { return OpenBytes(WaveFile(fmt, data)) == nullptr; };
    const auto changed = [](int at, int value) {
        Bytes fmt = PcmFmt(1, 2, 44100, 16);
        fmt[static_cast<size_t>(at)] = static_cast<uint8_t>(value);
        return fmt;
    };
    EXPECT_FALSE(refused(PcmFmt(1, 2, 44100, 16)));
    EXPECT_TRUE(refused(changed(2, 0))) << "no channels";
    EXPECT_TRUE(refused(changed(2, 3))) << "frames that are no whole samples";
    EXPECT_TRUE(refused(changed(12, 0))) << "no bytes in a frame";
    EXPECT_TRUE(refused(changed(14, 24))) << "more bits than bytes";
    EXPECT_TRUE(refused(changed(0, 0x31))) << "GSM";
    EXPECT_TRUE(refused(PcmFmt(1, 2, 0, 16))) << "no rate";
    EXPECT_TRUE(refused(PcmFmt(3, 2, 44100, 16))) << "floats of 16 bits";
    EXPECT_TRUE(refused(PcmFmt(1, 2, 44100, 64))) << "integers of 64 bits";
    EXPECT_TRUE(refused(Bytes(10, 1))) << "a format chunk cut short";
}

}  // namespace
}  // namespace vbmp3::test
