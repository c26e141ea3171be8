#include "app/application.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_gogo.h"
#include "tests/fakes/fake_media_control.h"
#include "tests/fakes/fake_mixer.h"
#include "tests/fakes/fake_output_devices.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_shell.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {
namespace {

class ApplicationTest : public ::testing::Test {
  protected:
    void start(const std::string& commandLine = "") {
        application = std::make_unique<Application>(
            Services{windows, painter, dialogs, files, mci, mixer, shell, vbmp3, gogo, random, devices}, commandLine);
        application->load();
    }
    GlobalState& state() { return application->state(); }
    FormTop& top() { return application->top(); }
    void addSong(const std::string& path) {
        files.add(path);
        vbmp3.addFile(path, VBMP3_TYPE_MPEG, 90, "Title");
    }
    void SetUp() override {
        files.add("C:\\Quenlox\\skin\\default\\default.tsk", "[Main]\nVer=4\nBox=1\nSize=100,50\n");
        mixer.lines[Mixer::kSpeakers].value = 32768;
    }
    std::size_t placeOf(const std::string& call) const {
        return static_cast<std::size_t>(std::ranges::find(vbmp3.calls, call) - vbmp3.calls.begin());
    }

    FakeWindowSystem windows;
    FakeTextPainter painter;
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeMediaControl mci;
    FakeMixer mixer;
    FakeShell shell;
    FakeVbmp3 vbmp3;
    FakeGogo gogo;
    FakeRandom random;
    FakeOutputDevices devices;
    std::unique_ptr<Application> application;
};

TEST_F(ApplicationTest, AFreshStartShowsTheDefaultSkinAndPlaysNothing) {
    start();
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_TRUE(top().visible());
    EXPECT_EQ(top().caption(), "Quenlox  Ver " QUENLOX_VERSION);
    EXPECT_EQ(top().picture()->width(), 100);
    EXPECT_EQ(state().VolumePercent, 50);
    EXPECT_EQ(state().PlayerStatus, kStop);
    EXPECT_EQ(placeOf("init"), 0u);
    EXPECT_EQ(vbmp3.count("play"), 0);
}

TEST_F(ApplicationTest, SettingsSkinListsAndFileComeUpTogether) {
    addSong("C:\\music\\a.mp3");
    files.add("C:\\Quenlox\\skin\\wide\\w.tsk", "[Main]\nVer=4\nBox=1\nSize=300,50\n");
    files.add("C:\\Quenlox\\Quenlox.ini",
              "[Main]\r\nX=1500\r\nY=750\r\nPlayMode=2\r\nFileName=C:\\music\\a.mp3\r\nSkinName=wide\r\n[List]\r\nShow=1\r\n");
    files.add("C:\\Quenlox\\Quenlox.m3u", "#ListA\r\nC:\\x.mp3\r\nC:\\music\\a.mp3\r\n");
    start();
    EXPECT_EQ(top().left(), 1500);
    EXPECT_EQ(top().picture()->width(), 300);
    EXPECT_EQ(state().PlayMode, kProgram);
    EXPECT_EQ(vbmp3.openFile, "C:\\music\\a.mp3");
    EXPECT_EQ(state().CurrentIndex[0], 1);
    EXPECT_EQ(vbmp3.count("play"), 0) << "the file of the last time is only opened";
    EXPECT_FALSE(state().ListDirty);
}

TEST_F(ApplicationTest, AFileOnTheCommandLinePlays) {
    addSong("C:\\my music\\b.mp3");
    start("\"C:\\my music\\b.mp3\" /pm3");
    EXPECT_EQ(state().CurrentFile, "C:\\my music\\b.mp3");
    EXPECT_EQ(state().PlayMode, kRandom);
    EXPECT_EQ(state().PlayerStatus, kPlay);
    EXPECT_EQ(state().PlayIntent, kForward);
    EXPECT_LT(placeOf("open C:\\my music\\b.mp3"), placeOf("play"));
}

TEST_F(ApplicationTest, TheTraySwitchStartsInTheNotificationArea) {
    start("/t");
    EXPECT_TRUE(shell.trayIconShown);
    EXPECT_FALSE(top().visible());
}

TEST_F(ApplicationTest, TheEndStopsReleasesAndSavesInOrder) {
    addSong("C:\\b.mp3");
    files.add("C:\\Quenlox\\Quenlox.m3u", "C:\\b.mp3\r\n; kept as it is");
    start("C:\\b.mp3 /p");
    mci.commands.clear();
    top().move(300, 450);
    top().unload();
    EXPECT_EQ(mci.commands, (std::vector<std::string>{"stop MediaFile", "close MediaFile"}));
    EXPECT_EQ(vbmp3.calls[vbmp3.calls.size() - 1], "free");
    EXPECT_EQ(vbmp3.calls[vbmp3.calls.size() - 2], "close");
    EXPECT_EQ(shell.helps.back(), "C:\\Quenlox\\Quenlox.hlp 2 0");
    EXPECT_NE(files.bytesOf("C:\\Quenlox\\Quenlox.ini").find("X=300\r\nY=450"), std::string::npos);
    EXPECT_EQ(files.bytesOf("C:\\Quenlox\\Quenlox.m3u"), "C:\\b.mp3\r\n; kept as it is");
    EXPECT_FALSE(mixer.opened);
    EXPECT_TRUE(windows.hasQuit);
}

TEST_F(ApplicationTest, AChangedListIsSavedAtTheEnd) {
    files.add("C:\\Quenlox\\Quenlox.m3u", "#ListB\r\nC:\\b.mp3");
    start();
    state().ListDirty = true;
    top().unload();
    EXPECT_EQ(files.bytesOf("C:\\Quenlox\\Quenlox.m3u"), "#ListB\r\nC:\\b.mp3\r\n");
}

TEST_F(ApplicationTest, WhatIsDeliveredInAReadOnlyFolderIsTheBeginningOfTheUsersOwn) {
    files.user = "C:\\Users\\A\\Quenlox";
    files.add("C:\\Quenlox\\skin\\x\\x.tsk", "[Main]\nVer=4\nBox=1\nSize=80,50\n");
    files.add("C:\\Quenlox\\Quenlox.ini", "[Main]\r\nMine=1\r\nPlayMode=3\r\nSkinName=x\r\n");
    files.add("C:\\Quenlox\\Quenlox.m3u", "#ListB\r\nC:\\b.mp3");
    const std::vector<std::string> delivered = {files.bytesOf("C:\\Quenlox\\Quenlox.ini"), files.bytesOf("C:\\Quenlox\\Quenlox.m3u")};
    start();
    EXPECT_EQ(state().PlayMode, kRandom);
    EXPECT_EQ(state().CurrentSkinFile, "C:\\Quenlox\\skin\\x\\x.tsk");
    state().ListDirty = true;
    top().unload();
    EXPECT_NE(files.bytesOf("C:\\Users\\A\\Quenlox\\Quenlox.ini").find("Mine=1\r\nPlayMode=3"), std::string::npos);
    EXPECT_EQ(files.bytesOf("C:\\Users\\A\\Quenlox\\Quenlox.m3u"), "#ListB\r\nC:\\b.mp3\r\n");
    EXPECT_EQ((std::vector<std::string>{files.bytesOf("C:\\Quenlox\\Quenlox.ini"), files.bytesOf("C:\\Quenlox\\Quenlox.m3u")}), delivered);
}

TEST_F(ApplicationTest, WithoutMixerOrSkinItStillStarts) {
    mixer.opens = false;
    files.all.clear();
    start();
    EXPECT_TRUE(top().visible());
    top().Form_Wheel(2, {});
    EXPECT_EQ(state().VolumePercent, 10);
}

}  // namespace
}  // namespace quenlox
