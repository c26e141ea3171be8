#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/keys.h"
#include "tests/playlist/form_list_fixture.h"

namespace quenlox {
namespace {

using FormListCommands = ListWindowTest;

TEST_F(FormListCommands, TheSortMenuSortsByTheColumnOfItsItem) {
    // Titles c b a, times 0:03 0:01 0:02, artists and albums alike.
    const struct {
        int listType, item;
        const char* order;
    } cases[] = {{1, 0, "cba"}, {1, 1, "abc"}, {1, 2, "bca"}, {1, 4, "abc"},
                 {0, 0, "abc"}, {0, 2, "abc"}, {0, 3, "cba"}, {1, 5, "cab"}};  // drawn
    for (const auto& c : cases) {
        ListWindow window;
        window.random = FakeRandom({0.9, 0.5, 0.4});
        window.state.ListType = c.listType;
        window.addTitled('a', "c", 3);
        window.addTitled('b', "b", 1);
        window.addTitled('c', "a", 2);
        window.state.ListDirty = false;
        window.form.menuSort_Click(c.item);
        EXPECT_EQ(window.names(0), c.order) << c.listType << c.item;
        EXPECT_EQ(window.state.ListDirty, c.listType != 0 || c.item >= 3);
    }
}

TEST_F(FormListCommands, AClickOnAHeadingSortsLengthsAsNumbers) {
    addTitled('a', "a", 600);
    addTitled('b', "b", 59);
    addTitled('c', "c", 120);
    form.PlayView_ColumnClick(kTimeColumn);
    EXPECT_EQ(names(0), "bca");
    form.menuSort_Click(2);
    EXPECT_EQ(names(0), "bac") << "by their texts";
}

TEST_F(FormListCommands, ASortByTextsOfManyFilesWaitsForThemAndCanBeCancelled) {
    for (int i = 0; i < 300; ++i) lists.AddEntry("C:\\" + std::to_string(1000 - i) + ".mp3", 0);
    vbmp3.delay = std::chrono::milliseconds(1);
    form.PlayView_ColumnClick(kTitleColumn);
    EXPECT_TRUE(form.cmdCancel.visible());
    EXPECT_EQ(lists.path(0, 0), "C:\\1000.mp3") << "not sorted yet";
    form.cmdCancel_Click();
    EXPECT_FALSE(form.cmdCancel.visible());
    EXPECT_EQ(lists.path(0, 0), "C:\\1000.mp3");
    form.PlayView_ColumnClick(kTitleColumn);
    vbmp3.delay = {};
    finishWork();
    EXPECT_EQ(lists.path(0, 0), "C:\\1000.mp3");
    EXPECT_EQ(lists.path(0, 1), "C:\\701.mp3") << "sorted by text";
    form.PlayView_ColumnClick(kTitleColumn);
    EXPECT_EQ(lists.path(0, 0), "C:\\999.mp3") << "a sort that was cancelled is no first click";
}

TEST_F(FormListCommands, SaveExportsTheCurrentListUnderTheChosenName) {
    state.ListNo = 2;
    form.showCurrentList();
    addLetters(2, "ba");
    form.menuSave_Click();
    EXPECT_EQ(files.writes, 0) << "the dialog was cancelled";
    dialogs.fileAnswers.push_back("D:\\list");
    form.menuSave_Click();
    EXPECT_EQ(files.bytesOf("D:\\list.m3u"), "C:\\b.mp3\r\nC:\\a.mp3\r\n");
    EXPECT_EQ(dialogs.fileDialogs.back().title, "保存M3Uﾌｧｲﾙ名の指定");
    EXPECT_EQ(dialogs.fileDialogs.back().filterName, "M3Uﾌｧｲﾙ");
    EXPECT_EQ(dialogs.fileDialogs.back().filter, "*.m3u");
    dialogs.fileAnswers.push_back("D:\\list");
    dialogs.confirms = {false};  // to replace it
    form.menuSave_Click();
    EXPECT_EQ(files.writes, 1);
    files.writesFail = true;
    dialogs.fileAnswers.push_back("D:\\other");
    form.menuSave_Click();
    EXPECT_EQ(dialogs.messages.size(), 1u);
}

TEST_F(FormListCommands, DroppedFoldersListsAndFilesAreAddedInTheirOrder) {
    files.add("D:\\album\\1.mp3");
    files.add("D:\\album\\x.txt");
    files.add("D:\\album\\sub\\2.mp3");
    files.add("D:\\l.M3U", "album\\3.mp3\r\nE:\\4.mp3\r\n");
    files.add("D:\\note.txt");
    state.ListDirty = false;
    form.PlayView_FilesDropped({"D:\\z.mp3", "D:\\album", "D:\\l.M3U", "D:\\note.txt"});
    EXPECT_EQ(paths(0), (Paths{"D:\\z.mp3", "D:\\album\\1.mp3", "D:\\album\\3.mp3", "E:\\4.mp3", "D:\\note.txt"}));
    EXPECT_EQ(view().rowCount(), 5);
    EXPECT_EQ(state.ShuffleOrder[0].last(), 4);
    EXPECT_TRUE(state.ListDirty);
}

TEST_F(FormListCommands, EntriesOnAnotherComputerThanTheirListComeInOnlyWhenTheUserAgrees) {
    const std::string rows =
        "C:\\1.mp3\n\\\\Own\\m\\2.mp3\n//evil/m/3.mp3\n\\\\EVIL\\m\\4.mp3\n\\\\.\\COM1:x\n//?/UNC/evil/5.mp3\n";
    const Paths safe{"C:\\1.mp3", "\\\\Own\\m\\2.mp3"},
        all{safe[0], safe[1], "\\\\evil\\m\\3.mp3", "\\\\EVIL\\m\\4.mp3"};
    for (const bool agreed : {false, true}) {
        ListWindow window;
        for (const char* list : {"\\\\own\\m\\a.m3u", "\\\\own\\m\\b.m3u"}) window.files.add(list, rows);
        window.dialogs.confirms = {agreed, true};
        window.form.PlayView_FilesDropped({"\\\\own\\m\\a.m3u"});
        EXPECT_EQ(window.paths(0), agreed ? all : safe);
        EXPECT_THAT(window.dialogs.questions,
                    testing::ElementsAre(
                        testing::AllOf(testing::HasSubstr("\\\\evil\n"), testing::Not(testing::HasSubstr("own")))));
        window.lists.clear(0);
        window.form.PlayView_FilesDropped({"\\\\own\\m\\b.m3u"});  // asked again unless agreed
        EXPECT_EQ(window.paths(0), all);
        EXPECT_EQ(window.dialogs.questions.size(), agreed ? 1U : 2U);
    }
}

TEST_F(FormListCommands, AddingAHugeFolderGoesOnInSlicesAndCanBeCancelled) {
    for (const bool cancelled : {true, false}) {
        ListWindow window;
        Paths many;
        for (int i = 0; i < 3000; ++i) many.push_back("D:\\m\\" + std::to_string(1000 + i) + ".mp3");
        for (const std::string& path : many) window.files.all.push_back({path, {}, false});
        window.files.enumerationDelay = std::chrono::microseconds(100);
        window.form.PlayView_FilesDropped({"D:\\m"});
        EXPECT_THAT(window.form.LabelStatus.caption(), testing::HasSubstr("追加中"));
        EXPECT_EQ(window.form.Progress.value(), ProgressBar::kEndless);
        const int atOnce = window.lists.count(0);
        EXPECT_GT(atOnce, 0);
        EXPECT_LT(atOnce, 3000);
        EXPECT_TRUE(window.state.ListDirty) << "the program may end before all is added";
        if (cancelled) window.form.cmdCancel.click();
        window.files.enumerationDelay = {};
        window.finishWork();
        EXPECT_EQ(window.lists.count(0), cancelled ? atOnce : 3000) << "what was found before stays";
        if (!cancelled) {
            EXPECT_EQ(window.paths(0), many);
        }
        EXPECT_EQ(window.state.ShuffleOrder[0].last(), window.lists.count(0) - 1);
        EXPECT_TRUE(window.state.ListDirty);
        EXPECT_FALSE(window.form.cmdCancel.visible());
    }
}

TEST_F(FormListCommands, AddingManyFilesShowsHowFarItIs) {
    Paths many;
    for (int i = 0; i < 400; ++i) many.push_back("D:\\" + std::to_string(i) + ".mp3");
    files.lookUpDelay = std::chrono::milliseconds(1);
    form.PlayView_FilesDropped(many);
    EXPECT_TRUE(form.Progress.visible());
    EXPECT_GT(form.Progress.value(), 0);
    files.lookUpDelay = {};
    finishWork();
    EXPECT_EQ(paths(0), many);
    EXPECT_FALSE(form.Progress.visible());
}

TEST_F(FormListCommands, ToolbarButtonsDoWhatTheirCommandsDo) {
    files.add("D:\\l.m3u", "D:\\m1.mp3\n");
    files.add("E:\\album\\b.mp3");
    dialogs.filesAnswers.push_back({"D:\\a.mp3", "D:\\l.m3u"});
    EXPECT_TRUE(menu("M3Uファイルを読み込む(&M)..."));
    form.Toolbar1_ButtonClick("add");
    dialogs.folderAnswers.push_back("E:\\album");
    form.Toolbar1_ButtonClick("addFolder");
    EXPECT_EQ(paths(0), (Paths{"D:\\a.mp3", "D:\\m1.mp3", "E:\\album\\b.mp3"}));
    select("x..");
    form.Toolbar1_ButtonClick("down");
    EXPECT_EQ(marks(), ".x.");
    form.Toolbar1_ButtonClick("up");
    form.Toolbar1_ButtonClick("delete");
    EXPECT_EQ(lists.count(0), 2);
    form.Toolbar1_ButtonClick("browser");
    EXPECT_FALSE(form.File1.visible());
    form.Toolbar1_ButtonClick("browser");
    EXPECT_TRUE(form.File1.visible());
}

TEST_F(FormListCommands, RowsAreCutCopiedPastedSentAndDroppedInFrontOfARow) {
    const struct {
        const char* what;
        void (*act)(ListWindow&);
        const char *rows, *marks, *step;
    } cases[] = {
        {"copy, paste",
         [](ListWindow& w) { w.form.PlayView_KeyDown('C', kControl), w.form.PlayView_KeyDown('V', kControl); },
         "abcbcd", ".xx...", "貼り付け"},
        {"cut", [](ListWindow& w) { w.form.PlayView_KeyDown('X', kControl); }, "ad", ".x", "切り取り"},
        {"cut, paste", [](ListWindow& w) { w.form.menuCut_Click(), w.form.menuPaste_Click(); }, "abcd", ".xx.",
         "貼り付け"},
        {"drop",
         [](ListWindow& w) {
             w.form.PlayView_FilesDroppedAt({"D:\\album", "D:\\2.mp3"}, 3);
         },
         "abc12d", "...xx.", "追加"},
        {"send", [](ListWindow& w) { w.form.menuSend_Click(0); }, "abcdbc", ".xx...", "リストへ送る"},
        {"to a tab", [](ListWindow& w) { w.form.PlayView_RowsDraggedToTab(1); }, "abcd", ".xx.", "リストへ送る"},
    };
    for (const auto& c : cases) {
        ListWindow w;
        w.files.add("D:\\album\\1.mp3");
        w.addLetters(0, "abcd");
        w.select(".xx.");
        w.view().setFocusedRow(1);
        w.state.ListDirty = false;
        c.act(w);
        EXPECT_EQ(w.names(0), c.rows) << c.what;
        EXPECT_EQ(w.marks(), c.marks) << c.what;
        EXPECT_EQ(w.names(1), std::string(c.what) == "to a tab" ? "bc" : "");
        EXPECT_TRUE(w.state.ListDirty);
        EXPECT_EQ(w.lists.undoName(), c.step) << c.what;
        w.form.menuUndo_Click();
        if (std::string(c.what) == "cut, paste") w.form.menuUndo_Click();
        EXPECT_EQ(w.names(0) + w.names(1), "abcd") << c.what;
    }
}

TEST_F(FormListCommands, TheQueueIsNumberedInFrontOfItsRowsAndARowLeavesItByTheSameCommand) {
    addLetters(0, "abcd");
    select(".x.x");
    form.Form_KeyDown('Q', kControl);
    select("x..x");
    form.Form_KeyDown('Q', kControl);
    const auto title = [&](int row) { return view().textOf(row, kTitleColumn); };
    EXPECT_EQ(title(0) + title(1) + title(2) + title(3), "[3] a[1] bc[2] d");
    EXPECT_THAT(form.LabelStatus.caption(), testing::HasSubstr("次に再生 3曲"));
    select(".x.x");
    form.menuQueue_Click();
    EXPECT_EQ(title(0) + title(1), "[1] ab");
}

TEST_F(FormListCommands, WhatThereWasNothingToAddOfIsSaidAndATreeIsAddedWhole) {
    files.add("D:\\m\\x\\y\\2.mp3");
    files.add("D:\\m\\x\\1.mp3");
    files.add("D:\\l.m3u");
    files.unreadable.insert("D:\\l.m3u");
    for (const auto& [dropped, note] : {std::pair{"D:\\m", "下の階層"}, {"D:\\l.m3u", "「l.m3u」を読み込めません"}}) {
        form.PlayView_FilesDropped({dropped});
        EXPECT_THAT(form.LabelStatus.caption(), testing::HasSubstr(note));
    }
    EXPECT_EQ(names(0), "");
    dialogs.folderAnswers.push_back("D:\\m");
    form.addFolder(true);
    EXPECT_EQ(names(0), "12");
}

TEST_F(FormListCommands, WhatWasDoneIsTakenBackAndDoneAgainByTheKeysThatTheMenuShows) {
    form.TabList.setValue(1), form.TabList_Click();
    form.PlayView_FilesDropped({"C:\\a.mp3", "C:\\b.mp3", "C:\\c.mp3"});
    EXPECT_FALSE(menu("やり直し(&R)")->enabled);
    select("xx.");
    form.PlayView_KeyDown(kKeyDelete, 0);
    form.TabList.setValue(0), form.TabList_Click();  // it is shown where it was
    ASSERT_TRUE(menu("元に戻す(&U): 削除"));
    form.Form_KeyDown('Z', kControl);
    EXPECT_EQ(names(1), "abc");
    EXPECT_EQ(state.ListNo, 1);
    EXPECT_EQ(marks(), "xx.");
    EXPECT_EQ(form.LabelStatus.caption(), "「削除」を元に戻しました");
    form.Form_KeyDown('Y', kControl);
    EXPECT_EQ(names(1), "c");
    form.menuUndo_Click();
    form.menuUndo_Click();  // the adding
    EXPECT_EQ(names(1), "");
    EXPECT_FALSE(menu("元に戻す(&U)")->enabled);
}

TEST_F(FormListCommands, SearchingShowsTheRowsThatHoldEveryWord) {
    const struct {
        const char *title, *words;
    } texts[] = {
        {"ひらがな", "ﾋﾗｶﾞﾅ"}, {"Café ＡＢＣ", "abc ARTIST"}, {"x", "b.MP3"}, {"y", "c:\\d"}, {"z", "artist　c:"}};
    for (std::size_t i = 0; i < std::size(texts); ++i) addTitled("aecdf"[i], texts[i].title);
    lists.AddEntry("C:\\b.mp3", 0);
    finishWork();
    const auto found = [&](const char* words) {
        form.FindText.setText(words);
        std::string rows;
        for (int row = 0; row < form.FindView.rowCount(); ++row)
            rows += BaseNameOf(form.FindView.textOf(row, kFileColumn));
        return rows;
    };
    const char* const expected[] = {"a", "e", "b", "d", "aecdf"};
    for (std::size_t i = 0; i < std::size(texts); ++i) EXPECT_EQ(found(texts[i].words), expected[i]) << texts[i].words;
    EXPECT_EQ(found("none"), "");
    EXPECT_TRUE(form.FindView.visible());
    EXPECT_FALSE(view().visible());

    EXPECT_EQ(found("artist"), "aecdf");
    form.FindView.setSelected(1, true);
    form.FindText.focused = true;
    form.Form_KeyDown(kKeyEnter, 0);
    form.FindText.focused = false;
    EXPECT_EQ(opened.size(), 1u);
    form.PlayView_KeyDown(kKeyDelete, 0);  // of the list
    EXPECT_EQ(names(0), "acdfb");
    EXPECT_EQ(form.FindView.rowCount(), 4);
    form.Form_KeyDown('Z', kControl);
    EXPECT_EQ(form.FindView.rowCount(), 5);
    EXPECT_TRUE(form.FindView.selected(1)) << "the row that came back";
    form.menuSort_Click(4);
    EXPECT_EQ(BaseNameOf(form.FindView.textOf(1, kFileColumn)), "c") << "rows have moved";
    form.Form_KeyDown(kKeyEscape, 0);
    EXPECT_TRUE(form.keyTaken);
    EXPECT_TRUE(view().visible());
    form.Form_KeyDown(kKeyEscape, 0);
    EXPECT_FALSE(form.keyTaken) << "closes the window";
}

}  // namespace
}  // namespace quenlox
