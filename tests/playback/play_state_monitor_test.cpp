#include "playback/play_state_monitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "playback/track_step.h"
#include "tests/playback/player.h"

namespace quenlox {
namespace {

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
    struct Case {
        int intent, mode, status, tracks;
        const char* happens;  // "next", "again", "stop"
    };
    const Case cases[] = {
        {1, kProgram, kPlay, 2, "next"},  {2, kProgram, kPlay, 2, "next"},   {1, kRandom, kPlay, 2, "next"},
        {0, kProgram, kPlay, 2, "stop"},  {1, kProgram, kPlay, 0, "stop"},   {1, kProgram, kLoad, 2, "stop"},
        {1, kRepeat, kPlay, 0, "again"},  {0, kRepeat, kPlay, 2, "stop"},    {1, kSingle, kPlay, 2, "stop"},
        {1, kProgram, kDecode, 2, "decoded"},
    };
    for (const Case& c : cases) {
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
        EXPECT_EQ(p.state.PlayerStatus, happened == "next" || happened == "again" ? kPlay : kStop);
    }
}

TEST(Poll, LeavesAlonWhatNoTrackOfItsOwnCanEnd) {
    for (const int status : {kStop, kError, kWait, kEncode}) {
        Player p;
        p.addMp3("C:\\a.mp3");
        p.open("C:\\a.mp3");
        p.state.PlayerStatus = status;
        p.endTrack();
        EXPECT_EQ(p.state.PlayerStatus, status);
    }
}

TEST(Poll, KeepsThePositionOfTheDecodingLibrary) {
    Player p;
    p.fillList(1);
    p.playRow(0, kSingle);
    p.vbmp3.seconds = 42;
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.state.PositionSeconds, 42);
    EXPECT_EQ(p.display.time, "00:42");
    p.engine.PauseMedia();
    p.display.time = "?";
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.display.time, "?");
    EXPECT_EQ(p.state.PlayerStatus, kPause);
}

TEST(Poll, FollowsTheMediaControl) {
    Player p;
    p.files.add("C:\\a.mid");
    p.mci.answers["status MediaFile length"] = {0, "95500"};
    p.open("C:\\a.mid");
    p.engine.PlayMedia();
    p.mci.answers["status MediaFile mode"] = {0, "playing"};
    p.mci.answers["status MediaFile position"] = {0, "12999"};
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.state.PositionSeconds, 12);
    EXPECT_EQ(p.display.time, "00:12");
    p.mci.answers["status MediaFile mode"] = {0, std::string("Stopped\0junk", 12)};
    p.engine.PauseMedia();
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.state.PlayerStatus, kPause) << "some drivers stop for a pause";
    p.engine.PauseMedia();
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.state.PlayerStatus, kStop);
}

TEST(Poll, ADeviceThatDoesNotAnswerHasStopped) {
    Player p;
    p.files.add("C:\\a.wma");
    p.mci.answers["status MediaFile mode"] = {263, ""};
    p.open("C:\\a.wma");
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.state.PlayerStatus, kStop);
}

TEST(Poll, ACdTrackCountsFromItsStartAndStopsAtItsOwnEnd) {
    Player p;
    p.files.add("D:\\Track02.cda");
    p.mci.answers["status MediaFile position track 02"] = {0, "180000"};
    p.mci.answers["status MediaFile length track 02"] = {0, "60000"};
    p.mci.answers["status MediaFile mode"] = {0, "playing"};
    p.open("D:\\Track02.cda");
    p.engine.PlayMedia();
    p.mci.commands.clear();
    p.mci.answers["status MediaFile position"] = {0, "239999"};
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.state.PositionSeconds, 59);
    EXPECT_EQ(p.mci.count("stop MediaFile"), 0);
    p.mci.answers["status MediaFile position"] = {0, "240000"};
    p.monitor.Timer1_Timer();
    EXPECT_EQ(p.display.time, "01:00");
    EXPECT_EQ(p.mci.count("stop MediaFile"), 1);
}

TEST(NextTrack, AnEmptySourceEndsTheIntentSilently) {
    Player p;
    p.state.PlayIntent = kForward;
    p.monitor.NextTrack();
    EXPECT_EQ(p.state.PlayIntent, kNoIntent);
    p.state.PlayIntent = kBackward;
    p.monitor.PreviousTrack();
    EXPECT_EQ(p.state.PlayIntent, kNoIntent);
    EXPECT_TRUE(p.vbmp3.calls.empty());
}

TEST(NextTrack, WalksTheCurrentListOrTheFolder) {
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

TEST(NextTrack, RandomPlaysEachOnceAPassAndLeavesOutTheFirstPositionOfTheFirstOrder) {
    Player p;
    p.fillList(3);
    p.tracks.BuildShuffleOrder(0);  // as at start: 1 2 0
    p.state.PlayMode = kRandom;
    std::vector<std::string> played;
    for (int i = 0; i < 8; ++i) {
        p.monitor.NextTrack();
        played.push_back(p.state.CurrentFile.substr(3, 1));
    }
    EXPECT_THAT(played, ElementsAre("2", "0", "2", "0", "1", "0", "1", "2"));
}

TEST(PreviousTrack, RandomWalksTheOrderBackAndWrapsWithoutANewOne) {
    Player p;
    p.fillList(3);
    p.tracks.BuildShuffleOrder(0);  // 1 2 0
    p.state.PlayMode = kRandom;
    p.state.ShufflePos[0] = 1;
    std::vector<std::string> played;
    for (int i = 0; i < 3; ++i) {
        p.monitor.PreviousTrack();
        played.push_back(p.state.CurrentFile.substr(3, 1));
    }
    EXPECT_THAT(played, ElementsAre("1", "0", "2"));
    EXPECT_THAT(p.state.ShuffleOrder[0], ElementsAre(1, 2, 0));
}

TEST(DelList, AFileThatCannotBePlayedLeavesTheListsAndTheNextOneIsTried) {
    Player p;
    p.options.values.deleteFromList = true;
    p.fillList(5);
    p.files.remove("C:\\1.mp3");
    p.vbmp3.files.erase("C:\\2.mp3");
    p.playRow(0, kProgram);
    p.endTrack();
    EXPECT_EQ(p.state.CurrentFile, "C:\\3.mp3");
    EXPECT_EQ(p.state.PlayerStatus, kPlay);
    EXPECT_THAT(p.tracks.lists[0], ElementsAre("C:\\0.mp3", "C:\\3.mp3", "C:\\4.mp3"));
    EXPECT_EQ(p.state.CurrentIndex[0], 1);
    EXPECT_TRUE(p.state.ListDirty);
}

TEST(DelList, ComesToAnEndWhenNothingCanBePlayed) {
    for (const std::size_t list : {0U, 2U}) {  // rows of list C stay
        Player p;
        p.options.values.deleteFromList = true;
        for (int i = 0; i < 4; ++i) p.tracks.lists[list].push_back("C:\\gone" + std::to_string(i) + ".mp3");
        p.state.ListNo = static_cast<int>(list);
        p.state.PlayMode = kProgram;
        p.monitor.NextTrack();
        EXPECT_EQ(p.tracks.lists[list].size(), list == 0 ? 0U : 4U);
        EXPECT_NE(p.state.PlayerStatus, kPlay);
    }
}

TEST(DelList, OffTheListsStayAsTheyAre) {
    Player p;
    p.fillList(2);
    p.files.remove("C:\\1.mp3");
    p.playRow(0, kProgram);
    p.endTrack();
    EXPECT_EQ(p.tracks.lists[0].size(), 2U);
    EXPECT_EQ(p.state.CurrentFile, "C:\\1.mp3");
}

TEST(Wait, IsTriedAgainUntilTheDeviceIsFree) {
    Player p;
    p.fillList(1);
    p.vbmp3.playWorks = false;
    p.vbmp3.error = VBMP3_ERROR_DEVICE_BUSY;
    p.playRow(0, kSingle);
    EXPECT_EQ(p.display.status, "WAIT");
    p.endTrack();
    p.monitor.Timer5_Timer();
    EXPECT_EQ(p.display.status, "WAIT");
    p.vbmp3.playWorks = true;
    p.monitor.Timer5_Timer();
    EXPECT_EQ(p.display.status, "PLAY");
    p.vbmp3.calls.clear();
    p.monitor.Timer5_Timer();
    EXPECT_EQ(p.vbmp3.count("play"), 0);
}

TEST(Modes, StepOnAndWrap) {
    Player p;
    std::vector<std::string> words;
    for (int i = 0; i < 4; ++i) {
        p.monitor.StepPlayMode();
        words.push_back(p.display.playMode);
    }
    EXPECT_THAT(words, ElementsAre("REPEAT", "PROGRAM", "RANDOM", "SINGLE"));
    p.state.PlayMode = -1;
    p.monitor.StepPlayMode();
    EXPECT_EQ(p.display.playMode, "SINGLE");
    p.state.TotalSeconds = 100;
    p.state.PositionSeconds = 10;
    p.monitor.StepTimeMode();
    EXPECT_EQ(p.display.time, "01:30");
    p.monitor.StepTimeMode();
    EXPECT_EQ(p.display.time, "00:10");
}

TEST(Intro, GoesOnAfterTheFirstSecondsUnlessTheUserHasMoved) {
    struct Case {
        int mode;
        int seconds;
        bool sought;
        const char* file;
        int status;
    };
    const Case cases[] = {
        {kProgram, 9, false, "C:\\0.mp3", kPlay},  {kProgram, 10, false, "C:\\1.mp3", kPlay},
        {kProgram, 30, true, "C:\\0.mp3", kPlay},  {kSingle, 10, false, "C:\\0.mp3", kStop},
        {kRepeat, 10, false, "C:\\0.mp3", kPlay},
    };
    for (const Case& c : cases) {
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
