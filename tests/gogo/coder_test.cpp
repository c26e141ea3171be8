#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include <gtest/gtest.h>
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "libraries/gogo/info_frame.h"
#include "libraries/vbmp3/mpeg_header.h"
#include "tests/gogo/support.h"

using namespace gogo;
using namespace gogo::test;
using vbmp3::test::readBytes;
using vbmp3::test::TempDir;
using vbmp3::test::writeBytes;

namespace {

class Encoding : public testing::Test {
protected:
    Settings settings(int bitRate = 128, int frequency = 44100)
    {
        Settings s;
        s.source = dir.path("source.wav");
        s.destination = dir.path("result.mp3");
        s.bitRate = bitRate;
        s.frequency = frequency;
        return s;
    }
    void source(const Samples& samples, int rate = 44100, int channels = 2, const WaveForm& form = {})
    {
        writeBytes(dir.path("source.wav"), wave(samples, rate, channels, form));
    }
    std::set<std::string> names() const
    {
        std::set<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(dir.path("")))
            all.insert(entry.path().filename().string());
        return all;
    }

    TempDir dir;
};

TEST_F(Encoding, EveryFormOfWaveKeepsItsSoundAndItsExactLength)
{
    using Size = WaveForm::Size;
    const WaveForm forms[] = {{8},         {16},
                              {24},        {32},
                              {32, true},  {64, true},
                              {24, false, true}, {32, true, true},
                              {16, false, false, Size::Zero}, {16, false, false, Size::Open},
                              {24, false, false, Size::Rf64}};
    for (const int channels : {1, 2}) {
        const Samples sound = music(44100, channels, 30011);
        for (const WaveForm& form : forms) {
            SCOPED_TRACE(testing::Message() << form.bits << " bits, float " << form.isFloat << ", extensible "
                                            << form.extensible << ", size " << int(form.size) << ", channels " << channels);
            source(sound, 44100, channels, form);
            ASSERT_EQ(encode(settings(192)), 28);
            const Decoded heard = decode(dir.path("result.mp3"));
            ASSERT_EQ(heard.channels, channels);
            ASSERT_EQ(heard.frames(), 30011);
            EXPECT_LT(differenceDb(sound, heard.samples, channels, 0, 30011), -15);
        }
    }
}

TEST_F(Encoding, MoreThanTwoChannelsAreMixedDown)
{
    Samples six(6 * 20000);
    for (size_t i = 0; i < 20000; ++i)
        six[6 * i + 2] = float(0.5 * std::sin(double(i) * 0.06)); // centre
    source(six, 44100, 6, {16, false, true});
    ASSERT_GT(encode(settings()), 0);
    const Decoded heard = decode(dir.path("result.mp3"));
    ASSERT_EQ(heard.channels, 2);
    ASSERT_EQ(heard.frames(), 20000);
    float left = 0, right = 0;
    for (size_t i = 5000; i < 15000; ++i) {
        left = std::max(left, heard.samples[2 * i]);
        right = std::max(right, heard.samples[2 * i + 1]);
    }
    EXPECT_GT(left, 0.1f);
    EXPECT_NEAR(left, right, 0.01f);
}

TEST_F(Encoding, EveryFrequencyIsReachedFromEveryOtherWithoutAShift)
{
    const double tone = 440;
    for (const int from : {8000, 22050, 44100, 48000, 96000}) {
        Samples sound(size_t(from) * 2);
        for (size_t i = 0; i < sound.size(); ++i)
            sound[i] = float(0.4 * std::sin(2 * M_PI * tone * double(i) / from));
        source(sound, from, 1);
        for (const int to : {48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000}) {
            SCOPED_TRACE(testing::Message() << from << " Hz to " << to << " Hz");
            ASSERT_GT(encode(settings(64, to)), 0);
            const Decoded heard = decode(dir.path("result.mp3"));
            ASSERT_EQ(heard.sampleRate, to);
            ASSERT_EQ(heard.frames(), to * 2);
            Samples wanted(size_t(to) * 2);
            for (size_t i = 0; i < wanted.size(); ++i)
                wanted[i] = float(0.4 * std::sin(2 * M_PI * tone * double(i) / to));
            EXPECT_LT(differenceDb(wanted, heard.samples, 1, to / 4, to * 7 / 4), -25);
        }
    }
}

TEST_F(Encoding, BitRatesAreTheNearestThatTheFrequencyAllows)
{
    source(music(44100, 2, 20000));
    struct { int asked, frequency, got; } const cases[] = {{320, 44100, 320}, {32, 48000, 32}, {320, 22050, 160}, {96, 32000, 96}};
    for (const auto& c : cases) {
        ASSERT_GT(encode(settings(c.asked, c.frequency)), 0);
        const Bytes file = readBytes(dir.path("result.mp3"));
        const auto first = vbmp3::parseFrameHeader(file);
        ASSERT_TRUE(first);
        const auto sound = vbmp3::parseFrameHeader(std::span(file).subspan(size_t(first->frameBytes)));
        ASSERT_TRUE(sound) << c.asked;
        EXPECT_EQ(sound->bitRate, c.got * 1000);
        // Even where the file's own frames have no room for the information about it.
        EXPECT_EQ(decode(dir.path("result.mp3")).frames(), (20000LL * c.frequency + 44099) / 44100);
    }
}

TEST_F(Encoding, VariableBitRateKeepsToItsLeast)
{
    Samples sound = music(44100, 2, 60000);
    std::fill(sound.begin(), sound.begin() + 2 * 20000, 0.0f);
    source(sound);
    size_t before = SIZE_MAX;
    for (const int quality : {0, 5, 9}) {
        Settings s = settings(64);
        s.vbrQuality = quality;
        ASSERT_GT(encode(s), 0);
        const Bytes file = readBytes(s.destination);
        EXPECT_LT(file.size(), before) << quality;
        before = file.size();
        EXPECT_EQ(decode(s.destination).frames(), 60000);
        FrameRun run;
        ASSERT_TRUE(run.assign(file, 0));
        std::set<int> rates;
        size_t at = 0;
        for (int64_t frame = 0; frame < run.end(); at += size_t(run.frameBytes(frame)), ++frame)
            rates.insert(vbmp3::parseFrameHeader(std::span(file).subspan(at))->bitRate);
        EXPECT_EQ(*rates.begin(), 64000);
        EXPECT_GT(rates.size(), 1u);
    }
}

TEST_F(Encoding, TheInformationFrameIsTrue)
{
    source(music(44100, 2, 100000));
    const int64_t frames = encode(settings());
    const Bytes file = readBytes(dir.path("result.mp3"));
    const auto header = vbmp3::parseFrameHeader(file);
    ASSERT_TRUE(header);
    const auto info = vbmp3::parseInfoFrame(*header, std::span(file).first(size_t(header->frameBytes)));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->kind, vbmp3::InfoFrame::Kind::Info);
    EXPECT_EQ(info->frames, uint32_t(frames));
    EXPECT_EQ(info->bytes, file.size());
    EXPECT_STREQ(info->encoder, "LAME3.100");
    EXPECT_EQ(info->encoderDelay, 576);
    EXPECT_EQ(100000 + 576 + info->encoderPadding, frames * 1152);
    const size_t end = size_t(4 + header->sideInfoBytes() + 156);
    const auto big16 = [&](size_t at) { return unsigned(file[at] << 8 | file[at + 1]); };
    EXPECT_EQ(big16(end - 4), crc16(0, std::span(file).subspan(size_t(header->frameBytes))));
    EXPECT_EQ(big16(end - 2), crc16(0, std::span(file).first(end - 2)));
}

TEST_F(Encoding, ACancelledOrFailedRunLeavesTheOldFile)
{
    source(music(44100, 2, 44100 * 40));
    const Bytes old{1, 2, 3};
    for (const int frames : {0, 1, 100, 1200}) {
        writeBytes(dir.path("result.mp3"), old);
        Error error = Error::None;
        auto coder = Coder::open(settings(), 2, error);
        ASSERT_TRUE(coder);
        EXPECT_EQ(coder->frames(), 1533);
        for (int i = 0; i < frames; ++i)
            ASSERT_EQ(coder->processFrame(), Error::None);
        EXPECT_EQ(readBytes(dir.path("result.mp3")), old);
        coder.reset();
        EXPECT_EQ(readBytes(dir.path("result.mp3")), old);
        EXPECT_EQ(names(), (std::set<std::string>{"source.wav", "result.mp3"}));
    }
    // The source loses its end while it is read.
    Error error = Error::None;
    const auto coder = Coder::open(settings(), 1, error);
    ASSERT_TRUE(coder);
    std::filesystem::resize_file(dir.path("source.wav"), 1000);
    Error failed = Error::None;
    for (int i = 0; i < 1533 && failed == Error::None; ++i)
        failed = coder->processFrame();
    EXPECT_EQ(failed, Error::Source);
    EXPECT_EQ(coder->processFrame(), Error::State);
    EXPECT_EQ(readBytes(dir.path("result.mp3")), old);
    EXPECT_EQ(names(), (std::set<std::string>{"source.wav", "result.mp3"}));
}

TEST_F(Encoding, WhatCannotBeEncodedIsAnErrorAndNotAFile)
{
    const Samples sound = music(44100, 2, 3000);
    const auto fails = [&](const Settings& s) { return Error(-std::min<int64_t>(0, encode(s))); };
    Settings s = settings();
    EXPECT_EQ(fails(s), Error::Source);
    for (const Bytes& bytes : {Bytes{}, Bytes(3000, 'x'), vbmp3::test::mp3File(44100, 2, std::vector<int16_t>(20000)),
                               wave({}, 44100, 2), wave(sound, 500, 2), vbmp3::test::waveFile(vbmp3::test::pcmFmt(0x161, 2, 44100, 16), Bytes(2000))}) {
        writeBytes(s.source, bytes);
        EXPECT_EQ(fails(s), Error::Format) << bytes.size();
    }
    source(sound);
    s.destination = dir.path("none/result.mp3");
    EXPECT_EQ(fails(s), Error::Destination);
    s.destination = s.source;
    EXPECT_EQ(fails(s), Error::SameFile);
    std::filesystem::create_hard_link(s.source, dir.path("link.mp3"));
    s.destination = dir.path("link.mp3");
    EXPECT_EQ(fails(s), Error::SameFile);
    std::filesystem::create_symlink(s.source, dir.path("soft.mp3"));
    s.destination = dir.path("soft.mp3");
    EXPECT_EQ(fails(s), Error::SameFile);
    EXPECT_EQ(readBytes(s.source), wave(sound, 44100, 2));
    s.destination = dir.path("locked.mp3");
    writeBytes(s.destination, {1});
    std::filesystem::permissions(s.destination, std::filesystem::perms::owner_read);
    EXPECT_EQ(fails(s), Error::Destination);
    EXPECT_EQ(readBytes(s.destination), Bytes{1});
}

TEST_F(Encoding, AFullDiskIsAnErrorAndLeavesNothing)
{
    // A file size limit of the process stands in for the disk's.
    source(music(44100, 2, 44100 * 30));
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const struct rlimit limit {200000, 200000};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(encode(settings()) == -int64_t(Error::Destination) ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(names(), (std::set<std::string>{"source.wav"}));
}

} // namespace
