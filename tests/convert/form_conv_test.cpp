// The window, and encoding with gogo.dll.
#include "tests/convert/convert_fixture.h"

namespace quenlox {
namespace {

using Configuration = std::vector<std::tuple<int, int, std::string>>;

TEST_F(ConvertTest, TheSettingsAreForEncodingAndWithGogoOnly) {
    EXPECT_FALSE(form.Frame1.enabled());
    EXPECT_FALSE(form.Command4.enabled()) << "nothing to convert yet";
    form.DecOption[2].setValue(true);
    EXPECT_TRUE(form.Frame1.enabled());
    EXPECT_TRUE(form.Combo3.enabled());
    gogo.there = false;
    form.Form_Load();
    EXPECT_FALSE(form.Frame1.enabled());
    EXPECT_FALSE(form.Combo5.enabled());
    EXPECT_TRUE(form.LabelGogo.caption().starts_with("GOGO.DLLがないため")) << form.LabelGogo.caption();
}

TEST_F(ConvertTest, AVbrQualityMakesTheBitRateTheLeast) {
    form.DecOption[2].setValue(true);
    form.Combo5.setListIndex(3);
    EXPECT_EQ(form.LabelBitRate.caption(), "最低ビットレート");
    form.Combo5.setListIndex(0);
    EXPECT_EQ(form.LabelBitRate.caption(), "ビットレート");
}

TEST_F(ConvertTest, TheDialogsAskForWhatTheOperationTakes) {
    const struct {
        int option;
        const char *source, *proposed, *openName, *openFilter, *openTitle, *saveName, *saveFilter, *saveTitle;
    } cases[] = {{0, "C:\\曲\\a.b.mp3", "C:\\曲\\a.b.wav", "MP3ﾌｧｲﾙ", "*.mp?;*.rmp", "変換MP3ﾌｧｲﾙ名の指定", "WAVEﾌｧｲﾙ", "*.wav", "保存WAVEﾌｧｲﾙ名の指定"},
                 {1, "C:\\a.rmp", "C:\\a.wav", "MP3ﾌｧｲﾙ", "*.mp?;*.rmp", "変換MP3ﾌｧｲﾙ名の指定", "WAVEﾌｧｲﾙ", "*.wav", "保存WAVEﾌｧｲﾙ名の指定"},
                 {2, "C:\\a.wav", "C:\\a.mp3", "WAVEﾌｧｲﾙ", "*.wav", "変換WAVEﾌｧｲﾙ名の指定", "MP3ﾌｧｲﾙ", "*.mp3;*.rmp", "保存MP3ﾌｧｲﾙ名の指定"}};
    for (const auto& c : cases) {
        dialogs.fileDialogs.clear();
        choose(c.option, {c.source});
        EXPECT_EQ(form.Label3.caption(), c.source);
        EXPECT_EQ(form.Label4.caption(), c.proposed);
        form.Command3.click();  // cancelled
        EXPECT_EQ(form.Label4.caption(), c.proposed);
        ASSERT_EQ(dialogs.fileDialogs.size(), 2u);
        EXPECT_EQ(dialogs.fileDialogs[0].filterName, c.openName);
        EXPECT_EQ(dialogs.fileDialogs[0].filter, c.openFilter);
        EXPECT_EQ(dialogs.fileDialogs[0].title, c.openTitle);
        EXPECT_EQ(dialogs.fileDialogs[1].filterName, c.saveName);
        EXPECT_EQ(dialogs.fileDialogs[1].filter, c.saveFilter);
        EXPECT_EQ(dialogs.fileDialogs[1].title, c.saveTitle);
        EXPECT_EQ(dialogs.fileDialogs[1].folder + dialogs.fileDialogs[1].fileName, c.proposed);
        EXPECT_TRUE(form.Command4.enabled());
    }
    // What was to be encoded cannot be decoded.
    form.DecOption[0].setValue(true);
    EXPECT_EQ(form.Label3.caption(), "");
    EXPECT_FALSE(form.Command4.enabled());
}

TEST_F(ConvertTest, TheEncoderIsConfiguredInItsOrderAndWithoutVbrUnlessChosen) {
    choose(2, {"C:\\a.wav"}, "C:\\b.mp3");
    form.Command4.click();
    EXPECT_EQ(gogo.configuration, (Configuration{{1, 0, "C:\\a.wav"}, {2, 0, "C:\\b.mp3"}, {6, 44100, ""}, {3, 2, ""}, {4, 128, ""}}));
    EXPECT_EQ(gogo.calls, (std::vector<std::string>{"initialise", "detect", "frame", "frame", "frame", "close", "end"}));

    gogo.configuration.clear();
    choose(2, {"C:\\a.wav"}, "C:\\b.mp3");
    form.Combo4.setListIndex(0);
    form.Combo3.setListIndex(12);
    form.Combo5.setListIndex(1);
    form.Command4.click();
    EXPECT_EQ(gogo.configuration,
              (Configuration{{1, 0, "C:\\a.wav"}, {2, 0, "C:\\b.mp3"}, {6, 48000, ""}, {3, 2, ""}, {18, 0, ""}, {4, 32, ""}}));
}

TEST_F(ConvertTest, AFinishedEncodeIsTheCurrentFileAndEmptiesTheNames) {
    choose(2, {"C:\\a.wav"});
    form.Command4.click();
    EXPECT_EQ(form.encoderProgress(), 3);
    EXPECT_EQ(state.CurrentFile, "C:\\a.mp3");
    EXPECT_EQ(state.PlayerStatus, kStop);
    EXPECT_EQ(notes, (std::vector<std::string>{"stop", "let go of C:\\a.mp3", "status 7", "open C:\\a.mp3", "status 0", "refresh"}));
    EXPECT_EQ(form.Label3.caption(), "");
    EXPECT_EQ(form.Label4.caption(), "");
    EXPECT_FALSE(form.Command4.enabled());
    EXPECT_TRUE(form.Frame1.enabled());
    EXPECT_EQ(form.Progress.value(), 1000);
    EXPECT_TRUE(dialogs.messages.empty());
    expectIdle();
}

TEST_F(ConvertTest, EveryFailureOfTheEncoderClosesItAndShowsItsMessage) {
    const struct {
        int initialise, detect, failingFrame;
        const char* message;
    } cases[] = {{1, 0, 0, "gogo.dll初期化エラー"}, {0, 4, 0, "gogo.dllファイルエラー"}, {0, 0, 1, "gogo.dllエンコードエラー"}, {0, 0, 3, "gogo.dllエンコードエラー"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.message);
        dialogs.messages.clear();
        gogo = FakeGogo();
        gogo.initialiseResult = c.initialise;
        gogo.detectResult = c.detect;
        gogo.failingFrame = c.failingFrame;
        state.CurrentFile = "C:\\old.mp3";
        choose(2, {"C:\\a.wav"}, "C:\\b.mp3");
        form.Command4.click();
        expectMessage(c.message);
        EXPECT_EQ(count("close"), 1);
        EXPECT_EQ(count("end"), 1);
        EXPECT_EQ(gogo.calls.back(), "end");
        EXPECT_EQ(notes.back(), "status 3");
        EXPECT_EQ(form.Label3.caption(), "C:\\a.wav");
        EXPECT_TRUE(form.Command4.enabled());
        EXPECT_TRUE(form.Frame1.enabled());
    }
}

TEST_F(ConvertTest, CancellingEndsTheEncoderAndKeepsTheChoice) {
    gogo.frames = 1000000;
    choose(2, {"C:\\a.wav", "C:\\c.wav"});
    windows.onPump = [this] {
        EXPECT_EQ(form.Command4.caption(), "中止");
        EXPECT_FALSE(form.Frame1.enabled());
        EXPECT_FALSE(form.DecOption[1].enabled());
        EXPECT_EQ(state.PlayerStatus, kEncode);
        form.Command4.click();
        // Nothing starts before the old run has come to its end.
        EXPECT_FALSE(form.Command4.enabled());
    };
    form.Command4.click();
    EXPECT_EQ(state.PlayerStatus, kStop);
    EXPECT_EQ(gogo.calls, (std::vector<std::string>{"initialise", "detect", "frame", "close", "end"}));
    EXPECT_EQ(notes, (std::vector<std::string>{"stop", "let go of C:\\a.mp3", "let go of C:\\c.mp3", "status 7", "stop", "status 0"}));
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_TRUE(form.Command4.enabled());
    EXPECT_TRUE(form.Frame1.enabled());
    EXPECT_NE(form.Label3.caption(), "");
    expectIdle();
}

TEST_F(ConvertTest, WhatIsPlayedMeanwhileEndsTheEncodeAndGoesOn) {
    gogo.frames = 1000000;
    choose(2, {"C:\\a.wav"});
    windows.onPump = [this] {
        state.PlayerStatus = kPlay;
        state.CurrentFile = "C:\\other.mp3";
    };
    form.Command4.click();
    EXPECT_EQ(count("end"), 1);
    EXPECT_EQ(state.PlayerStatus, kPlay);
    EXPECT_EQ(state.CurrentFile, "C:\\other.mp3");
    EXPECT_EQ(notes, (std::vector<std::string>{"stop", "let go of C:\\a.mp3", "status 7"}));
    expectIdle();
}

TEST_F(ConvertTest, ClosingTheWindowAsksBeforeItCancels) {
    gogo.frames = 1000000;
    form.show();
    choose(2, {"C:\\a.wav"});
    int pumps = 0;
    windows.onPump = [&] {
        dialogs.confirms.push_back(++pumps == 2);
        form.Command1.click();
        EXPECT_EQ(form.running(), pumps == 1);
    };
    form.Command4.click();
    EXPECT_EQ(pumps, 2);
    EXPECT_FALSE(form.visible());
    EXPECT_FALSE(form.unloaded());
    EXPECT_EQ(state.PlayerStatus, kStop);
    // At the end of the program nothing is asked.
    dialogs.questions.clear();
    windows.onPump = [&] {
        state.ShuttingDown = true;
        EXPECT_TRUE(form.unload());
    };
    form.Command4.click();
    EXPECT_TRUE(dialogs.questions.empty());
    EXPECT_EQ(gogo.calls.back(), "end");
    EXPECT_EQ(state.PlayerStatus, kStop);
}

TEST_F(ConvertTest, SeveralSourcesAreEncodedOneAfterAnother) {
    choose(2, {"C:\\a.wav", "C:\\b.wav", "C:\\c.wav"});
    EXPECT_EQ(form.Label3.caption(), "a.wav  ほか2個");
    dialogs.folderAnswers.push_back("D:\\out");
    form.Command3.click();
    EXPECT_EQ(form.Label4.caption(), "D:\\out\\");
    gogo.frames = 1;
    form.Command4.click();
    EXPECT_EQ(items(), (std::vector<int>{1, 2, 6, 3, 4, 1, 2, 6, 3, 4, 1, 2, 6, 3, 4}));
    EXPECT_EQ(std::get<2>(gogo.configuration[11]), "D:\\out\\c.mp3");
    EXPECT_EQ(count("end"), 3);
    EXPECT_EQ(state.CurrentFile, "D:\\out\\c.mp3");
    expectIdle();
}

TEST_F(ConvertTest, AFailureAmongSeveralKeepsThoseNotDone) {
    gogo.frames = 1;
    choose(2, {"C:\\a.wav", "C:\\b.wav", "C:\\c.wav"});
    int pumps = 0;
    windows.onPump = [&] {
        if (++pumps == 1) gogo.detectResult = 4;
    };
    form.Command4.click();
    expectMessage("gogo.dllファイルエラー");
    gogo.detectResult = 0;
    form.Command4.click();
    EXPECT_EQ(state.CurrentFile, "C:\\c.mp3");
    EXPECT_EQ(count("frame"), 3);
}

TEST_F(ConvertTest, AnExistingFileIsReplacedOnlyWhenTheUserAgrees) {
    files.add("C:\\a.mp3", "old");
    choose(2, {"C:\\a.wav"});
    form.Command4.click();
    EXPECT_EQ(dialogs.questions, (std::vector<std::string>{"a.mp3 は既にあります。\n上書きしますか？"}));
    EXPECT_TRUE(gogo.calls.empty());
    dialogs.confirms.push_back(true);
    form.Command4.click();
    EXPECT_EQ(count("frame"), 3);
    // The save dialog asks by itself.
    dialogs.questions.clear();
    choose(2, {"C:\\a.wav"}, "C:\\a.mp3");
    form.Command4.click();
    EXPECT_TRUE(dialogs.questions.empty());
}

TEST_F(ConvertTest, TheTextsOfTheSourceGoIntoTheNewFile) {
    vbmp3.addFile("C:\\a.wav", VBMP3_TYPE_WAVE, 60, "題名", "歌手");
    choose(2, {"C:\\a.wav"});
    form.Command4.click();
    EXPECT_STREQ((vbmp3.tags[{"C:\\a.mp3", VBMP3_TAG_ID3V2}].title), "題名");
    EXPECT_STREQ((vbmp3.tags[{"C:\\a.mp3", VBMP3_TAG_ID3V1}].artist), "歌手");
    // An RMP is made of an MP3 that does not stay.
    vbmp3.calls.clear();
    choose(2, {"C:\\a.wav"}, "C:\\b.rmp");
    form.Command4.click();
    EXPECT_EQ(vbmp3.count("toRmp C:\\b.rmp.mp3 > C:\\b.rmp"), 1);
    EXPECT_STREQ((vbmp3.tags[{"C:\\b.rmp", VBMP3_TAG_SI}].title), "題名");
    EXPECT_EQ(state.CurrentFile, "C:\\b.rmp");
}

TEST_F(ConvertTest, DroppedFilesAreTheSourcesThatFit) {
    form.Form_FilesDropped({"C:\\a.wav", "C:\\b.MP3", "C:\\c.rmp", "C:\\d.txt"}, {});
    EXPECT_EQ(form.Label3.caption(), "b.MP3  ほか1個");
    form.DecOption[2].setValue(true);
    form.Form_FilesDropped({"C:\\a.wav", "C:\\b.MP3"}, {});
    EXPECT_EQ(form.Label3.caption(), "C:\\a.wav");
    form.Form_FilesDropped({"C:\\b.MP3"}, {});
    EXPECT_EQ(form.Label3.caption(), "C:\\a.wav");
}

}  // namespace
}  // namespace quenlox
