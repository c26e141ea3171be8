#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playlist/form_list_fixture.h"

namespace quenlox {
namespace {

using testing::ElementsAre;

TEST(Browser, ShowsThePathTheFoldersInItAndTheMediaFiles) {
    ListWindow window;
    window.browse("C:\\music\\pop", {"b.mp3", "A.wav", "ignored.txt", "list.m3u", "c.WMA", "sub\\x.mp3", "Alb\\y.mp3"});
    std::vector<std::string> tree;
    for (const auto& entry : window.form.Dir1.entries()) tree.push_back(std::to_string(entry.level) + entry.name);
    EXPECT_THAT(tree, ElementsAre("0C:\\", "1music", "2pop", "3Alb", "3sub"));
    EXPECT_THAT(window.form.File1.files(), ElementsAre("A.wav", "b.mp3", "c.WMA", "list.m3u"));
    EXPECT_EQ(window.lists.count(kFolderList), 3) << "an M3U file is no track";
    EXPECT_EQ(window.lists.path(kFolderList, 1), "C:\\music\\pop\\b.mp3");
    EXPECT_EQ(window.state.CurrentFolder, "C:\\music\\pop");
    EXPECT_EQ(window.form.Drive1.drive(), "C:\\");

    window.form.Dir1.onDoubleClick(3);
    EXPECT_EQ(window.form.Dir1.path(), "C:\\music\\pop\\Alb");
    EXPECT_THAT(window.form.File1.files(), ElementsAre("y.mp3"));
    window.form.Dir1.onDoubleClick(0);
    EXPECT_EQ(window.state.CurrentFolder, "C:\\");
    window.form.Dir1.onDoubleClick(99);
}

TEST(Browser, TheFilterChoosesTheKindsOfFiles) {
    ListWindow window;
    window.browse("C:\\m", {"a.mp3", "b.mid", "c.m3u", "Track01.cda", ".mp3", "odd;*.m"});
    const std::vector<std::vector<std::string>> shown{
        {"a.mp3", "b.mid", "c.m3u", "Track01.cda"}, {"a.mp3", "b.mid", "Track01.cda"}, {"a.mp3"}, {}, {"b.mid"}, {"Track01.cda"}, {}, {"c.m3u"}};
    ASSERT_EQ(window.form.Combo1.items().size(), shown.size());
    for (std::size_t filter = 0; filter < shown.size(); ++filter) {
        window.form.Combo1.setListIndex(static_cast<int>(filter));
        EXPECT_EQ(window.form.File1.files(), shown[filter]) << filter;
    }
}

TEST(Browser, EachDriveRemembersItsFolderAndOneThatIsNotReadyIsRefused) {
    ListWindow window;
    window.files.driveList = {{"C:\\", DriveType::Fixed}, {"D:\\", DriveType::Fixed}};
    window.files.add("D:\\x.mp3");
    window.browse("C:\\music", {"a.mp3"});
    window.form.Drive1.setDrive("D:\\");
    EXPECT_EQ(window.form.Dir1.path(), "D:\\");
    EXPECT_THAT(window.form.File1.files(), ElementsAre("x.mp3"));
    window.form.Drive1.setDrive("C:\\");
    EXPECT_EQ(window.form.Dir1.path(), "C:\\music");
    window.form.Drive1.setDrive("E:\\");
    EXPECT_EQ(window.form.Drive1.drive(), "C:\\");
    EXPECT_EQ(window.form.Dir1.path(), "C:\\music");
    EXPECT_EQ(window.dialogs.messages.size(), 1u);
}

TEST(Browser, TheTracksOfTheAudioCdAreAMenuCommandAway) {
    ListWindow window;
    window.browse("C:\\music", {"a.mp3"});
    const auto show = [&] { window.menu("音楽CDの曲を表示(&C)")->onClick(); };
    show();
    EXPECT_EQ(window.dialogs.messages.size(), 1u) << "there is no drive for it";
    EXPECT_FALSE(window.state.UseFolderList);

    window.files.driveList = {{"C:\\", DriveType::Fixed}, {"D:\\", DriveType::CdRom}, {"E:\\", DriveType::CdRom}};
    for (const char* track : {"D:\\Track01.cda", "E:\\Track01.cda", "E:\\Track02.cda"}) window.files.add(track);
    show();
    EXPECT_THAT(window.form.File1.files(), ElementsAre("Track01.cda"));
    EXPECT_TRUE(window.state.UseFolderList);
    window.state.DefaultCdDrive = "E:";
    show();
    EXPECT_THAT(window.form.File1.files(), ElementsAre("Track01.cda", "Track02.cda"));
    window.files.add("E:\\Track03.cda");  // another disc
    show();
    EXPECT_EQ(window.form.File1.files().size(), 3u);
    window.state.DefaultCdDrive = "F:";
    show();
    EXPECT_EQ(window.dialogs.messages.size(), 2u) << "not ready";
    EXPECT_EQ(window.form.Drive1.drive(), "E:\\");
}

TEST(Browser, TakesFoldersOfTheNetwork) {
    ListWindow window;
    window.browse("\\\\server\\share\\music", {"a.mp3"});
    std::vector<std::string> tree;
    for (const auto& entry : window.form.Dir1.entries()) tree.push_back(entry.path);
    EXPECT_THAT(tree, ElementsAre("\\\\server\\share", "\\\\server\\share\\music"));
    window.form.menuAdd1_Click(0);
    EXPECT_EQ(window.paths(0), Paths{"\\\\server\\share\\music\\a.mp3"});
}

TEST(Browser, AddAllTakesFilesToTheNamedListAndM3UEntriesToTheCurrentOne) {
    ListWindow window;
    window.files.add("C:\\m\\list.m3u", "D:\\1.mp3\r\nother.mp3\r\n");
    window.browse("C:\\m", {"a.mp3", "b.mp3"});
    window.form.File1.setSelected(0, true);
    window.state.ListDirty = false;
    window.form.menuAdd1_Click(2);
    EXPECT_EQ(window.paths(2), (Paths{"C:\\m\\a.mp3", "C:\\m\\b.mp3"}));
    EXPECT_EQ(window.paths(0), (Paths{"D:\\1.mp3", "C:\\m\\other.mp3"}));
    EXPECT_FALSE(window.form.File1.selected(0));
    EXPECT_EQ(window.state.ShufflePos[6], 1);
    EXPECT_TRUE(window.state.ListDirty);
    EXPECT_TRUE(window.menu("削除")->enabled);
}

TEST(Browser, AddSelectedTakesTheSelectedFilesOnly) {
    ListWindow window;
    window.browse("C:\\", {"a.mp3", "b.mp3", "c.mp3"});
    window.form.File1.setSelection(Marked("x.x"));
    window.form.menuAdd2_Click(1);
    EXPECT_EQ(window.paths(1), (Paths{"C:\\a.mp3", "C:\\c.mp3"})) << "a root folder gets no second backslash";
    EXPECT_FALSE(window.form.File1.selected(2));
    window.form.menuAdd2_Click(9);
}

TEST(Browser, LoadOpensTheSelectedFileAndNeverAnM3UFile) {
    ListWindow window;
    window.browse("C:\\m", {"a.mp3", "b.mp3", "l.m3u"});
    window.state.PlayIntent = kForward;
    window.form.File1.setSelected(1, true);
    window.form.menuLoad2_Click();
    EXPECT_THAT(window.opened, ElementsAre("C:\\m\\b.mp3"));
    EXPECT_EQ(window.state.PlayIntent, kNoIntent);
    window.form.File1.setSelection(Marked("..x"));
    window.form.menuLoad2_Click();
    EXPECT_EQ(window.opened.size(), 1u);
    EXPECT_EQ(window.state.CurrentFile, "C:\\m\\b.mp3");
}

TEST(Browser, DoubleClickPlaysAFileAndImportsAList) {
    ListWindow window;
    window.files.add("C:\\m\\a.m3u", "D:\\1.mp3\r\n");
    window.browse("C:\\m", {"b.mp3", "c.mp3"});
    window.form.File1.setFocusedRow(2);
    window.form.File1_DblClick();
    EXPECT_THAT(window.opened, ElementsAre("C:\\m\\c.mp3 play"));
    EXPECT_EQ(window.state.CurrentIndex[kFolderList], 1) << "its place among the tracks";
    window.form.File1.setFocusedRow(0);
    window.form.File1_DblClick();
    EXPECT_EQ(window.paths(0), Paths{"D:\\1.mp3"});
    EXPECT_EQ(window.opened.size(), 1u);
}

TEST(Browser, AHugeFolderIsReadInSlicesAndCanBeCancelled) {
    for (const bool cancelled : {false, true}) {
        ListWindow window;
        window.browse("C:\\m", {"a.mp3"});
        for (int i = 0; i < 3000; ++i) window.files.all.push_back({"C:\\huge\\" + std::to_string(1000 + i) + ".mp3", {}, false});
        window.files.add("C:\\huge\\sub\\x.mp3");
        window.files.enumerationDelay = std::chrono::microseconds(100);
        window.form.openFolder("C:\\huge");
        EXPECT_THAT(window.form.LabelStatus.caption(), testing::HasSubstr("読み込み中"));
        EXPECT_TRUE(window.form.cmdCancel.visible());
        EXPECT_TRUE(window.form.File1.files().empty()) << "those of the old folder have gone";
        EXPECT_EQ(window.form.Dir1.entries().back().path, "C:\\huge");
        if (cancelled) window.form.cmdCancel_Click();
        window.files.enumerationDelay = {};
        window.finishWork();
        EXPECT_EQ(window.form.File1.files().size() == 3000u, !cancelled);
        EXPECT_GT(window.form.File1.files().size(), 0u) << "what was found is shown";
        EXPECT_EQ(window.form.Dir1.entries().back().name, cancelled ? "huge" : "sub");
        EXPECT_EQ(window.lists.count(kFolderList), window.form.File1.rowCount());
        EXPECT_FALSE(window.form.cmdCancel.visible());
    }
}

TEST(Browser, AFolderThatWasBeingReadWhenTheWindowClosedIsReadWhenItIsShownAgain) {
    ListWindow window;
    for (int i = 0; i < 3000; ++i) window.files.all.push_back({"C:\\huge\\" + std::to_string(1000 + i) + ".mp3", {}, false});
    window.files.enumerationDelay = std::chrono::microseconds(100);
    window.form.openFolder("C:\\huge");
    window.form.unload();
    EXPECT_FALSE(window.form.Timer1.enabled());
    window.files.enumerationDelay = {};
    window.form.show();
    EXPECT_EQ(window.form.File1.files().size(), 3000u);
}

TEST(Browser, ARefreshKeepsThePlaceInAnUnchangedFolderAndFindsItInAChangedOne) {
    ListWindow window;
    window.browse("C:\\m", {"b.mp3", "c.mp3"});
    window.form.File1.setFocusedRow(1);
    window.form.File1_DblClick();
    window.form.File1.refresh();
    EXPECT_EQ(window.state.CurrentIndex[kFolderList], 1);
    window.files.add("C:\\m\\a.mp3");
    window.form.File1.refresh();
    EXPECT_EQ(window.form.File1.files().size(), 3u);
    EXPECT_EQ(window.state.CurrentIndex[kFolderList], 2);
    window.form.TabList.setValue(FormList::kFolderTab);
    window.form.unload();
    window.files.add("C:\\m\\0.mp3");
    window.form.refreshBrowser();
    EXPECT_EQ(window.state.CurrentIndex[kFolderList], 3) << "the folder is played, seen or not";
    window.form.openFolder("C:\\");
    EXPECT_EQ(window.state.CurrentIndex[kFolderList], -1);
}

}  // namespace
}  // namespace quenlox
