#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/playlist/lists_fixture.h"

namespace quenlox {

void PrintTo(const Playlists::Change& c, std::ostream* to) {
    *to << "list " << c.list << " rows " << c.first << "-" << c.last << (c.countChanged ? " count" : "");
}

namespace {

using Change = Playlists::Change;
using testing::ElementsAre;

TEST_F(ListsTest, RefusesWhatNoFileOrListCanBe) {
    for (const char* path : {"", "C:\\a\r\nb.mp3", "C:\\a\n"}) EXPECT_FALSE(lists.AddEntry(path, 0)) << path;
    for (const int list : {-1, 3, 4}) EXPECT_FALSE(lists.AddEntry("C:\\a.mp3", list)) << list;
    EXPECT_EQ(lists.path(0, 0), "");
    EXPECT_EQ(lists.path(0, -1), "");
    EXPECT_EQ(lists.count(7), 0);
}

TEST_F(ListsTest, RemovesTheCurrentFileFromListsAAndBOnly) {
    for (int list = 0; list < 3; ++list) addLetters(list, "xaxbx");
    state.CurrentFile = "C:\\x.mp3";
    state.CurrentIndex = {3, 2, 2, -1};
    EXPECT_TRUE(lists.RemoveCurrentFileFromLists());
    EXPECT_EQ(names(0), "ab");
    EXPECT_EQ(names(1), "ab");
    EXPECT_EQ(names(2), "xaxbx");
    EXPECT_EQ(state.CurrentIndex[0], 1) << "b, as before";
    EXPECT_EQ(state.CurrentIndex[1], 0) << "the row before the one that went";
    EXPECT_EQ(state.CurrentIndex[2], 2);
    EXPECT_TRUE(state.ListDirty);
    state.ListDirty = false;
    EXPECT_FALSE(lists.RemoveCurrentFileFromLists());
    EXPECT_FALSE(state.ListDirty);
}

TEST_F(ListsTest, ARenamedFileGetsItsNewPathInListsAAndBOnly) {
    for (int list = 0; list < 3; ++list) addLetters(list, "axa");
    vbmp3.addFile("C:\\a.mp3", kMpegFile, 10, "Title");
    lists.entry(0, 0);
    lists.renamePath("C:\\a.mp3", "C:\\a much longer name.mp3");
    EXPECT_EQ(paths(0), (Paths{"C:\\a much longer name.mp3", "C:\\x.mp3", "C:\\a much longer name.mp3"}));
    EXPECT_EQ(paths(1), paths(0));
    EXPECT_EQ(names(2), "axa");
    EXPECT_EQ(lists.entry(0, 0).Title, "Title");
    EXPECT_TRUE(state.ListDirty);
}

TEST_F(ListsTest, TellTheListenerWhichRowsChanged) {
    std::vector<Change> changes;
    lists.onChange = [&](const Change& change) { changes.push_back(change); };
    const auto taken = [&] { return std::exchange(changes, {}); };

    addLetters(1, "ab");
    EXPECT_THAT(taken(), ElementsAre(Change{1, 0, 0, true}, Change{1, 1, 1, true}));
    files.add("C:\\l.m3u", "C:\\c.mp3\nC:\\d.mp3\nC:\\e.mp3");
    lists.ImportM3U("C:\\", "l.m3u", 1);
    EXPECT_THAT(taken(), ElementsAre(Change{1, 2, 4, true}));
    auto selection = Marked(".x.x.");
    lists.moveDown(1, selection);
    EXPECT_THAT(taken(), ElementsAre(Change{1, 1, 4, false}));
    lists.removeSelected(1, Marked("..x.."));
    EXPECT_THAT(taken(), ElementsAre(Change{1, 2, 3, true}));
    lists.removeSelected(1, Marked("...."));
    EXPECT_THAT(taken(), ElementsAre());
    lists.fillSome(std::chrono::seconds(10));
    EXPECT_THAT(taken(), ElementsAre(Change{1, 0, 3, false}));
    {
        const Playlists::Batch batch(lists);
        addLetters(0, "xyz");
        lists.renamePath("C:\\a.mp3", "C:\\aa.mp3");
        EXPECT_TRUE(changes.empty());
    }
    EXPECT_THAT(taken(), ElementsAre(Change{0, 0, 2, true}, Change{1, 0, 0, false}));
    lists.clear(1);
    EXPECT_THAT(taken(), ElementsAre(Change{1, 0, -1, true}));
}

TEST_F(ListsTest, GiveMemoryBackWhenRowsGo) {
    for (int i = 0; i < 40000; ++i) lists.AddEntry("C:\\some\\longer\\folder\\" + std::to_string(i) + ".mp3", 0);
    lists.fillSome(std::chrono::seconds(60));
    const std::size_t full = lists.memory(0);
    Playlists::Selection most(40000, true);
    for (std::size_t i = 0; i < most.size(); i += 100) most[i] = false;
    lists.removeSelected(0, most);
    EXPECT_LT(lists.memory(0), full / 20);
    EXPECT_EQ(lists.path(0, 399), "C:\\some\\longer\\folder\\39900.mp3");
    EXPECT_EQ(lists.text(0, 399, kTitleColumn), "39900");
    lists.clear(0);
    EXPECT_EQ(lists.memory(0), 0u);
}

}  // namespace
}  // namespace quenlox
