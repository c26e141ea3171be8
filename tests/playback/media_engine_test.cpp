#include "playback/media_engine.h"

#include <gtest/gtest.h>

#include "tests/playback/player.h"
#include "text/paths.h"

namespace quenlox {
namespace {

using OpenMedia = PlayerTest;
using PlayMedia = PlayerTest;

TEST(MediaKind, IsToldByTheExtensionElseByTheDecodingLibrary) {
    const struct {
        const char* path;
        std::optional<FileType> type;  // what the library says, nothing: refused
        int kind;
        const char* name;
    } cases[] = {
        {"C:\\SONG.MID", {}, 10, "MIDI"},
        {"C:\\a.rmi", kMpegFile, 10, "MIDI"},
        {"D:\\Track07.CDA", {}, 20, "CD-DA"},
        {"C:\\a.Wma", kMpegFile, 30, "WMA"},
        {"C:\\song.MP3", kMpegFile, 3, "MP3"},
        {"C:\\a.wav", kWaveFile, 1, "WAV"},
        {"C:\\a.wav", FileType{}, 2, "WAV"},
        {"C:\\a.WAV", {}, 40, "WAV"},
        {"C:\\a.rmp", kRmpFile, 4, "RMP"},
        {"C:\\a.mp3", FileType{.mpeg = true, .rmp = true, .wave = true}, 4, "RMP"},
        {"C:\\a.mp3", FileType{.mpeg = true, .wave = true}, 1, "WAV"},
        {"C:\\a.mp3", FileType{.mpeg = true, .id3v1 = true}, 203, "MP3"},
        {"C:\\a.mp3", FileType{.mpeg = true, .id3v1 = true, .id3v2 = true}, 103, "MP3"},
        {"C:\\a.mp3", FileType{.mpeg = true, .id3v2 = true, .lyrics = true}, 1103, "MP3"},
        {"C:\\a.mp3", FileType{.mpeg = true, .id3v1 = true, .lyrics = true}, 1203, "MP3"},
        {"C:\\a.txt", {}, 0, ""},
        {"mid", {}, 0, ""},
        {"x", kMpegFile, 3, "MP3"},
    };
    for (const auto& c : cases) {
        Player p;
        if (c.type) p.vbmp3.addFile(c.path, *c.type);
        p.files.add(c.path);
        p.open(c.path);
        EXPECT_EQ(p.state.MediaKind.code(), c.kind) << c.path << ' ' << c.kind;
        EXPECT_EQ(p.display.kind, c.name) << c.path;
        EXPECT_EQ(p.state.MediaKindName, c.name);
    }
}

TEST_F(OpenMedia, ShowsWhatTheFileSaysOfItself) {
    const struct {
        FileType type;
        const char* title;
        bool vbr;
        int titleMode;
        const char *titleShown, *information;
    } cases[] = {
        {kMpegFile, "Song", false, 1, "Song", "MPEG1 Layer3 44.1kHz 128kbps"},
        {kMpegFile, "Song", true, 0, "曲.mp3", "MPEG1 Layer3 44.1kHz 128kbps VBR"},
        {kMpegFile, "", false, 1, "no title", "MPEG1 Layer3 44.1kHz 128kbps"},
        {kWaveFile, "", false, 0, "曲.mp3", "WAVE PCM"},
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
        LibraryError error;
        int code;  // of the media control
        Opening opening;
        const char* why;
        int status;
    } cases[] = {
        {"", false, LibraryError::None, 0, {Nothing, false}, "", kStop},
        {"C:\\gone.mp3", false, LibraryError::None, 0, {Missing, true}, "ファイルがありません", kStop},
        {"X:\\gone.mp3", false, LibraryError::None, 0, {Missing, false}, "ファイルがありません", kStop},  // so is its drive
        {"C:\\damaged.mp3", true, LibraryError::Format, 0, {Refused, true}, "再生できません", kLoad},
        {"C:\\locked.mp3", true, LibraryError::NotFound, 0, {Refused, false}, "再生できません", kLoad},
        {"C:\\damaged.wma", true, LibraryError::None, 296, {Refused, true}, "再生できません", kLoad},
        {"C:\\a.mid", true, LibraryError::None, 343, {Refused, false}, "再生できません", kLoad},  // no device for it
        {"C:\\damaged.wav", true, LibraryError::None, 296, {Refused, true}, "再生できません", kLoad},
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
            p.mci.answers[command] = {c.code, ""};
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

TEST_F(OpenMedia, EachBackEndIsGivenItsOrdersFromOpeningToTheStop) {
    const std::string media = " alias MediaFile", ms = "set MediaFile time format ms",
                      length = "status MediaFile length";
    const struct {
        const char* path;
        const char* title;
        bool asked;                      // the library, before the media control is
        std::vector<std::string> open;   // of the media control
        std::vector<std::string> later;  // paused, on, to the middle, paused there, stopped
    } cases[] = {
        {"C:\\a.mp3", "a.mp3", true, {}, {"pause", "restart", "seek 47.500000", "seek 47.500000", "stop"}},
        {"C:\\a b.mid",
         "Tune",
         false,
         {"open \"C:\\a b.mid\" type sequencer" + media, ms, length},
         {"pause MediaFile", "play MediaFile", "play MediaFile from 47500", "play MediaFile from 47500",
          "pause MediaFile", "stop MediaFile"}},
        {"D:\\Track12.cda",
         "Compact Disk",
         false,
         {"open \"D:\\Track12.cda\"" + media, ms, "status MediaFile position track 12",
          "status MediaFile length track 12"},
         {"pause MediaFile", "play MediaFile", "play MediaFile from 227500", "play MediaFile from 227500",
          "pause MediaFile", "stop MediaFile"}},
        {"C:\\a.wma",
         "a.wma",
         false,
         {"open \"C:\\a.wma\"" + media, ms, length},
         {"pause MediaFile", "play MediaFile", "play MediaFile from 47500", "play MediaFile from 47500",
          "pause MediaFile", "stop MediaFile"}},
        // Of a WAVE file that the library refused only the word changes.
        {"C:\\a.wav", "a.wav", true, {"open \"C:\\a.wav\"" + media, ms, length}, {"stop MediaFile"}},
        {"C:\\a.txt", "a.txt", true, {}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        Player p;
        p.files.add(c.path, std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0C\0\xFF\3\4Tune\0\xFF\x2F\0", 34));
        p.vbmp3.addFile("C:\\a.mp3", FileType{.mpeg = true, .lyrics = true}, 95);
        p.mci.answers[length] = {0, "95500"};
        p.mci.answers["status MediaFile length track 12"] = {0, "95999"};
        p.mci.answers["status MediaFile position track 12"] = {0, "180000"};
        const auto calls = [&] {
            auto all = std::exchange(p.vbmp3.calls, {});
            for (std::string& command : std::exchange(p.mci.commands, {})) all.push_back(std::move(command));
            return all;
        };
        p.open(c.path);
        std::vector<std::string> expected{"clearLyrics", "close"};
        if (c.asked) expected.push_back(std::string("open ") + c.path);
        expected.insert(expected.end(), {"stop MediaFile", "close MediaFile"});
        expected.insert(expected.end(), c.open.begin(), c.open.end());
        EXPECT_EQ(calls(), expected);
        EXPECT_EQ(p.display.status, "LOAD");
        EXPECT_EQ(p.display.title, c.title);
        const bool plays = p.engine.isOpen();
        EXPECT_EQ(p.display.length, plays ? "01:35" : "00:00");
        EXPECT_EQ(p.state.TrackStartMs, p.state.MediaKind.base == kCdAudio ? 180000 : 0);
        p.engine.PlayMedia();
        calls();
        std::string words;
        const auto act = [&](void (MediaEngine::*order)()) {
            (p.engine.*order)();
            words += p.display.status + " ";
        };
        act(&MediaEngine::PauseMedia);
        act(&MediaEngine::PauseMedia);
        p.engine.SeekMedia(0.5);
        const bool moves = c.later.size() > 1;
        EXPECT_EQ(p.state.PositionSeconds, moves ? 48 : 0);
        p.state.PlayerStatus = plays ? kPause : kLoad;
        p.engine.SeekMedia(0.5);
        act(&MediaEngine::StopMedia);
        EXPECT_EQ(words, plays ? "PAUSE PLAY STOP " : "LOAD LOAD STOP ");
        EXPECT_EQ(calls(), c.later);
        EXPECT_EQ(p.display.time, "00:00");
        EXPECT_EQ(p.display.bar, 0);
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
        p.options.DefaultCdDrive = c.chosen;
        p.open("X:\\Track02.cda");
        EXPECT_EQ(p.state.CurrentFile, "X:\\Track02.cda") << "as the lists know it";
        const std::string open = c.opened ? std::string("open \"") + c.opened + "\" alias MediaFile" : "";
        EXPECT_EQ(p.mci.count(open), c.opened ? 1 : 0) << c.chosen << ' ' << c.tracks.front();
        EXPECT_EQ(p.state.MediaKind.base, c.opened ? kCdAudio : kUnknownKind);
    }
}

TEST_F(PlayMedia, TellsByItsResultWhatBecameOfThePlayerStatus) {
    using enum PlayResult;
    const struct {
        const char* path;
        LibraryError error;
        int code;         // error number of the media control; 0: it plays
        PlayResult result;
        int status;  // 4 beforehand
        const char* command;
    } cases[] = {
        {"C:\\a.mp3", LibraryError::None, 0, Playing, kPlay, nullptr},
        {"C:\\a.mp3", LibraryError::DeviceBusy, 0, Waiting, kWait, nullptr},
        {"C:\\a.mp3", LibraryError::NotOpen, 0, Failed, kLoad, nullptr},
        {"C:\\a.mid", LibraryError::None, 0, Playing, kPlay, "play MediaFile from 0"},
        {"C:\\a.mid", LibraryError::None, 337, Waiting, kWait, "play MediaFile from 0"},
        {"C:\\a.wma", LibraryError::None, 277, Failed, kLoad, "play MediaFile from 0"},
        {"C:\\a.wav", LibraryError::None, 0, Playing, kPlay, "play MediaFile from 0"},
        {"D:\\Track02.cda", LibraryError::None, 0, Playing, kPlay, "play MediaFile from 7000"},
        {"D:\\Track02.cda", LibraryError::None, 337, Failed, kLoad, "play MediaFile from 7000"},
        {"C:\\a.txt", LibraryError::None, 0, Failed, kLoad, nullptr},
    };
    for (const auto& c : cases) {
        Player p;
        p.files.add(c.path);
        p.vbmp3.addFile("C:\\a.mp3");
        p.mci.answers["status MediaFile position track 02"] = {0, "7000"};
        if (c.command) p.mci.answers[c.command] = {c.code, ""};
        p.vbmp3.playWorks = c.error == LibraryError::None;
        p.vbmp3.error = c.error;
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

// The other words are seen by the tests of what brings them about.
TEST(StatusDisplay, AnUnknownCodeIsAStop) {
    for (const int status : {8, -1}) EXPECT_EQ(StatusWord(status, 0), "STOP") << status;
}

TEST(StatusDisplay, ShowsElapsedOrRemainingTimeAndAlwaysTheElapsedFraction) {
    const struct {
        int total, seconds, timeMode;
        PlayStatus status;
        const char* time;  // "?" beforehand
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
