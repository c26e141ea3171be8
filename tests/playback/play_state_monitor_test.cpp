#include "playback/play_state_monitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "playback/track_step.h"
#include "tests/playback/player.h"

namespace quenlox {
namespace {

using Poll = PlayerTest;

TEST(TrackStep, WrapsAtBothEndsOfAList) {
    struct Case {
        int current, count, next, previous;
    };
    for (const Case& c : {Case{-1, 3, 0, 2}, {0, 3, 1, 2}, {1, 3, 2, 0}, {2, 3, 0, 1}, {7, 3, 0, 2}, {0, 1, 0, 0}}) {
        EXPECT_EQ(NextIndex(c.current, c.count), c.next) << c.current;
        EXPECT_EQ(PreviousIndex(c.current, c.count), c.previous) << c.current;
    }
}

TEST(TrackStep, ARandomOrderThatDoesNotFitItsListIsDrawnAnew) {
    const std::vector<std::int32_t> order{2, 0, 1}, broken{0, 9, -1};
    const struct {
        std::vector<std::int32_t> order;
        std::int32_t position;
        int count;
        Direction direction;
        int index;      // -1: the first of a new order
        std::int32_t at;
    } cases[] = {
        {order, 0, 3, Direction::Forward, 0, 1},  {order, 2, 3, Direction::Forward, -1, 0},  // used up
        {order, 0, 2, Direction::Forward, -1, 0}, {order, 2, 4, Direction::Forward, -1, 0},  // of another list
        {broken, 0, 3, Direction::Forward, -1, 0}, {order, -1, 3, Direction::Forward, 2, 0},
        {order, 0, 3, Direction::Backward, 1, 2}, {order, 2, 3, Direction::Backward, 0, 1},
    };
    for (const auto& c : cases) {
        int drawn = 0;
        const auto step = PlanStep(c.direction, {c.count, 0, true, RandomOrder(c.order, c.position)}, [&] {
            ++drawn;
            return RandomOrder(std::vector<std::int32_t>(static_cast<std::size_t>(c.count), 1));
        });
        ASSERT_TRUE(step);
        EXPECT_EQ(step->index, c.index < 0 ? 1 : c.index) << c.position << ' ' << c.count;
        EXPECT_EQ(step->position, c.at);
        EXPECT_EQ(drawn, c.index < 0 ? 1 : 0);
    }
}

TEST(EndOfTrack, IsDecidedByIntentModeStatusAndList) {
    const struct {
        int intent, mode;
        PlayStatus status;
        int tracks;
        const char* happens;  // "next", "again", "stop"
    } cases[] = {
        {1, kProgram, kPlay, 2, "next"},  {2, kProgram, kPlay, 2, "next"},   {1, kRandom, kPlay, 2, "next"},
        {0, kProgram, kPlay, 2, "stop"},  {1, kProgram, kPlay, 0, "stop"},   {1, kProgram, kLoad, 2, "stop"},
        {1, kRepeat, kPlay, 0, "again"},  {0, kRepeat, kPlay, 2, "stop"},    {1, kSingle, kPlay, 2, "stop"},
        {1, kProgram, kDecode, 2, "decoded"}, {1, kProgram, kPause, 2, "stop"},
        // No track of its own can end in these: they stay.
        {1, kProgram, kError, 2, "stop"}, {1, kProgram, kWait, 2, "stop"},   {1, kProgram, kEncode, 2, "stop"},
    };
    for (const auto& c : cases) {
        Player p;
        p.options.GaplessNext = false;
        p.fillList(2);
        p.playRow(0, c.mode);
        p.tracks.lists[0].resize(static_cast<std::size_t>(c.tracks));
        p.state.PlayIntent = c.intent;
        p.state.PlayerStatus = c.status;
        p.vbmp3.calls.clear();
        bool decoded = false;
        p.transport.onDecodeEnded = [&] { decoded = true; };
        p.endTrack();
        const std::string happened = decoded                                  ? "decoded"
                                     : p.vbmp3.count("open C:\\1.mp3") == 1 ? "next"
                                     : p.vbmp3.count("play") == 1            ? "again"
                                                                             : "stop";
        EXPECT_EQ(happened, c.happens) << c.intent << c.mode << c.status << c.tracks;
        const bool left = c.status == kError || c.status == kWait || c.status == kEncode;
        EXPECT_EQ(p.state.PlayerStatus, happened == "next" || happened == "again" ? kPlay : left ? c.status : kStop);
    }
}

TEST_F(Poll, KeepsThePositionOfTheDecodingLibrary) {
    fillList(1);
    playRow(0, kSingle);
    vbmp3.playing.seconds = 42;
    monitor.poll();
    EXPECT_EQ(state.PositionSeconds, 42);
    EXPECT_EQ(display.time, "00:42");
    engine.PauseMedia();
    display.time = "?";
    monitor.poll();
    EXPECT_EQ(display.time, "?");
    EXPECT_EQ(state.PlayerStatus, kPause);
}

TEST_F(Poll, FollowsTheMediaControl) {
    files.add("C:\\a.mid");
    mci.answers["status MediaFile length"] = {0, "95500"};
    open("C:\\a.mid");
    engine.PlayMedia();
    mci.answers["status MediaFile mode"] = {0, "playing"};
    mci.answers["status MediaFile position"] = {0, "12999"};
    monitor.poll();
    EXPECT_EQ(state.PositionSeconds, 12);
    EXPECT_EQ(display.time, "00:12");
    mci.answers["status MediaFile mode"] = {0, std::string("Stopped\0junk", 12)};
    engine.PauseMedia();
    monitor.poll();
    EXPECT_EQ(state.PlayerStatus, kPause) << "some drivers stop for a pause";
    const std::vector<FakeMediaControl::Answer> ends{{0, std::string("Stopped\0junk", 12)}, {263, ""}};
    for (const FakeMediaControl::Answer& ended : ends) {
        state.PlayerStatus = kPlay;
        mci.answers["status MediaFile mode"] = ended;
        monitor.poll();
        EXPECT_EQ(state.PlayerStatus, kStop);
    }
}

TEST_F(Poll, ACdTrackCountsFromItsStartAndStopsAtItsOwnEnd) {
    files.add("D:\\Track02.cda");
    mci.answers["status MediaFile position track 02"] = {0, "180000"};
    mci.answers["status MediaFile length track 02"] = {0, "60000"};
    mci.answers["status MediaFile mode"] = {0, "playing"};
    open("D:\\Track02.cda");
    engine.PlayMedia();
    mci.commands.clear();
    mci.answers["status MediaFile position"] = {0, "239999"};
    monitor.poll();
    EXPECT_EQ(state.PositionSeconds, 59);
    EXPECT_EQ(mci.count("stop MediaFile"), 0);
    mci.answers["status MediaFile position"] = {0, "240000"};
    monitor.poll();
    EXPECT_EQ(display.time, "01:00");
    EXPECT_EQ(mci.count("stop MediaFile"), 1);
}

TEST(Intro, GoesOnAfterTheFirstSecondsUnlessTheUserHasMoved) {
    const struct {
        int mode, seconds;
        bool sought;
        const char* file;
        int status;
    } cases[] = {
        {kProgram, 9, false, "C:\\0.mp3", kPlay},  {kProgram, 10, false, "C:\\1.mp3", kPlay},
        {kProgram, 30, true, "C:\\0.mp3", kPlay},  {kSingle, 10, false, "C:\\0.mp3", kStop},
        {kRepeat, 10, false, "C:\\0.mp3", kPlay},
    };
    for (const auto& c : cases) {
        Player p;
        p.options.IntroPlay = true;
        p.fillList(2);
        p.playRow(0, c.mode);
        if (c.sought) p.engine.SeekMedia(0.5);
        p.vbmp3.playing.seconds = c.seconds;
        p.monitor.poll();
        EXPECT_EQ(p.state.CurrentFile, c.file) << c.mode << ' ' << c.seconds;
        EXPECT_EQ(p.state.PlayerStatus, c.status) << c.mode << ' ' << c.seconds;
    }
}

}  // namespace
}  // namespace quenlox
