#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include "libraries/formats/mpeg_header.h"
#include "libraries/gogo/info_frame.h"
#include "tests/gogo/support.h"

using namespace gogo;
using namespace gogo::test;

namespace {

class Encoding : public testing::Test {
  protected:
    Settings settings(int bitRate = 128, int frequency = 44100) {
        Settings s;
        s.source = source;
        s.destination = result;
        s.bitRate = bitRate;
        s.frequency = frequency;
        return s;
    }
    void write(const Samples& samples, int rate = 44100, int channels = 2) {
        dir.write(source, Wave(samples, rate, channels));
    }

    TempDir dir;
    const std::string source = dir.path("source.wav"), result = dir.path("result.mp3");
};

// The forms that a WAVE file may have are the concern of the library that reads them.
TEST_F(Encoding, SoundChannelsAndExactLengthAreKept) {
    const struct {
        int channels;
        ChannelMode mode;
        int heard;
    } cases[] = {{1, ChannelMode::JointStereo, 1}, {2, ChannelMode::JointStereo, 2}, {2, ChannelMode::Mono, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.channels << " as " << c.heard);
        Samples sound = Music(44100, c.channels, 30011);
        write(sound, 44100, c.channels);
        Settings s = settings(192);
        s.channels = c.mode;
        ASSERT_EQ(Encode(s), 28);
        const Decoded heard = DecodeByMpg123(result);
        ASSERT_EQ(heard.channels, c.heard);
        ASSERT_EQ(heard.frames(), 30011);
        if (c.heard < c.channels) {
            for (size_t i = 0; i < 30011; ++i) sound[i] = (sound[2 * i] + sound[2 * i + 1]) / 2;
        }
        EXPECT_LT(DifferenceDb(sound, heard.samples, c.heard, 0, 30011), -15);
    }
}

TEST_F(Encoding, EveryFrequencyIsReachedFromEveryOtherWithoutAShift) {
    const auto twoSeconds = [](int rate) {
        Samples sound(static_cast<size_t>(rate) * 2);
        for (size_t i = 0; i < sound.size(); ++i)
            sound[i] = static_cast<float>(0.4 * std::sin(2 * M_PI * 440 * static_cast<double>(i) / rate));
        return sound;
    };
    for (const int from : {8000, 22050, 44100, 48000, 96000}) {
        write(twoSeconds(from), from, 1);
        for (const int to : {48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000}) {
            SCOPED_TRACE(testing::Message() << from << " Hz to " << to << " Hz");
            ASSERT_GT(Encode(settings(64, to)), 0);
            const Decoded heard = DecodeByMpg123(result);
            ASSERT_EQ(heard.sampleRate, to);
            ASSERT_EQ(heard.frames(), to * 2);
            EXPECT_LT(DifferenceDb(twoSeconds(to), heard.samples, 1, to / 4, to * 7 / 4), -25);
        }
    }
}

TEST_F(Encoding, BitRatesAreTheNearestThatTheFrequencyAllows) {
    write(Music(44100, 2, 20000));
    struct {
        int asked, frequency, got;
    } const cases[] = {{320, 44100, 320}, {32, 48000, 32}, {320, 22050, 160}, {96, 32000, 96}};
    for (const auto& c : cases) {
        ASSERT_GT(Encode(settings(c.asked, c.frequency)), 0);
        const Bytes file = ReadBytes(result);
        const auto first = vbmp3::ParseFrameHeader(file);
        ASSERT_TRUE(first);
        const auto sound = vbmp3::ParseFrameHeader(std::span(file).subspan(static_cast<size_t>(first->frameBytes)));
        ASSERT_TRUE(sound) << c.asked;
        EXPECT_EQ(sound->bitRate, c.got * 1000);
        // Even where the file's own frames have no room for the information about it.
        EXPECT_EQ(DecodeByMpg123(result).frames(), (20000LL * c.frequency + 44099) / 44100);
    }
}

TEST_F(Encoding, VariableBitRateKeepsToItsLeast) {
    Samples sound = Music(44100, 2, 60000);
    std::fill(sound.begin(), sound.begin() + 2 * 20000, 0.0f);
    write(sound);
    size_t before = SIZE_MAX;
    for (const int quality : {0, 5, 9}) {
        Settings s = settings(64);
        s.vbrQuality = quality;
        ASSERT_GT(Encode(s), 0);
        const Bytes file = ReadBytes(s.destination);
        EXPECT_LT(file.size(), before) << quality;
        before = file.size();
        EXPECT_EQ(DecodeByMpg123(s.destination).frames(), 60000);
        FrameRun run;
        ASSERT_TRUE(run.assign(file, 0));
        std::set<int> rates;
        size_t at = 0;
        for (int64_t frame = 0; frame < run.end(); at += static_cast<size_t>(run.frameBytes(frame)), ++frame)
            rates.insert(vbmp3::ParseFrameHeader(std::span(file).subspan(at))->bitRate);
        EXPECT_EQ(*rates.begin(), 64000);
        EXPECT_GT(rates.size(), 1u);
    }
}

TEST_F(Encoding, TheInformationFrameIsTrue) {
    write(Music(44100, 2, 100000));
    const int64_t frames = Encode(settings());
    const Bytes file = ReadBytes(result);
    const auto header = vbmp3::ParseFrameHeader(file);
    ASSERT_TRUE(header);
    const auto info = vbmp3::ParseInfoFrame(*header, std::span(file).first(static_cast<size_t>(header->frameBytes)));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->kind, vbmp3::InfoFrame::Kind::Info);
    EXPECT_EQ(info->frames, static_cast<uint32_t>(frames));
    EXPECT_EQ(info->bytes, file.size());
    EXPECT_STREQ(info->encoder, "LAME3.100");
    EXPECT_EQ(info->encoderDelay, 576);
    EXPECT_EQ(100000 + 576 + info->encoderPadding, frames * 1152);
    const size_t end = static_cast<size_t>(4 + header->sideInfoBytes() + 156);
    const auto big16 = [&](size_t at) { return static_cast<unsigned>(file[at] << 8 | file[at + 1]); };
    EXPECT_EQ(big16(end - 4), Crc16(0, std::span(file).subspan(static_cast<size_t>(header->frameBytes))));
    EXPECT_EQ(big16(end - 2), Crc16(0, std::span(file).first(end - 2)));
}

TEST_F(Encoding, ACancelledOrFailedRunLeavesTheOldFile) {
    write(Music(44100, 2, 44100 * 40));
    const Bytes old{1, 2, 3};
    dir.write(result, old);
    const auto opened = [&](int threads) {
        Error error = Error::None;
        return Coder::open(settings(), threads, error);
    };
    const auto isAsBefore = [&] {
        return ReadBytes(result) == old && dir.names() == std::set<std::string>{"source.wav", "result.mp3"};
    };
    for (const int frames : {0, 1, 100, 1200}) {
        auto coder = opened(2);
        ASSERT_TRUE(coder);
        EXPECT_EQ(coder->frames(), 1533);
        for (int i = 0; i < frames; ++i) ASSERT_EQ(coder->processFrame(), Error::None);
        EXPECT_EQ(ReadBytes(result), old);
        coder.reset();
        EXPECT_TRUE(isAsBefore()) << frames;
    }
    // The source loses its end while it is read.
    const auto coder = opened(1);
    ASSERT_TRUE(coder);
    std::filesystem::resize_file(source, 1000);
    Error failed = Error::None;
    for (int i = 0; i < 1533 && failed == Error::None; ++i) failed = coder->processFrame();
    EXPECT_EQ(failed, Error::Source);
    EXPECT_EQ(coder->processFrame(), Error::State);
    EXPECT_TRUE(isAsBefore());
}

TEST_F(Encoding, WhatCannotBeEncodedIsAnErrorAndNotAFile) {
    using namespace vbmp3::test;
    const auto failure = [&](const std::string& destination) {
        Settings s = settings();
        s.destination = destination;
        Error error = Error::None;
        EXPECT_FALSE(Coder::open(s, 1, error));
        return error;
    };
    EXPECT_EQ(failure(result), Error::Source);
    const Bytes sound = Wave(gogo::test::Music(44100, 2, 3000), 44100, 2);
    for (const Bytes& bytes :
         {Bytes{}, Bytes(3000, 'x'), Mp3File(44100, 2, std::vector<int16_t>(20000)), Wave({}, 44100, 2),
          WaveFile(500, 2, std::vector<int16_t>(6000)), WaveFile(PcmFmt(0x161, 2, 44100, 16), Bytes(2000))}) {
        dir.write(source, bytes);
        EXPECT_EQ(failure(result), Error::Format) << bytes.size();
    }
    dir.write(source, sound);
    for (const std::string& nowhere : {std::string(), dir.path("none/result.mp3"), dir.path(""), dir.path(".")})
        EXPECT_EQ(failure(nowhere), Error::Destination) << nowhere;
    std::filesystem::create_hard_link(source, dir.path("link.mp3"));
    std::filesystem::create_symlink(source, dir.path("soft.mp3"));
    for (const std::string& same : {source, dir.path("link.mp3"), dir.path("soft.mp3")})
        EXPECT_EQ(failure(same), Error::SameFile) << same;
    EXPECT_EQ(ReadBytes(source), sound);
    const std::string locked = dir.write("locked.mp3", Bytes{1});
    std::filesystem::permissions(locked, std::filesystem::perms::owner_read);
    EXPECT_EQ(failure(locked), Error::Destination);
    EXPECT_EQ(ReadBytes(locked), Bytes{1});
    EXPECT_EQ(dir.names().size(), 4u);
}

TEST_F(Encoding, AFullDiskIsAnErrorAndLeavesNothing) {
    // A file size limit of the process stands in for the disk's.
    write(Music(44100, 2, 44100 * 30));
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const struct rlimit limit { 200000, 200000 };
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(Encode(settings()) == -static_cast<int64_t>(Error::Destination) ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(dir.names(), (std::set<std::string>{"source.wav"}));
}

}  // namespace
