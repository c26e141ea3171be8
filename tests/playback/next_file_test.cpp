// The next file that the decoding library is given beforehand, and how the player follows when it has gone on to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playback/player.h"

namespace quenlox {
namespace {

using NextFile = PlayerTest;
using EndOfTrackEvent = PlayerTest;
using DeviceLost = PlayerTest;

using testing::ElementsAre;

TEST_F(NextFile, IsHandedOverOnlyWhereTheEndOfTheTrackWouldStepOn) {
    const struct {
        const char* what;
        void (*change)(Player&);
        const char* next;
    } cases[] = {
        {"program", [](Player&) {}, "C:\\1.mp3"},
        {"last row", [](Player& p) { p.state.CurrentIndex[0] = 2; }, "C:\\0.mp3"},
        {"random",
         [](Player& p) {
             p.state.PlayMode = kRandom;
             p.tracks.BuildShuffleOrder(0);
         },
         "C:\\2.mp3"},
        {"single", [](Player& p) { p.state.PlayMode = kSingle; }, ""},
        {"repeat", [](Player& p) { p.state.PlayMode = kRepeat; }, ""},
        {"no intent", [](Player& p) { p.state.PlayIntent = kNoIntent; }, ""},
        {"stopped", [](Player& p) { p.engine.StopMedia(); }, ""},
        {"intro play", [](Player& p) { p.options.IntroPlay = true; }, ""},
        {"switched off", [](Player& p) { p.options.GaplessNext = false; }, ""},
        {"empty list", [](Player& p) { p.tracks.lists[0].clear(); }, ""},
        {"for the media control", [](Player& p) { p.tracks.lists[0][1] = "C:\\x.MID"; }, ""},
        {"unknown to the library", [](Player& p) { p.tracks.lists[0][1] = "C:\\x.txt"; }, ""},
        {"the last by wish", [](Player& p) { p.transport.setStopAfter(true); }, ""},
        {"another row there now", [](Player& p) { p.tracks.lists[0][1] = "C:\\2.mp3"; }, "C:\\2.mp3"},
    };
    for (const auto& c : cases) {
        Player p;
        p.fillList(3);
        p.playRow(0, kProgram);
        EXPECT_EQ(p.vbmp3.nextFile, "C:\\1.mp3");
        c.change(p);
        p.monitor.poll();
        EXPECT_EQ(p.vbmp3.nextFile, c.next) << c.what;
    }
}

TEST_F(NextFile, IsSentOnceNotWithEveryTick) {
    options.PassOverUnplayable = false;
    fillList(2);
    tracks.lists[0].push_back("C:\\x.txt");
    playRow(0, kProgram);
    for (int i = 0; i < 3; ++i) monitor.poll();
    EXPECT_EQ(vbmp3.count("next C:\\1.mp3"), 1);
    transport.letGoOf("C:\\2.mp3");
    EXPECT_EQ(vbmp3.nextFile, "C:\\1.mp3");
    transport.letGoOf("c:\\1.MP3");  // somebody replaces it
    EXPECT_EQ(vbmp3.nextFile, "");
    monitor.poll();
    goOn();
    for (int i = 0; i < 3; ++i) monitor.poll();
    EXPECT_EQ(vbmp3.count("next C:\\x.txt"), 1);
    endTrack();  // what the library refused is stepped to as ever
    EXPECT_EQ(state.CurrentFile, "C:\\x.txt");
}

TEST_F(NextFile, GoingOnMovesEverythingAsNextTrackWouldWithoutOpening) {
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
            stepped.transport.NextTrack();
            EXPECT_EQ(gapless.state.CurrentFile, stepped.state.CurrentFile);
            EXPECT_EQ(gapless.state.CurrentIndex, stepped.state.CurrentIndex);
            EXPECT_EQ(gapless.state.ShuffleOrder[0].position(), stepped.state.ShuffleOrder[0].position());
            EXPECT_EQ(gapless.state.PlayIntent, stepped.state.PlayIntent);
            EXPECT_EQ(gapless.state.PlayerStatus, kPlay);
            EXPECT_EQ(gapless.display.title, stepped.display.title);
            EXPECT_EQ(gapless.display.length, stepped.display.length);
            EXPECT_EQ(gapless.vbmp3.count("close") + gapless.vbmp3.count("play"), 0);
        }
    }
}

TEST_F(NextFile, RowsOfTheQueueComeFirstAndThenTheListGoesOnWhereItWas) {
    const char* const played[] = {"30", "300", "301", "302"};  // in SINGLE to RANDOM, rows behind the first
    for (const bool gapless : {true, false}) {
        for (int mode = kSingle; mode <= kRandom; ++mode) {
            Player p;
            p.options.GaplessNext = gapless;
            for (const int list : {0, 1}) p.fillList(4, list);
            p.tracks.BuildShuffleOrder(0);
            p.playRow(0, mode);
            p.tracks.queued = {{0, 3}, {1, 0}};
            std::string rows;
            for (int i = 0; i < 3; ++i) {
                p.transport.RenewNextFile();
                EXPECT_EQ(!p.vbmp3.nextFile.empty(), gapless && (i < 2 || mode >= kProgram)) << mode;
                p.vbmp3.nextFile.empty() ? p.endTrack() : p.goOn();
                if (p.state.PlayerStatus == kPlay) rows += p.state.CurrentFile[3];
            }
            EXPECT_EQ(rows, played[mode]) << gapless;
            p.tracks.queued = {{0, 3}};
            for (const int back : {3, 1}) {
                back == 3 ? p.transport.NextTrack() : p.transport.PreviousTrack();
                EXPECT_TRUE(mode != kProgram || p.state.CurrentIndex[0] == back);
            }
        }
    }
}

TEST_F(NextFile, NothingFollowsTheTrackThatTheUserHasMadeTheLastButOnlyOnce) {
    bool told = false;
    transport.onStopAfterChanged = [&](bool stops) { told = stops; };
    fillList(3);
    EXPECT_FALSE(transport.setStopAfter(true)) << "nothing plays";
    for (const int mode : {kRepeat, kProgram}) {
        playRow(0, mode);
        tracks.queued = {{0, 2}};
        EXPECT_TRUE(transport.setStopAfter(true));
        endTrack();
        EXPECT_EQ(state.CurrentFile, "C:\\0.mp3");
        EXPECT_EQ(state.PlayerStatus, kStop);
        transport.play();
        endTrack();
        EXPECT_EQ(state.CurrentFile, "C:\\2.mp3");
    }
    transport.setStopAfter(true);
    EXPECT_TRUE(told);
    transport.PreviousTrack();
    EXPECT_FALSE(told) << "another track";
}

TEST_F(NextFile, ANewPassIsDrawnAheadAndTakenWhenTheLibraryGetsThere) {
    fillList(3);
    tracks.BuildShuffleOrder(0);  // 1 2 0
    state.ShuffleOrder[0].moveTo(2);
    playRow(0, kRandom);
    EXPECT_EQ(vbmp3.nextFile, "C:\\2.mp3");  // the pass to come is 2 0 1
    EXPECT_THAT(state.ShuffleOrder[0].order(), ElementsAre(1, 2, 0));
    EXPECT_EQ(state.ShuffleOrder[0].position(), 2);
    for (int i = 0; i < 3; ++i) monitor.poll();
    EXPECT_EQ(tracks.ordersBuilt, 2);
    std::vector<std::string> played;
    for (int i = 0; i < 3; ++i) {
        goOn();
        played.push_back(state.CurrentFile.substr(3, 1));
    }
    EXPECT_THAT(played, ElementsAre("2", "0", "1"));
    EXPECT_THAT(state.ShuffleOrder[0].order(), ElementsAre(2, 0, 1));
}

TEST_F(NextFile, AnEventOfAFileThatIsClosedIsDropped) {
    fillList(3);
    addMp3("C:\\other.mp3");
    playRow(0, kProgram);
    const auto late = vbmp3.listener;
    transport.open({"C:\\other.mp3"}, kNoIntent, Transport::Start::Play);
    late(LibraryEvent::NextTrack);
    windows.pumpMessages();
    EXPECT_EQ(state.CurrentFile, "C:\\other.mp3");
    EXPECT_EQ(state.CurrentIndex[0], 0);
}

TEST_F(NextFile, ThatWasTakenBackTooLateIsStillFollowed) {
    fillList(3);
    playRow(0, kProgram);
    const std::string playing = vbmp3.nextFile;
    transport.StepPlayMode();
    state.PlayMode = kSingle;
    transport.RenewNextFile();
    EXPECT_EQ(vbmp3.nextFile, "");
    goOn();
    EXPECT_EQ(state.CurrentFile, playing);
    EXPECT_EQ(state.CurrentIndex[0], 1);
}

TEST_F(NextFile, WhatChangesWhileTheEventIsUnderwayDoesNotConfuseIt) {
    fillList(3);
    playRow(0, kProgram);
    vbmp3.listener(LibraryEvent::NextTrack);
    state.CurrentIndex[0] = 1;  // the next file would be another now
    monitor.poll();
    windows.pumpMessages();
    EXPECT_EQ(state.CurrentFile, "C:\\1.mp3");
    EXPECT_EQ(vbmp3.nextFile, "C:\\2.mp3");
}

TEST_F(NextFile, GoingOnJustAsTheUserStopsLeavesThePlayerStopped) {
    fillList(3);
    playRow(0, kProgram);
    vbmp3.listener(LibraryEvent::NextTrack);
    transport.stop();
    windows.pumpMessages();
    EXPECT_EQ(state.PlayIntent, kNoIntent);
    EXPECT_EQ(state.PlayerStatus, kStop);
    EXPECT_EQ(state.CurrentFile, "C:\\1.mp3");  // what the library would play now
}

TEST_F(EndOfTrackEvent, RunsTheRuleAtOnce) {
    options.GaplessNext = false;
    fillList(2);
    playRow(0, kProgram);
    vbmp3.playing.state = PlayReport::State::Stopped;
    vbmp3.listener(LibraryEvent::EndOfTrack);
    windows.pumpMessages();
    EXPECT_EQ(state.CurrentFile, "C:\\1.mp3");
    // The same event once more, while the new track plays, is none of its own.
    vbmp3.listener(LibraryEvent::EndOfTrack);
    windows.pumpMessages();
    EXPECT_EQ(state.CurrentFile, "C:\\1.mp3");
}

TEST_F(DeviceLost, IsToldBehindTheFormatAndTheTrackGoesOn) {
    fillList(1);
    playRow(0, kSingle);
    vbmp3.deviceThere = false;
    vbmp3.listener(LibraryEvent::DeviceLost);
    windows.pumpMessages();
    EXPECT_THAT(display.info, testing::EndsWith("ﾃﾞﾊﾞｲｽなし"));
    EXPECT_EQ(state.PlayerStatus, kPlay);
}

}  // namespace
}  // namespace quenlox
