#include <gtest/gtest.h>

#include "playlist/quiet_save.h"
#include "state/media_formats.h"
#include "tests/playlist/lists_fixture.h"
#include "text/encoding.h"

namespace quenlox {
namespace {

using ListFileOfTheProgram = ListsTest;
using M3UFile = ListsTest;

const std::string kFile = "C:\\Quenlox\\Quenlox.m3u";

TEST_F(ListFileOfTheProgram, IsReadFromTheProgramFolderWithoutTouchingTheMediaFiles) {
    state.ListDirty = true;
    files.current = "D:\\elsewhere";
    files.add(kFile, "C:\\a.mp3\r\n#ListB\r\nC:\\b.mp3\r\nC:\\b.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
    lists.LoadListFile();
    EXPECT_EQ(names(0) + "," + names(1) + "," + names(2), "a,bb,c");
    EXPECT_FALSE(state.ListDirty);
    EXPECT_TRUE(vbmp3.infoReads.empty());
    EXPECT_EQ(state.ShuffleOrder[0].last(), 0);
    EXPECT_EQ(state.ShuffleOrder[1].last(), 1);
    EXPECT_EQ(state.ShuffleOrder[2].last(), 0);
}

TEST_F(ListFileOfTheProgram, IsWrittenOnlyWhenSomethingChanged) {
    const std::string old = "#EXTM3U by hand\n#ListQ\nC:\\a.mp3";
    files.add(kFile, old);
    lists.LoadListFile();
    EXPECT_TRUE(lists.SaveListFile());
    EXPECT_EQ(files.bytesOf(kFile), old);
    EXPECT_EQ(files.writes, 0);
    state.ListDirty = true;
    files.writesFail = true;
    EXPECT_FALSE(lists.SaveListFile());
    EXPECT_TRUE(state.ListDirty);
    files.writesFail = false;
    EXPECT_TRUE(lists.SaveListFile());
    EXPECT_EQ(files.bytesOf(kFile), "#ListA\r\n#EXTM3U by hand\r\n#ListQ\r\nC:\\a.mp3\r\n");
    EXPECT_FALSE(state.ListDirty);
}

TEST_F(ListFileOfTheProgram, TakesAChangeQuietlyAfterHalfAMinuteAndOnceAndAgainAtTheEnd) {
    using std::chrono::seconds;
    lists.LoadListFile();
    QuietSave quiet(state, lists);
    const QuietSave::Clock::time_point start{};
    const auto writesUntil = [&](int from, int to, bool occupied = false) {
        const int before = files.writes;
        for (int second = from; second < to; second += 2) quiet.tick(start + seconds(second), occupied);
        return files.writes - before;
    };
    EXPECT_EQ(writesUntil(0, 1000), 0) << "nothing has changed";

    addLetters(0, "ba");
    lists.markChanged();
    EXPECT_EQ(writesUntil(1000, 1030), 0);
    EXPECT_EQ(writesUntil(1030, 1100, true), 0) << "the user drags something";
    EXPECT_EQ(writesUntil(1100, 2000), 1) << "one change, one write";
    EXPECT_EQ(files.bytesOf(kFile), "#ListA\r\nC:\\b.mp3\r\nC:\\a.mp3\r\n");

    addLetters(0, "c");
    lists.markChanged();
    files.writesFail = true;
    EXPECT_EQ(writesUntil(2000, 2070), 2) << "a write that failed is tried again";
    files.writesFail = false;
    EXPECT_EQ(writesUntil(2070, 3000), 1);

    // A sort by a click on a column is no change, but what is written at the end after another change holds it.
    Playlists::Selection none;
    lists.sort(0, kFileColumn, false, none);
    EXPECT_EQ(writesUntil(3000, 4000), 0);
    EXPECT_TRUE(state.ListDirty);
    EXPECT_TRUE(lists.SaveListFile());
    EXPECT_EQ(files.bytesOf(kFile), "#ListA\r\nC:\\a.mp3\r\nC:\\b.mp3\r\nC:\\c.mp3\r\n");
}

TEST_F(ListFileOfTheProgram, IsNotSavedQuietlyWhenItCouldNotBeRead) {
    files.add(kFile, "C:\\a.mp3\r\n");
    files.unreadable = {kFile};
    lists.LoadListFile();
    addLetters(0, "n");
    lists.markChanged();
    files.unreadable.clear();
    EXPECT_FALSE(lists.unsavedChanges());
    EXPECT_TRUE(lists.saveQuietly());
    EXPECT_EQ(files.writes, 0);
    EXPECT_EQ(names(0), "n") << "no rows come in during the run";
}

TEST_F(ListFileOfTheProgram, IsNotLostWhenItCouldNotBeRead) {
    files.add(kFile, "C:\\a.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
    files.unreadable = {kFile};
    lists.LoadListFile();
    EXPECT_EQ(lists.count(0), 0);
    addLetters(0, "n");
    state.ListDirty = true;
    // It still cannot be read or moved: it stays.
    files.renamesFail = true;
    EXPECT_FALSE(lists.SaveListFile());
    EXPECT_EQ(files.bytesOf(kFile), "C:\\a.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");

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
    files.unreadable.clear();
    EXPECT_TRUE(lists.SaveListFile());
    EXPECT_EQ(files.bytesOf(kFile), "#ListA\r\nC:\\a.mp3\r\nC:\\n.mp3\r\n#ListC\r\nC:\\c.mp3\r\n");
}

TEST_F(M3UFile, GetsItsExtensionUnlessItHasIt) {
    const struct {
        const char *chosen, *written;
    } cases[] = {{"D:\\list.M3U", "D:\\list.M3U"},
                 {"D:\\list", "D:\\list.m3u"},
                 {"D:\\list.txt", "D:\\list.txt.m3u"},
                 {"D:\\m3u", "D:\\m3u.m3u"}};
    for (const auto& c : cases) {
        Lists fresh;
        fresh.addLetters(2, "ba");
        EXPECT_TRUE(fresh.lists.ExportM3U(2, c.chosen));
        ASSERT_EQ(fresh.files.all.size(), 1u);
        EXPECT_EQ(fresh.files.all[0].path, c.written);
        EXPECT_EQ(fresh.files.all[0].bytes, "C:\\b.mp3\r\nC:\\a.mp3\r\n");
        EXPECT_FALSE(fresh.state.ListDirty);
    }
    Lists fresh;
    EXPECT_FALSE(fresh.lists.ExportM3U(0, ""));
    EXPECT_TRUE(fresh.files.all.empty());
}

TEST(MediaFormats, MediaFilesAreKnownByTheirLastFourCharacters) {
    for (const char* name : {"a.mp3", "A.MP1", "x.Wma", "t.cda"}) EXPECT_TRUE(MatchesMediaFilter(name)) << name;
    for (const char* name : {"a.m3u", "a.mp4", "mp3", "", "a.mp3x", "a.flac"})
        EXPECT_FALSE(MatchesMediaFilter(name)) << name;
}

}  // namespace
}  // namespace quenlox
