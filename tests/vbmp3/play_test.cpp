// The player: what is heard, when it ends, and what orders do to it. Outputs that hear everything at once make the
// sound visible; the clock makes time visible.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "libraries/vbmp3/player/player.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"
#include "tests/vbmp3_dsp/signals.h"

namespace vbmp3::test {
namespace {

using std::chrono::milliseconds;

class Playing : public testing::Test {
  protected:
    std::string wave(const std::string& name, int frames, double hertz = 440, int rate = 44100) {
        return dir_.write(name, WaveFile(rate, 2, ToneOf(rate, 2, frames, hertz)));
    }
    std::unique_ptr<Player> opened(const OutputSystem& system, const std::string& path) {
        auto player = std::make_unique<Player>(sound_, system, share_->opener());
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
        ASSERT_TRUE(Eventually([&] { return ends_ == 1; }));
    }

    TempDir dir_;
    SoundSettings sound_;
    const std::shared_ptr<Share> share_ = std::make_shared<Share>();
    std::shared_ptr<Heard> heard_ = std::make_shared<Heard>();
    std::atomic<int> ends_ = 0, nexts_ = 0, losses_ = 0;
};

TEST_F(Playing, WhatWentIntoAFileIsHeardAndAgainAfterItsEnd) {
    const int frames = 3 * 44100 + 17;
    const auto samples = ToneOf(44100, 2, frames);
    for (const bool mp3 : {false, true}) {
        heard_ = std::make_shared<Heard>();
        const Bytes file = mp3 ? Mp3File(44100, 2, samples) : WaveFile(44100, 2, samples);
        const auto player = opened(MemorySystem(heard_), dir_.write("a", file));
        ASSERT_EQ(player->seek(1), VBMP3_OK);
        EXPECT_EQ(player->snapshot().seconds, 1) << "shown, though play begins at the beginning";
        playToEnd(*player);
        EXPECT_EQ(player->snapshot().state, 0);
        EXPECT_NEAR(player->snapshot().seconds, frames / 44100.0, 0.001);
        EXPECT_EQ(heard_->all().size(), samples.size());
        if (!mp3) {
            EXPECT_EQ(ToInt16(heard_->all()), samples);
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
        const auto first = ToneOf(44100, 2, 25001), second = ToneOf(rate, 2, 12000);
        const auto player = opened(MemorySystem(heard_), wave("1.wav", 25001));
        ASSERT_EQ(player->setNext(wave("2.wav", 12000, 440, rate)), VBMP3_OK);
        playToEnd(*player);
        EXPECT_EQ(ToInt16(heard_->all()), first + second);
        EXPECT_EQ(heard_->opens, opens);
        EXPECT_EQ(nexts_, 1);
        EXPECT_EQ(player->current()->path, dir_.path("2.wav"));
        // From then on the second file is the open one.
        playToEnd(*player);
        EXPECT_EQ(heard_->all().size(), first.size() + 2 * second.size());
    }
}

TEST_F(Playing, ANextFileThatOpensLateFollowsWithoutAGapAndOneThatCannotBeOpenedIsDropped) {
    for (const bool good : {true, false}) {
        const auto first = ToneOf(8000, 2, 4000), second = ToneOf(8000, 2, 3000);
        const auto plug = std::make_shared<Plug>();
        OutputSystem system = PlugSystem(plug);
        system.patience = milliseconds(3000);
        auto player = opened(system, wave("1.wav", 4000, 440, 8000));
        const std::string late = good ? wave("far.wav", 3000, 440, 8000) : dir_.write("far.wav", Text("no sound"));
        ASSERT_EQ(player->play(), VBMP3_OK);
        share_->hangs = true;
        EXPECT_EQ(player->setNext(late), VBMP3_OK) << "taken unseen";
        share_->hangs = false;
        ASSERT_TRUE(Eventually([&] { return ends_ == 1; }));
        EXPECT_EQ(nexts_, good ? 1 : 0);
        EXPECT_EQ(player->current()->path, good ? late : dir_.path("1.wav"));
        player.reset();
        EXPECT_EQ(ToInt16(plug->heard.all()), good ? first + second : first);
    }
}

TEST_F(Playing, PitchAndSpeedAreHeardAndThePositionStaysThatOfTheTrack) {
    ASSERT_TRUE(sound_.setPitch(130) && sound_.setStepPitch(6, 5));
    const auto player = opened(MemorySystem(heard_), wave("a.wav", 4 * 44100));
    playToEnd(*player);
    const size_t length = heard_->all().size() / 2;
    EXPECT_EQ(length, 2 * 44100u);
    EXPECT_NEAR(FrequencyOf(heard_->all(), 44100, length / 5, length * 4 / 5), 572, 2.0);
    EXPECT_NEAR(player->snapshot().seconds, 4.0, 0.01);
}

TEST_F(Playing, ANextFileTakenBackWhileItIsBeingDecodedIsNotHeardEither) {
    const auto player = opened(ClockSystem(1), wave("1.wav", 22050));
    ASSERT_EQ(player->setNext(wave("2.wav", 200000)), VBMP3_OK);
    ASSERT_EQ(player->play(), VBMP3_OK);
    std::this_thread::sleep_for(milliseconds(100));  // the decoder is far into the second file by now
    ASSERT_EQ(player->setNext(""), VBMP3_OK);
    ASSERT_TRUE(Eventually([&] { return ends_ == 1; }));
    EXPECT_EQ(nexts_, 0);
    EXPECT_EQ(player->current()->path, dir_.path("1.wav"));
}

TEST_F(Playing, PositionRunsWithTheClockStandsWhilePausedAndEndsWithTheFile) {
    const auto player = opened(ClockSystem(1), wave("a.wav", 44100 * 20));
    const auto seconds = [&] { return player->snapshot().seconds; };
    EXPECT_EQ(player->snapshot().state, 0);
    ASSERT_EQ(player->play(), VBMP3_OK);
    ASSERT_TRUE(Eventually([&] { return seconds() > 0.2; }));
    const auto begin = std::chrono::steady_clock::now();
    const double from = seconds();
    ASSERT_TRUE(Eventually([&] { return seconds() > from + 0.4; }));
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
    ASSERT_TRUE(Eventually([&] { return seconds() > 5.05; }));
    EXPECT_LT(seconds(), 6);

    ASSERT_EQ(player->stop(), VBMP3_OK);
    EXPECT_EQ(player->snapshot().state, 0);
    EXPECT_EQ(seconds(), 0);
    EXPECT_EQ(ends_, 0) << "stopping is no end of the track";
    EXPECT_EQ(player->pause(), VBMP3_ERROR_NOT_OPEN);

    ASSERT_EQ(player->play(), VBMP3_OK);
    player->close();
    EXPECT_EQ(share_->held, 0);
    EXPECT_EQ(player->snapshot().state, 0);
    EXPECT_EQ(player->seek(1), VBMP3_ERROR_NOT_OPEN);
    EXPECT_EQ(player->play(), VBMP3_ERROR_NOT_OPEN);
}

TEST_F(Playing, ASeekIsHeardFromExactlyThatFrame) {
    const auto samples = ToneOf(44100, 2, 44100 * 3, 300);
    const auto player = opened(MemorySystem(heard_), wave("a.wav", 44100 * 3, 300));
    ASSERT_EQ(player->play(), VBMP3_OK);
    ASSERT_EQ(player->pause(), VBMP3_OK);
    ASSERT_EQ(player->seek(2.5), VBMP3_OK);
    std::this_thread::sleep_for(milliseconds(50));
    const size_t before = heard_->all().size();
    if (ends_ == 0) {
        ASSERT_EQ(player->restart(), VBMP3_OK);
        ASSERT_TRUE(Eventually([&] { return ends_ == 1; }));
    }
    const auto all = ToInt16(heard_->all());
    const std::vector<int16_t> tail(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
    EXPECT_EQ(tail, std::vector<int16_t>(samples.begin() + 2 * 110250, samples.end()));
}

TEST_F(Playing, ASeekPastTheEndEndsTheTrack) {
    const std::string mp3 = dir_.write("a.mp3", Mp3File(44100, 2, ToneOf(44100, 2, 44100 * 5)));
    for (const std::string& path : {wave("a.wav", 44100 * 5), mp3}) {
        const auto player = opened(ClockSystem(1), path);
        ASSERT_EQ(player->play(), VBMP3_OK);
        ASSERT_EQ(player->seek(1000), VBMP3_OK);
        ASSERT_TRUE(Eventually([&] { return ends_ == 1; })) << path;
        EXPECT_NEAR(player->snapshot().seconds, 5, 0.001);
    }
}

TEST_F(Playing, NextFileAndEndAreToldTheMomentTheyAreHeardWithoutADeviceToo) {
    for (const OutputSystem& system : {ClockSystem(1), OutputSystem{[] { return nullptr; }, [] { return 0; }}}) {
        const auto player = opened(system, wave("1.wav", 44100 / 4));
        ASSERT_EQ(player->setNext(wave("2.wav", 44100 / 4)), VBMP3_OK);
        const auto begin = std::chrono::steady_clock::now();
        ASSERT_EQ(player->play(), VBMP3_OK);
        milliseconds due(0);
        for (const std::atomic<int>* told : {&nexts_, &ends_}) {
            ASSERT_TRUE(Eventually([&] { return *told == 1; }));
            due += milliseconds(250);
            const auto passed = std::chrono::steady_clock::now() - begin;
            EXPECT_GE(passed, due);
            EXPECT_LT(passed, due + milliseconds(150));
        }
        EXPECT_FALSE(player->hasDevice());
    }
}

TEST_F(Playing, ABusyDeviceIsToldAndTakenOnceItIsFree) {
    const auto plug = std::make_shared<Plug>();
    plug->busy = true;
    const auto player = opened(PlugSystem(plug), wave("a.wav", 44100));
    EXPECT_EQ(player->play(), VBMP3_ERROR_DEVICE_BUSY);
    EXPECT_EQ(player->snapshot().state, 0);
    plug->busy = false;
    EXPECT_EQ(player->play(), VBMP3_OK);
    EXPECT_EQ(player->snapshot().state, 1);
}

TEST_F(Playing, ADeviceInTroubleIsToldAndThePositionGoesOnUntilItIsWell) {
    for (const Trouble trouble : {Trouble::Gone, Trouble::StandsStill, Trouble::Hangs}) {
        SCOPED_TRACE(static_cast<int>(trouble));
        const auto plug = std::make_shared<Plug>();
        const auto player = opened(PlugSystem(plug), wave("a.wav", 8000 * 20, 440, 8000));
        const auto seconds = [&] { return player->snapshot().seconds; };
        ASSERT_EQ(player->play(), VBMP3_OK);
        ASSERT_TRUE(Eventually([&] { return seconds() > 0.3; }));
        EXPECT_TRUE(player->hasDevice());
        plug->trouble = trouble;
        ASSERT_TRUE(Eventually([&] { return losses_ == 1; }));
        EXPECT_FALSE(player->hasDevice());
        const double from = seconds();
        ASSERT_TRUE(Eventually([&] { return seconds() > from + 0.3; }));
        EXPECT_EQ(player->snapshot().state, 1);
        const int opens = plug->opens;
        plug->trouble = Trouble::None;
        ASSERT_TRUE(Eventually([&] { return plug->opens == opens + 1 && player->hasDevice(); }));
        EXPECT_EQ(losses_, 1);
        EXPECT_LT(seconds(), 5);
        plug->trouble = trouble;
        ASSERT_TRUE(Eventually([&] { return losses_ == 2; }));
        player->seek(20);
        ASSERT_TRUE(Eventually([&] { return ends_ == 1; }));
        plug->trouble = Trouble::None;
        EXPECT_TRUE(player->hasDevice()) << "nothing plays on the clock any more";
    }
}

TEST_F(Playing, WhatIsOpeningIsWaitedForByNewerOrdersAndByTheTrackThatNeedsIt) {
    const auto plug = std::make_shared<Plug>();
    plug->openMs = 200;
    const auto player = opened(PlugSystem(plug), wave("a.wav", 8000 * 20, 440, 8000));
    ASSERT_EQ(player->setNext(wave("b.wav", 44100)), VBMP3_OK);
    ASSERT_EQ(player->play(), VBMP3_OK);
    // Cut short by two newer orders.
    player->setOutput({0, 100});
    std::this_thread::sleep_for(milliseconds(50));
    for (const double to : {12.0, 19.6}) {
        ASSERT_EQ(player->seek(to), VBMP3_OK);
        std::this_thread::sleep_for(milliseconds(10));
        EXPECT_TRUE(player->hasDevice());
    }
    ASSERT_TRUE(Eventually([&] { return player->snapshot().seconds > 19.65; }));
    ASSERT_TRUE(Eventually([&] { return nexts_ == 1; }));
    EXPECT_EQ(plug->opens, 3);
    EXPECT_EQ(losses_, 0);
    EXPECT_TRUE(player->hasDevice());
}

TEST_F(Playing, AFileThatStallsIsNoDeviceInTrouble) {
    const auto plug = std::make_shared<Plug>();
    const auto player = opened(PlugSystem(plug), wave("far.wav", 44100 * 20));
    ASSERT_EQ(player->play(), VBMP3_OK);
    share_->hangs = true;
    double last = -1;
    ASSERT_TRUE(Eventually([&] {
        std::this_thread::sleep_for(milliseconds(600));  // longer than the patience with devices
        const double before = std::exchange(last, player->snapshot().seconds);
        return before == last;
    }));
    share_->hangs = false;
    ASSERT_TRUE(Eventually([&] { return player->snapshot().seconds > last + 0.3; }));
    EXPECT_EQ(plug->opens, 1);
    EXPECT_EQ(losses_, 0);
}

TEST_F(Playing, AnotherOutputGoesOnWhereTheSoundIs) {
    // Every sample says at which millisecond it stands.
    std::vector<int16_t> ramp(2 * 8000 * 2);
    for (size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<int16_t>(i / 16);
    const auto plug = std::make_shared<Plug>();
    auto player = opened(PlugSystem(plug), dir_.write("a.wav", WaveFile(8000, 2, ramp)));
    ASSERT_EQ(player->play(), VBMP3_OK);
    for (const bool paused : {false, true}) {
        const int opens = plug->opens;
        const double from = player->snapshot().seconds;
        ASSERT_TRUE(Eventually([&] { return player->snapshot().seconds > from + 0.3; }));
        if (paused) player->pause();
        for (int i = 0; i < 3; ++i) {
            player->setOutput({paused ? 1 : 0, 200});
            ASSERT_TRUE(Eventually([&] { return plug->opens == opens + 1; }));
        }
        EXPECT_EQ(player->snapshot().state, paused ? 2 : 1);
        if (paused) player->restart();
    }
    ASSERT_TRUE(Eventually([&] { return ends_ == 1; }));
    player.reset();
    EXPECT_EQ(plug->opens, 3) << "the same values once more are no change";
    const auto heard = ToInt16(plug->heard.all());
    for (size_t i = 2; i < heard.size(); ++i) ASSERT_NEAR(heard[i], heard[i - 2], 50);
    EXPECT_NEAR(static_cast<double>(heard.size()), static_cast<double>(ramp.size()), 16 * 100);
}

TEST_F(Playing, NoOrderWaitsForADeviceInTrouble) {
    for (const Trouble trouble : {Trouble::StandsStill, Trouble::Hangs}) {
        SCOPED_TRACE(static_cast<int>(trouble));
        const auto plug = std::make_shared<Plug>();
        const auto player = opened(PlugSystem(plug), wave("a.wav", 8000 * 20, 440, 8000));
        ASSERT_EQ(player->play(), VBMP3_OK);
        ASSERT_TRUE(Eventually([&] { return player->snapshot().seconds > 0.1; }));
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
        EXPECT_TRUE(Eventually([] { return DeviceThread::leftBehind() == 0; }));
    }
}

}  // namespace
}  // namespace vbmp3::test
