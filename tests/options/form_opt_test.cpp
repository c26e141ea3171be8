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
    OptionStore chosen;
    FormOpt options{state, chosen};

    FormOptTest() { options.connect({&dialogs, &files, &devices}); }
};

TEST_F(FormOptTest, ASkinWithoutPlaceForSomethingTakesItsChoicesAway) {
    chosen.setAvailable(&Options::OperationPanel, false);
    chosen.setAvailable(&Options::LyricsLine, false);
    EXPECT_FALSE(options.CheckPanel.enabled());
    EXPECT_TRUE(options.CheckSpeana.enabled());
    for (int i = 0; i <= 5; ++i) EXPECT_FALSE(options.LyricsOption[i].enabled()) << i;
    chosen.setAvailable(&Options::OperationPanel, true);
    EXPECT_TRUE(options.CheckPanel.enabled());
    for (const bool shown : {true, false}) {
        chosen.set(&Options::SpectrumShown, shown);
        EXPECT_EQ(options.HScrollSpeana.enabled() && options.FftOption[2].enabled(), shown) << "without it they do nothing";
    }
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
        {options.HScrollLyricsTime, options.FigureLyricsTime, -11, "1.2秒早く"},
        {options.HScrollLyricsTime, options.FigureLyricsTime, 1, "ずらさない"},
        {options.HScrollLyricsTime, options.FigureLyricsTime, 6, "0.5秒遅く"},
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
    chosen.set(&Options::DefaultCdDrive, "f:");
    chosen.set(&Options::OutputDevice, 2);
    int told = 0;
    chosen.listen({&Options::OutputDevice, &Options::DefaultCdDrive}, [&] { ++told; });
    options.Form_Shown();
    EXPECT_EQ(options.ComboDevice.text(), "USB");
    EXPECT_EQ(options.ComboDevice.items()[2].text, "デバイス 1");
    EXPECT_EQ(options.ComboCdDrive.items().size(), 3u);
    EXPECT_EQ(options.ComboCdDrive.text(), "F:");
    EXPECT_EQ(told, 0);  // to list is not to choose

    options.ComboCdDrive.setListIndex(1);
    EXPECT_EQ(chosen->DefaultCdDrive, "D:");
    options.ComboCdDrive.setListIndex(0);
    EXPECT_EQ(chosen->DefaultCdDrive, "");
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
        Options meant;
        meant.OutputDevice = c.number, meant.OutputDeviceName = c.name;
        chosen.assign(meant);
        EXPECT_EQ(chosen->OutputDevice, c.found) << c.number << c.name;
        EXPECT_EQ(options.ComboDevice.text(), c.text);
    }
}

TEST_F(FormOptTest, AFolderIsTakenFromItsDialogAndKeptWhenThatIsCancelled) {
    dialogs.folderAnswers = {"D:\\歌詞", std::nullopt};
    options.CommandLyricsDir.click();
    EXPECT_EQ(chosen->LyricsFolder, "D:\\歌詞");
    options.CommandLyricsDir.click();
    EXPECT_EQ(chosen->LyricsFolder, "D:\\歌詞");
}

TEST_F(FormOptTest, WhatIsTypedCountsWhenTheKeyboardHasLeftIt) {
    std::string told;
    chosen.listen({&Options::LyricsFolder}, [&] { told += "lyrics "; });
    chosen.listen({&Options::PictureFolder}, [&] { told += "pictures "; });
    chosen.listen({&Options::RenameFormat}, [&] { told += "format "; });
    options.TextLyricsDir.setText("\\\\serv");  // half a path must not be looked for in the network
    EXPECT_EQ(told, "");
    options.TextLyricsDir.onLeave();
    options.TextLyricsDir.onLeave();
    EXPECT_EQ(told, "lyrics ");
    options.TextReName.setText("*T"), options.TextReName.onLeave();
    dialogs.folderAnswers = {"D:\\絵"};
    options.CommandBmpDir.click();
    EXPECT_EQ(told, "lyrics format pictures ");
    EXPECT_EQ(chosen->PictureFolder, "D:\\絵");
}

TEST_F(FormOptTest, TheDefaultsComeBackOnlyAfterAYes) {
    dialogs.confirms = {false, true};
    options.HScrollHiPitch.setValue(150);
    options.TextReName.setText("half a");
    options.CommandDefaults.click();
    EXPECT_EQ(chosen->HighPitch, 150);
    options.CommandDefaults.click();
    EXPECT_EQ(chosen.values(), Options{});
    EXPECT_EQ(options.TextReName.text(), "(*N) *T");
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
