#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playlist/form_list_fixture.h"

namespace quenlox {
namespace {

using FormListWindow = ListWindowTest;

using testing::ElementsAre;

TEST_F(FormListWindow, DoubleClickPlaysTheRow) {
    state.ListNo = 1;
    form.showCurrentList();
    addLetters(1, "abc");
    form.PlayView_DblClick(2);
    EXPECT_THAT(opened, ElementsAre("C:\\c.mp3 1/2 1 play"));
    // What plays goes on with a row that is loaded; a player that stands only opens it.
    select(".x.");
    form.menuLoad1_Click();
    EXPECT_EQ(opened.back(), "C:\\b.mp3 1/1 0 as before");
    answer = OpenResult::Busy;
    form.PlayView_DblClick(0);
    EXPECT_EQ(form.LabelStatus.caption(), "ファイル変換中は再生できません");
}

TEST_F(FormListWindow, ARowThatCouldNotBePlayedIsGreyUntilItCan) {
    addLetters(0, "aba");
    lists.setPlayable("C:\\a.mp3", false);
    EXPECT_TRUE(view().dimmed(0) && !view().dimmed(1) && view().dimmed(2));
    lists.setPlayable("C:\\a.mp3", true);
    EXPECT_FALSE(view().dimmed(0));
}

TEST_F(FormListWindow, NothingHappensWithoutARow) {
    form.menuLoad1_Click();
    form.PlayView_DblClick(0);
    form.menuUpDn_Click(0);
    form.menuSort_Click(0);
    form.menuLoad2_Click();
    form.File1_DblClick();
    EXPECT_TRUE(opened.empty());
}

TEST_F(FormListWindow, CommandsForRowsAreEnabledWithRowsOnly) {
    const char* const captions[] = {"削除", "上へ", "下へ", "読込"};
    const auto enabled = [&] {
        int count = 0;
        for (const char* caption : captions) count += menu(caption)->enabled;
        return count;
    };
    EXPECT_EQ(enabled(), 0);
    addLetters(0, "a");
    form.PlayView_MouseDown(1, {});
    EXPECT_EQ(enabled(), 4);
    form.menuClear_Click();
    EXPECT_EQ(enabled(), 0);
    EXPECT_FALSE(form.menuDeleteEnabled());
}

TEST_F(FormListWindow, ColumnsAreAModeAndTheirWidthsOutliveIt) {
    const auto seen = [&] { return form.columnWidths(state.ListNo); };
    const auto choose = [&](const char* caption) { MenuItem(*find(menu("表示する項目(&V)")->items, caption)).click(); };
    state.ListType = 0;
    form.showColumns();
    EXPECT_EQ(seen(), FormList::kSingleColumn);
    EXPECT_FALSE(menu("アルバム名")->enabled);
    view().setColumnWidth(0, 200);  // the single one, dragged by the user
    choose("項目に分ける(&C)");
    EXPECT_TRUE(chosen->ListColumns);
    EXPECT_EQ(seen(), FormList::kStartWidths);
    const FormList::ColumnWidths own{0, 60, 0, 0, 80};
    for (int column = 0; column < FormList::kColumns; ++column)
        view().setColumnWidth(column, own[static_cast<std::size_t>(column)]);
    choose("項目に分ける(&C)");
    EXPECT_EQ(seen(), FormList::kSingleColumn);
    choose("項目に分ける(&C)");
    EXPECT_EQ(seen(), own);
    for (const char* column : {"曲名", "アルバム名", "時間"}) choose(column);
    EXPECT_EQ(seen(), (FormList::ColumnWidths{162, 60, 162, 40, 80}));
    choose("時間");
    EXPECT_FALSE(chosen->ListTimeColumn);
    choose("幅を元に戻す(&R)");
    EXPECT_EQ(seen(), (FormList::ColumnWidths{162, 113, 162, 0, 300}));
    choose("時間");
    EXPECT_EQ(seen(), FormList::kStartWidths);
}

TEST_F(FormListWindow, TabsChooseTheCurrentList) {
    addLetters(0, "a");
    addLetters(2, "bc");
    form.PlayView[0].setColumnWidth(1, 77);
    form.TabList.setValue(2);
    EXPECT_EQ(state.ListNo, 2);
    EXPECT_FALSE(state.UseFolderList);
    EXPECT_TRUE(form.PlayView[2].visible());
    EXPECT_FALSE(form.PlayView[0].visible());
    EXPECT_EQ(form.columnWidths(2)[1], 77) << "the lists share their columns";
    form.TabList.setValue(FormList::kFolderTab);
    EXPECT_TRUE(state.UseFolderList);
    EXPECT_EQ(state.ListNo, 2) << "the list to which files are added";
    form.menuDelete_Click();
    form.menuClear_Click();
    form.menuSort_Click(5);
    EXPECT_EQ(lists.count(2), 2) << "a list that is not on the screen is not changed";
    form.TabList.setValue(2);
    EXPECT_FALSE(state.UseFolderList);
    form.menuClear_Click();
    EXPECT_EQ(names(0) + names(2), "a");
}

TEST_F(FormListWindow, KeysActOnTheList) {
    addLetters(0, "abcd");
    select("..x.");
    form.Form_KeyDown(0x26, 4);
    EXPECT_EQ(names(0), "acbd");
    form.Form_KeyDown(0x28, 4);
    form.Form_KeyDown(0x28, 4);
    EXPECT_EQ(names(0), "abdc");
    EXPECT_EQ(marks(), "...x");
    form.PlayView_RowsDragged(0);
    EXPECT_EQ(names(0), "cabd");
    EXPECT_EQ(marks(), "x...");
    form.PlayView_KeyDown(0x2E, 0);
    EXPECT_EQ(names(0), "abd");
    form.Form_KeyDown('3', 2);
    EXPECT_EQ(state.ListNo, 2);
    form.Form_KeyDown('4', 2);
    EXPECT_TRUE(state.UseFolderList);
}

TEST_F(FormListWindow, ShowsCountSelectionAndTotalTime) {
    for (const char letter : std::string("abc")) vbmp3.addFile(Lists::pathOf(letter), kMpegFile, 1500);
    addLetters(0, "abc");
    for (int row = 0; row < 3; ++row) view().textOf(row, kTitleColumn);  // all of them are on the screen
    finishWork();
    EXPECT_EQ(form.LabelStatus.caption(), "3曲　合計 1:15:00");
    select("xx.");
    finishWork();
    EXPECT_EQ(form.LabelStatus.caption(), "3曲（2曲を選択）　合計 1:15:00");
    form.menuDelete_Click();
    EXPECT_EQ(form.LabelStatus.caption(), "1曲（1曲を選択）　合計 0:25:00");
}

TEST_F(FormListWindow, NothingIsReadWhileItIsHidden) {
    ListWindow window(false);
    window.files.add("C:\\music\\a.mp3");
    window.addLetters(0, "abc");
    window.form.openFolder("C:\\music");
    EXPECT_FALSE(window.form.Timer1.enabled());
    EXPECT_TRUE(window.form.File1.files().empty());
    window.form.show();
    EXPECT_THAT(window.form.File1.files(), ElementsAre("a.mp3"));
    EXPECT_TRUE(window.form.Timer1.enabled());
    window.form.unload();
    EXPECT_FALSE(window.form.Timer1.enabled());
}

TEST_F(FormListWindow, TypedLettersFindTheNextTitle) {
    vbmp3.addFile("C:\\a.mp3", kMpegFile, 1, "さくら");
    vbmp3.addFile("C:\\b.mp3", kMpegFile, 1, "Alpha");
    vbmp3.addFile("C:\\c.mp3", kMpegFile, 1, "ALPS");
    addLetters(0, "abc");
    EXPECT_EQ(view().find("b", 0), 1) << "by the file name while the title is not known";
    finishWork();
    EXPECT_EQ(view().find("al", 0), 1);
    EXPECT_EQ(view().find("al", 2), 2);
    EXPECT_EQ(view().find("alph", 2), 1) << "from the end it goes on at the top";
    EXPECT_EQ(view().find("ｻｸ", 1), 0);
    EXPECT_EQ(view().find("x", 0), -1);
}

TEST_F(FormListWindow, ASelectionFollowsItsRowsWhenPlaybackRemovesOne) {
    addLetters(0, "abcde");
    select("x..xx");
    view().setFocusedRow(3);
    state.CurrentFile = "C:\\b.mp3";
    lists.RemoveCurrentFileFromLists();
    EXPECT_EQ(names(0), "acde");
    EXPECT_EQ(marks(), "x.xx");
    EXPECT_EQ(view().focusedRow(), 2);
}

}  // namespace
}  // namespace quenlox
