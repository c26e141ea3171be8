// What the window shows and asks.
#include "convert/form_conv.h"
#include "tests/convert/convert_fixture.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_manager.h"

namespace quenlox {
namespace {

class FormConvTest : public ConvertTest {
  protected:
    // Chooses operation and sources as the user does.
    void choose(int option, std::vector<std::string> sources) {
        form.DecOption[option].setValue(true);
        dialogs.filesAnswers.push_back(std::move(sources));
        form.Command2.click();
    }
    FakeDialogs dialogs;
    FakeFileManager fileManager;
    FormConv form{run, state, dialogs, fileManager};
};

TEST_F(FormConvTest, TheSettingsAreForEncodingAndWithGogoOnly) {
    EXPECT_FALSE(form.Frame1.enabled());
    EXPECT_FALSE(form.Command4.enabled()) << "nothing to convert yet";
    form.DecOption[2].setValue(true);
    EXPECT_TRUE(form.Frame1.enabled());
    EXPECT_EQ(form.Combo4.text() + form.Combo3.text() + form.Combo5.items()[1].text, " 44,100 128 0－高音質");
    form.Combo5.setListIndex(3);
    EXPECT_EQ(form.LabelBitRate.caption(), "最低ビットレート(&B)");
    EXPECT_EQ(run.settings().vbrQuality, 2);
    form.Combo5.setListIndex(0);
    EXPECT_EQ(form.LabelBitRate.caption(), "ビットレート(&B)");
    EXPECT_EQ(run.settings().vbrQuality, kNoVbr);
    // The frequency lowers the bit rate for as long as it has none as high.
    form.Combo3.setListIndex(0);
    const struct {
        int frequency;
        const char *first, *chosen;
        bool lowered;
    } rates[] = {{8, "  64", "  64", true}, {4, " 160", " 160", true}, {0, " 320", " 320", false}};
    for (const auto& c : rates) {
        form.Combo4.setListIndex(c.frequency);
        EXPECT_EQ(form.Combo3.items().front().text, c.first);
        EXPECT_EQ(form.Combo3.text(), c.chosen);
        EXPECT_EQ(!form.LabelLowered.caption().empty(), c.lowered);
    }
    form.Combo4.setListIndex(8);
    form.Combo3.setListIndex(1);  // another wish
    form.Combo4.setListIndex(1);
    EXPECT_EQ(form.Combo3.text() + form.LabelLowered.caption(), "  48");
    FormConv other(withoutGogo(), state, dialogs, fileManager);
    other.DecOption[2].setValue(true);
    EXPECT_FALSE(other.Combo5.enabled());
    EXPECT_TRUE(other.LabelGogo.caption().starts_with("GOGO.DLLがないため")) << other.LabelGogo.caption();
}

TEST_F(FormConvTest, TheDialogsAskForWhatTheOperationTakes) {
    const struct {
        int option;
        const char *source, *proposed, *openName, *openFilter, *openTitle, *saveName, *saveFilter, *saveTitle;
    } cases[] = {{0, "C:\\曲\\a.b.mp3", "C:\\曲\\a.b.wav", "MP3ﾌｧｲﾙ", "*.mp?;*.rmp", "変換MP3ﾌｧｲﾙ名の指定", "WAVEﾌｧｲﾙ",
                  "*.wav", "保存WAVEﾌｧｲﾙ名の指定"},
                 {2, "C:\\a.wav", "C:\\a.mp3", "WAVEﾌｧｲﾙ", "*.wav", "変換WAVEﾌｧｲﾙ名の指定", "MP3ﾌｧｲﾙ", "*.mp3;*.rmp",
                  "保存MP3ﾌｧｲﾙ名の指定"}};
    for (const auto& c : cases) {
        dialogs.fileDialogs.clear();
        choose(c.option, {c.source});
        EXPECT_EQ(form.Label3.caption(), c.source);
        form.Command3.click();  // cancelled
        EXPECT_EQ(form.Label4.caption(), c.proposed);
        ASSERT_EQ(dialogs.fileDialogs.size(), 2u);
        const FileDialog &open = dialogs.fileDialogs[0], &save = dialogs.fileDialogs[1];
        EXPECT_EQ(Notes({open.filterName, open.filter, open.title}), Notes({c.openName, c.openFilter, c.openTitle}));
        EXPECT_EQ(Notes({save.filterName, save.filter, save.title}), Notes({c.saveName, c.saveFilter, c.saveTitle}));
        EXPECT_EQ(save.folder + save.fileName, c.proposed);
        EXPECT_TRUE(form.Command4.enabled());
    }
    form.Form_FilesDropped({"C:\\a.wav", "C:\\b.MP3", "C:\\c.rmp", "C:\\d.wav"}, {});
    EXPECT_EQ(form.Label3.caption(), "a.wav  ほか1個");
    dialogs.folderAnswers.push_back("D:\\out");
    form.Command3.click();
    EXPECT_EQ(form.Label4.caption(), "D:\\out\\");
    form.DecOption[0].setValue(true);
    form.Form_FilesDropped({"C:\\a.wav", "C:\\b.MP3", "C:\\c.rmp", "C:\\d.txt"}, {});
    EXPECT_EQ(form.Label3.caption(), "b.MP3  ほか1個");
    form.Form_FilesDropped({"C:\\d.txt"}, {});
    EXPECT_EQ(form.LabelProgress.caption() + form.Label3.caption(), "変換できるファイルがありませんb.MP3  ほか1個");
    form.Form_FilesDropped({"C:\\a.wav"}, {});
    EXPECT_TRUE(form.DecOption[2].value()) << "a file of the other kind chooses that";
    EXPECT_EQ(form.Label3.caption() + form.Label4.caption(), "C:\\a.wavD:\\out\\a.mp3");
    form.CheckBeside.setValue(1);
    EXPECT_EQ(form.Label4.caption(), "C:\\a.mp3");
    FormConv other(run, state, dialogs, fileManager);
    EXPECT_TRUE(other.DecOption[2].value());
}

TEST_F(FormConvTest, TheRunIsShownUntilItsEndAndReplacesOnlyWhatTheUserAgreesTo) {
    files.add("C:\\c.mp3", "old");
    choose(2, {"C:\\a.wav", "C:\\c.wav"});
    gogo->heldFrame = 1;
    form.Command4.click();
    EXPECT_EQ(dialogs.questions, Notes{"1個のファイルが既にあります。\n上書きしますか？"});
    EXPECT_FALSE(run.running());
    dialogs.confirms.push_back(true);
    form.Command4.click();
    EXPECT_EQ(form.Command4.caption(), "中止(&T)");
    EXPECT_EQ(form.LabelProgress.caption(), "0 / 2個");
    EXPECT_EQ(form.FileView.textOf(0, 0) + form.FileView.textOf(1, 1) + form.FileView.textOf(1, 2), "a.wav待機中1.2 MB");
    EXPECT_FALSE(form.Frame1.enabled());
    EXPECT_FALSE(form.DecOption[1].enabled());
    form.Command4.click();
    EXPECT_EQ(form.Command4.caption(), "変換開始(&T)");
    EXPECT_FALSE(form.Command4.enabled()) << "it has not come back yet";
    EXPECT_EQ(form.LabelProgress.caption(), "中止しました");
    awaitEncoder();
    EXPECT_TRUE(form.Command4.enabled());
    EXPECT_TRUE(form.Frame1.enabled());
    encode();
    EXPECT_EQ(form.LabelProgress.caption(), "2個の変換が終わりました");
    EXPECT_EQ(form.Progress.value(), 1000);
    EXPECT_EQ(form.Label3.caption() + form.Label4.caption(), "");
    EXPECT_FALSE(form.Command4.enabled());
    gogo->detectError = LibraryError::NotFound;
    choose(2, {"C:\\a.wav"});
    encode();
    ASSERT_EQ(dialogs.messages.size(), 1u);
    EXPECT_EQ(dialogs.messages[0].text, "gogo.dllファイルエラー");
    EXPECT_TRUE(form.LabelProgress.caption().starts_with("a.wav: ")) << form.LabelProgress.caption();
}

TEST_F(FormConvTest, ClosingTheWindowAsksBeforeItCancelsAndTheEndOfTheProgramDoesNot) {
    form.show();
    choose(2, {"C:\\a.wav"});
    startHeld(1);
    for (const bool yes : {false, true}) {
        dialogs.confirms.push_back(yes);
        form.Command1.click();
        EXPECT_EQ(form.visible(), !yes);
        EXPECT_EQ(run.running(), !yes);
    }
    awaitEncoder();
    EXPECT_FALSE(form.unloaded());
    dialogs.questions.clear();
    run.start();
    state.ShuttingDown = true;
    EXPECT_TRUE(form.unload());
    EXPECT_TRUE(dialogs.questions.empty());
    EXPECT_EQ(gogo->calls.back(), "end");
}

}  // namespace
}  // namespace quenlox
