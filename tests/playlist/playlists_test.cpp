#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "playlist/text_store.h"
#include "tests/playlist/lists_fixture.h"

namespace quenlox {

void PrintTo(const Playlists::Change& c, std::ostream* to) {
    *to << "list " << c.list << " rows " << c.first << "-" << c.last << (c.countChanged ? " count" : "");
}

namespace {

using Change = Playlists::Change;
using testing::ElementsAre;

TEST(Playlists, AddsTheFileAsARowAsOftenAsAsked) {
    Lists lists;
    EXPECT_TRUE(lists.lists.AddEntry("C:\\a.mp3", 2));
    EXPECT_TRUE(lists.lists.AddEntry("C:\\a.mp3", 2));
    EXPECT_EQ(lists.paths(2), (Paths{"C:\\a.mp3", "C:\\a.mp3"}));
}

TEST(Playlists, RefusesWhatNoFileOrListCanBe) {
    Lists lists;
    for (const char* path : {"", "C:\\a\r\nb.mp3", "C:\\a\n"}) EXPECT_FALSE(lists.lists.AddEntry(path, 0)) << path;
    for (const int list : {-1, 3, 4}) EXPECT_FALSE(lists.lists.AddEntry("C:\\a.mp3", list)) << list;
    EXPECT_EQ(lists.lists.path(0, 0), "");
    EXPECT_EQ(lists.lists.path(0, -1), "");
    EXPECT_EQ(lists.lists.count(7), 0);
}

TEST(Playlists, AddsTheMediaFilesOfAFolderInTheOrderOfTheDisk) {
    Lists lists;
    for (const char* name : {"b.mp3", "a.MP3", "cover.jpg", "list.m3u", ".mp3", "x.rmp", "w.wav", "m.mid", "r.rmi", "Track01.cda",
                             "q.wma", "p.mp1", "o.mp2", "n.mpg", "é.mp4", "noextension", "odd;*.m", "sub\\deep.mp3"})
        lists.files.add(std::string("D:\\music\\") + name);
    EXPECT_FALSE(lists.lists.AddFolder("D:\\music", *lists.files.readFolder("D:\\music"), 1));
    // "odd;*.m" ends in a text that occurs in the filter, which is all that is asked for.
    EXPECT_EQ(lists.paths(1), (Paths{"D:\\music\\b.mp3", "D:\\music\\a.MP3", "D:\\music\\x.rmp", "D:\\music\\w.wav",
                                     "D:\\music\\m.mid", "D:\\music\\r.rmi", "D:\\music\\Track01.cda", "D:\\music\\q.wma",
                                     "D:\\music\\p.mp1", "D:\\music\\o.mp2", "D:\\music\\n.mpg", "D:\\music\\odd;*.m"}));
    lists.files.add("E:\\root.mp3");
    lists.lists.AddFolder("E:\\", *lists.files.readFolder("E:\\"), 0);
    EXPECT_EQ(lists.paths(0), Paths{"E:\\root.mp3"});
}

TEST(Playlists, AddingAFolderCanBeInterruptedAndGoesOnWhereItWas) {
    Lists lists;
    Paths all;
    for (int i = 0; i < 1000; ++i) all.push_back("D:\\m\\" + std::to_string(1000 + i) + ".mp3");
    for (const std::string& path : all) lists.files.all.push_back({path, {}, false});
    const auto names = lists.files.readFolder("D:\\m");
    EXPECT_TRUE(lists.lists.AddFolder("D:\\m", *names, 0, [] { return false; }));
    EXPECT_LT(lists.lists.count(0), 1000);
    EXPECT_FALSE(lists.lists.AddFolder("D:\\m", *names, 0));
    EXPECT_EQ(lists.paths(0), all);
}

TEST(Playlists, RemovesTheCurrentFileFromListsAAndBOnly) {
    Lists lists;
    for (int list = 0; list < 3; ++list) lists.addLetters(list, "xaxbx");
    lists.state.CurrentFile = "C:\\x.mp3";
    lists.state.CurrentIndex = {3, 2, 2, -1};
    EXPECT_TRUE(lists.lists.RemoveCurrentFileFromLists());
    EXPECT_EQ(lists.names(0), "ab");
    EXPECT_EQ(lists.names(1), "ab");
    EXPECT_EQ(lists.names(2), "xaxbx");
    EXPECT_EQ(lists.state.CurrentIndex[0], 1) << "b, as before";
    EXPECT_EQ(lists.state.CurrentIndex[1], 0) << "the row before the one that went";
    EXPECT_EQ(lists.state.CurrentIndex[2], 2);
    EXPECT_TRUE(lists.state.ListDirty);
    lists.state.ListDirty = false;
    EXPECT_FALSE(lists.lists.RemoveCurrentFileFromLists());
    EXPECT_FALSE(lists.state.ListDirty);
}

TEST(Playlists, ARenamedFileGetsItsNewPathInListsAAndBOnly) {
    Lists lists;
    for (int list = 0; list < 3; ++list) lists.addLetters(list, "axa");
    lists.vbmp3.addFile("C:\\a.mp3", VBMP3_TYPE_MPEG, 10, "Title");
    lists.lists.entry(0, 0);
    lists.lists.renamePath("C:\\a.mp3", "C:\\a much longer name.mp3");
    EXPECT_EQ(lists.paths(0), (Paths{"C:\\a much longer name.mp3", "C:\\x.mp3", "C:\\a much longer name.mp3"}));
    EXPECT_EQ(lists.paths(1), lists.paths(0));
    EXPECT_EQ(lists.names(2), "axa");
    EXPECT_EQ(lists.lists.entry(0, 0).Title, "Title");
    EXPECT_TRUE(lists.state.ListDirty);
}

TEST(Playlists, TellTheListenerWhichRowsChanged) {
    Lists lists;
    std::vector<Change> changes;
    lists.lists.onChange = [&](const Change& change) { changes.push_back(change); };
    const auto taken = [&] { return std::exchange(changes, {}); };

    lists.addLetters(1, "ab");
    EXPECT_THAT(taken(), ElementsAre(Change{1, 0, 0, true}, Change{1, 1, 1, true}));
    lists.files.add("C:\\l.m3u", "C:\\c.mp3\nC:\\d.mp3\nC:\\e.mp3");
    lists.lists.ImportM3U("C:\\", "l.m3u", 1);
    EXPECT_THAT(taken(), ElementsAre(Change{1, 2, 4, true}));
    auto selection = Marked(".x.x.");
    lists.lists.moveDown(1, selection);
    EXPECT_THAT(taken(), ElementsAre(Change{1, 1, 4, false}));
    lists.lists.removeSelected(1, Marked("..x.."));
    EXPECT_THAT(taken(), ElementsAre(Change{1, 2, 3, true}));
    lists.lists.removeSelected(1, Marked("...."));
    EXPECT_THAT(taken(), ElementsAre());
    lists.lists.fillSome(std::chrono::seconds(10));
    EXPECT_THAT(taken(), ElementsAre(Change{1, 0, 3, false}));
    {
        const Playlists::Batch batch(lists.lists);
        lists.addLetters(0, "xyz");
        lists.lists.renamePath("C:\\a.mp3", "C:\\aa.mp3");
        EXPECT_TRUE(changes.empty());
    }
    EXPECT_THAT(taken(), ElementsAre(Change{0, 0, 2, true}, Change{1, 0, 0, false}));
    lists.lists.clear(1);
    EXPECT_THAT(taken(), ElementsAre(Change{1, 0, -1, true}));
}

TEST(Playlists, GiveMemoryBackWhenRowsGo) {
    Lists lists;
    for (int i = 0; i < 40000; ++i) lists.lists.AddEntry("C:\\some\\longer\\folder\\" + std::to_string(i) + ".mp3", 0);
    lists.lists.fillSome(std::chrono::seconds(60));
    const std::size_t full = lists.lists.memory(0);
    Playlists::Selection most(40000, true);
    for (std::size_t i = 0; i < most.size(); i += 100) most[i] = false;
    lists.lists.removeSelected(0, most);
    EXPECT_LT(lists.lists.memory(0), full / 20);
    EXPECT_EQ(lists.lists.path(0, 399), "C:\\some\\longer\\folder\\39900.mp3");
    EXPECT_EQ(lists.lists.text(0, 399, kTitleColumn), "39900");
    lists.lists.clear(0);
    EXPECT_EQ(lists.lists.memory(0), 0u);
}

TEST(TextStore, KeepsTextsOfAnySizeInPlace) {
    TextStore store;
    std::vector<std::pair<char*, std::size_t>> texts;
    for (const std::size_t size : {0u, 1u, 900u, 5000u, 1u, 700000u, 3u, 300000u}) {
        char* const text = store.allocate(size);
        std::fill_n(text, size, static_cast<char>('a' + texts.size()));
        texts.emplace_back(text, size);
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(std::count(texts[i].first, texts[i].first + texts[i].second, static_cast<char>('a' + i)),
                  static_cast<std::ptrdiff_t>(texts[i].second));
}

}  // namespace
}  // namespace quenlox
