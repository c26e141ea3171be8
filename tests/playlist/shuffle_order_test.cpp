#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "platform/random.h"
#include "tests/playlist/lists_fixture.h"

namespace quenlox {
namespace {

using Order = std::vector<std::int32_t>;

Order PassOf(const GlobalState& state, int list) {
    const Order& order = state.ShuffleOrder[static_cast<std::size_t>(list)];
    return {order.begin(), order.begin() + state.ShufflePos[static_cast<std::size_t>(list + 4)] + 1};
}

bool HoldsEachRowOnce(Order pass, int count) {
    Order all(static_cast<std::size_t>(count));
    std::iota(all.begin(), all.end(), 0);
    std::sort(pass.begin(), pass.end());
    return pass == all;
}

TEST(ShuffleOrder, ExchangesEachPositionWithOneDrawnFromTheWholeRange) {
    // n = 3, positions 0 to 3: j is 2, 0, 1, 0. 0123 → 2103 → 1203 → 1023 → 3021; the 3 goes back behind the last row.
    Lists lists({0.9, 0.1, 0.5, 0.0});
    lists.addLetters(1, "abc");
    lists.lists.BuildShuffleOrder(1);
    EXPECT_EQ(lists.state.ShuffleOrder[1], (Order{1, 0, 2, 3}));
    EXPECT_EQ(lists.state.ShufflePos[1], 0);
    EXPECT_EQ(lists.state.ShufflePos[5], 2);
}

TEST(ShuffleOrder, HoldsEachEntryOnceWhateverChanceGives) {
    SeededRandom chance(1);
    GlobalState state;
    FakeOptions options;
    FakeFileSystem files;
    FakeVbmp3 vbmp3;
    Playlists lists(state, options, files, vbmp3, chance);
    for (int count = 0; count < 60; ++count) {
        Order seenFirst(static_cast<std::size_t>(count) + 1);
        for (int round = 0; round < 40; ++round) {
            lists.BuildShuffleOrder(0);
            ASSERT_TRUE(HoldsEachRowOnce(PassOf(state, 0), count)) << count;
            ASSERT_EQ(state.ShufflePos[0], 0);
            ASSERT_EQ(state.ShufflePos[4], count - 1);
            ++seenFirst[static_cast<std::size_t>(state.ShuffleOrder[0][0])];
        }
        if (count > 5) {
            EXPECT_LT(*std::max_element(seenFirst.begin(), seenFirst.end()), 30) << "always the same first entry";
        }
        lists.AddEntry("C:\\" + std::to_string(count) + ".mp3", 0);
    }
}

TEST(ShuffleOrder, IsSafeForADrawAtTheEndOfItsRange) {
    for (const double drawn : {0.0, 0.9999999999999999, 1.0}) {
        Lists lists({drawn});
        lists.addLetters(0, "abcd");
        lists.lists.BuildShuffleOrder(0);
        EXPECT_TRUE(HoldsEachRowOnce(PassOf(lists.state, 0), 4)) << drawn;
    }
}

TEST(ShuffleOrder, OfTheFolderListFollowsTheFilesOfTheFolder) {
    Lists lists;
    lists.lists.setFolderFiles("C:\\", {"a.mp3", "b.mp3"});
    lists.lists.BuildShuffleOrder(3);
    EXPECT_EQ(lists.state.ShufflePos[7], 1);
    EXPECT_EQ(lists.lists.path(3, 1), "C:\\b.mp3");
    lists.lists.setFolderFiles("C:\\sub", {"b.mp3"});
    EXPECT_EQ(lists.lists.path(3, 0), "C:\\sub\\b.mp3");
    EXPECT_EQ(lists.lists.count(3), 1);
    for (const int list : {-1, 4}) lists.lists.BuildShuffleOrder(list);
}

TEST(ShuffleOrder, APassGoesOnWithTheEntriesThatAreLeft) {
    Lists lists;
    lists.addLetters(0, "abcde");
    lists.lists.BuildShuffleOrder(0);
    lists.state.ShuffleOrder[0] = {4, 2, 0, 3, 1, 5};
    lists.state.ShufflePos[0] = 2;  // e, c and a have been played
    lists.state.CurrentFile = "C:\\c.mp3";
    EXPECT_TRUE(lists.lists.RemoveCurrentFileFromLists());
    EXPECT_EQ(lists.names(0), "abde");
    EXPECT_EQ(PassOf(lists.state, 0), (Order{3, 0, 2, 1})) << "e, a, d, b";
    EXPECT_EQ(lists.state.ShufflePos[0], 1);
    EXPECT_EQ(lists.state.ShufflePos[4], 3);
}

}  // namespace
}  // namespace quenlox
