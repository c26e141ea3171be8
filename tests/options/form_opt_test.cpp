#include "options/form_opt.h"

#include <gtest/gtest.h>

#include "app/global_state.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_output_devices.h"

namespace quenlox {
namespace {

TEST(FormOpt, ASkinWithoutPlaceForSomethingTakesItsChoicesAway) {
    GlobalState state;
    FormOpt options(state);
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

TEST(FormOpt, TheFigureBesideASliderSaysWhatItsValueMeans) {
    GlobalState state;
    FormOpt options(state);
    struct Case {
        ScrollBar& slider;
        const Label& figure;
        int value;
        const char* text;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        c.slider.setValue(c.slider.maximum());
        c.slider.setValue(c.value);
        EXPECT_EQ(c.figure.caption(), c.text) << c.slider.name();
    }
}

struct Opened {
    GlobalState state;
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeOutputDevices devices;
    FormOpt options{state};

    Opened() { options.connect({&dialogs, &files, &devices}); }
};

TEST(FormOpt, DevicesAndDrivesAreListedWithEveryOpening) {
    Opened o;
    o.devices.list = {"Speakers", "", "USB"};
    o.files.driveList = {{"C:\\", DriveType::Fixed}, {"D:\\", DriveType::CdRom}, {"E:\\", DriveType::Removable}, {"F:\\", DriveType::CdRom}};
    o.state.DefaultCdDrive = "f:";
    o.options.setOutputDevice(2);
    int told = 0;
    o.options.onOutput = [&] { ++told; };
    o.options.Form_Shown();
    EXPECT_EQ(o.options.ComboDevice.text(), "USB");
    EXPECT_EQ(o.options.ComboDevice.items()[2].text, "デバイス 1");
    EXPECT_EQ(o.options.ComboCdDrive.items().size(), 3u);
    EXPECT_EQ(o.options.ComboCdDrive.text(), "F:");
    EXPECT_EQ(o.state.DefaultCdDrive, "f:");
    EXPECT_EQ(told, 0);  // to list is not to choose

    o.options.ComboCdDrive.setListIndex(1);
    EXPECT_EQ(o.state.DefaultCdDrive, "D:");
    o.options.ComboCdDrive.setListIndex(0);
    EXPECT_EQ(o.state.DefaultCdDrive, "");

    o.devices.list = {"Speakers"};  // the chosen one has been pulled out, and is waited for
    o.options.Form_Shown();
    EXPECT_EQ(o.options.outputDevice(), 2);
}

TEST(FormOpt, AFolderIsTakenFromItsDialogAndKeptWhenThatIsCancelled) {
    Opened o;
    o.dialogs.folderAnswers = {"D:\\歌詞", std::nullopt};
    o.options.CommandLyricsDir.click();
    EXPECT_EQ(o.options.lyricsFolder(), "D:\\歌詞");
    o.options.CommandLyricsDir.click();
    EXPECT_EQ(o.options.lyricsFolder(), "D:\\歌詞");
}

TEST(FormOpt, WhatIsTypedCountsWhenTheKeyboardHasLeftIt) {
    Opened o;
    std::string told;
    o.options.onLyricsSources = [&] { told += "lyrics "; };
    o.options.onPictureFolder = [&] { told += "pictures "; };
    o.options.onNameFormat = [&] { told += "format "; };
    o.options.settleTexts();
    o.options.TextLyricsDir.setText("\\\\serv");  // half a path must not be looked for in the network
    EXPECT_EQ(told, "");
    o.options.TextLyricsDir.onLeave();
    o.options.TextLyricsDir.onLeave();
    EXPECT_EQ(told, "lyrics ");
    o.options.TextReName.setText("*T"), o.options.TextReName.onLeave();
    o.dialogs.folderAnswers = {"D:\\絵"};
    o.options.CommandBmpDir.click();
    EXPECT_EQ(told, "lyrics format pictures ");
    EXPECT_EQ(o.options.pictureFolder(), "D:\\絵");
}

TEST(FormOpt, TheDefaultsComeBackOnlyAfterAYes) {
    Opened o;
    int resets = 0;
    o.options.onDefaults = [&] { ++resets; };
    o.dialogs.confirms = {false, true};
    o.options.CommandDefaults.click();
    EXPECT_EQ(resets, 0);
    o.options.CommandDefaults.click();
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(o.dialogs.questions.size(), 2u);
}

TEST(FormOpt, TheUserOnlyHidesIt) {
    GlobalState state;
    FormOpt options(state);
    options.show();
    EXPECT_FALSE(options.unload());
    EXPECT_FALSE(options.visible());
    state.ShuttingDown = true;
    EXPECT_TRUE(options.unload());
}

}  // namespace
}  // namespace quenlox
