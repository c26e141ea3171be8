#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playlist/form_list_fixture.h"

namespace quenlox {
namespace {

using Browser = ListWindowTest;

using testing::ElementsAre;

TEST_F(Browser, ShowsThePathTheFoldersInItAndTheMediaFiles) {
    browse("C:\\music\\pop", {"b.mp3", "A.wav", "ignored.txt", "list.m3u", "c.WMA", "sub\\x.mp3", "Alb\\y.mp3"});
    std::vector<std::string> tree;
    for (const auto& entry : form.Dir1.entries()) tree.push_back(std::to_string(entry.level) + entry.name);
    EXPECT_THAT(tree, ElementsAre("0C:\\", "1music", "2pop", "3Alb", "3sub"));
    EXPECT_THAT(form.File1.files(), ElementsAre("A.wav", "b.mp3", "c.WMA", "list.m3u"));
    EXPECT_EQ(lists.count(kFolderList), 3) << "an M3U file is no track";
    EXPECT_EQ(lists.path(kFolderList, 1), "C:\\music\\pop\\b.mp3");
    EXPECT_EQ(state.CurrentFolder, "C:\\music\\pop");
    EXPECT_EQ(form.Drive1.drive(), "C:\\");

    form.Dir1.onDoubleClick(3);
    EXPECT_EQ(form.Dir1.path(), "C:\\music\\pop\\Alb");
    EXPECT_THAT(form.File1.files(), ElementsAre("y.mp3"));
    form.Dir1.onDoubleClick(0);
    EXPECT_EQ(state.CurrentFolder, "C:\\");
    form.Dir1.onDoubleClick(99);
}

TEST_F(Browser, TheFilterChoosesTheKindsOfFiles) {
    browse("C:\\m", {"a.mp3", "b.mid", "c.m3u", "Track01.cda", ".mp3", "odd;*.m"});
    const std::vector<std::vector<std::string>> shown{{"a.mp3", "b.mid", "c.m3u", "Track01.cda"},
                                                      {"a.mp3", "b.mid", "Track01.cda"},
                                                      {"a.mp3"},
                                                      {},
                                                      {"b.mid"},
                                                      {"Track01.cda"},
                                                      {},
                                                      {"c.m3u"}};
    ASSERT_EQ(form.Combo1.items().size(), shown.size());
    for (std::size_t filter = 0; filter < shown.size(); ++filter) {
        form.Combo1.setListIndex(static_cast<int>(filter));
        EXPECT_EQ(form.File1.files(), shown[filter]) << filter;
    }
}

TEST_F(Browser, TheTracksOfTheAudioCdAreAMenuCommandAway) {
    browse("C:\\music", {"a.mp3"});
    const auto show = [&] { menu("音楽CDの曲を表示(&C)")->onClick(); };
    show();
    EXPECT_EQ(dialogs.messages.size(), 1u) << "there is no drive for it";
    EXPECT_FALSE(state.UseFolderList);

    files.driveList = {{"C:\\", DriveType::Fixed}, {"D:\\", DriveType::CdRom}, {"E:\\", DriveType::CdRom}};
    for (const char* track : {"D:\\Track01.cda", "E:\\Track01.cda", "E:\\Track02.cda"}) files.add(track);
    show();
    EXPECT_THAT(form.File1.files(), ElementsAre("Track01.cda"));
    EXPECT_TRUE(state.UseFolderList);
    chosen.set(&Options::DefaultCdDrive, "E:");
    show();
    EXPECT_THAT(form.File1.files(), ElementsAre("Track01.cda", "Track02.cda"));
    files.add("E:\\Track03.cda");  // another disc
    show();
    EXPECT_EQ(form.File1.files().size(), 3u);
    chosen.set(&Options::DefaultCdDrive, "F:");
    show();
    EXPECT_EQ(dialogs.messages.size(), 2u) << "not ready";
    EXPECT_EQ(form.Drive1.drive(), "E:\\");
}

TEST_F(Browser, TakesFoldersOfTheNetwork) {
    browse("\\\\server\\share\\music", {"a.mp3"});
    std::vector<std::string> tree;
    for (const auto& entry : form.Dir1.entries()) tree.push_back(entry.path);
    EXPECT_THAT(tree, ElementsAre("\\\\server\\share", "\\\\server\\share\\music"));
    form.menuAdd1_Click(0);
    EXPECT_EQ(paths(0), Paths{"\\\\server\\share\\music\\a.mp3"});
}

TEST_F(Browser, DoubleClickPlaysAFileAndImportsAList) {
    files.add("C:\\m\\a.m3u", "D:\\1.mp3\r\n");
    browse("C:\\m", {"b.mp3", "c.mp3"});
    form.File1.setFocusedRow(2);
    form.File1_DblClick();
    EXPECT_THAT(opened, ElementsAre("C:\\m\\c.mp3 3/1 1 play")) << "its place among the tracks";
    form.File1.setFocusedRow(0);
    form.File1_DblClick();
    EXPECT_EQ(paths(0), Paths{"D:\\1.mp3"});
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(Browser, AHugeFolderIsReadInSlicesAndCanBeCancelled) {
    for (const bool cancelled : {false, true}) {
        ListWindow window;
        window.browse("C:\\m", {"a.mp3"});
        for (int i = 0; i < 3000; ++i)
            window.files.all.push_back({"C:\\huge\\" + std::to_string(1000 + i) + ".mp3", {}, false});
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

TEST_F(Browser, AFolderThatWasBeingReadWhenTheWindowClosedIsReadWhenItIsShownAgain) {
    for (int i = 0; i < 3000; ++i) files.all.push_back({"C:\\huge\\" + std::to_string(1000 + i) + ".mp3", {}, false});
    files.enumerationDelay = std::chrono::microseconds(100);
    form.openFolder("C:\\huge");
    form.unload();
    EXPECT_FALSE(form.Timer1.enabled());
    files.enumerationDelay = {};
    form.show();
    EXPECT_EQ(form.File1.files().size(), 3000u);
}

TEST_F(Browser, ARefreshKeepsThePlaceInAnUnchangedFolderAndFindsItInAChangedOne) {
    browse("C:\\m", {"b.mp3", "c.mp3"});
    state.CurrentFile = "C:\\m\\c.mp3";
    state.CurrentIndex[kFolderList] = 1;
    form.File1.refresh();
    EXPECT_EQ(state.CurrentIndex[kFolderList], 1);
    files.add("C:\\m\\a.mp3");
    form.File1.refresh();
    EXPECT_EQ(form.File1.files().size(), 3u);
    EXPECT_EQ(state.CurrentIndex[kFolderList], 2);
    form.TabList.setValue(FormList::kFolderTab);
    form.unload();
    files.add("C:\\m\\0.mp3");
    form.refreshBrowser();
    EXPECT_EQ(state.CurrentIndex[kFolderList], 3) << "the folder is played, seen or not";
    form.openFolder("C:\\");
    EXPECT_EQ(state.CurrentIndex[kFolderList], -1);
}

TEST_F(Browser, AFolderThatHasGoneOpensAtItsNearestParentAndADriveThatHasGoneNot) {
    files.add("C:\\a\\b\\x.mp3");
    files.add("\\\\nas\\music\\y.mp3");
    for (const auto& [folder, opens] : {std::pair{"C:\\a\\b\\c\\d\\", "C:\\a\\b"},
                                        {"C:\\gone", "C:\\"},
                                        {"E:\\gone", "C:\\"},
                                        {"\\\\nas\\music\\gone\\2", "\\\\nas\\music"},
                                        {"", "\\\\nas\\music"}}) {
        form.openFolder(folder);
        EXPECT_EQ(form.Dir1.path(), opens) << folder;
    }
}

}  // namespace
}  // namespace quenlox
