// MPEG streams: lengths, gapless playing, seeking, and accuracy.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <random>

#include <mpg123.h>

#include "libraries/vbmp3/mpeg_decoder.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

// Several partials and a little noise: every frame differs from every other.
std::vector<int16_t> music(int rate, int channels, int frames)
{
    std::mt19937 random(1);
    std::vector<int16_t> samples;
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < channels; ++c) {
            const double t = double(i) / rate;
            const double value = 5000 * std::sin(2 * M_PI * (220 + 100 * t) * t) + 3000 * std::sin(2 * M_PI * 1234 * t + c)
                                 + 2000 * std::sin(2 * M_PI * 0.7 * t) * std::sin(2 * M_PI * 3000 * t)
                                 + double(random() % 400) - 200;
            samples.push_back(int16_t(value));
        }
    return samples;
}

// Where `sound` fits `original` best, in frames; both interleaved stereo.
int bestLag(const std::vector<float>& sound, const std::vector<int16_t>& original, int channels)
{
    int best = 0;
    double most = -1e30;
    for (int lag = -60; lag <= 60; ++lag) {
        double sum = 0;
        for (int i = 2000; i < 12000; ++i)
            sum += double(sound[size_t(2 * (i + lag))]) * original[size_t(i * channels)];
        if (sum > most) {
            most = sum;
            best = lag;
        }
    }
    return best;
}

TEST(Mpeg, AFileWithTheEncodersCountsDecodesToExactlyTheEncodersInput)
{
    struct Case {
        int rate, channels, bitRate;
    };
    for (const Case& c : {Case{44100, 2, 128}, Case{48000, 2, 320}, Case{32000, 1, 0}, Case{44100, 2, 0},
                          Case{22050, 2, 64}, Case{24000, 1, 64}, Case{16000, 1, 0}, Case{11025, 1, 64},
                          Case{12000, 2, 64}, Case{8000, 1, 64}}) {
        SCOPED_TRACE(testing::Message() << c.rate << " Hz, " << c.channels << " channels, " << c.bitRate << " kbit/s");
        for (const int frames : {1, 1000, 30011}) {
            const auto original = music(c.rate, c.channels, frames);
            Mp3Options options;
            options.bitRate = c.bitRate;
            const Bytes file = mp3File(c.rate, c.channels, original, options);
            StreamInfo info;
            const auto source = openBytes(file, &info);
            ASSERT_TRUE(source);
            EXPECT_EQ(info.frames, frames);
            EXPECT_TRUE(info.exact);
            EXPECT_EQ(info.sampleRate, c.rate);
            EXPECT_EQ(info.mpeg->variableBitRate, c.bitRate == 0);
            if (c.bitRate != 0) {
                EXPECT_EQ(info.bitRate, c.bitRate * 1000);
            }
            const auto sound = readAll(*source);
            ASSERT_EQ(sound.size(), size_t(2 * frames));
            if (frames > 20000) {
                EXPECT_EQ(bestLag(sound, original, c.channels), 0);
            }
        }
    }
}

TEST(Mpeg, ASeekGivesTheSameSamplesAsReadingUpToThere)
{
    struct Case {
        const char* name;
        Bytes file;
    };
    const auto sound = music(44100, 2, 120000);
    Mp3Options constant, low, plain, variable;
    low.bitRate = 32; // the bit reservoir reaches back over many small frames
    const std::string data = VBMP3_TEST_DATA;
    plain.infoFrame = false;
    variable.bitRate = 0;
    const Case cases[] = {{"constant", mp3File(44100, 2, sound, constant)},
                          {"low", mp3File(32000, 1, music(32000, 1, 120000), low)},
                          {"without info frame", mp3File(44100, 2, sound, plain)},
                          {"variable", mp3File(44100, 2, sound, variable)},
                          {"MPEG-2", mp3File(22050, 1, music(22050, 1, 60000), constant)},
                          {"layer 1", layer1File(100)},
                          {"layer 2", readBytes(data + "/layer2_44100.mp2")},
                          {"RMP", rmpFile(mp3File(44100, 2, sound, constant))},
                          {"WAVE", waveFile(44100, 2, sound)}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto whole = readAll(*openBytes(c.file));
        const auto source = openBytes(c.file);
        const size_t frames = whole.size() / 2;
        std::mt19937 random(2);
        std::vector<float> piece(2 * 3000);
        for (int i = 0; i < 40; ++i) {
            // To the ends too, and twice to the same place.
            const size_t target = i == 0 ? frames - 1 : i == 1 ? 0 : i == 2 ? frames + 5 : random() % frames;
            source->seek(int64_t(target));
            size_t got = 0;
            while (got < piece.size() / 2) {
                const size_t more = source->read(std::span(piece).subspan(2 * got));
                if (more == 0)
                    break;
                got += more;
            }
            const size_t expected = target >= frames ? 0 : std::min(piece.size() / 2, frames - target);
            ASSERT_EQ(got, expected) << "at " << target;
            if (got > 0) {
                float most = 0;
                for (size_t k = 0; k < 2 * got; ++k)
                    most = std::max(most, std::abs(piece[k] - whole[2 * target + k]));
                ASSERT_LT(most, 1e-6f) << "at " << target;
            }
        }
    }
}

TEST(Mpeg, TheLengthOfAStreamWithoutCountsIsThatOfItsFrames)
{
    Mp3Options constant, variable, crc, freeFormat;
    constant.infoFrame = variable.infoFrame = crc.infoFrame = freeFormat.infoFrame = false;
    variable.bitRate = 0;
    crc.crc = true;
    freeFormat.freeFormat = true;
    freeFormat.bitRate = 168;
    const auto sound = music(44100, 2, 88200);
    const Bytes plain = mp3File(44100, 2, sound, constant);
    struct Case {
        const char* name;
        Bytes file;
        int samplesPerFrame;
        bool variableBitRate;
    };
    const Case cases[] = {{"constant", plain, 1152, false},
                          {"variable", mp3File(44100, 2, sound, variable), 1152, true},
                          {"checksums", mp3File(44100, 2, sound, crc), 1152, false},
                          {"free format", mp3File(44100, 2, sound, freeFormat), 1152, false},
                          {"VBRI", withVbri(plain, uint32_t(frameOffsets(plain).size())), 1152, true},
                          {"layer 1", layer1File(125), 384, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        StreamInfo info;
        const auto source = openBytes(c.file, &info);
        ASSERT_TRUE(source);
        const size_t decoded = readAll(*source).size() / 2;
        EXPECT_EQ(int64_t(decoded), info.frames);
        EXPECT_EQ(decoded % size_t(c.samplesPerFrame), 0u);
        EXPECT_EQ(info.mpeg->variableBitRate, c.variableBitRate);
        EXPECT_EQ(info.mpeg->freeFormat, std::string(c.name) == "free format");
        EXPECT_GT(decoded, 40000u);
    }
}

TEST(Mpeg, LayersOneAndTwoAreTheToneTheyHold)
{
    const std::string data = VBMP3_TEST_DATA;
    for (const Bytes& file : {layer1File(60), readBytes(data + "/layer2_44100.mp2"), readBytes(data + "/layer2_22050.mp2")}) {
        StreamInfo info;
        const auto source = openBytes(file, &info);
        ASSERT_TRUE(source);
        const auto sound = readAll(*source);
        int crossings = 0;
        const size_t from = 2000, to = sound.size() / 2 - 1500;
        for (size_t i = from; i < to; ++i)
            crossings += sound[2 * i] < 0 && sound[2 * i + 2] >= 0;
        EXPECT_NEAR(crossings * double(info.sampleRate) / double(to - from), 440, 5) << info.format;
        EXPECT_EQ(info.fileType & VBMP3_TYPE_MPEG, VBMP3_TYPE_MPEG);
    }
}

TEST(Mpeg, TheFormatTextNamesVersionLayerRateAndMode)
{
    struct Case {
        Bytes file;
        const char* text;
        int version, layer;
    };
    const std::string data = VBMP3_TEST_DATA;
    Mp3Options options;
    options.bitRate = 64;
    const Case cases[] = {
        {mp3File(44100, 1, tone(44100, 1, 20000)), "MPEG1 Layer3 44100Hz 128kbit/s Mono", 10, 3},
        {mp3File(22050, 2, tone(22050, 2, 20000), options), "MPEG2 Layer3 22050Hz 64kbit/s Joint Stereo", 20, 3},
        {mp3File(11025, 1, tone(11025, 1, 20000), options), "MPEG2.5 Layer3 11025Hz 64kbit/s Mono", 25, 3},
        {layer1File(50), "MPEG1 Layer1 48000Hz 192kbit/s Mono", 10, 1},
        {readBytes(data + "/layer2_22050.mp2"), "MPEG2 Layer2 22050Hz 64kbit/s Mono", 20, 2}};
    for (const Case& c : cases) {
        StreamInfo info;
        ASSERT_TRUE(openBytes(c.file, &info)) << c.text;
        EXPECT_EQ(info.format, c.text);
        EXPECT_EQ(info.mpeg->first.version, c.version);
        EXPECT_EQ(info.mpeg->first.layer, c.layer);
    }
}

TEST(Mpeg, RiffAroundTheFramesChangesNothingOfTheSound)
{
    const Bytes stream = mp3File(44100, 2, music(44100, 2, 50000));
    const auto expected = readAll(*openBytes(stream));
    // What follows the data chunk must not be decoded: here it looks like frames.
    for (const Bytes& file : {rmpFile(stream), rmpFile(stream, stream), mp3InWave(stream)}) {
        StreamInfo info;
        const auto source = openBytes(file, &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(readAll(*source), expected);
        EXPECT_EQ(info.frames, 50000);
    }
}

TEST(Mpeg, FileTypeFlagsTellContainerAndTags)
{
    const Bytes stream = mp3File(44100, 2, tone(44100, 2, 20000));
    Bytes withTag = stream;
    withTag.resize(withTag.size() + 128);
    std::memcpy(withTag.data() + stream.size(), "TAG", 3);
    Bytes id3v2 = {'I', 'D', '3', 3, 0, 0, 0, 0, 0, 10};
    id3v2.resize(20);
    id3v2.insert(id3v2.end(), withTag.begin(), withTag.end());
    struct Case {
        Bytes file;
        int flags;
    };
    for (const Case& c : {Case{stream, 1 | 32}, Case{withTag, 1 | 4 | 32}, Case{id3v2, 1 | 4 | 16 | 32},
                          Case{rmpFile(stream), 1 | 2 | 32}, Case{mp3InWave(stream), 1 | 32},
                          Case{waveFile(44100, 2, tone(44100, 2, 100)), 64}}) {
        StreamInfo info;
        ASSERT_TRUE(openBytes(c.file, &info));
        EXPECT_EQ(info.fileType, c.flags);
    }
}

// ISO 11172-4 calls a decoder fully accurate when it differs from the reference by less than 2^-15 / sqrt(12) rms and
// 2^-14 at most. The reference is the decoder's plain arithmetic in floats, without any processor's extensions.
TEST(Mpeg, SamplesAreFullyAccurate)
{
#ifdef _WIN32
    GTEST_SKIP() << "libmpg123 1.31 for MinGW never returns when a decoder is chosen by name: its config.h lets _stricmp call itself";
#endif
    const Bytes file = mp3File(44100, 2, music(44100, 2, 100000), {.bitRate = 192, .infoFrame = false});
    const auto sound = readAll(*openBytes(file));

    mpg123_handle* reference = mpg123_new("generic", nullptr);
    ASSERT_TRUE(reference);
    mpg123_param(reference, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT | MPG123_QUIET, 0);
    mpg123_param(reference, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
    mpg123_open_feed(reference);
    std::vector<float> expected(sound.size() + 10000);
    size_t done = 0;
    mpg123_feed(reference, file.data(), file.size());
    unsigned char* to = reinterpret_cast<unsigned char*>(expected.data());
    size_t total = 0;
    while (true) {
        const int result = mpg123_read(reference, to + total, expected.size() * 4 - total, &done);
        total += done;
        if ((result != MPG123_OK && result != MPG123_NEW_FORMAT) || (result == MPG123_OK && done == 0))
            break;
    }
    mpg123_delete(reference);
    ASSERT_GE(total / 4 + 2 * 1152, sound.size());

    const size_t count = std::min(total / 4, sound.size());
    const auto rounded = toInt16(sound);
    double square = 0, most = 0, squareRounded = 0, mostRounded = 0;
    for (size_t i = 0; i < count; ++i) {
        const double difference = std::abs(double(sound[i]) - expected[i]);
        square += difference * difference;
        most = std::max(most, difference);
        const double differenceRounded = std::abs(rounded[i] / 32768.0 - std::clamp(double(expected[i]), -1.0, 32767 / 32768.0));
        squareRounded += differenceRounded * differenceRounded;
        mostRounded = std::max(mostRounded, differenceRounded);
    }
    const double limit = std::pow(2, -15) / std::sqrt(12.0);
    EXPECT_LT(std::sqrt(square / double(count)), limit / 100);
    EXPECT_LT(most, std::pow(2, -14) / 100);
    EXPECT_LT(std::sqrt(squareRounded / double(count)), limit * 1.02); // sixteen bits round by just that much
    EXPECT_LT(mostRounded, std::pow(2, -14));
}

} // namespace
} // namespace vbmp3::test
