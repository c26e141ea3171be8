#include "playback/transport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include "tests/playback/player.h"

namespace quenlox {
namespace {

using PassingOver = PlayerTest;
using WhileOpening = PlayerTest;
using LetGo = PlayerTest;
using Repeat = PlayerTest;

using testing::ElementsAre;

constexpr PlayStatus kAllStatuses[] = {kStop, kPlay, kPause, kError, kLoad, kWait, kDecode, kEncode};

// Row 1 of list A, a file of the command line, a dropped file, a file of the folder list.
void Take(Player& p, int source) {
    p.fillList(3);
    p.fillList(3, kFolderList);
    p.addMp3("C:\\other.mp3");
    switch (source) {
        case 0: p.playRow(1, kProgram); break;
        case 1: p.transport.openFirst("C:\\other.mp3", true, true); break;
        case 2: p.transport.open({"C:\\other.mp3"}, kNoIntent, Transport::Start::Play); break;
        default:
            p.state.UseFolderList = true;
            p.transport.open({"C:\\1.mp3", kFolderList, 1}, kForward, Transport::Start::Play);
    }
}

TEST(Transport, EveryCommandHasOneOutcomeForEachStatusWhateverTheTrackCameFrom) {
    // One letter for each status: p plays, s stopped and no intent, u paused, k sought, > < steps, o opens and plays,
    // x refused; - nothing.
    const struct {
        bool (*command)(Transport&);
        const char* outcomes;
    } cases[] = {
        {[](Transport& t) { return t.play(); }, "p-----xx"},
        {[](Transport& t) { return t.stop(); }, "-sssssxx"},
        {[](Transport& t) { return t.playOrStop(); }, "psssssxx"},
        {[](Transport& t) { return t.pause(); }, "-up---xx"},
        {[](Transport& t) { return t.seek(0.5); }, "-kk---xx"},
        {[](Transport& t) { return t.NextTrack(); }, ">>>>>>xx"},
        {[](Transport& t) { return t.PreviousTrack(); }, "<<<<<<xx"},
        {[](Transport& t) { return t.open({"C:\\other.mp3"}, kForward, Transport::Start::Play) != OpenResult::Busy; },
         "ooooooxx"},
    };
    for (const auto& c : cases) {
        for (int source = 0; source < 4; ++source) {
            for (const PlayStatus status : kAllStatuses) {
                Player p;
                Take(p, source);
                p.state.PlayerStatus = status;
                const std::string file = p.state.CurrentFile;
                const auto rows = p.state.CurrentIndex;
                const int intent = p.state.PlayIntent;
                p.vbmp3.calls.clear();
                const bool taken = c.command(p.transport);
                const char outcome = c.outcomes[status];
                const std::string what = std::string(c.outcomes) + std::to_string(source) + std::to_string(status);
                EXPECT_EQ(taken, outcome != 'x') << what;
                const int list = source == 3 ? kFolderList : 0;
                const bool onRow = source == 0 || source == 3;
                switch (outcome) {
                    case 's':
                        EXPECT_EQ(p.state.PlayerStatus, kStop) << what;
                        EXPECT_EQ(p.state.PlayIntent, kNoIntent) << what;
                        EXPECT_EQ(p.vbmp3.count("stop"), 1) << what;
                        break;
                    case '>':
                    case '<':
                        EXPECT_EQ(p.state.PlayerStatus, kPlay) << what;
                        EXPECT_EQ(p.state.CurrentIndex[static_cast<std::size_t>(list)],
                                  outcome == '>' ? (onRow ? 2 : 0) : (onRow ? 0 : 2))
                            << what;
                        EXPECT_EQ(p.state.PlayIntent, outcome == '>' ? kForward : kBackward) << what;
                        break;
                    case 'p':
                    case 'o': EXPECT_EQ(p.state.PlayerStatus, kPlay) << what; break;
                    case 'u': EXPECT_EQ(p.state.PlayerStatus, kPause) << what; break;
                    default:
                        EXPECT_EQ(p.state.PlayerStatus, status) << what;
                        EXPECT_EQ(p.state.PlayIntent, intent) << what;
                        EXPECT_EQ(p.state.CurrentFile, file) << what;
                        EXPECT_EQ(p.vbmp3.calls.empty(), outcome != 'k') << what;
                }
                if (outcome == 'o') {
                    EXPECT_EQ(p.state.CurrentFile, "C:\\other.mp3") << what;
                }
                if (outcome != '>' && outcome != '<') {
                    EXPECT_EQ(p.state.CurrentIndex, rows) << what;
                }
            }
        }
    }
}

TEST_F(PassingOver, AStepGoesOnToTheNextTrackThatCanBePlayedOnceAroundAtMost) {
    const struct {
        const char* dead;  // rows whose files are missing
        bool passes, removes;
        int list;
        const char* next;      // file after a step forward from row 0
        const char* previous;  // and after one back from there
        const char* left;      // rows afterwards
    } cases[] = {
        {"1", true, false, 0, "2", "0", "01234"},       {"12", true, false, 0, "3", "0", "01234"},
        {"12", false, false, 0, "1!", "0", "01234"},    {"12", true, true, 0, "3", "0", "034"},
        {"12", false, true, 0, "1!", "4", "0234"},      {"1234", true, false, 0, "0", "0", "01234"},
        {"01234", true, false, 0, "0!", "0!", "01234"}, {"01234", true, true, 0, "0!", "0!", ""},
        {"12", true, true, 2, "3", "0", "01234"},  // rows of list C stay
    };
    for (const auto& c : cases) {
        for (const int mode : {kProgram, kRandom}) {
            Player p;
            p.options.PassOverUnplayable = c.passes;
            p.options.DeleteFromList = c.removes;
            p.options.GaplessNext = false;
            p.state.ListNo = c.list;
            p.fillList(5, c.list);
            p.state.ShuffleOrder[static_cast<std::size_t>(c.list)] = RandomOrder({0, 1, 2, 3, 4});
            p.state.PlayMode = mode;
            p.transport.open({"C:\\0.mp3", c.list, 0}, kForward, Transport::Start::Play);
            for (const char* dead = c.dead; *dead; ++dead) p.files.remove(std::string("C:\\") + *dead + ".mp3");
            const auto shown = [&] {
                return p.display.title.substr(0, 1) + (p.state.PlayerStatus == kPlay ? "" : "!");
            };
            p.transport.NextTrack();
            // In RANDOM a pass that is through draws an order of its own.
            const bool sameOrder = mode == kProgram || std::string(c.dead).size() < 4;
            if (sameOrder) {
                EXPECT_EQ(shown(), c.next) << c.dead << c.passes << c.removes << mode;
            }
            p.transport.PreviousTrack();
            if (sameOrder) {
                EXPECT_EQ(shown(), c.previous) << c.dead << c.passes << c.removes << mode;
            }
            std::string left;
            for (const auto& path : p.tracks.lists[static_cast<std::size_t>(c.list)]) left += path[3];
            EXPECT_EQ(left, c.left) << c.dead << mode;
            for (const auto& path : p.tracks.unplayable) EXPECT_FALSE(p.files.fileExists(path)) << path;
        }
    }
}

TEST_F(PassingOver, AListIsKeptWhileItsDriveOrDeviceIsWhatFails) {
    options.DeleteFromList = true;
    tracks.lists[0] = {"X:\\a.mp3", "X:\\b.mp3", "C:\\a.mid", "C:\\b.mp3"};
    files.add("C:\\a.mid");
    files.add("C:\\b.mp3");
    mci.answers["open \"C:\\a.mid\" type sequencer alias MediaFile"] = {343, ""};  // no device for it
    vbmp3.error = LibraryError::NotFound;                                           // another program has it open
    state.PlayMode = kProgram;
    transport.NextTrack();
    EXPECT_EQ(tracks.lists[0].size(), 4U);
    EXPECT_THAT(tracks.unplayable, ElementsAre("C:\\a.mid", "C:\\b.mp3", "X:\\a.mp3", "X:\\b.mp3"));
    addMp3("C:\\b.mp3");
    transport.NextTrack();
    EXPECT_EQ(state.CurrentFile, "C:\\b.mp3");
    EXPECT_FALSE(tracks.unplayable.contains("C:\\b.mp3")) << "it is as any other again";
}

TEST_F(WhileOpening, WhatIsAskedForWhileAFileOpensCountsInstead) {
    const struct {
        const char* what;
        void (*meanwhile)(Player&);
        const char* file;
        PlayStatus status;
        int plays;
    } cases[] = {
        {"stop", [](Player& p) { p.transport.stop(); }, "C:\\1.mp3", kStop, 0},
        {"next", [](Player& p) { p.transport.NextTrack(); }, "C:\\2.mp3", kPlay, 1},
        {"next, after a while",
         [](Player& p) {
             std::this_thread::sleep_for(std::chrono::milliseconds(120));  // the name has come to stand alone by then
             p.transport.NextTrack();
         },
         "C:\\2.mp3", kPlay, 1},
        {"open",
         [](Player& p) {
             p.transport.open({"C:\\0.mp3", 0, 0}, kNoIntent, Transport::Start::Open);
         },
         "C:\\0.mp3", kStop, 0},
        {"poll", [](Player& p) { p.monitor.poll(); }, "C:\\1.mp3", kPlay, 1},
        {"play", [](Player& p) { p.transport.play(); }, "C:\\1.mp3", kPlay, 1},
    };
    for (const auto& c : cases) {
        for (const bool stepped : {false, true}) {
            Player p;
            p.fillList(3);
            p.state.CurrentIndex[0] = 0;
            p.windows.onPump = [&] {
                p.windows.onPump = nullptr;
                c.meanwhile(p);
            };
            if (stepped) {
                p.transport.NextTrack();
            } else {
                p.transport.open({"C:\\1.mp3", 0, 1}, kForward, Transport::Start::Play);
            }
            EXPECT_EQ(p.state.CurrentFile, c.file) << c.what;
            EXPECT_EQ(p.state.PlayerStatus, c.status) << c.what;
            EXPECT_EQ(p.vbmp3.count("play"), c.plays) << c.what;
            if (c.status == kPlay) {
                EXPECT_EQ(p.display.kind + " " + p.display.info, "MP3 MPEG1 Layer3 44.1kHz 128kbps") << c.what;
            }
            // What was stopped half-way is opened by the next play.
            p.transport.play();
            EXPECT_EQ(p.vbmp3.openFile, c.file) << c.what;
            EXPECT_EQ(p.state.PlayerStatus, kPlay) << c.what;
        }
    }
}

TEST_F(LetGo, TheFileGoesOnWhereItWasAndAnotherLosesOnlyItsPlaceAsTheNext) {
    for (const PlayStatus status : {kPlay, kPause, kStop}) {
        Player p;
        p.fillList(3);
        p.playRow(0, kProgram);
        if (status == kPause) p.transport.pause();
        if (status == kStop) p.transport.stop();
        p.vbmp3.positionMs = 12345;
        const auto other = p.transport.letGoOf("C:\\1.mp3");
        EXPECT_EQ(p.vbmp3.nextFile, "");
        EXPECT_EQ(p.vbmp3.openFile, "C:\\0.mp3");
        p.transport.takeUp(*other);
        const auto file = p.transport.letGoOf("c:\\0.MP3");
        EXPECT_EQ(p.vbmp3.openFile, "");
        p.transport.renamed("C:\\0.mp3", "C:\\2.mp3");
        p.transport.takeUp(*file);
        EXPECT_EQ(p.vbmp3.openFile, "C:\\2.mp3");
        EXPECT_EQ(p.state.PlayerStatus, status);
        EXPECT_EQ(p.vbmp3.count("seek 12.345000"), status != kStop);
    }
}

TEST_F(LetGo, AFileThatStaysClosedIsOpenedByTheNextPlayAndAConversionKeepsItsOwn) {
    fillList(2);
    playRow(0, kProgram);
    transport.leaveClosed(*transport.letGoOf("C:\\0.mp3"));
    EXPECT_EQ(state.PlayerStatus, kStop);
    transport.play();
    EXPECT_EQ(vbmp3.openFile, "C:\\0.mp3");
    EXPECT_EQ(state.PlayerStatus, kPlay);
    for (const PlayStatus status : {kDecode, kEncode}) {
        transport.showConversion(status);
        EXPECT_FALSE(transport.letGoOf("C:\\0.mp3"));
        EXPECT_TRUE(transport.letGoOf("C:\\1.mp3"));
        EXPECT_EQ(vbmp3.openFile, "C:\\0.mp3");
    }
}

TEST_F(Repeat, RepeatsWhatCameFromAListOrWasPlayedByTheUserHimself) {
    addMp3("C:\\named.mp3");
    const struct {
        const char* what;
        void (*begin)(Player&);
        bool repeats;
    } cases[] = {
        {"row", [](Player& p) { p.playRow(0, kRepeat); }, true},
        {"command line", [](Player& p) { p.transport.openFirst("C:\\0.mp3", true, true); }, false},
        {"of the last time", [](Player& p) { p.transport.openFirst("C:\\0.mp3", false, true); }, true},
        {"command line, then play",
         [](Player& p) {
             p.transport.openFirst("C:\\0.mp3", true, true);
             p.transport.stop();
             p.transport.play();
         },
         true},
        {"command line, device busy at first",
         [](Player& p) {
             p.vbmp3.playWorks = false;
             p.vbmp3.error = LibraryError::DeviceBusy;
             p.transport.openFirst("C:\\0.mp3", true, true);
             p.vbmp3.playWorks = true;
             p.monitor.retry();
         },
         false},
        {"command line, then on to a row without a gap",
         [](Player& p) {
             p.state.PlayMode = kProgram;
             p.transport.openFirst("C:\\0.mp3", true, true);
             p.goOn();
         },
         true},
    };
    for (const auto& c : cases) {
        Player p;
        p.fillList(2);
        c.begin(p);
        EXPECT_EQ(p.state.PlayerStatus, kPlay) << c.what;
        p.state.PlayMode = kRepeat;
        p.endTrack();
        EXPECT_EQ(p.state.PlayerStatus == kPlay, c.repeats) << c.what;
    }
}

TEST(Modes, AModeFromABrokenFileBeginsAnewAndTheTimeModeShowsAtOnce) {
    Player p;
    p.state.PlayMode = -1;
    p.transport.StepPlayMode();
    EXPECT_EQ(p.display.playMode, "SINGLE");
    p.state.TotalSeconds = 100;
    p.state.PositionSeconds = 10;
    p.transport.StepTimeMode();
    EXPECT_EQ(p.display.time, "01:30");
    p.transport.StepTimeMode();
    EXPECT_EQ(p.display.time, "00:10");
}

// A model of what a user can expect, beside thousands of commands drawn at random.
class RandomUser : public Player {
  public:
    explicit RandomUser(unsigned seed) : chance_(seed) {
        options.PassOverUnplayable = roll(4) > 0;
        options.DeleteFromList = roll(3) == 0;
        options.GaplessNext = roll(2) == 0;
        fillList(1 + roll(6));
        for (int list = 0; list < 3; ++list) tracks.BuildShuffleOrder(list);
        state.PlayMode = roll(4);
    }

    void act() {
        const int rows = tracks.trackCount(0);
        const std::string file = "C:\\" + std::to_string(roll(7)) + ".mp3";
        vbmp3.calls.clear();
        const bool stood = state.PlayerStatus == kStop;
        bool mayPlay = true;
        switch (roll(14)) {
            case 0: what_ = "play", transport.play(); break;
            case 1: what_ = "stop", transport.stop(), mayPlay = false; break;
            case 2: what_ = "pause", transport.pause(), mayPlay = false; break;
            case 3: what_ = "next", step(+1); break;
            case 4: what_ = "previous", step(-1); break;
            case 5:
                what_ = "row";
                if (rows > 0) {
                    const int row = roll(rows);
                    transport.open({tracks.trackPath(0, row), 0, row}, kForward, Transport::Start::Play);
                }
                break;
            case 6: what_ = "drop", transport.open({file}, kNoIntent, Transport::Start::Play); break;
            case 7: what_ = "gone", files.remove(file), mayPlay = false; break;
            case 8: what_ = "back", files.add(file), mayPlay = false; break;
            case 9:
                what_ = "end";
                mayPlay = state.PlayerStatus == kPlay;
                endTrack();
                break;
            case 10:
                what_ = "gapless";
                mayPlay = false;
                if (!vbmp3.nextFile.empty() && state.PlayerStatus == kPlay) goOn();
                break;
            case 11: what_ = "mode", transport.StepPlayMode(), mayPlay = false; break;
            case 12:
                what_ = "remove row";
                mayPlay = false;
                if (rows > 0) removeRow(roll(rows));
                break;
            default:
                what_ = "poll";
                monitor.poll();
                mayPlay = false;
        }
        if (!mayPlay && stood) {
            EXPECT_EQ(vbmp3.count("play"), 0) << what_;
        }
        check();
    }

  private:
    int roll(int sides) { return static_cast<int>(chance_() % static_cast<unsigned>(sides)); }

    void step(int direction) {
        const int rows = tracks.trackCount(0), from = state.CurrentIndex[0];
        std::string expected;
        int index = from;
        for (int i = 0; i < rows && expected.empty() && state.PlayMode != kRandom; ++i) {
            index = direction > 0 ? NextIndex(index, rows) : PreviousIndex(index, rows);
            if (files.fileExists(tracks.trackPath(0, index))) expected = tracks.trackPath(0, index);
            if (!options.PassOverUnplayable) break;
        }
        const bool same = !options.DeleteFromList;
        direction > 0 ? transport.NextTrack() : transport.PreviousTrack();
        if (!expected.empty() && same) {
            EXPECT_EQ(state.CurrentFile, expected) << what_;
        }
    }

    void removeRow(int row) {
        tracks.lists[0].erase(tracks.lists[0].begin() + row);
        if (row <= state.CurrentIndex[0]) tracks.onCurrentMoved(0, state.CurrentIndex[0] - 1);
        removed_ = true;
    }

    void check() {
        if (what_ == "row" || what_ == "next" || what_ == "previous") removed_ = options.DeleteFromList;
        if (what_ == "drop") removed_ = true;
        if (state.PlayerStatus == kPlay) {
            EXPECT_EQ(vbmp3.openFile, state.CurrentFile) << what_;
            EXPECT_EQ(vbmp3.playing.state, PlayReport::State::Playing) << what_;
            EXPECT_EQ(display.info.find("できません"), std::string::npos) << what_;
        }
        EXPECT_NE(state.PlayerStatus, kWait) << what_;
        const int index = state.CurrentIndex[0];
        EXPECT_LT(index, std::max(1, tracks.trackCount(0))) << what_;
        if (!removed_ && index >= 0) {
            EXPECT_EQ(tracks.trackPath(0, index), state.CurrentFile) << what_;
        }
        if (state.PlayIntent == kNoIntent) {
            EXPECT_EQ(vbmp3.nextFile, "") << what_;
        }
    }

    std::mt19937 chance_;
    std::string what_;
    bool removed_ = true;  // the current row went, or the current file is of no row
};

TEST(Transport, ARandomUserNeverSeesAWrongRowNorHearsAnythingAfterAStop) {
    for (unsigned seed = 0; seed < 60 && !testing::Test::HasFailure(); ++seed) {
        RandomUser user(seed);
        for (int i = 0; i < 150 && !testing::Test::HasFailure(); ++i) user.act();
    }
}

}  // namespace
}  // namespace quenlox
