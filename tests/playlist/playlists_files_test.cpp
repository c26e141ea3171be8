#include <gtest/gtest.h>

#include "playlist/quiet_save.h"
#include "text/encoding.h"
#include "tests/playlist/lists_fixture.h"

namespace quenlox {
namespace {

const std::string kFile = "C:\\Quenlox\\Quenlox.m3u";

TEST(ListFileOfTheProgram, IsReadFromTheProgramFolderWithoutTouchingTheMediaFiles) {
    Lists lists;
    lists.state.ListDirty = true;
    lists.files.current = "D:\\elsewhere";
    lists.files.add(kFile, "C:\\a.mp3\r\n#ListB\r\nC:\\b.mp3\r\nC:\\b.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
    lists.lists.LoadListFile();
    EXPECT_EQ(lists.names(0) + "," + lists.names(1) + "," + lists.names(2), "a,bb,c");
    EXPECT_FALSE(lists.state.ListDirty);
    EXPECT_TRUE(lists.vbmp3.infoReads.empty());
    EXPECT_EQ(lists.state.ShufflePos[4], 0);
    EXPECT_EQ(lists.state.ShufflePos[5], 1);
    EXPECT_EQ(lists.state.ShufflePos[6], 0);
}

TEST(ListFileOfTheProgram, MissingLeavesTheListsEmpty) {
    Lists lists;
    lists.lists.LoadListFile();
    EXPECT_EQ(lists.lists.count(0) + lists.lists.count(1) + lists.lists.count(2), 0);
    EXPECT_EQ(lists.state.ShufflePos[4], -1);
}

TEST(ListFileOfTheProgram, MakesTheLastRowOfTheCurrentFileTheCurrentEntry) {
    Lists lists;
    lists.state.CurrentFile = "C:\\x.mp3";
    lists.files.add(kFile, "C:\\a.mp3\r\n#ListB\r\nC:\\x.mp3\r\nC:\\b.mp3\r\nC:\\x.mp3\r\nC:\\X.mp3\r\n#ListA\r\nC:\\x.mp3\r\n");
    lists.lists.LoadListFile();
    EXPECT_EQ(lists.state.CurrentIndex, (std::array<int, 4>{1, 2, -1, -1}));
}

TEST(ListFileOfTheProgram, IsWrittenOnlyWhenSomethingChanged) {
    Lists lists;
    const std::string old = "#EXTM3U by hand\n#ListQ\nC:\\a.mp3";
    lists.files.add(kFile, old);
    lists.lists.LoadListFile();
    EXPECT_TRUE(lists.lists.SaveListFile());
    EXPECT_EQ(lists.files.bytesOf(kFile), old);
    EXPECT_EQ(lists.files.writes, 0);
    lists.state.ListDirty = true;
    EXPECT_TRUE(lists.lists.SaveListFile());
    EXPECT_EQ(lists.files.bytesOf(kFile), "#ListA\r\n#EXTM3U by hand\r\n#ListQ\r\nC:\\a.mp3\r\n");
    EXPECT_FALSE(lists.state.ListDirty);
}

TEST(ListFileOfTheProgram, HoldsTheListsThatHaveRows) {
    Lists lists;
    lists.addLetters(0, "ab");
    lists.addLetters(2, "c");
    lists.state.ListDirty = true;
    lists.lists.SaveListFile();
    EXPECT_EQ(lists.files.bytesOf(kFile), "#ListA\r\nC:\\a.mp3\r\nC:\\b.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
    Lists next;
    next.files = lists.files;
    next.lists.LoadListFile();
    EXPECT_EQ(next.names(0) + "," + next.names(1) + "," + next.names(2), "ab,,c");
    for (int list = 0; list < 3; ++list) next.lists.clear(list);
    next.lists.SaveListFile();
    EXPECT_EQ(next.files.bytesOf(kFile), "");
}

TEST(ListFileOfTheProgram, KeepsNamesThatShiftJisCannotHold) {
    Lists lists;
    const Paths paths{"C:\\表\\café.mp3", "C:\\한국.mp3", "C:\\😀.mp3"};
    lists.add(1, paths);
    lists.state.ListDirty = true;
    lists.lists.SaveListFile();
    Lists next;
    next.files = lists.files;
    next.lists.LoadListFile();
    EXPECT_EQ(next.paths(1), paths);
}

TEST(ListFileOfTheProgram, AFailedWriteLeavesTheChangeToBeSaved) {
    Lists lists;
    lists.files.add(kFile, "C:\\a.mp3\r\n");
    lists.lists.LoadListFile();
    lists.addLetters(0, "b");
    lists.state.ListDirty = true;
    lists.files.writesFail = true;
    EXPECT_FALSE(lists.lists.SaveListFile());
    EXPECT_TRUE(lists.state.ListDirty);
    EXPECT_EQ(lists.files.bytesOf(kFile), "C:\\a.mp3\r\n");
}

TEST(QuietSave, WritesAChangeAfterHalfAMinuteAndOnceAndLeavesTheEndItsOwnWrite) {
    using std::chrono::seconds;
    Lists lists;
    lists.lists.LoadListFile();
    QuietSave quiet(lists.state, lists.lists);
    const QuietSave::Clock::time_point start{};
    const auto writesUntil = [&](int from, int to, bool occupied = false) {
        const int before = lists.files.writes;
        for (int second = from; second < to; second += 2) quiet.tick(start + seconds(second), occupied);
        return lists.files.writes - before;
    };
    EXPECT_EQ(writesUntil(0, 1000), 0) << "nothing has changed";

    lists.addLetters(0, "ba");
    lists.lists.markChanged();
    EXPECT_EQ(writesUntil(1000, 1030), 0);
    EXPECT_EQ(writesUntil(1030, 1100, true), 0) << "the user drags something";
    EXPECT_EQ(writesUntil(1100, 2000), 1) << "one change, one write";
    EXPECT_EQ(lists.files.bytesOf(kFile), "#ListA\r\nC:\\b.mp3\r\nC:\\a.mp3\r\n");

    lists.addLetters(0, "c");
    lists.lists.markChanged();
    lists.files.writesFail = true;
    EXPECT_EQ(writesUntil(2000, 2070), 2) << "a write that failed is tried again";
    lists.files.writesFail = false;
    EXPECT_EQ(writesUntil(2070, 3000), 1);

    // A sort by a click on a column is no change, but what is written at the end after another change holds it.
    Playlists::Selection none;
    lists.lists.sort(0, kFileColumn, false, none);
    EXPECT_EQ(writesUntil(3000, 4000), 0);
    EXPECT_TRUE(lists.state.ListDirty);
    EXPECT_TRUE(lists.lists.SaveListFile());
    EXPECT_EQ(lists.files.bytesOf(kFile), "#ListA\r\nC:\\a.mp3\r\nC:\\b.mp3\r\nC:\\c.mp3\r\n");
}

TEST(QuietSave, KeepsAwayFromAListFileThatCouldNotBeRead) {
    Lists lists;
    lists.files.add(kFile, "C:\\a.mp3\r\n");
    lists.files.unreadable = {kFile};
    lists.lists.LoadListFile();
    lists.addLetters(0, "n");
    lists.lists.markChanged();
    lists.files.unreadable.clear();
    EXPECT_FALSE(lists.lists.unsavedChanges());
    EXPECT_TRUE(lists.lists.saveQuietly());
    EXPECT_EQ(lists.files.writes, 0);
    EXPECT_EQ(lists.names(0), "n") << "no rows come in during the run";
}

TEST(ListFileOfTheProgram, IsNotLostWhenItCouldNotBeRead) {
    Lists lists;
    lists.files.add(kFile, "C:\\a.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
    lists.files.unreadable = {kFile};
    lists.lists.LoadListFile();
    EXPECT_EQ(lists.lists.count(0), 0);
    lists.addLetters(0, "n");
    lists.state.ListDirty = true;
    // It still cannot be read or moved: it stays.
    lists.files.renamesFail = true;
    EXPECT_FALSE(lists.lists.SaveListFile());
    EXPECT_EQ(lists.files.bytesOf(kFile), "C:\\a.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");

    // It can be moved: both are kept.
    Lists moved;
    moved.files.add(kFile, "old");
    moved.files.add(kFile + ".bak1", "older");
    moved.files.unreadable = {kFile};
    moved.lists.LoadListFile();
    moved.addLetters(0, "n");
    moved.state.ListDirty = true;
    EXPECT_TRUE(moved.lists.SaveListFile());
    EXPECT_EQ(moved.files.bytesOf(kFile + ".bak1"), "older");
    EXPECT_EQ(moved.files.bytesOf(kFile + ".bak2"), "old");
    EXPECT_EQ(moved.files.bytesOf(kFile), "#ListA\r\nC:\\n.mp3\r\n");

    // It was only locked for a while: its rows come in front of those of this run.
    lists.files.unreadable.clear();
    EXPECT_TRUE(lists.lists.SaveListFile());
    EXPECT_EQ(lists.files.bytesOf(kFile), "#ListA\r\nC:\\a.mp3\r\nC:\\n.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
}

TEST(M3UFile, IsImportedBesideWhatIsThere) {
    Lists lists;
    lists.addLetters(1, "a");
    lists.files.add("D:\\m\\list.m3u", *Utf8ToShiftJis("#EXTM3U\r\n表.mp3\r\nsub\\表.mp3\r\nC:\\gone.mp3\r\n"));
    EXPECT_TRUE(lists.lists.ImportM3U("D:\\m\\", "list.m3u", 1));
    EXPECT_EQ(lists.paths(1), (Paths{"C:\\a.mp3", "D:\\m\\sub\\表.mp3", "C:\\gone.mp3"}));
    EXPECT_FALSE(lists.lists.ImportM3U("D:\\m\\", "none.m3u", 1));
}

TEST(M3UFile, GetsItsExtensionUnlessItHasIt) {
    struct Case {
        const char* chosen;
        const char* written;
    };
    const Case cases[] = {{"D:\\list.M3U", "D:\\list.M3U"}, {"D:\\list", "D:\\list.m3u"}, {"D:\\list.txt", "D:\\list.txt.m3u"},
                          {"D:\\m3u", "D:\\m3u.m3u"}};
    for (const Case& c : cases) {
        Lists lists;
        lists.addLetters(2, "ba");
        EXPECT_TRUE(lists.lists.ExportM3U(2, c.chosen));
        ASSERT_EQ(lists.files.all.size(), 1u);
        EXPECT_EQ(lists.files.all[0].path, c.written);
        EXPECT_EQ(lists.files.all[0].bytes, "C:\\b.mp3\r\nC:\\a.mp3\r\n");
        EXPECT_FALSE(lists.state.ListDirty);
    }
    Lists lists;
    EXPECT_FALSE(lists.lists.ExportM3U(0, ""));
    EXPECT_TRUE(lists.files.all.empty());
}

TEST(M3UFile, ExportAndImportGiveTheSameRows) {
    Lists lists;
    const Paths paths{"C:\\表\\曲.mp3", "\\\\server\\音楽\\a.mp3", "C:\\한.mp3", "C:\\a.mp3", "C:\\a.mp3"};
    lists.add(0, paths);
    lists.lists.ExportM3U(0, "D:\\out");
    lists.lists.ImportM3U("D:\\", "out.m3u", 2);
    EXPECT_EQ(lists.paths(2), paths);
}

}  // namespace
}  // namespace quenlox
