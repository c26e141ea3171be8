#include "playback/media_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playback/player.h"
#include "text/paths.h"

namespace quenlox {
namespace {

using OpenMedia = PlayerTest;
using PlayMedia = PlayerTest;

using testing::ElementsAre;

TEST(MediaKind, IsToldByTheExtensionElseByTheDecodingLibrary) {
    const struct {
        const char* path;
        int type;       // what the library says, negative: refused
        int kind;
        const char* name;
    } cases[] = {
        {"C:\\SONG.MID", -2, 10, "MIDI"},        {"C:\\a.rmi", 1, 10, "MIDI"},
        {"D:\\Track07.CDA", -2, 20, "CD-DA"},    {"C:\\a.Wma", 1, 30, "WMA"},
        {"C:\\song.MP3", 1, 3, "MP3"},           {"C:\\a.wav", 64, 1, "WAV"},
        {"C:\\a.wav", 0, 2, "WAV"},              {"C:\\a.WAV", -2, 40, "WAV"},
        {"C:\\a.rmp", 2, 4, "RMP"},              {"C:\\a.mp3", 2 | 64 | 1, 4, "RMP"},
        {"C:\\a.mp3", 64 | 1, 1, "WAV"},         {"C:\\a.mp3", 1 | 4, 203, "MP3"},
        {"C:\\a.mp3", 1 | 4 | 16, 103, "MP3"},   {"C:\\a.mp3", 1 | 16 | 32, 1103, "MP3"},
        {"C:\\a.mp3", 1 | 4 | 32, 1203, "MP3"},  {"C:\\a.txt", -2, 0, ""},
        {"mid", -2, 0, ""},                      {"x", 1, 3, "MP3"},
    };
    for (const auto& c : cases) {
        Player p;
        if (c.type >= 0) p.vbmp3.addFile(c.path, c.type);
        p.files.add(c.path);
        p.open(c.path);
        EXPECT_EQ(p.state.MediaKind.code(), c.kind) << c.path << ' ' << c.type;
        EXPECT_EQ(p.display.kind, c.name) << c.path;
        EXPECT_EQ(p.state.MediaKindName, c.name);
    }
}

TEST_F(OpenMedia, ClosesBothBackEndsBeforeAnythingElse) {
    addMp3("C:\\a.mp3");
    open("C:\\a.mp3");
    EXPECT_THAT(vbmp3.calls, ElementsAre("clearLyrics", "close", "open C:\\a.mp3"));
    EXPECT_THAT(mci.commands, ElementsAre("stop MediaFile", "close MediaFile"));
    EXPECT_EQ(state.PlayerStatus, kLoad);
    EXPECT_EQ(display.status, "LOAD");
    EXPECT_EQ(windows.pumps, 1);
}

TEST_F(OpenMedia, ShowsWhatTheFileSaysOfItself) {
    const struct {
        int type;
        const char* title;
        int vbr, titleMode;
        const char *titleShown, *information;
    } cases[] = {
        {VBMP3_TYPE_MPEG, "Song", 0, 1, "Song", "MPEG1 Layer3 44.1kHz 128kbps"},
        {VBMP3_TYPE_MPEG, "Song", 1, 0, "曲.mp3", "MPEG1 Layer3 44.1kHz 128kbps VBR"},
        {VBMP3_TYPE_MPEG, "", 0, 1, "no title", "MPEG1 Layer3 44.1kHz 128kbps"},
        {VBMP3_TYPE_WAVE, "", 0, 0, "曲.mp3", "WAVE PCM"},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.add("C:\\音楽\\曲.mp3");
        p.vbmp3.addFile("C:\\音楽\\曲.mp3", c.type, 225, c.title).variableBitRate = c.vbr;
        p.state.TitleMode = c.titleMode;
        p.open("C:\\音楽\\曲.mp3");
        EXPECT_EQ(p.display.title, c.titleShown);
        EXPECT_EQ(p.display.info, c.information);
        EXPECT_EQ(p.display.length, "03:45");
        EXPECT_EQ(p.state.TotalSeconds, 225);
    }
}

TEST_F(OpenMedia, WhatCannotBeOpenedShowsItselfAndWhy) {
    using enum OpenResult;
    const struct {
        const char* path;
        bool there;
        int error;  // of the library, or of the media control
        Opening opening;
        const char* why;
        int status;
    } cases[] = {
        {"", false, 0, {Nothing, false}, "", kStop},
        {"C:\\gone.mp3", false, 0, {Missing, true}, "ファイルがありません", kStop},
        {"X:\\gone.mp3", false, 0, {Missing, false}, "ファイルがありません", kStop},  // so is its drive
        {"C:\\damaged.mp3", true, VBMP3_ERROR_FORMAT, {Refused, true}, "再生できません", kLoad},
        {"C:\\locked.mp3", true, VBMP3_ERROR_NOT_FOUND, {Refused, false}, "再生できません", kLoad},
        {"C:\\damaged.wma", true, 296, {Refused, true}, "再生できません", kLoad},
        {"C:\\a.mid", true, 343, {Refused, false}, "再生できません", kLoad},  // no device for it
        {"C:\\damaged.wav", true, 296, {Refused, true}, "再生できません", kLoad},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.driveList = {{"C:\\", DriveType::Fixed}};
        p.addMp3("C:\\before.mp3", 225, "Before");
        p.open("C:\\before.mp3");
        if (c.there) p.files.add(c.path);
        p.vbmp3.error = c.error;
        for (const char* command : {"open \"C:\\damaged.wma\" alias MediaFile", "open \"C:\\damaged.wav\" alias MediaFile",
                                    "open \"C:\\a.mid\" type sequencer alias MediaFile"})
            p.mci.answers[command] = {c.error, ""};
        p.state.CurrentFile = c.path;
        EXPECT_EQ(p.engine.OpenMedia(), c.opening) << c.path;
        EXPECT_EQ(p.state.PlayerStatus, c.status) << c.path;
        EXPECT_EQ(p.display.title, FileNameOf(c.path));
        EXPECT_EQ(p.display.info, c.why) << c.path;
        EXPECT_EQ(p.display.length + p.display.time + p.display.kind, "00:0000:00") << c.path;
        EXPECT_EQ(p.state.MediaKind.code(), 0);
        EXPECT_FALSE(p.engine.isOpen());
    }
}

TEST_F(OpenMedia, GoesThroughTheMediaControlForItsKinds) {
    const struct {
        const char* path;
        std::vector<std::string> commands;  // behind the closing ones
        const char* title;
    } cases[] = {
        {"C:\\a b.mid", {"open \"C:\\a b.mid\" type sequencer alias MediaFile", "set MediaFile time format ms", "status MediaFile length"}, "Tune"},
        {"D:\\Track12.cda", {"open \"D:\\Track12.cda\" alias MediaFile", "set MediaFile time format ms",
                             "status MediaFile position track 12", "status MediaFile length track 12"}, "Compact Disk"},
        {"C:\\a.wma", {"open \"C:\\a.wma\" alias MediaFile", "set MediaFile time format ms", "status MediaFile length"}, "a.wma"},
        {"C:\\a.wav", {"open \"C:\\a.wav\" alias MediaFile", "set MediaFile time format ms", "status MediaFile length"}, "a.wav"},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.add(c.path, std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0C\0\xFF\3\4Tune\0\xFF\x2F\0", 34));
        p.mci.answers["status MediaFile length"] = {0, "95500"};
        p.mci.answers["status MediaFile length track 12"] = {0, "95999"};
        p.mci.answers["status MediaFile position track 12"] = {0, "180000"};
        p.open(c.path);
        std::vector<std::string> expected{"stop MediaFile", "close MediaFile"};
        expected.insert(expected.end(), c.commands.begin(), c.commands.end());
        EXPECT_EQ(p.mci.commands, expected) << c.path;
        EXPECT_EQ(p.state.TotalSeconds, 95) << c.path;
        EXPECT_EQ(p.display.length, "01:35");
        EXPECT_EQ(p.display.title, c.title);
        EXPECT_EQ(p.state.TrackStartMs, p.state.MediaKind.base == kCdAudio ? 180000 : 0);
    }
}

TEST_F(OpenMedia, ATrackWhoseDriveHasAnotherLetterNowIsFoundWhereTheDiscIs) {
    const struct {
        const char* chosen;  // the drive of the options
        std::vector<const char*> tracks;
        const char* opened;  // null: nothing
    } cases[] = {
        {"", {"D:\\Track02.cda", "E:\\Track02.cda"}, "D:\\Track02.cda"},
        {"E:", {"D:\\Track02.cda", "E:\\Track02.cda"}, "E:\\Track02.cda"},
        {"E:", {"X:\\Track02.cda", "E:\\Track02.cda"}, "X:\\Track02.cda"},  // it is where it was
        {"E:", {"D:\\Track02.cda"}, nullptr},
        {"", {"C:\\Track02.cda"}, nullptr},  // no drive for discs
    };
    for (const auto& c : cases) {
        Player p;
        p.files.driveList = {{"C:\\", DriveType::Fixed}, {"D:\\", DriveType::CdRom}, {"E:\\", DriveType::CdRom}};
        for (const char* track : c.tracks) p.files.add(track);
        p.state.DefaultCdDrive = c.chosen;
        p.open("X:\\Track02.cda");
        EXPECT_EQ(p.state.CurrentFile, "X:\\Track02.cda") << "as the lists know it";
        const std::string open = c.opened ? std::string("open \"") + c.opened + "\" alias MediaFile" : "";
        EXPECT_EQ(p.mci.count(open), c.opened ? 1 : 0) << c.chosen << ' ' << c.tracks.front();
        EXPECT_EQ(p.state.MediaKind.base, c.opened ? kCdAudio : kUnknownKind);
    }
}

TEST_F(OpenMedia, AnotherFileOpenedWhileMessagesAreHandledWins) {
    addMp3("C:\\slow.mp3", 100);
    addMp3("C:\\other.mp3", 200);
    windows.onPump = [&] {
        windows.onPump = nullptr;
        open("C:\\other.mp3");
    };
    open("C:\\slow.mp3");
    EXPECT_EQ(display.title, "other.mp3");
    EXPECT_EQ(state.TotalSeconds, 200);
}

TEST_F(PlayMedia, TellsByItsResultWhatBecameOfThePlayerStatus) {
    using enum PlayResult;
    const struct {
        const char* path;
        int code;         // error number of the library, or of the media control; 0: it plays
        PlayResult result;
        int status;       // 4 beforehand
        const char* command;
    } cases[] = {
        {"C:\\a.mp3", 0, Playing, kPlay, nullptr},
        {"C:\\a.mp3", 25, Waiting, kWait, nullptr},
        {"C:\\a.mp3", 3, Failed, kLoad, nullptr},
        {"C:\\a.mid", 0, Playing, kPlay, "play MediaFile from 0"},
        {"C:\\a.mid", 337, Waiting, kWait, "play MediaFile from 0"},
        {"C:\\a.wma", 277, Failed, kLoad, "play MediaFile from 0"},
        {"C:\\a.wav", 0, Playing, kPlay, "play MediaFile from 0"},
        {"D:\\Track02.cda", 0, Playing, kPlay, "play MediaFile from 7000"},
        {"D:\\Track02.cda", 337, Failed, kLoad, "play MediaFile from 7000"},
        {"C:\\a.txt", 0, Failed, kLoad, nullptr},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.add(c.path);
        p.vbmp3.addFile("C:\\a.mp3");
        p.mci.answers["status MediaFile position track 02"] = {0, "7000"};
        if (c.command) p.mci.answers[c.command] = {c.code, ""};
        p.vbmp3.playWorks = c.code == 0;
        p.vbmp3.error = c.code;
        p.open(c.path);
        EXPECT_EQ(p.engine.PlayMedia(), c.result) << c.path << ' ' << c.code;
        EXPECT_EQ(p.state.PlayerStatus, c.status) << c.path << ' ' << c.code;
        EXPECT_EQ(p.display.status, StatusWord(c.status, 0));
        if (c.command) {
            EXPECT_EQ(p.mci.commands.back(), c.command);
        }
    }
    Player p;
    EXPECT_EQ(p.engine.PlayMedia(), Nothing);
    EXPECT_EQ(p.vbmp3.count("play"), 0);
}

TEST_F(PlayMedia, SaysThatThereIsNoSoundDeviceAsLongAsThatIsSo) {
    addMp3("C:\\a.mp3");
    open("C:\\a.mp3");
    const std::string format = display.info;
    vbmp3.deviceThere = false;
    engine.PlayMedia();
    EXPECT_EQ(display.info, format + " ﾃﾞﾊﾞｲｽなし");
    engine.status().showLyricsMarker("+W");
    EXPECT_EQ(display.info, format + "+W ﾃﾞﾊﾞｲｽなし");
    vbmp3.deviceThere = true;
    monitor.Timer1_Timer();
    EXPECT_EQ(display.info, format + "+W") << "it is back";
    vbmp3.deviceThere = false;
    monitor.Timer1_Timer();
    engine.StopMedia();
    EXPECT_EQ(display.info, format + "+W") << "nothing plays";
    EXPECT_EQ((Information{"MPEG+", "+L", false}).text(), "MPEG+");
}

TEST(PauseMedia, GoesToTheBackEndThatPlaysAndKind40OnlyChangesItsWord) {
    const struct {
        const char* path;
        std::vector<std::string> library;
        std::vector<std::string> commands;
    } cases[] = {
        {"C:\\a.mp3", {"pause", "restart"}, {}},
        {"C:\\a.mid", {}, {"pause MediaFile", "play MediaFile"}},
        {"D:\\Track01.cda", {}, {"pause MediaFile", "play MediaFile"}},
        {"C:\\a.wma", {}, {"pause MediaFile", "play MediaFile"}},
        {"C:\\a.wav", {}, {}},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.add(c.path);
        p.vbmp3.addFile("C:\\a.mp3");
        p.open(c.path);
        p.engine.PlayMedia();
        p.vbmp3.calls.clear();
        p.mci.commands.clear();
        p.engine.PauseMedia();
        EXPECT_EQ(p.display.status, "PAUSE") << c.path;
        p.engine.PauseMedia();
        EXPECT_EQ(p.display.status, "PLAY") << c.path;
        EXPECT_EQ(p.vbmp3.calls, c.library) << c.path;
        EXPECT_EQ(p.mci.commands, c.commands) << c.path;
    }
}

TEST(SeekMedia, MovesInProportion) {
    const struct {
        const char* path;
        PlayStatus status;
        std::vector<std::string> calls;  // of either back end
    } cases[] = {
        {"C:\\a.mp3", kPlay, {"seek 47.500000"}},
        {"C:\\a.mid", kPlay, {"play MediaFile from 47500"}},
        {"C:\\a.wma", kPause, {"play MediaFile from 47500", "pause MediaFile"}},
        {"D:\\Track02.cda", kPlay, {"play MediaFile from 54500"}},
        {"C:\\a.wav", kPlay, {}},
        {"C:\\a.txt", kPlay, {}},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.add(c.path);
        p.vbmp3.addFile("C:\\a.mp3");
        p.mci.answers["status MediaFile position track 02"] = {0, "7000"};
        p.open(c.path);
        p.state.TotalSeconds = 95;
        p.state.PlayerStatus = c.status;
        p.vbmp3.calls.clear();
        p.mci.commands.clear();
        p.engine.SeekMedia(0.5);
        std::vector<std::string> calls = p.vbmp3.calls;
        calls.insert(calls.end(), p.mci.commands.begin(), p.mci.commands.end());
        EXPECT_EQ(calls, c.calls) << c.path;
        EXPECT_EQ(p.state.PositionSeconds, c.calls.empty() ? 0 : 48) << c.path;
    }
}

TEST(StopMedia, ResetsTimeAndStatusAndStopsTheBackEndThatPlays) {
    for (const char* path : {"C:\\a.mp3", "C:\\a.mid"}) {
        Player p;
        p.files.add(path);
        p.vbmp3.addFile("C:\\a.mp3");
        p.open(path);
        p.engine.PlayMedia();
        p.engine.status().ShowTime(30);
        p.vbmp3.calls.clear();
        p.mci.commands.clear();
        p.engine.StopMedia();
        EXPECT_EQ(p.display.status, "STOP");
        EXPECT_EQ(p.display.time, "00:00");
        EXPECT_EQ(p.display.bar, 0);
        EXPECT_EQ(p.vbmp3.count("stop"), p.state.MediaKind.playedByVbmp3());
        EXPECT_EQ(p.mci.count("stop MediaFile"), !p.state.MediaKind.playedByVbmp3());
    }
}

// The other words are seen by the tests of what brings them about.
TEST(StatusDisplay, APitchShowsWhilePlayingOnlyAndAnUnknownCodeIsAStop) {
    const struct {
        int status, pitch;
        const char* word;
    } cases[] = {{kPlay, 9, "PLAY"},     {kPause, 1, "PAUSE"},   {kError, 0, "ERROR"}, {kDecode, 0, "Decode"},
                 {kEncode, 0, "Encode"}, {8, 0, "STOP"},         {-1, 0, "STOP"}};
    for (const auto& c : cases) EXPECT_EQ(StatusWord(c.status, c.pitch), c.word) << c.status;
}

TEST(StatusDisplay, ShowsElapsedOrRemainingTimeAndAlwaysTheElapsedFraction) {
    const struct {
        int total, seconds, timeMode;
        PlayStatus status;
        const char* time;   // "?" beforehand
        double bar;
    } cases[] = {
        {100, 75, 0, kPlay, "01:15", 0.75}, {100, 75, 1, kPlay, "00:25", 0.75},  {12000, 6000, 0, kPlay, "100:00", 0.5},
        {100, 105, 1, kPlay, "00:-05", 1},  {100, 0, 0, kStop, "00:00", 0},      {0, 5, 0, kPlay, "00:05", 0},
        {100, 50, 0, kEncode, "?", 0.5},    {100, 50, 0, kDecode, "00:50", 0.5},
    };
    for (const auto& c : cases) {
        Player p;
        p.state.TotalSeconds = c.total;
        p.state.TimeMode = c.timeMode;
        p.state.PlayerStatus = c.status;
        p.display.time = "?";
        p.engine.status().ShowTime(c.seconds);
        EXPECT_EQ(p.display.time, c.time);
        EXPECT_DOUBLE_EQ(p.display.bar, c.bar);
    }
}

}  // namespace
}  // namespace quenlox
