// A main window with real playback over fakes, and small skin packages made of single-coloured pictures.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "playback/media_engine.h"
#include "playback/pitch_control.h"
#include "playback/play_state_monitor.h"
#include "playback/transport.h"
#include "playback/volume_control.h"
#include "skin/form_top.h"
#include "tests/fakes/bmp_of.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_media_control.h"
#include "tests/fakes/fake_mixer.h"
#include "state/option_store.h"
#include "tests/fakes/fake_shell.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_tracks.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {

class SkinTest : public ::testing::Test {
  protected:
    static constexpr Color kBack{10, 20, 30}, kBar{200, 0, 0}, kVolume{0, 0, 90}, kLevel{0, 255, 0}, kPanel{90, 90, 0};
    // Colours of the button pictures: released and pressed, playback and command.
    static Color playback(int n, bool pressed) { return {static_cast<std::uint8_t>(100 + n), 1, pressed ? std::uint8_t{255} : std::uint8_t{0}}; }
    static Color command(int n, bool pressed) { return {static_cast<std::uint8_t>(150 + n), 2, pressed ? std::uint8_t{255} : std::uint8_t{0}}; }
    static constexpr const char* kFolder = "C:\\Quenlox\\skin\\default\\";

    void SetUp() override {
        files.add("C:\\Quenlox\\Quenlox.ini", "");
        addPackage(kFolder, "default", kDefinition);
        top = std::make_unique<FormTop>(state, options, files, dialogs, shell, painter, values);
        engine = std::make_unique<MediaEngine>(state, options, vbmp3, mci, files, windows, *top);
        pitch = std::make_unique<PitchControl>(state, vbmp3, options, engine->status());
        transport = std::make_unique<Transport>(Transport::Parts{state, *engine, *pitch, vbmp3, tracks, options});
        monitor = std::make_unique<PlayStateMonitor>(state, *engine, *transport, vbmp3, mci, options);
        volume = std::make_unique<VolumeControl>(state, mixer, options);
        top->realise(windows);
        host = windows.hostOf(*top);
        top->connect({transport.get(), engine.get(), monitor.get(), pitch.get(), volume.get()},
                     {&list, &optionsWindow, &tag, &convert, &equalizer, &lyrics, &about}, hooks());
        volume->open();
    }
    virtual FormTop::Hooks hooks() { return {}; }

    void addPackage(const std::string& folder, const std::string& name, const std::string& definition) {
        files.add(folder + name + ".tsk", definition);
        files.add(folder + "main_back.bmp", BmpOf(Surface(200, 100, kBack)));
        files.add(folder + "main_bar.bmp", BmpOf(Surface(100, 4, kBar)));
        files.add(folder + "main_vol.bmp", BmpOf(Surface(10, 50, kVolume)));
        files.add(folder + "main_level.bmp", BmpOf(Surface(10, 50, kLevel)));
        files.add(folder + "main_panel.bmp", BmpOf(Surface(70, 10, kPanel)));
        for (int n = 0; n < kButtonCount; ++n) {
            for (const bool pressed : {false, true}) {
                const std::string tail = pressed ? "2.bmp" : "1.bmp";
                files.add(folder + "cmd_" + kPlaybackButtonNames[n] + tail, BmpOf(Surface(8, 8, playback(n, pressed))));
                files.add(folder + "btn_" + kCommandButtonNames[n] + tail, BmpOf(Surface(6, 6, command(n, pressed))));
            }
        }
    }
    void load() { top->LoadSkin(std::string(kFolder) + "default.tsk"); }
    Surface::Pixel at(int x, int y) { return top->picture()->at(x, y); }
    static Surface::Pixel pixel(Color color) { return Surface::ToPixel(color); }
    void openFile(const std::string& path, FileType type = kMpegFile, int length = 100) {
        files.add(path);
        vbmp3.addFile(path, type, length, "Title");
        transport->open({path}, kNoIntent, Transport::Start::Open);
    }
    // List A of C:\\1.mp3, C:\\2.mp3 and C:\\3.mp3.
    void fillList() {
        for (const char* name : {"C:\\1.mp3", "C:\\2.mp3", "C:\\3.mp3"}) {
            files.add(name);
            vbmp3.addFile(name);
            tracks.lists[0].push_back(name);
        }
    }
    void click(Point p, int button = 1) {
        top->Form_MouseDown(button, 0, p);
        top->Form_MouseUp(button, 0, p);
    }

    // Buttons at y 60 from x 10 in steps of 10, commands at y 2 likewise, bar at 50,50, volume at 180,10.
    static constexpr const char* kDefinition =
        "[Main]\nVer=4\nSize=200,100\nRGB=1,2,3\nBox=1\n"
        "[Label]\nLabelA=5,20,60,10,6,255,255,255\nLabelC=5,32,60,10,6,250,250,250\nLabelF=70,20,60,10,6,240,240,240\n"
        "[Button]\nButtonA=10,60\nButtonB=20,60\nButtonC=30,60\nButtonD=40,60\nButtonE=50,60\nButtonF=60,60\nButtonG=70,60\n"
        "[Command]\nCommandA=10,2\nCommandB=20,2\nCommandC=30,2\nCommandD=40,2\nCommandE=50,2\nCommandF=60,2\nCommandG=70,2\n"
        "[Disp]\nDispA=10,80\nDispB=100,60\nDispD=182,10,6,50,7,7,7\nBar=50,50\nVol=180,10\n";
    static constexpr Point kPlayAt{12, 62}, kPauseAt{22, 62}, kBarAt{50, 51};

    GlobalState state;
    OptionStore options;
    FakeFileSystem files;
    FakeDialogs dialogs;
    FakeShell shell;
    FakeTextPainter painter;
    FakeVbmp3 vbmp3;
    FakeMediaControl mci;
    FakeMixer mixer;
    FakeTracks tracks{state};
    FakeWindowSystem windows;
    SplitValues values;
    Form list{"FormList", Form::Kind::Sizeable}, optionsWindow{"FormOpt", Form::Kind::Dialog}, tag{"FormTag", Form::Kind::Dialog},
        convert{"FormConv", Form::Kind::Dialog}, equalizer{"FormGra", Form::Kind::Dialog}, lyrics{"FormLyrics", Form::Kind::Sizeable},
        about{"FormInfo", Form::Kind::Dialog};
    std::unique_ptr<FormTop> top;
    std::unique_ptr<MediaEngine> engine;
    std::unique_ptr<PitchControl> pitch;
    std::unique_ptr<Transport> transport;
    std::unique_ptr<PlayStateMonitor> monitor;
    std::unique_ptr<VolumeControl> volume;
    FakeFormHost* host = nullptr;
};

}  // namespace quenlox
