#include "options/form_opt.h"

#include <gtest/gtest.h>

#include "state/global_state.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_output_devices.h"

namespace quenlox {
namespace {

struct FormOptTest : testing::Test {
    GlobalState state;
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeOutputDevices devices;
    FormOpt options{state};

    FormOptTest() { options.connect({&dialogs, &files, &devices}); }
};

TEST_F(FormOptTest, ASkinWithoutPlaceForSomethingTakesItsChoicesAway) {
    options.setOperationPanel(true);
    options.allowOperationPanel(false);
    options.allowSpectrum(false);
    options.allowLyricsWindowChoices(false);
    EXPECT_FALSE(options.operationPanel());
    EXPECT_FALSE(options.CheckPanel.enabled());
    EXPECT_FALSE(options.CheckSpeana.enabled());
    EXPECT_FALSE(options.CheckLyrics.enabled());
    for (int i = 0; i <= 5; ++i) EXPECT_EQ(options.LyricsOption[i].enabled(), i % 2 == 0) << i;
    options.allowOperationPanel(true);
    EXPECT_TRUE(options.CheckPanel.enabled());
    EXPECT_FALSE(options.operationPanel());
}

TEST_F(FormOptTest, TheFigureBesideASliderSaysWhatItsValueMeans) {
    const struct {
        ScrollBar& slider;
        const Label& figure;
        int value;
        const char* text;
    } cases[] = {
        {options.HScrollHiPitch, options.FigureHiPitch, 130, "130%"},
        {options.HScrollLowPitch, options.FigureLowPitch, 80, "80%"},
        {options.HScrollStepPitch, options.FigureStepPitch, 6, "2.0倍"},
        {options.HScrollStepPitch, options.FigureStepPitch, 2, "1.2倍"},
        {options.HScrollIntro, options.FigureIntro, 10, "10秒"},
        {options.HScrollSpeanaIntro, options.FigureIntroView, 0, "しない"},
        {options.HScrollSpeanaIntro, options.FigureIntroView, 15, "30秒ごと"},
        {options.HScrollBuffer, options.FigureBuffer, 250, "250ms"},
        {options.HScrollLyricsTime, options.FigureLyricsTime, -12, "-1.2秒"},
        {options.HScrollLyricsTime, options.FigureLyricsTime, 0, "0.0秒"},
        {options.HScrollLyricsTime, options.FigureLyricsTime, 5, "+0.5秒"},
    };
    for (const auto& c : cases) {
        c.slider.setValue(c.slider.maximum());
        c.slider.setValue(c.value);
        EXPECT_EQ(c.figure.caption(), c.text) << c.slider.name();
    }
}

TEST_F(FormOptTest, DevicesAndDrivesAreListedWithEveryOpening) {
    devices.list = {"Speakers", "", "USB"};
    files.driveList = {{"C:\\", DriveType::Fixed}, {"D:\\", DriveType::CdRom}, {"E:\\", DriveType::Removable}, {"F:\\", DriveType::CdRom}};
    state.DefaultCdDrive = "f:";
    options.setOutputDevice(2);
    int told = 0;
    options.onOutput = [&] { ++told; };
    options.Form_Shown();
    EXPECT_EQ(options.ComboDevice.text(), "USB");
    EXPECT_EQ(options.ComboDevice.items()[2].text, "デバイス 1");
    EXPECT_EQ(options.ComboCdDrive.items().size(), 3u);
    EXPECT_EQ(options.ComboCdDrive.text(), "F:");
    EXPECT_EQ(state.DefaultCdDrive, "f:");
    EXPECT_EQ(told, 0);  // to list is not to choose

    options.ComboCdDrive.setListIndex(1);
    EXPECT_EQ(state.DefaultCdDrive, "D:");
    options.ComboCdDrive.setListIndex(0);
    EXPECT_EQ(state.DefaultCdDrive, "");
}

TEST_F(FormOptTest, ADeviceIsFoundByItsNameElseByItsNumber) {
    devices.list = {"Speakers", "A name that is cut at a blank ", "A name that is cut at a blank "};
    const struct {
        int number;
        const char* name;
        int found;
        const char* text;
    } cases[] = {{1, "Speakers", 0, "Speakers"},
                 {2, "A name that is cut at a blank", 2, devices.list[2].c_str()},
                 {0, "", 0, "Speakers"},
                 {0, "A name that is cut at a blank", 1, devices.list[1].c_str()},
                 {0, "Gone", -1, "Gone（未接続）"},
                 {7, "", -1, "既定のデバイス"}};
    for (const auto& c : cases) {
        options.setOutputDevice(c.number);
        options.setOutputDeviceName(c.name);
        EXPECT_EQ(options.outputDevice(), c.found) << c.number << c.name;
        EXPECT_EQ(options.ComboDevice.text(), c.text);
    }
}

TEST_F(FormOptTest, AFolderIsTakenFromItsDialogAndKeptWhenThatIsCancelled) {
    dialogs.folderAnswers = {"D:\\歌詞", std::nullopt};
    options.CommandLyricsDir.click();
    EXPECT_EQ(options.lyricsFolder(), "D:\\歌詞");
    options.CommandLyricsDir.click();
    EXPECT_EQ(options.lyricsFolder(), "D:\\歌詞");
}

TEST_F(FormOptTest, WhatIsTypedCountsWhenTheKeyboardHasLeftIt) {
    std::string told;
    options.onLyricsSources = [&] { told += "lyrics "; };
    options.onPictureFolder = [&] { told += "pictures "; };
    options.onNameFormat = [&] { told += "format "; };
    options.settleTexts();
    options.TextLyricsDir.setText("\\\\serv");  // half a path must not be looked for in the network
    EXPECT_EQ(told, "");
    options.TextLyricsDir.onLeave();
    options.TextLyricsDir.onLeave();
    EXPECT_EQ(told, "lyrics ");
    options.TextReName.setText("*T"), options.TextReName.onLeave();
    dialogs.folderAnswers = {"D:\\絵"};
    options.CommandBmpDir.click();
    EXPECT_EQ(told, "lyrics format pictures ");
    EXPECT_EQ(options.pictureFolder(), "D:\\絵");
}

TEST_F(FormOptTest, TheDefaultsComeBackOnlyAfterAYes) {
    int resets = 0;
    options.onDefaults = [&] { ++resets; };
    dialogs.confirms = {false, true};
    options.CommandDefaults.click();
    EXPECT_EQ(resets, 0);
    options.CommandDefaults.click();
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(dialogs.questions.size(), 2u);
}

TEST_F(FormOptTest, TheUserOnlyHidesIt) {
    options.show();
    EXPECT_FALSE(options.unload());
    EXPECT_FALSE(options.visible());
    state.ShuttingDown = true;
    EXPECT_TRUE(options.unload());
}

}  // namespace
}  // namespace quenlox
