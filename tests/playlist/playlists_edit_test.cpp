#include <gtest/gtest.h>

#include <random>

#include "tests/playlist/lists_fixture.h"

namespace quenlox {
namespace {

using Sorting = ListsTest;

TEST_F(Sorting, OrdersTheRowsByTheTextOfTheColumn) {
    struct Row {
        char letter;
        const char* title;
        const char* name;
        const char* album;
        int seconds;
    };
    const Row rows[] = {
        {'a', "b", "Y", "α", 65}, {'b', "A", "x", "漢", 600}, {'c', "a", "", "か", 3}, {'d', "C", "z", "", 120}};
    const struct {
        int column;
        bool descending;
        const char* order;
    } cases[] = {
        {kTitleColumn, false, "bcad"},                                // "A" and "a" are the same, and keep their order
        {kTitleColumn, true, "dabc"},  {kNameColumn, false, "cbad"},  // "- no name -" is what c shows
        {kAlbumColumn, false, "dacb"}, {kTimeColumn, false, "cabd"},  // as texts: 0:03, 1:05, 10:00, 2:00
        {kFileColumn, false, "abcd"},  {kFileColumn, true, "dcba"},  {-3, false, "abcd"}, {5, false, "abcd"},
    };
    for (const auto& c : cases) {
        Lists fresh;
        for (const Row& row : rows) {
            fresh.vbmp3.addFile(Lists::pathOf(row.letter), kMpegFile, row.seconds, row.title, row.name, row.album);
            fresh.lists.AddEntry(Lists::pathOf(row.letter), 0);
        }
        fresh.state.CurrentIndex[0] = 2;
        auto selection = Marked(".xx.");
        fresh.lists.sort(0, c.column, c.descending, selection);
        EXPECT_EQ(fresh.names(0), c.order) << c.column;
        EXPECT_EQ(fresh.state.CurrentIndex[0], static_cast<int>(fresh.names(0).find('c')));
        for (std::size_t row = 0; row < 4; ++row)
            EXPECT_EQ(selection[row], fresh.names(0)[row] == 'b' || fresh.names(0)[row] == 'c');
        EXPECT_FALSE(fresh.state.ListDirty);
    }
}

TEST(Randomizing, ExchangesEachRowWithOneDrawnFromAll) {
    // j is 3, 2, 1, 2 (counted from 1 for rows 1 to 4): abcd → cbad → cbad → abcd → adcb.
    Lists lists({0.5, 0.25, 0.0, 0.25});
    lists.addLetters(0, "abcd");
    lists.state.CurrentFile = "C:\\b.mp3";
    auto selection = Marked("xxxx");
    lists.lists.randomize(0, selection);
    EXPECT_EQ(lists.names(0), "adcb");
    EXPECT_EQ(MarksOf(selection), "....");
    EXPECT_EQ(lists.state.CurrentIndex[0], 3);
    EXPECT_TRUE(lists.state.ListDirty);
}

TEST(Moving, TakesEachBlockOnePlaceAndStopsAtTheEdge) {
    const struct {
        bool down;
        const char *marks, *order, *marksAfter;
    } cases[] = {
        {true, ".x...", "acbde", "..x.."},  {true, ".xx..", "adbce", "..xx."},  {true, "x.x..", "badce", ".x.x."},
        {true, "...xx", "abcde", "...xx"},  {true, ".x..x", "acbde", "..x.x"},  {true, "xxxxx", "abcde", "xxxxx"},
        {false, ".x...", "bacde", "x...."}, {false, "..xx.", "acdbe", ".xx.."}, {false, "x.x..", "acbde", "xx..."},
        {false, "xx..x", "abced", "xx.x."}, {false, "xx...", "abcde", "xx..."}, {false, ".....", "abcde", "....."},
    };
    for (const auto& c : cases) {
        Lists lists;
        lists.addLetters(1, "abcde");
        lists.state.CurrentFile = "C:\\b.mp3";
        lists.state.CurrentIndex[1] = 1;
        auto selection = Marked(c.marks);
        if (c.down) {
            lists.lists.moveDown(1, selection);
        } else {
            lists.lists.moveUp(1, selection);
        }
        EXPECT_EQ(lists.names(1), c.order) << c.marks;
        EXPECT_EQ(MarksOf(selection), c.marksAfter) << c.marks;
        EXPECT_EQ(lists.names(1)[static_cast<std::size_t>(lists.state.CurrentIndex[1])], 'b') << c.marks;
        EXPECT_TRUE(lists.state.ListDirty);
    }
}

TEST(Removing, TakesTheSelectedRowsAndDrawsANewOrder) {
    const struct {
        const char* marks;
        int current;
        const char* left;
        int currentAfter;
    } cases[] = {
        {"x....", 2, "bcde", 1},  {"..x..", 2, "abde", 1}, {"xxx..", 1, "de", -1},   {"...xx", 1, "abc", 1},
        {".x.x.", -1, "ace", -1}, {"xxxxx", 4, "", -1},    {".....", 0, "abcde", 0},
    };
    for (const auto& c : cases) {
        Lists lists;
        lists.addLetters(2, "abcde");
        lists.state.CurrentIndex[2] = c.current;
        lists.lists.removeSelected(2, Marked(c.marks));
        EXPECT_EQ(lists.names(2), c.left) << c.marks;
        EXPECT_EQ(lists.state.CurrentIndex[2], c.currentAfter) << c.marks;
        EXPECT_EQ(lists.state.ShuffleOrder[2].last(), lists.lists.count(2) - 1);
        EXPECT_TRUE(lists.state.ListDirty);
    }
}

// Whatever was done, taking it all back leads through every state that was, and doing it again through them once more.
TEST(TakingBack, LeadsThroughEveryStateAndForthAgain) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 dice(seed);
        const auto roll = [&](int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); };
        Lists lists({0.9, 0.1, 0.6, 0.3});
        lists.state.CurrentFile = Lists::pathOf('b');
        for (int list = 0; list < 3; ++list) lists.addLetters(list, "abcdefgh");
        lists.state.CurrentIndex = {1, 1, 1, -1};
        for (int list = 0; list < 3; ++list) lists.lists.toggleQueued(list, Marked(".x..xx.x"));
        // The lists, and the rows to be played next.
        const auto look = [&] {
            std::string text = lists.names(0) + "|" + lists.names(1) + "|" + lists.names(2) + "|";
            for (const auto& [list, row] : lists.lists.queue()) text += "ABC"[list] + lists.names(list).substr(row, 1);
            return text;
        };
        Paths states{look()};
        for (int step = 0; step < 15; ++step) {
            const int list = roll(3), rows = lists.lists.count(list);
            auto marks = Playlists::Selection(static_cast<std::size_t>(rows));
            for (int i = 0; i < rows; ++i) marks[static_cast<std::size_t>(i)] = roll(3) == 0;
            lists.lists.beginStep(std::to_string(step));
            switch (roll(8)) {
                case 0: lists.lists.sort(list, kFileColumn, roll(2) == 0, marks); break;
                case 1: lists.lists.randomize(list, marks); break;
                case 2: lists.lists.moveUp(list, marks); break;
                case 3: lists.lists.moveDown(list, marks); break;
                case 4: lists.lists.moveBefore(list, roll(rows + 1), marks); break;
                case 5: lists.lists.removeSelected(list, marks); break;
                case 6: lists.lists.clear(list); break;
                default: lists.addLetters(list, "xy"), lists.addLetters(roll(3), "wz");
            }
            if (look() != states.back()) states.push_back(look());
        }
        const auto currentHeld = [&] {
            for (int list = 0; list < 3; ++list) {
                const auto at = static_cast<std::size_t>(lists.state.CurrentIndex[static_cast<std::size_t>(list)]);
                const std::string names = lists.names(list);
                if (names.find('b') != names.npos && at < names.size() && names[at] != 'b') return false;
            }
            return true;
        };
        for (std::size_t i = states.size() - 1; i > 0; --i) {
            const auto restored = lists.lists.undo();
            ASSERT_EQ(look(), states[i - 1]) << seed;
            ASSERT_EQ(restored.rows.size(), lists.lists.count(restored.list));
        }
        EXPECT_TRUE(currentHeld()) << seed;
        for (std::size_t i = 1; i < states.size(); ++i) {
            lists.lists.redo();
            ASSERT_EQ(look(), states[i]) << seed;
        }
        EXPECT_EQ(lists.lists.redoName(), "");
    }
}

}  // namespace
}  // namespace quenlox
