// The next file that the decoding library is given beforehand, and how the player follows when it has gone on to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playback/player.h"

namespace quenlox {
namespace {

using testing::ElementsAre;

TEST(NextFile, IsHandedOverOnlyWhereTheEndOfTheTrackWouldStepOn) {
    struct Case {
        const char* what;
        void (*change)(Player&);
        const char* next;
    };
    const Case cases[] = {
        {"program", [](Player&) {}, "C:\\1.mp3"},
        {"last row", [](Player& p) { p.state.CurrentIndex[0] = 2; }, "C:\\0.mp3"},
        {"random", [](Player& p) { p.state.PlayMode = kRandom; p.tracks.BuildShuffleOrder(0); }, "C:\\2.mp3"},
        {"single", [](Player& p) { p.state.PlayMode = kSingle; }, ""},
        {"repeat", [](Player& p) { p.state.PlayMode = kRepeat; }, ""},
        {"no intent", [](Player& p) { p.state.PlayIntent = kNoIntent; }, ""},
        {"stopped", [](Player& p) { p.engine.StopMedia(); }, ""},
        {"intro play", [](Player& p) { p.options.values.introPlay = true; }, ""},
        {"switched off", [](Player& p) { p.options.values.gaplessNext = false; }, ""},
        {"empty list", [](Player& p) { p.tracks.lists[0].clear(); }, ""},
        {"for the media control", [](Player& p) { p.tracks.lists[0][1] = "C:\\x.MID"; }, ""},
        {"unknown to the library", [](Player& p) { p.tracks.lists[0][1] = "C:\\x.txt"; }, ""},
        {"another row there now", [](Player& p) { p.tracks.lists[0][1] = "C:\\2.mp3"; }, "C:\\2.mp3"},
    };
    for (const Case& c : cases) {
        Player p;
        p.fillList(3);
        p.playRow(0, kProgram);
        EXPECT_EQ(p.vbmp3.nextFile, "C:\\1.mp3");
        c.change(p);
        p.monitor.Timer1_Timer();
        EXPECT_EQ(p.vbmp3.nextFile, c.next) << c.what;
    }
}

TEST(NextFile, IsSentOnceNotWithEveryTick) {
    Player p;
    p.fillList(2);
    p.tracks.lists[0].push_back("C:\\x.txt");
    p.playRow(0, kProgram);
    for (int i = 0; i < 3; ++i) p.monitor.Timer1_Timer();
    EXPECT_EQ(p.vbmp3.count("next C:\\1.mp3"), 1);
    p.monitor.letGoOf("C:\\2.mp3");
    EXPECT_EQ(p.vbmp3.nextFile, "C:\\1.mp3");
    p.monitor.letGoOf("c:\\1.MP3");  // somebody replaces it
    EXPECT_EQ(p.vbmp3.nextFile, "");
    p.monitor.Timer1_Timer();
    p.goOn();
    for (int i = 0; i < 3; ++i) p.monitor.Timer1_Timer();
    EXPECT_EQ(p.vbmp3.count("next C:\\x.txt"), 1);
    p.endTrack();  // what the library refused is stepped to as ever
    EXPECT_EQ(p.state.CurrentFile, "C:\\x.txt");
}

TEST(NextFile, GoingOnMovesEverythingAsNextTrackWouldWithoutOpening) {
    for (const int mode : {kProgram, kRandom}) {
        Player gapless, stepped;
        for (Player* p : {&gapless, &stepped}) {
            p->fillList(4);
            p->tracks.BuildShuffleOrder(0);
            p->playRow(0, mode);
        }
        for (int i = 0; i < 3; ++i) {
            gapless.vbmp3.calls.clear();
            gapless.goOn();
            stepped.monitor.NextTrack();
            EXPECT_EQ(gapless.state.CurrentFile, stepped.state.CurrentFile);
            EXPECT_EQ(gapless.state.CurrentIndex, stepped.state.CurrentIndex);
            EXPECT_EQ(gapless.state.ShufflePos[0], stepped.state.ShufflePos[0]);
            EXPECT_EQ(gapless.state.PlayIntent, stepped.state.PlayIntent);
            EXPECT_EQ(gapless.state.PlayerStatus, kPlay);
            EXPECT_EQ(gapless.display.title, stepped.display.title);
            EXPECT_EQ(gapless.display.length, stepped.display.length);
            EXPECT_EQ(gapless.vbmp3.count("close") + gapless.vbmp3.count("play"), 0);
        }
    }
}

TEST(NextFile, ANewPassIsDrawnAheadAndTakenWhenTheLibraryGetsThere) {
    Player p;
    p.fillList(3);
    p.tracks.BuildShuffleOrder(0);  // 1 2 0
    p.state.ShufflePos[0] = 2;
    p.playRow(0, kRandom);
    EXPECT_EQ(p.vbmp3.nextFile, "C:\\2.mp3");  // the pass to come is 2 0 1
    EXPECT_THAT(p.state.ShuffleOrder[0], ElementsAre(1, 2, 0));
    EXPECT_EQ(p.state.ShufflePos[0], 2);
    for (int i = 0; i < 3; ++i) p.monitor.Timer1_Timer();
    EXPECT_EQ(p.tracks.ordersBuilt, 2);
    std::vector<std::string> played;
    for (int i = 0; i < 3; ++i) {
        p.goOn();
        played.push_back(p.state.CurrentFile.substr(3, 1));
    }
    EXPECT_THAT(played, ElementsAre("2", "0", "1"));
    EXPECT_THAT(p.state.ShuffleOrder[0], ElementsAre(2, 0, 1));
}

TEST(NextFile, AnEventOfAFileThatIsClosedIsDropped) {
    Player p;
    p.fillList(3);
    p.addMp3("C:\\other.mp3");
    p.playRow(0, kProgram);
    const auto late = p.vbmp3.listener;
    p.state.CurrentFile = "C:\\other.mp3";
    p.monitor.OpenAndPlay();
    late(VBMP3_EVENT_NEXT_TRACK);
    p.windows.pumpMessages();
    EXPECT_EQ(p.state.CurrentFile, "C:\\other.mp3");
    EXPECT_EQ(p.state.CurrentIndex[0], 0);
}

TEST(NextFile, ThatWasTakenBackTooLateIsStillFollowed) {
    Player p;
    p.fillList(3);
    p.playRow(0, kProgram);
    const std::string playing = p.vbmp3.nextFile;
    p.monitor.StepPlayMode();
    p.state.PlayMode = kSingle;
    p.monitor.RenewNextFile();
    EXPECT_EQ(p.vbmp3.nextFile, "");
    p.goOn();
    EXPECT_EQ(p.state.CurrentFile, playing);
    EXPECT_EQ(p.state.CurrentIndex[0], 1);
}

TEST(NextFile, WhatChangesWhileTheEventIsUnderwayDoesNotConfuseIt) {
    Player p;
    p.fillList(3);
    p.playRow(0, kProgram);
    p.vbmp3.listener(VBMP3_EVENT_NEXT_TRACK);
    p.state.CurrentIndex[0] = 1;  // the next file would be another now
    p.monitor.Timer1_Timer();
    p.windows.pumpMessages();
    EXPECT_EQ(p.state.CurrentFile, "C:\\1.mp3");
    EXPECT_EQ(p.vbmp3.nextFile, "C:\\2.mp3");
}

TEST(NextFile, GoingOnJustAsTheUserStopsLeavesThePlayerStopped) {
    Player p;
    p.fillList(3);
    p.playRow(0, kProgram);
    p.vbmp3.listener(VBMP3_EVENT_NEXT_TRACK);
    p.engine.StopMedia();
    p.windows.pumpMessages();
    EXPECT_EQ(p.state.PlayerStatus, kStop);
    EXPECT_EQ(p.state.CurrentFile, "C:\\1.mp3");  // what the library would play now
}

TEST(NextFile, AListChangedMeanwhileGivesNoWrongIndex) {
    Player p;
    p.fillList(3);
    p.playRow(0, kProgram);
    p.tracks.lists[0].erase(p.tracks.lists[0].begin() + 1);
    p.goOn();
    EXPECT_EQ(p.state.CurrentFile, "C:\\1.mp3");
    EXPECT_EQ(p.state.CurrentIndex[0], 0);
}

TEST(EndOfTrackEvent, RunsTheRuleAtOnce) {
    Player p;
    p.options.values.gaplessNext = false;
    p.fillList(2);
    p.playRow(0, kProgram);
    p.vbmp3.state = 0;
    p.vbmp3.listener(VBMP3_EVENT_END_OF_TRACK);
    p.windows.pumpMessages();
    EXPECT_EQ(p.state.CurrentFile, "C:\\1.mp3");
    // The same event once more, while the new track plays, is none of its own.
    p.vbmp3.listener(VBMP3_EVENT_END_OF_TRACK);
    p.windows.pumpMessages();
    EXPECT_EQ(p.state.CurrentFile, "C:\\1.mp3");
}

TEST(DeviceLost, IsToldBehindTheFormatAndTheTrackGoesOn) {
    Player p;
    p.fillList(1);
    p.playRow(0, kSingle);
    p.vbmp3.deviceThere = false;
    p.vbmp3.listener(VBMP3_EVENT_DEVICE_LOST);
    p.windows.pumpMessages();
    EXPECT_THAT(p.display.info, testing::EndsWith("ﾃﾞﾊﾞｲｽなし"));
    EXPECT_EQ(p.state.PlayerStatus, kPlay);
}

}  // namespace
}  // namespace quenlox
