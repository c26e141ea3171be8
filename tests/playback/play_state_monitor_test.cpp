#include "playback/play_state_monitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "playback/track_step.h"
#include "tests/playback/player.h"

namespace quenlox {
namespace {

using Poll = PlayerTest;
using NextTrack = PlayerTest;
using PreviousTrack = PlayerTest;
using DelList = PlayerTest;
using Modes = PlayerTest;

using testing::ElementsAre;

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
    const std::vector<std::int32_t> order{2, 0, 1};
    EXPECT_EQ(NextInShuffle({order, 0, 2}, 3).index, 0);
    EXPECT_TRUE(NextInShuffle({order, 2, 2}, 3).needsNewOrder);      // used up
    EXPECT_TRUE(NextInShuffle({order, 0, 2}, 2).needsNewOrder);      // of another list
    EXPECT_TRUE(NextInShuffle({order, 2, 3}, 4).needsNewOrder);
    const std::vector<std::int32_t> broken{0, 9, -1};
    EXPECT_TRUE(NextInShuffle({broken, 0, 2}, 3).needsNewOrder);
    EXPECT_TRUE(NextInShuffle({broken, 1, 2}, 3).needsNewOrder);
    EXPECT_EQ(PreviousInShuffle({order, 0, 2}, 3).position, 2);
    EXPECT_FALSE(PreviousInShuffle({order, 0, 2}, 3).needsNewOrder);
}

TEST(EndOfTrack, IsDecidedByIntentModeStatusAndList) {
    const struct {
        int intent, mode, status, tracks;
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
        p.options.values.gaplessNext = false;
        p.fillList(2);
        p.playRow(0, c.mode);
        p.tracks.lists[0].resize(static_cast<std::size_t>(c.tracks));
        p.state.PlayIntent = c.intent;
        p.state.PlayerStatus = c.status;
        p.vbmp3.calls.clear();
        bool decoded = false;
        p.monitor.onDecodeEnded = [&] { decoded = true; };
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
    vbmp3.seconds = 42;
    monitor.Timer1_Timer();
    EXPECT_EQ(state.PositionSeconds, 42);
    EXPECT_EQ(display.time, "00:42");
    engine.PauseMedia();
    display.time = "?";
    monitor.Timer1_Timer();
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
    monitor.Timer1_Timer();
    EXPECT_EQ(state.PositionSeconds, 12);
    EXPECT_EQ(display.time, "00:12");
    mci.answers["status MediaFile mode"] = {0, std::string("Stopped\0junk", 12)};
    engine.PauseMedia();
    monitor.Timer1_Timer();
    EXPECT_EQ(state.PlayerStatus, kPause) << "some drivers stop for a pause";
    const std::vector<FakeMediaControl::Answer> ends{{0, std::string("Stopped\0junk", 12)}, {263, ""}};
    for (const FakeMediaControl::Answer& ended : ends) {
        state.PlayerStatus = kPlay;
        mci.answers["status MediaFile mode"] = ended;
        monitor.Timer1_Timer();
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
    monitor.Timer1_Timer();
    EXPECT_EQ(state.PositionSeconds, 59);
    EXPECT_EQ(mci.count("stop MediaFile"), 0);
    mci.answers["status MediaFile position"] = {0, "240000"};
    monitor.Timer1_Timer();
    EXPECT_EQ(display.time, "01:00");
    EXPECT_EQ(mci.count("stop MediaFile"), 1);
}

TEST_F(NextTrack, WalksTheCurrentListOrTheFolder) {
    for (const bool folder : {false, true}) {
        Player p;
        p.fillList(3, folder ? kFolderList : 1);
        p.state.ListNo = 1;
        p.state.UseFolderList = folder;
        const std::size_t slot = folder ? 3 : 1;
        std::string walked;
        for (int i = 0; i < 4; ++i) {
            p.monitor.NextTrack();
            walked += p.state.CurrentFile.substr(3, 1) + std::to_string(p.state.PlayIntent) + " ";
        }
        for (int i = 0; i < 2; ++i) {
            p.monitor.PreviousTrack();
            walked += p.state.CurrentFile.substr(3, 1) + std::to_string(p.state.PlayIntent) + " ";
        }
        EXPECT_EQ(walked, "01 11 21 01 22 12 ");
        EXPECT_EQ(p.state.CurrentIndex[slot], 1);
        EXPECT_EQ(p.state.PlayerStatus, kPlay);
    }
}

TEST_F(NextTrack, RandomPlaysEachOnceAPassAndLeavesOutTheFirstPositionOfTheFirstOrder) {
    fillList(3);
    tracks.BuildShuffleOrder(0);  // as at start: 1 2 0
    state.PlayMode = kRandom;
    std::vector<std::string> played;
    for (int i = 0; i < 8; ++i) {
        monitor.NextTrack();
        played.push_back(state.CurrentFile.substr(3, 1));
    }
    EXPECT_THAT(played, ElementsAre("2", "0", "2", "0", "1", "0", "1", "2"));
}

TEST_F(PreviousTrack, RandomWalksTheOrderBackAndWrapsWithoutANewOne) {
    fillList(3);
    tracks.BuildShuffleOrder(0);  // 1 2 0
    state.PlayMode = kRandom;
    state.ShufflePos[0] = 1;
    std::vector<std::string> played;
    for (int i = 0; i < 3; ++i) {
        monitor.PreviousTrack();
        played.push_back(state.CurrentFile.substr(3, 1));
    }
    EXPECT_THAT(played, ElementsAre("1", "0", "2"));
    EXPECT_THAT(state.ShuffleOrder[0], ElementsAre(1, 2, 0));
}

TEST_F(DelList, AFileThatCannotBePlayedLeavesTheListsAndTheNextOneIsTried) {
    options.values.deleteFromList = true;
    fillList(5);
    files.remove("C:\\1.mp3");
    vbmp3.files.erase("C:\\2.mp3");
    playRow(0, kProgram);
    endTrack();
    EXPECT_EQ(state.CurrentFile, "C:\\3.mp3");
    EXPECT_EQ(state.PlayerStatus, kPlay);
    EXPECT_THAT(tracks.lists[0], ElementsAre("C:\\0.mp3", "C:\\3.mp3", "C:\\4.mp3"));
    EXPECT_EQ(state.CurrentIndex[0], 1);
    EXPECT_TRUE(state.ListDirty);
}

TEST_F(DelList, ComesToAnEndWhenNothingCanBePlayed) {
    for (const std::size_t list : {0U, 2U}) {  // rows of list C stay
        Player p;
        p.options.values.deleteFromList = true;
        for (int i = 0; i < 4; ++i) p.tracks.lists[list].push_back("C:\\gone" + std::to_string(i) + ".mp3");
        p.state.ListNo = static_cast<int>(list);
        p.state.PlayMode = kProgram;
        p.monitor.NextTrack();
        EXPECT_EQ(p.tracks.lists[list].size(), list == 0 ? 0U : 4U);
        EXPECT_NE(p.state.PlayerStatus, kPlay);
        p.monitor.PreviousTrack();
        EXPECT_EQ(p.state.PlayIntent, list == 0 ? kNoIntent : kBackward);
    }
}

TEST_F(DelList, OffTheListsStayAsTheyAre) {
    fillList(2);
    files.remove("C:\\1.mp3");
    playRow(0, kProgram);
    endTrack();
    EXPECT_EQ(tracks.lists[0].size(), 2U);
    EXPECT_EQ(state.CurrentFile, "C:\\1.mp3");
}

TEST_F(Modes, AModeFromABrokenFileBeginsAnewAndTheTimeModeShowsAtOnce) {
    state.PlayMode = -1;
    monitor.StepPlayMode();
    EXPECT_EQ(display.playMode, "SINGLE");
    state.TotalSeconds = 100;
    state.PositionSeconds = 10;
    monitor.StepTimeMode();
    EXPECT_EQ(display.time, "01:30");
    monitor.StepTimeMode();
    EXPECT_EQ(display.time, "00:10");
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
        p.options.values.introPlay = true;
        p.fillList(2);
        p.playRow(0, c.mode);
        if (c.sought) p.engine.SeekMedia(0.5);
        p.vbmp3.seconds = c.seconds;
        p.monitor.Timer1_Timer();
        EXPECT_EQ(p.state.CurrentFile, c.file) << c.mode << ' ' << c.seconds;
        EXPECT_EQ(p.state.PlayerStatus, c.status) << c.mode << ' ' << c.seconds;
    }
}

}  // namespace
}  // namespace quenlox
