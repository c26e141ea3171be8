#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playlist/form_list_fixture.h"

namespace quenlox {
namespace {

using testing::ElementsAre;

void addTitled(ListWindow& window, char letter, const std::string& title, int seconds = 60) {
    window.vbmp3.addFile(Lists::pathOf(letter), VBMP3_TYPE_MPEG, seconds, title, "Artist", "Album");
    window.lists.AddEntry(Lists::pathOf(letter), 0);
}

TEST(FormListCommands, ClearEmptiesTheCurrentList) {
    ListWindow window;
    window.addLetters(0, "ab");
    window.addLetters(1, "c");
    window.state.ListDirty = false;
    window.form.menuClear_Click();
    EXPECT_EQ(window.lists.count(0), 0);
    EXPECT_EQ(window.names(1), "c");
    EXPECT_EQ(window.view().rowCount(), 0);
    EXPECT_TRUE(window.state.ListDirty);
}

TEST(FormListCommands, DeleteRemovesTheSelectedRows) {
    ListWindow window;
    window.addLetters(0, "abcde");
    window.state.ListDirty = false;
    window.select("x.xx.");
    window.view().setFocusedRow(3);
    window.form.menuDelete_Click();
    EXPECT_EQ(window.names(0), "be");
    EXPECT_EQ(window.marks(), "..");
    EXPECT_EQ(window.view().focusedRow(), 1);
    EXPECT_EQ(window.state.ShufflePos[4], 1);
    EXPECT_TRUE(window.state.ListDirty);
}

TEST(FormListCommands, AHeaderClickSortsOnceAndLeavesTheListFileAlone) {
    ListWindow window;
    addTitled(window, 'a', "z");
    addTitled(window, 'b', "y");
    addTitled(window, 'c', "x");
    window.state.ListDirty = false;
    window.select("x..");
    window.form.PlayView_ColumnClick(kTitleColumn);
    EXPECT_EQ(window.names(0), "cba");
    EXPECT_EQ(window.marks(), "..x");
    EXPECT_FALSE(window.state.ListDirty);
    addTitled(window, 'd', "a");
    EXPECT_EQ(window.names(0), "cbad") << "what comes later is not sorted in";
    window.form.PlayView_ColumnClick(kFileColumn);
    EXPECT_EQ(window.names(0), "abcd");
    window.form.PlayView_ColumnClick(kFileColumn);
    EXPECT_EQ(window.names(0), "dcba") << "the second click turns the order round";
    window.form.PlayView_ColumnClick(kFileColumn);
    EXPECT_EQ(window.names(0), "abcd");
    EXPECT_FALSE(window.state.ListDirty);
}

TEST(FormListCommands, TheSortMenuSortsByTheColumnOfItsItem) {
    struct Case {
        int listType;
        int item;
        const char* order;
    };
    // Titles c b a, times 0:03 0:01 0:02, artists and albums alike.
    const Case cases[] = {{1, 0, "cba"}, {1, 1, "abc"}, {1, 2, "bca"}, {1, 4, "abc"}, {0, 0, "abc"}, {0, 2, "abc"}, {0, 3, "cba"}};
    for (const Case& c : cases) {
        ListWindow window;
        window.state.ListType = c.listType;
        addTitled(window, 'a', "c", 3);
        addTitled(window, 'b', "b", 1);
        addTitled(window, 'c', "a", 2);
        window.state.ListDirty = false;
        window.form.menuSort_Click(c.item);
        EXPECT_EQ(window.names(0), c.order) << c.listType << c.item;
        EXPECT_EQ(window.state.ListDirty, c.listType != 0 || c.item >= 3);
    }
}

TEST(FormListCommands, TheRandomItemKeepsTheCurrentEntry) {
    ListWindow window;
    window.random = FakeRandom({0.9, 0.3, 0.1, 0.7, 0.2});
    window.addLetters(0, "abcde");
    window.state.CurrentFile = "C:\\d.mp3";
    window.state.CurrentIndex[0] = 3;
    window.select("xxxxx");
    window.state.ListDirty = false;
    window.form.menuSort_Click(5);
    EXPECT_NE(window.names(0), "abcde");
    EXPECT_EQ(window.lists.path(0, window.state.CurrentIndex[0]), "C:\\d.mp3");
    EXPECT_EQ(window.marks(), ".....");
    EXPECT_TRUE(window.state.ListDirty);
}

TEST(FormListCommands, ASortByTextsOfManyFilesWaitsForThemAndCanBeCancelled) {
    ListWindow window;
    for (int i = 0; i < 300; ++i) window.lists.AddEntry("C:\\" + std::to_string(1000 - i) + ".mp3", 0);
    window.vbmp3.delay = std::chrono::milliseconds(1);
    window.form.PlayView_ColumnClick(kTitleColumn);
    EXPECT_TRUE(window.form.cmdCancel.visible());
    EXPECT_EQ(window.lists.path(0, 0), "C:\\1000.mp3") << "not sorted yet";
    window.form.cmdCancel_Click();
    EXPECT_FALSE(window.form.cmdCancel.visible());
    EXPECT_EQ(window.lists.path(0, 0), "C:\\1000.mp3");
    window.form.PlayView_ColumnClick(kTitleColumn);
    window.vbmp3.delay = {};
    window.finishWork();
    EXPECT_EQ(window.lists.path(0, 0), "C:\\1000.mp3");
    EXPECT_EQ(window.lists.path(0, 1), "C:\\701.mp3") << "sorted by text";
    window.form.PlayView_ColumnClick(kTitleColumn);
    EXPECT_EQ(window.lists.path(0, 0), "C:\\999.mp3") << "a sort that was cancelled is no first click";
}

TEST(FormListCommands, MovingKeepsSelectionAndCurrentEntry) {
    ListWindow window;
    window.addLetters(0, "abcde");
    window.state.CurrentFile = "C:\\c.mp3";
    window.state.CurrentIndex[0] = 2;
    window.select(".xx..");
    window.form.menuUpDn_Click(1);
    EXPECT_EQ(window.names(0), "adbce");
    EXPECT_EQ(window.marks(), "..xx.");
    EXPECT_EQ(window.state.CurrentIndex[0], 3);
    window.form.menuUpDn_Click(0);
    window.form.menuUpDn_Click(0);
    window.form.menuUpDn_Click(0);
    EXPECT_EQ(window.names(0), "bcade");
    EXPECT_EQ(window.marks(), "xx...");
    window.form.PlayView_RowsDragged(5);
    EXPECT_EQ(window.names(0), "adebc");
    EXPECT_EQ(window.marks(), "...xx");
    EXPECT_EQ(window.state.CurrentIndex[0], 4);
}

TEST(FormListCommands, SaveExportsTheCurrentListUnderTheChosenName) {
    ListWindow window;
    window.state.ListNo = 2;
    window.form.showCurrentList();
    window.addLetters(2, "ba");
    window.form.menuSave_Click();
    EXPECT_EQ(window.files.writes, 0) << "the dialog was cancelled";
    window.dialogs.fileAnswers.push_back("D:\\list");
    window.form.menuSave_Click();
    EXPECT_EQ(window.files.bytesOf("D:\\list.m3u"), "C:\\b.mp3\r\nC:\\a.mp3\r\n");
    EXPECT_EQ(window.dialogs.fileDialogs.back().title, "保存M3Uﾌｧｲﾙ名の指定");
    EXPECT_EQ(window.dialogs.fileDialogs.back().filterName, "M3Uﾌｧｲﾙ");
    EXPECT_EQ(window.dialogs.fileDialogs.back().filter, "*.m3u");
    window.dialogs.fileAnswers.push_back("D:\\list");
    window.dialogs.confirms = {false};  // to replace it
    window.form.menuSave_Click();
    EXPECT_EQ(window.files.writes, 1);
    window.files.writesFail = true;
    window.dialogs.fileAnswers.push_back("D:\\other");
    window.form.menuSave_Click();
    EXPECT_EQ(window.dialogs.messages.size(), 1u);
}

TEST(FormListCommands, DroppedFoldersListsAndFilesAreAddedInTheirOrder) {
    ListWindow window;
    window.files.add("D:\\album\\1.mp3");
    window.files.add("D:\\album\\x.txt");
    window.files.add("D:\\album\\sub\\2.mp3");
    window.files.add("D:\\l.M3U", "album\\3.mp3\r\nE:\\4.mp3\r\n");
    window.files.add("D:\\note.txt");
    window.state.ListDirty = false;
    window.form.PlayView_FilesDropped({"D:\\z.mp3", "D:\\album", "D:\\l.M3U", "D:\\note.txt"});
    EXPECT_EQ(window.paths(0), (Paths{"D:\\z.mp3", "D:\\album\\1.mp3", "D:\\album\\3.mp3", "E:\\4.mp3", "D:\\note.txt"}));
    EXPECT_EQ(window.view().rowCount(), 5);
    EXPECT_EQ(window.state.ShufflePos[4], 4);
    EXPECT_TRUE(window.state.ListDirty);
}

TEST(FormListCommands, AddingAHugeFolderGoesOnInSlicesAndCanBeCancelled) {
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
        if (cancelled) window.form.cmdCancel.click();
        window.files.enumerationDelay = {};
        window.finishWork();
        EXPECT_EQ(window.lists.count(0), cancelled ? atOnce : 3000) << "what was found before stays";
        if (!cancelled) EXPECT_EQ(window.paths(0), many);
        EXPECT_EQ(window.state.ShufflePos[4], window.lists.count(0) - 1);
        EXPECT_TRUE(window.state.ListDirty);
        EXPECT_FALSE(window.form.cmdCancel.visible());
    }
}

TEST(FormListCommands, AddingManyFilesShowsHowFarItIs) {
    ListWindow window;
    Paths many;
    for (int i = 0; i < 400; ++i) many.push_back("D:\\" + std::to_string(i) + ".mp3");
    window.files.lookUpDelay = std::chrono::milliseconds(1);
    window.form.PlayView_FilesDropped(many);
    EXPECT_TRUE(window.form.Progress.visible());
    EXPECT_GT(window.form.Progress.value(), 0);
    window.files.lookUpDelay = {};
    window.finishWork();
    EXPECT_EQ(window.paths(0), many);
    EXPECT_FALSE(window.form.Progress.visible());
}

TEST(FormListCommands, TheImportCommandAddsTheEntriesOfEachChosenListToTheCurrentOne) {
    ListWindow window;
    window.files.add("D:\\m\\one.m3u", "#EXTM3U\r\n#EXTINF:1,x\r\na\\1.mp3\r\nE:\\2.mp3\r\nx.mp3\r\n");
    window.files.add("D:\\two.M3U", "日本の曲.mp3");
    window.form.TabList.setValue(1);
    window.state.ListDirty = false;
    const MenuItem* command = window.menu("M3Uファイルを読み込む(&M)...");
    ASSERT_TRUE(command);
    command->click();
    EXPECT_FALSE(window.state.ListDirty) << "the dialog was cancelled";
    window.dialogs.filesAnswers.push_back({"D:\\m\\one.m3u", "D:\\missing.m3u", "D:\\two.M3U"});
    command->click();
    EXPECT_EQ(window.paths(1), (Paths{"D:\\m\\a\\1.mp3", "E:\\2.mp3", "D:\\日本の曲.mp3"}));
    EXPECT_EQ(window.lists.count(0), 0);
    EXPECT_EQ(window.state.ShufflePos[5], 2);
    EXPECT_TRUE(window.state.ListDirty);
}

TEST(FormListCommands, ToolbarButtonsDoWhatTheirCommandsDo) {
    ListWindow window;
    window.files.add("D:\\l.m3u", "D:\\m1.mp3\n");
    window.files.add("E:\\album\\b.mp3");
    window.dialogs.filesAnswers.push_back({"D:\\a.mp3", "D:\\l.m3u"});
    window.form.Toolbar1_ButtonClick("add");
    window.dialogs.folderAnswers.push_back("E:\\album");
    window.form.Toolbar1_ButtonClick("addFolder");
    EXPECT_EQ(window.paths(0), (Paths{"D:\\a.mp3", "D:\\m1.mp3", "E:\\album\\b.mp3"}));
    window.select("x..");
    window.form.Toolbar1_ButtonClick("down");
    EXPECT_EQ(window.marks(), ".x.");
    window.form.Toolbar1_ButtonClick("up");
    window.form.Toolbar1_ButtonClick("delete");
    EXPECT_EQ(window.lists.count(0), 2);
    window.form.Toolbar1_ButtonClick("browser");
    EXPECT_FALSE(window.form.File1.visible());
    window.form.Toolbar1_ButtonClick("browser");
    EXPECT_TRUE(window.form.File1.visible());
}

}  // namespace
}  // namespace quenlox
