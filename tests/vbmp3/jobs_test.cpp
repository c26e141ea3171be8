// Decoding to WAVE, with and without playing, and what a job does to its files.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "libraries/vbmp3/decoder/mpeg_sections.h"
#include "libraries/vbmp3/jobs/jobs.h"
#include "libraries/vbmp3/jobs/wave_writer.h"
#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"
#ifdef _WIN32
#include "tests/vbmp3/test_codec.h"
#include "tests/vbmp3_dsp/signals.h"
#endif

namespace vbmp3::test {
namespace {

std::vector<int16_t> SamplesOf(const Bytes& wave) {
    StreamInfo info;
    const auto source = OpenBytes(wave, &info);
    if (!source) return {};
    std::vector<int16_t> samples((wave.size() - static_cast<size_t>(info.data.begin)) / 2);
    std::memcpy(samples.data(), wave.data() + info.data.begin, samples.size() * 2);
    return samples;
}

class DecodingJob : public testing::Test {
  protected:
    Bytes decoded(const Bytes& file, int threads = 2) {
        JobControl control;
        EXPECT_EQ(DecodeToWave(dir_.write("in", file), out_, threads, control, 96), VBMP3_OK);
        return ReadBytes(out_);
    }

    TempDir dir_;
    const std::string out_ = dir_.path("out.wav");
};

TEST_F(DecodingJob, WritesTheSameBytesOnAnyNumberOfProcessors) {
    // The low rates are the hard ones: small frames whose bit reservoir reaches far back.
    const struct {
        const char* name;
        int rate, channels;
        Mp3Options options;
    } cases[] = {{"128", 44100, 2, {.bitRate = 128}},
                 {"32 mono", 32000, 1, {.bitRate = 32, .infoFrame = false}},
                 {"VBR", 44100, 2, {.bitRate = 0}},
                 {"MPEG-2", 22050, 2, {.bitRate = 64}},
                 {"MPEG-2 VBR mono", 22050, 1, {.bitRate = 0}},
                 {"checksums", 48000, 2, {.bitRate = 96, .crc = true}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const int frames = c.rate * 20;
        const Bytes file = Mp3File(c.rate, c.channels, Music(c.rate, c.channels, frames), c.options);
        const auto bytes = std::make_shared<MemorySource>(file);
        ASSERT_GT(MpegSections(bytes, *ScanMpeg(*bytes, {0, bytes->size()}), 96).sections().size(), 3u);
        const Bytes one = decoded(file, 1);
        EXPECT_TRUE(one == decoded(file, 2));
        if (c.options.infoFrame) {
            EXPECT_EQ(SamplesOf(one).size(), static_cast<size_t>(frames) * static_cast<size_t>(c.channels));
        }
    }
}

TEST_F(DecodingJob, KeepsSamplesOfAWaveFileAndChannelsOfAMonoOne) {
    for (const int channels : {1, 2}) {
        const auto samples = Music(44100, channels, 30000);
        StreamInfo info;
        const Bytes out = decoded(WaveFile(44100, channels, samples));
        ASSERT_TRUE(OpenBytes(out, &info));
        EXPECT_EQ(info.channels, channels);
        EXPECT_EQ(SamplesOf(out), samples);
    }
}

TEST_F(DecodingJob, KeepsOneRateWhenTheStreamChangesIts) {
    const Mp3Options plain{.infoFrame = false};
    const Bytes file =
        Mp3File(44100, 2, ToneOf(44100, 2, 60000), plain) + Mp3File(48000, 2, ToneOf(48000, 2, 48000), plain);
    StreamInfo info;
    ASSERT_TRUE(OpenBytes(decoded(file), &info));
    EXPECT_EQ(info.sampleRate, 44100);
    EXPECT_NEAR(static_cast<double>(info.frames), 60000 + 44100, 6000);
}

TEST_F(DecodingJob, DamageInTheMiddleIsPassedOver) {
    Bytes file = Mp3File(44100, 2, ToneOf(44100, 2, 44100 * 20), {.infoFrame = false});
    std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(file.size() / 2), 5000, static_cast<uint8_t>(0));
    EXPECT_NEAR(static_cast<double>(SamplesOf(decoded(file)).size() / 2), 44100 * 20, 1152 * 20);
}

TEST_F(DecodingJob, LeavesNothingBehindWhenItFailsOrIsCancelled) {
    const Bytes mp3 = Mp3File(44100, 2, ToneOf(44100, 2, 44100 * 20));
    const std::string in = dir_.write("in", mp3);
    JobControl control;
    EXPECT_EQ(DecodeToWave(dir_.write("junk", Bytes(5000, 'x')), out_, 2, control), VBMP3_ERROR_FORMAT);
    EXPECT_EQ(DecodeToWave(in, in, 2, control), VBMP3_ERROR_SAME_FILE);
    EXPECT_EQ(DecodeToWave(in, dir_.path("no folder/out.wav"), 2, control), VBMP3_ERROR_WRITE);
    EXPECT_EQ(DecodeToWave(dir_.path("missing"), out_, 2, control), VBMP3_ERROR_NOT_FOUND);
    EXPECT_EQ(ReadBytes(in), mp3);
    EXPECT_EQ(dir_.names(), (std::set<std::string>{"in", "junk"}));

    const Bytes old(3, 'o');
    dir_.write(out_, old);
    Jobs jobs([] {});
    ASSERT_TRUE(jobs.start([&](JobControl& job) { return DecodeToWave(in, out_, 2, job); }));
    jobs.cancel();
    EXPECT_EQ(jobs.state(), Jobs::State::None);
    EXPECT_EQ(ReadBytes(out_), old);
    EXPECT_EQ(dir_.names(), (std::set<std::string>{"in", "junk", "out.wav"}));
}

TEST_F(DecodingJob, ALongFileBecomesRf64) {
    const auto samples = ToneOf(44100, 2, 5000);
    const auto writer = WaveWriter::begin(out_, 44100, 2, 10000);
    ASSERT_TRUE(writer);
    ASSERT_TRUE(writer->write(samples));
    ASSERT_EQ(writer->commit(), FileTransaction::Error::None);
    const Bytes file = ReadBytes(out_);
    EXPECT_EQ(std::memcmp(file.data(), "RF64", 4), 0);
    StreamInfo info;
    const auto source = OpenBytes(file, &info);
    ASSERT_TRUE(source);
    EXPECT_EQ(info.frames, 5000);
    EXPECT_EQ(ToInt16(ReadAll(*source)), samples);
}

class JobsOfTheInterface : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(vbmp3_init(), 1);
        vbmp3_setListener(
            [](int32_t event, void* self) {
                static_cast<JobsOfTheInterface*>(self)->done_ += event == VBMP3_EVENT_JOB_DONE;
            },
            this);
    }
    void TearDown() override { vbmp3_free(); }

    TempDir dir_;
    const std::string source_ = dir_.write("in.mp3", Mp3File(44100, 2, ToneOf(44100, 2, 30000)));
    const std::string target_ = dir_.path("out.wav");
    std::atomic<int> done_ = 0;
};

TEST_F(JobsOfTheInterface, DecodeTellsProgressAndItsEnd) {
    int32_t permille = -1;
    EXPECT_EQ(vbmp3_getEncodeState(&permille), 0);
    ASSERT_EQ(vbmp3_decodeWave(source_.c_str(), target_.c_str()), 1);
    ASSERT_TRUE(Eventually([&] { return done_ == 1; }));
    EXPECT_EQ(vbmp3_getEncodeState(&permille), 2);
    EXPECT_EQ(permille, 1000);
    EXPECT_EQ(SamplesOf(ReadBytes(target_)).size(), 60000u);
}

TEST_F(JobsOfTheInterface, WhatIsPlayedIsWrittenUnlessStoppedBeforeItsEnd) {
    ASSERT_EQ(vbmp3_playDecodeWave(source_.c_str(), target_.c_str()), 1);
    EXPECT_EQ(vbmp3_encodeStop(), 1);
    vbmp3_stop();
    EXPECT_EQ(vbmp3_getEncodeState(nullptr), 0);
    EXPECT_FALSE(std::filesystem::exists(target_));
    // No device: the silent clock plays in time, here two thirds of a second.
    ASSERT_EQ(vbmp3_playDecodeWave(source_.c_str(), target_.c_str()), 1);
    ASSERT_EQ(vbmp3_setNextFile(source_.c_str()), 1);  // is heard too, and not written
    EXPECT_EQ(vbmp3_getState(nullptr), 1);
    EXPECT_EQ(vbmp3_decodeWave(source_.c_str(), dir_.path("other").c_str()), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_BUSY);
    ASSERT_TRUE(Eventually([&] { return done_ == 1; }));
    EXPECT_EQ(vbmp3_getState(nullptr), 1);
    vbmp3_stop();
    EXPECT_EQ(vbmp3_getEncodeState(nullptr), 2);
    EXPECT_EQ(SamplesOf(ReadBytes(target_)), ToInt16(ReadAll(*OpenBytes(ReadBytes(source_)))));
}

TEST_F(DecodingJob, OnTheCallersThreadItTellsWhatIsDoneUntilItIsGivenUp) {
    const std::string in = dir_.write("in.mp3", Mp3File(44100, 2, ToneOf(44100, 2, 3000000)));
    const auto progress = [](int32_t permille, void* limit) { return int32_t{permille < *static_cast<int*>(limit)}; };
    const struct {
        std::string source;
        int limit, error;
    } cases[] = {{in, 300, VBMP3_ERROR_CANCELLED},
                 {dir_.path("none"), 2000, VBMP3_ERROR_NOT_FOUND},
                 {dir_.write("a.wav", WaveFile(44100, 2, ToneOf(44100, 2, 1000))), 2000, VBMP3_ERROR_FORMAT},
                 {in, 2000, VBMP3_OK}};
    for (auto c : cases) {
        EXPECT_EQ(vbmp3_decodeFile(c.source.c_str(), out_.c_str(), 0, progress, &c.limit), c.error == VBMP3_OK);
        EXPECT_EQ(vbmp3_getLastErrorNo(), c.error);
        EXPECT_EQ(SamplesOf(ReadBytes(out_)).size(), c.error == VBMP3_OK ? 6000000u : 0u);
    }
}

TEST_F(JobsOfTheInterface, EncodingSaysWhyItCannot) {
    EXPECT_EQ(vbmp3_encodeStart(target_.c_str()), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_NOT_OPEN);
    EXPECT_EQ(vbmp3_encodeOpen(source_.c_str()), 0) << "only WAVE files are encoded";
    const std::string wave = dir_.write("a.wav", WaveFile(44100, 2, ToneOf(44100, 2, 1000)));
    ASSERT_EQ(vbmp3_encodeOpen(wave.c_str()), 1);
    EXPECT_EQ(vbmp3_encodeStart(wave.c_str()), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_SAME_FILE);
    // Neither Linux nor Wine has such a codec.
    EXPECT_EQ(vbmp3_encodeStart(dir_.path("a.mp3").c_str()), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_NO_CODEC);
}

#ifdef _WIN32
TEST_F(JobsOfTheInterface, TheCodecOfTheSystemEncodesAllOfAWaveFile) {
    const TestCodec codec;
    ASSERT_TRUE(codec.installed());
    const std::string wave = dir_.path("a.wav"), target = dir_.path("a.mp3");
    // The codec has one rate only: the other one is converted.
    int ends = 0;
    for (const int rate : {44100, 48000}) {
        dir_.write(wave, WaveFile(rate, 2, ToneOf(rate, 2, 3 * rate)));
        ASSERT_EQ(vbmp3_encodeOpen(wave.c_str()), 1);
        ASSERT_EQ(vbmp3_encodeStart(target.c_str()), 1) << vbmp3_getLastErrorNo();
        ASSERT_TRUE(Eventually([&] { return done_ == ends + 1; }));
        ++ends;
        int32_t permille = 0;
        EXPECT_EQ(vbmp3_getEncodeState(&permille), 2);
        EXPECT_EQ(permille, 1000);
        StreamInfo info;
        const auto source = OpenBytes(ReadBytes(target), &info);
        ASSERT_TRUE(source);
        EXPECT_EQ(info.sampleRate, 44100);
        EXPECT_EQ(info.bitRate, 128000);
        const auto sound = ReadAll(*source);
        EXPECT_NEAR(static_cast<double>(sound.size()) / 2, 3.0 * 44100, 3 * 1152);
        EXPECT_NEAR(FrequencyOf(sound, 44100, 44100, 2 * 44100), 440, 2);
    }

    // Cancelled, it leaves what was there.
    const Bytes before = ReadBytes(target);
    dir_.write(wave, WaveFile(44100, 2, ToneOf(44100, 2, 60 * 44100)));
    ASSERT_EQ(vbmp3_encodeOpen(wave.c_str()), 1);
    ASSERT_EQ(vbmp3_encodeStart(target.c_str()), 1);
    int32_t permille = 0;
    ASSERT_TRUE(Eventually([&] { return vbmp3_getEncodeState(&permille) == 1 && permille > 20; }));
    EXPECT_EQ(vbmp3_encodeStop(), 1);
    EXPECT_EQ(vbmp3_getEncodeState(nullptr), 0);
    EXPECT_TRUE(ReadBytes(target) == before);
}
#endif

}  // namespace
}  // namespace vbmp3::test
