// The player: what is heard, when it ends, and what orders do to it. Outputs that hear everything at once make the
// sound visible; the clock makes time visible.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>
#include <thread>

#include "libraries/vbmp3/player.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"
#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

using std::chrono::milliseconds;

class Playing : public testing::Test {
  protected:
    std::string wave(const std::string& name, int frames, double hertz = 440, int rate = 44100) {
        return dir_.write(name, waveFile(rate, 2, tone(rate, 2, frames, hertz)));
    }
    std::unique_ptr<Player> opened(const OutputSystem& system, const std::string& path) {
        auto player = std::make_unique<Player>(sound_, system);
        ends_ = nexts_ = losses_ = 0;
        player->setListener([this](int event) {
            ends_ += event == VBMP3_EVENT_END_OF_TRACK;
            nexts_ += event == VBMP3_EVENT_NEXT_TRACK;
            losses_ += event == VBMP3_EVENT_DEVICE_LOST;
        });
        EXPECT_EQ(player->open(path), VBMP3_OK);
        return player;
    }
    void playToEnd(Player& player) {
        ends_ = 0;
        ASSERT_EQ(player.play(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return ends_ == 1; }));
    }

    TempDir dir_;
    SoundSettings sound_;
    std::shared_ptr<Heard> heard_ = std::make_shared<Heard>();
    std::atomic<int> ends_ = 0, nexts_ = 0, losses_ = 0;
};

TEST_F(Playing, WhatWentIntoAFileIsHeardAndAgainAfterItsEnd) {
    const int frames = 3 * 44100 + 17;
    const auto samples = tone(44100, 2, frames);
    for (const bool mp3 : {false, true}) {
        heard_ = std::make_shared<Heard>();
        const Bytes file = mp3 ? mp3File(44100, 2, samples) : waveFile(44100, 2, samples);
        const auto player = opened(memorySystem(heard_), dir_.write("a", file));
        playToEnd(*player);
        EXPECT_EQ(player->snapshot().state, 0);
        EXPECT_NEAR(player->snapshot().seconds, frames / 44100.0, 0.001);
        EXPECT_EQ(heard_->all().size(), samples.size());
        if (!mp3) {
            EXPECT_EQ(toInt16(heard_->all()), samples);
        }
        playToEnd(*player);
        EXPECT_EQ(heard_->all().size(), 2 * samples.size());
        EXPECT_EQ(ends_, 1);
    }
}

TEST_F(Playing, TheNextFileFollowsWithoutAGapAtItsOwnRate) {
    for (const auto& [rate, opens] : {std::pair{44100, std::vector{44100}}, {48000, {44100, 48000}}}) {
        SCOPED_TRACE(rate);
        heard_ = std::make_shared<Heard>();
        const auto first = tone(44100, 2, 25001), second = tone(rate, 2, 12000);
        const auto player = opened(memorySystem(heard_), wave("1.wav", 25001));
        ASSERT_EQ(player->setNext(wave("2.wav", 12000, 440, rate)), VBMP3_OK);
        playToEnd(*player);
        EXPECT_EQ(toInt16(heard_->all()), first + second);
        EXPECT_EQ(heard_->opens, opens);
        EXPECT_EQ(nexts_, 1);
        EXPECT_EQ(player->current()->path, dir_.path("2.wav"));
        // From then on the second file is the open one.
        playToEnd(*player);
        EXPECT_EQ(heard_->all().size(), first.size() + 2 * second.size());
    }
}

TEST_F(Playing, PitchAndSpeedAreHeardAndThePositionStaysThatOfTheTrack) {
    const struct {
        int pitch, factor;
        double hertz, length;
    } cases[] = {{130, 1, 572.0, 1.0}, {80, 1, 352.0, 1.0}, {100, 6, 440.0, 0.5}, {100, 1, 440.0, 1.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.pitch << " %, step " << c.factor);
        ASSERT_TRUE(sound_.setPitch(c.pitch));
        ASSERT_TRUE(sound_.setStepPitch(c.factor, 5));
        heard_ = std::make_shared<Heard>();
        const auto player = opened(memorySystem(heard_), wave("a.wav", 4 * 44100));
        playToEnd(*player);
        const size_t length = heard_->all().size() / 2;
        EXPECT_EQ(length, size_t(4 * 44100 * c.length));
        EXPECT_NEAR(frequencyOf(heard_->all(), 44100, length / 5, length * 4 / 5), c.hertz, 2.0);
        EXPECT_NEAR(player->snapshot().seconds, 4.0, 0.01);
    }
}

TEST_F(Playing, ANextFileTakenBackIsNotHeard) {
    const auto player = opened(memorySystem(heard_), wave("1.wav", 10000));
    EXPECT_EQ(player->setNext(dir_.path("missing.wav")), VBMP3_ERROR_NOT_FOUND);
    ASSERT_EQ(player->setNext(wave("2.wav", 10000)), VBMP3_OK);
    ASSERT_EQ(player->setNext(""), VBMP3_OK);
    playToEnd(*player);
    EXPECT_EQ(nexts_, 0);
    EXPECT_EQ(heard_->all().size(), 20000u);
}

TEST_F(Playing, ANextFileTakenBackWhileItIsBeingDecodedIsNotHeardEither) {
    const auto player = opened(clockSystem(1), wave("1.wav", 22050));
    ASSERT_EQ(player->setNext(wave("2.wav", 200000)), VBMP3_OK);
    ASSERT_EQ(player->play(), VBMP3_OK);
    std::this_thread::sleep_for(milliseconds(100));  // the decoder is far into the second file by now
    ASSERT_EQ(player->setNext(""), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return ends_ == 1; }));
    EXPECT_EQ(nexts_, 0);
    EXPECT_EQ(player->current()->path, dir_.path("1.wav"));
}

TEST_F(Playing, PositionRunsWithTheClockAndStandsWhilePaused) {
    const auto player = opened(clockSystem(1), wave("a.wav", 44100 * 20));
    const auto seconds = [&] { return player->snapshot().seconds; };
    EXPECT_EQ(player->snapshot().state, 0);
    ASSERT_EQ(player->play(), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return seconds() > 0.2; }));
    const auto begin = std::chrono::steady_clock::now();
    const double from = seconds();
    ASSERT_TRUE(eventually([&] { return seconds() > from + 0.4; }));
    const double passed = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    EXPECT_NEAR(passed, 0.4, 0.15);

    ASSERT_EQ(player->pause(), VBMP3_OK);
    EXPECT_EQ(player->snapshot().state, 2);
    std::this_thread::sleep_for(milliseconds(60));
    const double held = seconds();
    std::this_thread::sleep_for(milliseconds(100));
    EXPECT_EQ(seconds(), held);

    // Seeking while paused moves at once and stays paused.
    ASSERT_EQ(player->seek(5), VBMP3_OK);
    EXPECT_EQ(seconds(), 5);
    EXPECT_EQ(player->snapshot().state, 2);
    std::this_thread::sleep_for(milliseconds(60));
    EXPECT_EQ(seconds(), 5);
    ASSERT_EQ(player->restart(), VBMP3_OK);
    ASSERT_TRUE(eventually([&] { return seconds() > 5.05; }));
    EXPECT_LT(seconds(), 6);

    ASSERT_EQ(player->stop(), VBMP3_OK);
    EXPECT_EQ(player->snapshot().state, 0);
    EXPECT_EQ(seconds(), 0);
    EXPECT_EQ(ends_, 0) << "stopping is no end of the track";
    EXPECT_EQ(player->pause(), VBMP3_ERROR_NOT_OPEN);
}

TEST_F(Playing, ASeekIsHeardFromExactlyThatFrame) {
    const auto samples = tone(44100, 2, 44100 * 3, 300);
    const auto player = opened(memorySystem(heard_), wave("a.wav", 44100 * 3, 300));
    ASSERT_EQ(player->play(), VBMP3_OK);
    ASSERT_EQ(player->pause(), VBMP3_OK);
    ASSERT_EQ(player->seek(2.5), VBMP3_OK);
    std::this_thread::sleep_for(milliseconds(50));
    const size_t before = heard_->all().size();
    if (ends_ == 0) {
        ASSERT_EQ(player->restart(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return ends_ == 1; }));
    }
    const auto all = toInt16(heard_->all());
    const std::vector<int16_t> tail(all.begin() + std::ptrdiff_t(before), all.end());
    EXPECT_EQ(tail, std::vector<int16_t>(samples.begin() + 2 * 110250, samples.end()));
}

TEST_F(Playing, ASeekPastTheEndEndsTheTrack) {
    const std::string mp3 = dir_.write("a.mp3", mp3File(44100, 2, tone(44100, 2, 44100 * 5)));
    for (const std::string& path : {wave("a.wav", 44100 * 5), mp3}) {
        const auto player = opened(clockSystem(1), path);
        ASSERT_EQ(player->play(), VBMP3_OK);
        ASSERT_EQ(player->seek(1000), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return ends_ == 1; })) << path;
        EXPECT_NEAR(player->snapshot().seconds, 5, 0.001);
    }
}

TEST_F(Playing, ASeekWhileStoppedShowsButPlayBeginsAtTheBeginning) {
    const auto player = opened(memorySystem(heard_), wave("a.wav", 88200));
    ASSERT_EQ(player->seek(1), VBMP3_OK);
    EXPECT_EQ(player->snapshot().seconds, 1);
    playToEnd(*player);
    EXPECT_EQ(heard_->all().size(), 2 * 88200u);
}

TEST_F(Playing, NextFileAndEndAreToldTheMomentTheyAreHeardWithoutADeviceToo) {
    for (const OutputSystem& system : {clockSystem(1), OutputSystem{[] { return nullptr; }, [] { return 0; }}}) {
        const auto player = opened(system, wave("1.wav", 44100 / 4));
        ASSERT_EQ(player->setNext(wave("2.wav", 44100 / 4)), VBMP3_OK);
        const auto begin = std::chrono::steady_clock::now();
        ASSERT_EQ(player->play(), VBMP3_OK);
        milliseconds due(0);
        for (const std::atomic<int>* told : {&nexts_, &ends_}) {
            ASSERT_TRUE(eventually([&] { return *told == 1; }));
            due += milliseconds(250);
            const auto passed = std::chrono::steady_clock::now() - begin;
            EXPECT_GE(passed, due);
            EXPECT_LT(passed, due + milliseconds(150));
        }
        EXPECT_FALSE(player->hasDevice());
    }
}

TEST_F(Playing, ClosedFilesAreHeldByNobodyAndTakeNoOrders) {
    const auto player = opened(clockSystem(1), wave("a.wav", 441000));
    ASSERT_EQ(player->play(), VBMP3_OK);
    const std::weak_ptr<Track> track = player->current();
    player->close();
    EXPECT_TRUE(track.expired());
    EXPECT_EQ(player->snapshot().state, 0);
    EXPECT_EQ(player->seek(1), VBMP3_ERROR_NOT_OPEN);
    EXPECT_EQ(player->play(), VBMP3_ERROR_NOT_OPEN);
}

// A device that others may have taken, and that may get into trouble at any moment.
enum class Trouble { None, Gone, StandsStill, Hangs };

struct Plug {
    std::atomic<bool> busy = false;
    std::atomic<Trouble> trouble = Trouble::None;
    std::atomic<int> opens = 0;

    void call()  // every one passes here
    {
        while (trouble == Trouble::Hangs) std::this_thread::sleep_for(milliseconds(1));
    }
};

class PluggedOutput final : public Output {
  public:
    explicit PluggedOutput(std::shared_ptr<Plug> plug) : plug_(std::move(plug)) {}
    ~PluggedOutput() override { plug_->call(); }
    OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) override {
        plug_->call();
        if (plug_->trouble == Trouble::Gone) return OutputError::NoDevice;
        if (plug_->busy) return OutputError::Busy;
        ++plug_->opens;
        return inner_->open(sampleRate, settings, waker);
    }
    size_t room() override { return plug_->call(), inner_->room(); }
    void write(std::span<const float> stereo) override { plug_->call(), inner_->write(stereo); }
    void start() override { plug_->call(), inner_->start(); }
    void pause() override { plug_->call(), inner_->pause(); }
    void drain() override { plug_->call(), inner_->drain(); }
    void flush() override {
        plug_->call();
        inner_->flush();
        played_ = 0;
    }
    int64_t played() override {
        plug_->call();
        return plug_->trouble == Trouble::StandsStill ? played_ : played_ = inner_->played();
    }
    bool lost() override { return plug_->trouble == Trouble::Gone; }

  private:
    std::shared_ptr<Plug> plug_;
    std::unique_ptr<Output> inner_ = makeClockOutput();
    int64_t played_ = 0;
};

OutputSystem plugSystem(std::shared_ptr<Plug> plug) {
    return {.make = [plug] { return std::make_unique<PluggedOutput>(plug); },
            .count = [plug] { return plug->trouble == Trouble::Gone ? 0 : 1; },
            .patience = milliseconds(300)};
}

TEST_F(Playing, ABusyDeviceIsToldAndTakenOnceItIsFree) {
    const auto plug = std::make_shared<Plug>();
    plug->busy = true;
    const auto player = opened(plugSystem(plug), wave("a.wav", 44100));
    EXPECT_EQ(player->play(), VBMP3_ERROR_DEVICE_BUSY);
    EXPECT_EQ(player->snapshot().state, 0);
    plug->busy = false;
    EXPECT_EQ(player->play(), VBMP3_OK);
    EXPECT_EQ(player->snapshot().state, 1);
}

TEST_F(Playing, ADeviceInTroubleIsToldAndThePositionGoesOnUntilItIsWell) {
    for (const Trouble trouble : {Trouble::Gone, Trouble::StandsStill, Trouble::Hangs}) {
        SCOPED_TRACE(int(trouble));
        const auto plug = std::make_shared<Plug>();
        const auto player = opened(plugSystem(plug), wave("a.wav", 8000 * 20, 440, 8000));
        const auto seconds = [&] { return player->snapshot().seconds; };
        ASSERT_EQ(player->play(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return seconds() > 0.3; }));
        EXPECT_TRUE(player->hasDevice());
        plug->trouble = trouble;
        ASSERT_TRUE(eventually([&] { return losses_ == 1; }));
        EXPECT_FALSE(player->hasDevice());
        const double from = seconds();
        ASSERT_TRUE(eventually([&] { return seconds() > from + 0.3; }));
        EXPECT_EQ(player->snapshot().state, 1);
        const int opens = plug->opens;
        plug->trouble = Trouble::None;
        ASSERT_TRUE(eventually([&] { return plug->opens == opens + 1 && player->hasDevice(); }));
        EXPECT_EQ(losses_, 1);
        EXPECT_LT(seconds(), 5);
    }
}

TEST_F(Playing, NoOrderWaitsForADeviceInTrouble) {
    for (const Trouble trouble : {Trouble::StandsStill, Trouble::Hangs}) {
        SCOPED_TRACE(int(trouble));
        const auto plug = std::make_shared<Plug>();
        const auto player = opened(plugSystem(plug), wave("a.wav", 8000 * 20, 440, 8000));
        ASSERT_EQ(player->play(), VBMP3_OK);
        ASSERT_TRUE(eventually([&] { return player->snapshot().seconds > 0.1; }));
        plug->trouble = trouble;
        const std::pair<const char*, std::function<void()>> orders[] = {
            {"seek", [&] { player->seek(3); }},      {"pause", [&] { player->pause(); }},
            {"restart", [&] { player->restart(); }}, {"stop", [&] { player->stop(); }},
            {"play", [&] { player->play(); }},       {"close", [&] { player->close(); }}};
        for (const auto& [name, order] : orders) {
            const auto begin = std::chrono::steady_clock::now();
            order();
            EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << name;
        }
        EXPECT_EQ(player->snapshot().state, 0);
        plug->trouble = Trouble::None;
        EXPECT_TRUE(eventually([] { return DeviceThread::leftBehind() == 0; }));
    }
}

TEST_F(Playing, OrdersAtRandomNeverHang) {
    const std::string paths[] = {wave("a.wav", 44100), wave("b.wav", 44100, 300),
                                 dir_.write("tone.mp3", mp3File(32000, 1, tone(32000, 1, 40000)))};
    const auto plug = std::make_shared<Plug>();
    {
        const auto player = opened(plugSystem(plug), paths[0]);
        std::mt19937 random(randomSeed());
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(randomSeconds());
        while (std::chrono::steady_clock::now() < end) {
            switch (random() % 13) {
                case 0: player->open(paths[random() % 3]); break;
                case 1: player->close(); break;
                case 2:
                case 3: player->play(); break;
                case 4: player->stop(); break;
                case 5: player->pause(); break;
                case 6: player->restart(); break;
                case 7: player->seek(double(random() % 2000) / 1000); break;
                case 8: player->setNext(paths[random() % 3]); break;
                case 9:
                    sound_.setPitch(int(80 + random() % 50));
                    sound_.setStepPitch(int(random() % 7), 5);
                    break;
                case 10: plug->trouble = random() % 2 == 0 ? Trouble(random() % 4) : Trouble::None; break;
                case 11:
                    sound_.setEqualizer(random() % 2 == 0 ? std::optional(BandGains{60, -60, 30}) : std::nullopt);
                    sound_.applyEqualizer();
                    break;
                default: std::this_thread::sleep_for(milliseconds(random() % 20)); break;
            }
            const auto snapshot = player->snapshot();
            ASSERT_GE(snapshot.seconds, 0);
            ASSERT_LE(snapshot.seconds, 2.1);
            int16_t left[64], right[64];
            player->tap().read(snapshot.outputFrame, 64, left, right);
        }
        player->close();
        EXPECT_EQ(player->snapshot().state, 0);
    }
    plug->trouble = Trouble::None;
    EXPECT_TRUE(eventually([] { return DeviceThread::leftBehind() == 0; }));
}

}  // namespace
}  // namespace vbmp3::test
