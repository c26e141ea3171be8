#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playlist/form_list_fixture.h"

namespace quenlox {
namespace {

using testing::ElementsAre;

TEST(FormListWindow, DoubleClickPlaysTheRow) {
    ListWindow window;
    window.state.ListNo = 1;
    window.form.showCurrentList();
    window.addLetters(1, "abc");
    window.form.PlayView_DblClick(2);
    EXPECT_EQ(window.state.CurrentFile, "C:\\c.mp3");
    EXPECT_EQ(window.state.CurrentIndex[1], 2);
    EXPECT_EQ(window.state.PlayIntent, kForward);
    EXPECT_THAT(window.opened, ElementsAre("C:\\c.mp3 play"));
    EXPECT_TRUE(window.view().marked(2));
    EXPECT_FALSE(window.view().marked(1));
}

TEST(FormListWindow, LoadOpensTheRowAndPlaysItOnlyWhenAFileIsPlaying) {
    for (const int status : {kStop, kPlay, kPause}) {
        ListWindow window;
        window.addLetters(0, "abc");
        window.state.PlayerStatus = status;
        window.state.PlayIntent = kForward;
        window.select(".x.");
        window.form.menuLoad1_Click();
        EXPECT_EQ(window.state.CurrentIndex[0], 1);
        EXPECT_EQ(window.state.PlayIntent, kNoIntent);
        EXPECT_THAT(window.opened, ElementsAre(status == kPlay ? "C:\\b.mp3 play" : "C:\\b.mp3"));
    }
}

TEST(FormListWindow, NothingHappensWithoutARow) {
    ListWindow window;
    window.form.menuLoad1_Click();
    window.form.PlayView_DblClick(0);
    window.form.menuUpDn_Click(0);
    window.form.menuSort_Click(0);
    window.form.menuLoad2_Click();
    window.form.File1_DblClick();
    EXPECT_TRUE(window.opened.empty());
}

TEST(FormListWindow, TheRowOfTheTrackIsMarkedAndScrolledTo) {
    ListWindow window;
    window.addLetters(0, "abcdef");
    window.state.CurrentFile = "C:\\e.mp3";
    window.state.CurrentIndex[0] = 4;
    window.form.trackChanged();
    EXPECT_EQ(window.view().rowToShow(), 4);
    EXPECT_TRUE(window.view().marked(4));
    // The list has moved on under it: another file in that place is not the track.
    window.state.CurrentFile = "C:\\gone.mp3";
    EXPECT_FALSE(window.view().marked(4));
}

TEST(FormListWindow, CommandsForRowsAreEnabledWithRowsOnly) {
    ListWindow window;
    const char* const captions[] = {"削除", "上へ", "下へ", "読込"};
    const auto enabled = [&] {
        int count = 0;
        for (const char* caption : captions) count += window.menu(caption)->enabled;
        return count;
    };
    EXPECT_EQ(enabled(), 0);
    window.addLetters(0, "a");
    window.form.PlayView_MouseDown(1, {});
    EXPECT_EQ(enabled(), 4);
    window.form.menuClear_Click();
    EXPECT_EQ(enabled(), 0);
    EXPECT_FALSE(window.form.menuDeleteEnabled());
}

TEST(FormListWindow, TabsChooseTheCurrentList) {
    ListWindow window;
    window.addLetters(0, "a");
    window.addLetters(2, "bc");
    window.form.PlayView[0].setColumnWidth(1, 77);
    window.form.TabList.setValue(2);
    EXPECT_EQ(window.state.ListNo, 2);
    EXPECT_FALSE(window.state.UseFolderList);
    EXPECT_TRUE(window.form.PlayView[2].visible());
    EXPECT_FALSE(window.form.PlayView[0].visible());
    EXPECT_EQ(window.form.columnWidths(2)[1], 77) << "the lists share their columns";
    window.form.TabList.setValue(FormList::kFolderTab);
    EXPECT_TRUE(window.state.UseFolderList);
    EXPECT_EQ(window.state.ListNo, 2) << "the list to which files are added";
    window.form.menuDelete_Click();
    window.form.menuClear_Click();
    window.form.menuSort_Click(5);
    EXPECT_EQ(window.lists.count(2), 2) << "a list that is not on the screen is not changed";
    window.form.TabList.setValue(0);
    EXPECT_FALSE(window.state.UseFolderList);
    EXPECT_EQ(window.state.ListNo, 0);
}

TEST(FormListWindow, KeysActOnTheList) {
    ListWindow window;
    window.addLetters(0, "abcd");
    window.select("..x.");
    window.form.Form_KeyDown(0x26, 4);
    EXPECT_EQ(window.names(0), "acbd");
    window.form.Form_KeyDown(0x28, 4);
    window.form.Form_KeyDown(0x28, 4);
    EXPECT_EQ(window.names(0), "abdc");
    window.form.PlayView_KeyDown(0x2E, 0);
    EXPECT_EQ(window.names(0), "abd");
    window.form.Form_KeyDown('3', 2);
    EXPECT_EQ(window.state.ListNo, 2);
    window.form.Form_KeyDown('4', 2);
    EXPECT_TRUE(window.state.UseFolderList);
}

TEST(FormListWindow, ClosingHidesItUntilTheProgramEnds) {
    ListWindow window;
    window.state.ListShown = true;
    EXPECT_FALSE(window.form.unload());
    EXPECT_FALSE(window.form.visible());
    EXPECT_FALSE(window.state.ListShown);
    window.state.ShuttingDown = true;
    EXPECT_TRUE(window.form.unload());
}

TEST(FormListWindow, ShowsCountSelectionAndTotalTime) {
    ListWindow window;
    for (const char letter : std::string("abc")) window.vbmp3.addFile(Lists::pathOf(letter), VBMP3_TYPE_MPEG, 1500);
    window.addLetters(0, "abc");
    for (int row = 0; row < 3; ++row) window.view().textOf(row, kTitleColumn);  // all of them are on the screen
    window.finishWork();
    EXPECT_EQ(window.form.LabelStatus.caption(), "3曲　合計 1:15:00");
    window.select("xx.");
    window.finishWork();
    EXPECT_EQ(window.form.LabelStatus.caption(), "3曲（2曲を選択）　合計 1:15:00");
    window.form.menuDelete_Click();
    EXPECT_EQ(window.form.LabelStatus.caption(), "1曲　合計 0:25:00");
}

TEST(FormListWindow, TextsAreReadForARowOnTheScreenAndThenInTheBackground) {
    ListWindow window;
    window.vbmp3.addFile("C:\\b.mp3", VBMP3_TYPE_MPEG, 65, "Title", "Artist");
    window.addLetters(0, "abc");
    EXPECT_EQ(window.view().textOf(1, kFileColumn), "C:\\b.mp3");
    EXPECT_TRUE(window.vbmp3.infoReads.empty());
    EXPECT_EQ(window.view().textOf(1, kTitleColumn), "Title");
    EXPECT_EQ(window.view().textOf(1, kTimeColumn), "1:05");
    EXPECT_EQ(window.vbmp3.infoReads, Paths{"C:\\b.mp3"});
    window.finishWork();
    EXPECT_EQ(window.vbmp3.infoReads.size(), 3u);
    EXPECT_FALSE(window.form.Timer1.enabled());
}

TEST(FormListWindow, NothingIsReadWhileItIsHidden) {
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

TEST(FormListWindow, TypedLettersFindTheNextTitle) {
    ListWindow window;
    window.vbmp3.addFile("C:\\a.mp3", VBMP3_TYPE_MPEG, 1, "さくら");
    window.vbmp3.addFile("C:\\b.mp3", VBMP3_TYPE_MPEG, 1, "Alpha");
    window.vbmp3.addFile("C:\\c.mp3", VBMP3_TYPE_MPEG, 1, "ALPS");
    window.addLetters(0, "abc");
    EXPECT_EQ(window.view().find("b", 0), 1) << "by the file name while the title is not known";
    window.finishWork();
    EXPECT_EQ(window.view().find("al", 0), 1);
    EXPECT_EQ(window.view().find("al", 2), 2);
    EXPECT_EQ(window.view().find("alph", 2), 1) << "from the end it goes on at the top";
    EXPECT_EQ(window.view().find("ｻｸ", 1), 0);
    EXPECT_EQ(window.view().find("x", 0), -1);
}

TEST(FormListWindow, ASelectionFollowsItsRowsWhenPlaybackRemovesOne) {
    ListWindow window;
    window.addLetters(0, "abcde");
    window.select("x..xx");
    window.view().setFocusedRow(3);
    window.state.CurrentFile = "C:\\b.mp3";
    window.lists.RemoveCurrentFileFromLists();
    EXPECT_EQ(window.names(0), "acde");
    EXPECT_EQ(window.marks(), "x.xx");
    EXPECT_EQ(window.view().focusedRow(), 2);
}

TEST(FormListWindow, SortItemsFitTheMode) {
    ListWindow window;
    const auto shown = [&] {
        std::string items;
        for (std::size_t i = 0; i < window.form.menuSort.items.size(); ++i)
            items += window.form.menuSort.items[i].visible ? static_cast<char>('0' + i) : '-';
        return items;
    };
    window.form.showSortItems(true);
    EXPECT_EQ(shown(), "012-45");
    window.form.showSortItems(false);
    EXPECT_EQ(shown(), "---345");
}

}  // namespace
}  // namespace quenlox
