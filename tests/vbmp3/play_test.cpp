// The player: what is heard, when it ends, and what orders do to it. Outputs that hear everything at once make the sound
// visible; the clock makes time visible.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>
#include <thread>

#include "libraries/vbmp3/player.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

class Playing : public testing::Test {
protected:
    std::string file(const std::string& name, const Bytes& bytes)
    {
        writeBytes(dir_.path(name), bytes);
        return dir_.path(name);
    }
    std::string wave(const std::string& name, int frames, double hertz = 440, int rate = 44100)
    {
        return file(name, waveFile(rate, 2, tone(rate, 2, frames, hertz)));
    }
    void listen(Player& player)
    {
        player.setListener([this](int event) {
            ends_ += event == VBMP3_EVENT_END_OF_TRACK;
            nexts_ += event == VBMP3_EVENT_NEXT_TRACK;
            losses_ += event == VBMP3_EVENT_DEVICE_LOST;
        });
    }
    void playToEnd(Player& player)
    {
        ends_ = 0;
        ASSERT_EQ(player.play(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return ends_ == 1; }));
    }

    TempDir dir_;
    SoundSettings sound_;
    std::shared_ptr<Heard> heard_ = std::make_shared<Heard>();
    std::atomic<int> ends_ = 0, nexts_ = 0, losses_ = 0;
};

TEST_F(Playing, WhatIsHeardOfAnMp3IsExactlyAsLongAsWhatWasEncoded)
{
    const int frames = 3 * 44100 + 17;
    Player player(sound_, memorySystem(heard_));
    listen(player);
    ASSERT_EQ(player.open(file("a.mp3", mp3File(44100, 2, tone(44100, 2, frames)))), VBMP3_OK);
    playToEnd(player);
    EXPECT_EQ(heard_->all().size(), size_t(2 * frames));
    EXPECT_EQ(player.snapshot().state, 0);
    EXPECT_NEAR(player.snapshot().seconds, frames / 44100.0, 0.001);
}

TEST_F(Playing, AWaveFileIsHeardBitForBitAndAgainAfterItsEnd)
{
    const auto samples = tone(44100, 2, 20000);
    Player player(sound_, memorySystem(heard_));
    listen(player);
    ASSERT_EQ(player.open(wave("a.wav", 20000)), VBMP3_OK);
    playToEnd(player);
    EXPECT_EQ(toInt16(heard_->all()), samples);
    playToEnd(player);
    EXPECT_EQ(heard_->all().size(), 2 * samples.size());
    EXPECT_EQ(ends_, 1);
}

TEST_F(Playing, TheNextFileFollowsWithoutAGap)
{
    // One tone cut in two goes on as if it had never been cut.
    const auto whole = tone(44100, 2, 60000);
    const std::vector<int16_t> first(whole.begin(), whole.begin() + 2 * 25001), second(whole.begin() + 2 * 25001, whole.end());
    Player player(sound_, memorySystem(heard_));
    listen(player);
    ASSERT_EQ(player.open(file("1.wav", waveFile(44100, 2, first))), VBMP3_OK);
    ASSERT_EQ(player.setNext(file("2.wav", waveFile(44100, 2, second))), VBMP3_OK);
    playToEnd(player);
    EXPECT_EQ(toInt16(heard_->all()), whole);
    EXPECT_EQ(nexts_, 1);
    EXPECT_EQ(player.current()->path, dir_.path("2.wav"));
    // From then on the second file is the open one.
    playToEnd(player);
    EXPECT_EQ(heard_->all().size(), whole.size() + second.size());
}

TEST_F(Playing, ANextFileOfAnotherRateIsPlayedAtItsOwn)
{
    Player player(sound_, memorySystem(heard_));
    listen(player);
    ASSERT_EQ(player.open(wave("1.wav", 10000)), VBMP3_OK);
    ASSERT_EQ(player.setNext(wave("2.wav", 12000, 440, 48000)), VBMP3_OK);
    playToEnd(player);
    EXPECT_EQ(nexts_, 1);
    EXPECT_EQ(heard_->opens, (std::vector<int>{44100, 48000}));
    auto expected = tone(44100, 2, 10000);
    const auto second = tone(48000, 2, 12000);
    expected.insert(expected.end(), second.begin(), second.end());
    EXPECT_EQ(toInt16(heard_->all()), expected);
}

TEST_F(Playing, ANextFileTakenBackIsNotHeard)
{
    Player player(sound_, memorySystem(heard_));
    listen(player);
    ASSERT_EQ(player.open(wave("1.wav", 10000)), VBMP3_OK);
    EXPECT_EQ(player.setNext(dir_.path("missing.wav")), VBMP3_ERROR_NOT_FOUND);
    ASSERT_EQ(player.setNext(wave("2.wav", 10000)), VBMP3_OK);
    ASSERT_EQ(player.setNext(""), VBMP3_OK);
    playToEnd(player);
    EXPECT_EQ(nexts_, 0);
    EXPECT_EQ(heard_->all().size(), 20000u);
}

TEST_F(Playing, ANextFileTakenBackWhileItIsBeingDecodedIsNotHeardEither)
{
    Player player(sound_, clockSystem(1));
    listen(player);
    ASSERT_EQ(player.open(wave("1.wav", 22050)), VBMP3_OK);
    ASSERT_EQ(player.setNext(wave("2.wav", 200000)), VBMP3_OK);
    ASSERT_EQ(player.play(), VBMP3_OK);
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the decoder is far into the second file by now
    ASSERT_EQ(player.setNext(""), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return ends_ == 1; }));
    EXPECT_EQ(nexts_, 0);
    EXPECT_EQ(player.current()->path, dir_.path("1.wav"));
}

TEST_F(Playing, PositionRunsWithTheClockAndStandsWhilePaused)
{
    Player player(sound_, clockSystem(1));
    listen(player);
    ASSERT_EQ(player.open(wave("a.wav", 44100 * 20)), VBMP3_OK);
    EXPECT_EQ(player.snapshot().state, 0);
    ASSERT_EQ(player.play(), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return player.snapshot().seconds > 0.2; }));
    const auto begin = std::chrono::steady_clock::now();
    const double from = player.snapshot().seconds;
    ASSERT_TRUE(eventually([&] { return player.snapshot().seconds > from + 0.4; }));
    const double passed = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    EXPECT_NEAR(passed, 0.4, 0.15);

    ASSERT_EQ(player.pause(), VBMP3_OK);
    EXPECT_EQ(player.snapshot().state, 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    const double held = player.snapshot().seconds;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(player.snapshot().seconds, held);

    // Seeking while paused moves at once and stays paused.
    ASSERT_EQ(player.seek(5), VBMP3_OK);
    EXPECT_EQ(player.snapshot().seconds, 5);
    EXPECT_EQ(player.snapshot().state, 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(player.snapshot().seconds, 5);
    ASSERT_EQ(player.restart(), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return player.snapshot().seconds > 5.05; }));
    EXPECT_LT(player.snapshot().seconds, 6);

    ASSERT_EQ(player.stop(), VBMP3_OK);
    EXPECT_EQ(player.snapshot().state, 0);
    EXPECT_EQ(player.snapshot().seconds, 0);
    EXPECT_EQ(ends_, 0) << "stopping is no end of the track";
    EXPECT_EQ(player.pause(), VBMP3_ERROR_NOT_OPEN);
}

TEST_F(Playing, ASeekIsHeardFromExactlyThatFrame)
{
    const auto samples = tone(44100, 2, 44100 * 3, 300);
    Player player(sound_, memorySystem(heard_));
    listen(player);
    ASSERT_EQ(player.open(wave("a.wav", 44100 * 3, 300)), VBMP3_OK);
    ASSERT_EQ(player.play(), VBMP3_OK);
    ASSERT_EQ(player.pause(), VBMP3_OK);
    ASSERT_EQ(player.seek(2.5), VBMP3_OK);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const size_t before = heard_->all().size();
    if (ends_ == 0) {
        ASSERT_EQ(player.restart(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return ends_ == 1; }));
    }
    const auto all = toInt16(heard_->all());
    const std::vector<int16_t> tail(all.begin() + std::ptrdiff_t(before), all.end());
    EXPECT_EQ(tail, std::vector<int16_t>(samples.begin() + 2 * 110250, samples.end()));
}

TEST_F(Playing, ASeekPastTheEndEndsTheTrack)
{
    Player player(sound_, clockSystem(1));
    listen(player);
    for (const std::string& path : {wave("a.wav", 44100 * 5), file("a.mp3", mp3File(44100, 2, tone(44100, 2, 44100 * 5)))}) {
        ends_ = 0;
        ASSERT_EQ(player.open(path), VBMP3_OK);
        ASSERT_EQ(player.play(), VBMP3_OK);
        ASSERT_EQ(player.seek(1000), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return ends_ == 1; })) << path;
        EXPECT_NEAR(player.snapshot().seconds, 5, 0.001);
    }
}

TEST_F(Playing, ASeekWhileStoppedShowsButPlayBeginsAtTheBeginning)
{
    Player player(sound_, memorySystem(heard_));
    listen(player);
    EXPECT_EQ(player.seek(1), VBMP3_ERROR_NOT_OPEN);
    EXPECT_EQ(player.play(), VBMP3_ERROR_NOT_OPEN);
    ASSERT_EQ(player.open(wave("a.wav", 88200)), VBMP3_OK);
    ASSERT_EQ(player.seek(1), VBMP3_OK);
    EXPECT_EQ(player.snapshot().seconds, 1);
    playToEnd(player);
    EXPECT_EQ(heard_->all().size(), 2 * 88200u);
}

TEST_F(Playing, TheEndIsToldTheMomentTheLastSampleIsHeard)
{
    Player player(sound_, clockSystem(1));
    listen(player);
    ASSERT_EQ(player.open(wave("a.wav", 44100 / 2)), VBMP3_OK);
    const auto begin = std::chrono::steady_clock::now();
    playToEnd(player);
    const double passed = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    EXPECT_GE(passed, 0.5);
    EXPECT_LT(passed, 0.65);
}

TEST_F(Playing, ClosedFilesAreHeldByNobody)
{
    Player player(sound_, clockSystem(1));
    const std::string path = wave("a.wav", 441000);
    ASSERT_EQ(player.open(path), VBMP3_OK);
    ASSERT_EQ(player.play(), VBMP3_OK);
    const std::weak_ptr<Track> track = player.current();
    player.close();
    EXPECT_TRUE(track.expired());
    EXPECT_EQ(player.snapshot().state, 0);
}

// A device that others may have taken, and that may get into trouble at any moment.
enum class Trouble { None, Gone, StandsStill, Hangs };

struct Plug {
    std::atomic<bool> busy = false;
    std::atomic<Trouble> trouble = Trouble::None;
    std::atomic<int> opens = 0;

    void call() // every one passes here
    {
        while (trouble == Trouble::Hangs)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
};

class PluggedOutput final : public Output {
public:
    explicit PluggedOutput(std::shared_ptr<Plug> plug) : plug_(std::move(plug)) {}
    ~PluggedOutput() override { plug_->call(); }
    OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) override
    {
        plug_->call();
        if (plug_->trouble == Trouble::Gone)
            return OutputError::NoDevice;
        if (plug_->busy)
            return OutputError::Busy;
        ++plug_->opens;
        return inner_->open(sampleRate, settings, waker);
    }
    size_t room() override { return plug_->call(), inner_->room(); }
    void write(std::span<const float> stereo) override { plug_->call(), inner_->write(stereo); }
    void start() override { plug_->call(), inner_->start(); }
    void pause() override { plug_->call(), inner_->pause(); }
    void drain() override { plug_->call(), inner_->drain(); }
    void flush() override
    {
        plug_->call();
        inner_->flush();
        played_ = 0;
    }
    int64_t played() override
    {
        plug_->call();
        return plug_->trouble == Trouble::StandsStill ? played_ : played_ = inner_->played();
    }
    bool lost() override { return plug_->trouble == Trouble::Gone; }

private:
    std::shared_ptr<Plug> plug_;
    std::unique_ptr<Output> inner_ = makeClockOutput();
    int64_t played_ = 0;
};

OutputSystem plugSystem(std::shared_ptr<Plug> plug)
{
    return {.make = [plug] { return std::make_unique<PluggedOutput>(plug); },
            .count = [plug] { return plug->trouble == Trouble::Gone ? 0 : 1; },
            .patience = std::chrono::milliseconds(300)};
}

TEST_F(Playing, ABusyDeviceIsToldAndTakenOnceItIsFree)
{
    const auto plug = std::make_shared<Plug>();
    plug->busy = true;
    Player player(sound_, plugSystem(plug));
    ASSERT_EQ(player.open(wave("a.wav", 44100)), VBMP3_OK);
    EXPECT_EQ(player.play(), VBMP3_ERROR_DEVICE_BUSY);
    EXPECT_EQ(player.snapshot().state, 0);
    plug->busy = false;
    EXPECT_EQ(player.play(), VBMP3_OK);
    EXPECT_EQ(player.snapshot().state, 1);
}

TEST_F(Playing, ADeviceInTroubleIsToldAndThePositionGoesOnUntilItIsWell)
{
    for (const Trouble trouble : {Trouble::Gone, Trouble::StandsStill, Trouble::Hangs}) {
        SCOPED_TRACE(int(trouble));
        const auto plug = std::make_shared<Plug>();
        losses_ = 0;
        Player player(sound_, plugSystem(plug));
        listen(player);
        ASSERT_EQ(player.open(wave("a.wav", 8000 * 20, 440, 8000)), VBMP3_OK);
        ASSERT_EQ(player.play(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return player.snapshot().seconds > 0.3; }));
        EXPECT_TRUE(player.hasDevice());
        plug->trouble = trouble;
        ASSERT_TRUE(eventually([&] { return losses_ == 1; }));
        EXPECT_FALSE(player.hasDevice());
        const double from = player.snapshot().seconds;
        ASSERT_TRUE(eventually([&] { return player.snapshot().seconds > from + 0.3; }));
        EXPECT_EQ(player.snapshot().state, 1);
        const int opens = plug->opens;
        plug->trouble = Trouble::None;
        ASSERT_TRUE(eventually([&] { return plug->opens == opens + 1 && player.hasDevice(); }));
        EXPECT_EQ(losses_, 1);
        EXPECT_LT(player.snapshot().seconds, 5);
    }
}

TEST_F(Playing, NoOrderWaitsForADeviceInTrouble)
{
    for (const Trouble trouble : {Trouble::StandsStill, Trouble::Hangs}) {
        SCOPED_TRACE(int(trouble));
        const auto plug = std::make_shared<Plug>();
        Player player(sound_, plugSystem(plug));
        ASSERT_EQ(player.open(wave("a.wav", 8000 * 20, 440, 8000)), VBMP3_OK);
        ASSERT_EQ(player.play(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return player.snapshot().seconds > 0.1; }));
        plug->trouble = trouble;
        const std::pair<const char*, std::function<void()>> orders[] = {{"seek", [&] { player.seek(3); }},
                                                                        {"pause", [&] { player.pause(); }},
                                                                        {"restart", [&] { player.restart(); }},
                                                                        {"stop", [&] { player.stop(); }},
                                                                        {"play", [&] { player.play(); }},
                                                                        {"close", [&] { player.close(); }}};
        for (const auto& [name, order] : orders) {
            const auto begin = std::chrono::steady_clock::now();
            order();
            EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << name;
        }
        EXPECT_EQ(player.snapshot().state, 0);
        plug->trouble = Trouble::None;
        EXPECT_TRUE(eventually([] { return DeviceThread::leftBehind() == 0; }));
    }
}

TEST_F(Playing, WithoutADeviceTimePassesAllTheSame)
{
    Player player(sound_, {[] { return nullptr; }, [] { return 0; }});
    listen(player);
    ASSERT_EQ(player.open(wave("a.wav", 44100 / 4)), VBMP3_OK);
    playToEnd(player);
    EXPECT_FALSE(player.hasDevice());
}

TEST_F(Playing, OrdersAtRandomNeverHangOrMixTracks)
{
    // Two tones whose samples tell them apart by sign, so that a block of the wrong track is noticed.
    const std::vector<int16_t> up(2 * 44100, 1000), down(2 * 44100, -1000);
    const std::string paths[] = {file("up.wav", waveFile(44100, 2, up)), file("down.wav", waveFile(44100, 2, down)),
                                 file("tone.mp3", mp3File(32000, 1, tone(32000, 1, 40000)))};
    const auto plug = std::make_shared<Plug>();
    {
        Player player(sound_, plugSystem(plug));
        listen(player);
        std::mt19937 random(randomSeed());
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(randomSeconds());
        while (std::chrono::steady_clock::now() < end) {
            switch (random() % 13) {
            case 0: player.open(paths[random() % 3]); break;
            case 1: player.close(); break;
            case 2:
            case 3: player.play(); break;
            case 4: player.stop(); break;
            case 5: player.pause(); break;
            case 6: player.restart(); break;
            case 7: player.seek(double(random() % 2000) / 1000); break;
            case 8: player.setNext(paths[random() % 3]); break;
            case 9:
                sound_.setPitch(int(80 + random() % 50));
                sound_.setStepPitch(int(random() % 7), 5);
                break;
            case 10: plug->trouble = random() % 2 == 0 ? Trouble(random() % 4) : Trouble::None; break;
            case 11:
                sound_.setEqualizer(random() % 2 == 0 ? std::optional(BandGains{60, -60, 30}) : std::nullopt);
                sound_.applyEqualizer();
                break;
            default: std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20)); break;
            }
            const auto snapshot = player.snapshot();
            ASSERT_GE(snapshot.seconds, 0);
            ASSERT_LE(snapshot.seconds, 2.1);
            int16_t left[64], right[64];
            player.tap().read(snapshot.outputFrame, 64, left, right);
        }
        player.close();
        EXPECT_EQ(player.snapshot().state, 0);
    }
    plug->trouble = Trouble::None;
    EXPECT_TRUE(eventually([] { return DeviceThread::leftBehind() == 0; }));
}

} // namespace
} // namespace vbmp3::test
