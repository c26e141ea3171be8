// WAVE files: every coding, downmix, and heads that lie.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "libraries/vbmp3/wave_format.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

void put(Bytes& bytes, uint64_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.push_back(uint8_t(value >> 8 * i));
}

template <typename Number>
void putNumber(Bytes& bytes, Number value)
{
    uint8_t raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes.insert(bytes.end(), raw, raw + sizeof value);
}

Bytes extensible(Bytes fmt, uint32_t mask)
{
    const int tag = fmt[0];
    fmt[0] = 0xFE;
    fmt[1] = 0xFF;
    put(fmt, 22, 2);
    put(fmt, uint64_t(fmt[14]), 2);
    put(fmt, mask, 4);
    put(fmt, uint64_t(tag), 2);
    const uint8_t rest[] = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
    fmt.insert(fmt.end(), rest, rest + sizeof rest);
    return fmt;
}

TEST(Wave, SamplesOfEveryCodingComeOutAsTheirValue)
{
    // The same three values, a quarter, minus a half and the most negative, in every coding; left equals right.
    const double values[] = {0.25, -0.5, -1.0};
    Bytes eight, sixteen, twentyFour, thirtyTwo, real, wide, twenty;
    for (const double value : values)
        for (int channel = 0; channel < 2; ++channel) {
            eight.push_back(uint8_t(std::lround(value * 128) + 128));
            put(sixteen, uint64_t(int64_t(value * 32768)), 2);
            put(twentyFour, uint64_t(int64_t(value * 8388608)), 3);
            put(thirtyTwo, uint64_t(int64_t(value * 2147483648.0)), 4);
            put(twenty, uint64_t(int64_t(value * 524288)) << 4, 3);
            putNumber(real, float(value));
            putNumber(wide, value);
        }
    Bytes twentyFmt = pcmFmt(1, 2, 48000, 24);
    twentyFmt[14] = 20;
    struct Case {
        const char* name;
        Bytes file;
    };
    const Case cases[] = {{"8", waveFile(pcmFmt(1, 2, 48000, 8), eight)},
                          {"16", waveFile(pcmFmt(1, 2, 48000, 16), sixteen)},
                          {"20 in 24", waveFile(twentyFmt, twenty)},
                          {"24", waveFile(pcmFmt(1, 2, 48000, 24), twentyFour)},
                          {"32", waveFile(pcmFmt(1, 2, 48000, 32), thirtyTwo)},
                          {"float", waveFile(pcmFmt(3, 2, 48000, 32), real)},
                          {"double", waveFile(pcmFmt(3, 2, 48000, 64), wide)},
                          {"extensible", waveFile(extensible(pcmFmt(1, 2, 48000, 24), 3), twentyFour)},
                          {"extensible float", waveFile(extensible(pcmFmt(3, 2, 48000, 32), 3), real)}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        StreamInfo info;
        const auto source = openBytes(c.file, &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(info.fileType, VBMP3_TYPE_WAVE);
        EXPECT_EQ(info.frames, 3);
        EXPECT_EQ(readAll(*source), (std::vector<float>{0.25f, 0.25f, -0.5f, -0.5f, -1.0f, -1.0f}));
    }
}

TEST(Wave, LogarithmicCodingsFollowTheirTables)
{
    // ITU-T G.711: the loudest, the softest and a middle code of each law, as 16-bit values.
    const Bytes aLaw = {0x2A, 0xAA, 0xD5, 0x55, 0x85}, muLaw = {0x00, 0x80, 0xFF, 0x7F, 0xAF};
    StreamInfo info;
    auto source = openBytes(waveFile(pcmFmt(6, 1, 8000, 8), aLaw), &info);
    ASSERT_TRUE(source);
    auto samples = toInt16(readAll(*source));
    EXPECT_EQ((std::vector<int>{samples[0], samples[2], samples[4], samples[6]}),
              (std::vector<int>{-32256, 32256, 8, -8}));
    EXPECT_EQ(info.fileType, 0);
    EXPECT_EQ(info.format, "WAVE_FORMAT_ALAW");
    source = openBytes(waveFile(pcmFmt(7, 1, 8000, 8), muLaw), &info);
    ASSERT_TRUE(source);
    samples = toInt16(readAll(*source));
    EXPECT_EQ((std::vector<int>{samples[0], samples[2], samples[4], samples[6]}),
              (std::vector<int>{-32124, 32124, 0, 0}));
}

TEST(Wave, MoreChannelsAreMixedDownWithoutClipping)
{
    const auto mixed = [](int channels, uint32_t mask, std::vector<float> frame) {
        std::vector<float> stereo(2);
        StereoMix(channels, mask).mix(frame, stereo);
        return stereo;
    };
    EXPECT_EQ(mixed(1, 0, {0.5f}), (std::vector<float>{0.5f, 0.5f}));
    EXPECT_EQ(mixed(2, 0, {0.5f, -1.0f}), (std::vector<float>{0.5f, -1.0f}));
    for (int channels = 3; channels <= 64; ++channels) {
        const auto loud = mixed(channels, 0, std::vector<float>(size_t(channels), 1.0f));
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

TEST(Wave, AdpcmBlocksDecodeToTheToneThatWentIn)
{
    const std::string data = VBMP3_TEST_DATA;
    for (const char* name : {"/adpcm_ms.wav", "/adpcm_ima.wav"}) {
        SCOPED_TRACE(name);
        const Bytes file = readBytes(data + name);
        StreamInfo info;
        const auto source = openBytes(file, &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(info.fileType, 0);
        const auto sound = readAll(*source);
        ASSERT_EQ(int64_t(sound.size() / 2), info.frames);
        double error = 0, power = 0;
        for (size_t i = 0; i < 4000; ++i) {
            const double expected = 4096 / 32768.0 * std::sin(2 * M_PI * 440 * double(i) / 22050);
            error += std::pow(sound[2 * i] - expected, 2);
            power += expected * expected;
        }
        EXPECT_LT(error / power, 0.001);
        // Any place can be reached although blocks depend on their beginning.
        std::vector<float> piece(2);
        for (const int frame : {3000, 1, 2500}) {
            source->seek(frame);
            ASSERT_EQ(source->read(piece), 1u);
            EXPECT_EQ(piece[0], sound[size_t(2 * frame)]);
        }
    }
}

TEST(Wave, HeadsThatLieAboutLengthPlayWhatIsThere)
{
    const auto samples = tone(44100, 2, 1000);
    const Bytes good = waveFile(44100, 2, samples);
    const auto expected = toInt16(readAll(*openBytes(good)));
    ASSERT_EQ(expected, samples);
    const auto withDataSize = [&](uint32_t size) {
        Bytes file = good;
        for (int i = 0; i < 4; ++i)
            file[size_t(40 - 4 + 4 + i)] = uint8_t(size >> 8 * i);
        return file;
    };
    Bytes noRiffSize = good;
    std::fill_n(noRiffSize.begin() + 4, 4, uint8_t(0));
    for (const Bytes& file : {withDataSize(0xFFFFFFFF), withDataSize(0), withDataSize(1u << 30), noRiffSize}) {
        const auto source = openBytes(file);
        ASSERT_TRUE(source);
        EXPECT_EQ(toInt16(readAll(*source)), samples);
    }
}

TEST(Wave, Rf64TakesItsLengthFromTheDs64Chunk)
{
    const auto samples = tone(44100, 2, 1000);
    const Bytes plain = waveFile(44100, 2, samples);
    Bytes file(plain.begin(), plain.begin() + 12);
    std::memcpy(file.data(), "RF64", 4);
    std::fill_n(file.begin() + 4, 4, uint8_t(0xFF));
    for (const char c : {'d', 's', '6', '4'})
        file.push_back(uint8_t(c));
    put(file, 28, 4);
    put(file, 5000, 8);
    put(file, 4000, 8);
    put(file, 1000, 8);
    put(file, 0, 4);
    file.insert(file.end(), plain.begin() + 12, plain.end());
    const size_t dataSize = file.size() - 4000 - 4;
    std::fill_n(file.begin() + std::ptrdiff_t(dataSize), 4, uint8_t(0xFF));
    for (const char c : std::string("LIST\4\0\0\0INFO", 12))
        file.push_back(uint8_t(c));
    const auto source = openBytes(file);
    ASSERT_TRUE(source);
    EXPECT_EQ(toInt16(readAll(*source)), samples);
}

TEST(Wave, ContradictoryOrUnknownFormatsAreRefused)
{
    const Bytes data(400, 1);
    const auto refused = [&](Bytes fmt) { return openBytes(waveFile(fmt, data)) == nullptr; };
    const auto changed = [](int at, int value) {
        Bytes fmt = pcmFmt(1, 2, 44100, 16);
        fmt[size_t(at)] = uint8_t(value);
        return fmt;
    };
    EXPECT_FALSE(refused(pcmFmt(1, 2, 44100, 16)));
    EXPECT_TRUE(refused(changed(2, 0))) << "no channels";
    EXPECT_TRUE(refused(changed(2, 3))) << "frames that are no whole samples";
    EXPECT_TRUE(refused(changed(12, 0))) << "no bytes in a frame";
    EXPECT_TRUE(refused(changed(14, 24))) << "more bits than bytes";
    EXPECT_TRUE(refused(changed(0, 0x31))) << "GSM";
    EXPECT_TRUE(refused(pcmFmt(1, 2, 0, 16))) << "no rate";
    EXPECT_TRUE(refused(pcmFmt(3, 2, 44100, 16))) << "floats of 16 bits";
    EXPECT_TRUE(refused(pcmFmt(1, 2, 44100, 64))) << "integers of 64 bits";
    EXPECT_TRUE(refused(Bytes(10, 1))) << "a format chunk cut short";
}

} // namespace
} // namespace vbmp3::test
