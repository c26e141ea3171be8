// The playback side of the program on the fakes.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "state/global_state.h"
#include "playback/media_engine.h"
#include "playback/pitch_control.h"
#include "playback/play_state_monitor.h"
#include "playback/transport.h"
#include "tests/fakes/fake_display.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_media_control.h"
#include "state/options.h"
#include "tests/fakes/fake_tracks.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {

struct Player {
    GlobalState state;
    FakeVbmp3 vbmp3;
    FakeMediaControl mci;
    FakeFileSystem files;
    FakeWindowSystem windows;
    FakeDisplay display;
    Options options;
    FakeTracks tracks{state};
    MediaEngine engine{state, options, vbmp3, mci, files, windows, display};
    PitchControl pitch{state, vbmp3, options, engine.status()};
    Transport transport{{state, engine, pitch, vbmp3, tracks, options}};
    PlayStateMonitor monitor{state, engine, transport, vbmp3, mci, options};

    // A file on the disk that the decoding library knows.
    void addMp3(const std::string& path, int length = 60, const std::string& title = {}) {
        files.add(path);
        vbmp3.addFile(path, FileType{.mpeg = true, .lyrics = true}, length, title);
    }
    // List A of `count` tracks "C:\\0.mp3", "C:\\1.mp3" ...
    void fillList(int count, int list = 0) {
        for (int i = 0; i < count; ++i) {
            const std::string path = "C:\\" + std::to_string(i) + ".mp3";
            addMp3(path);
            tracks.lists[static_cast<std::size_t>(list)].push_back(path);
        }
    }
    void playRow(int row, int mode) {
        state.PlayMode = mode;
        transport.open({tracks.trackPath(0, row), 0, row}, kForward, Transport::Start::Play);
    }
    void open(const std::string& path) {
        state.CurrentFile = path;
        engine.OpenMedia();
    }
    // The decoding library has come to the end of what it plays.
    void endTrack() {
        vbmp3.playing.state = PlayReport::State::Stopped;
        monitor.poll();
    }
    // The library has gone on to the next file and says so.
    void goOn() {
        vbmp3.openFile = vbmp3.nextFile;
        vbmp3.nextFile.clear();
        vbmp3.listener(LibraryEvent::NextTrack);
        windows.pumpMessages();
    }
};

struct PlayerTest : testing::Test, Player {};

}  // namespace quenlox
