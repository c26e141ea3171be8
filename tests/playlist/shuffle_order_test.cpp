#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "platform/random.h"
#include "tests/playlist/lists_fixture.h"

namespace quenlox {
namespace {

using ShuffleOrder = ListsTest;

using Order = std::vector<std::int32_t>;

const Order& PassOf(const GlobalState& state, int list) {
    return state.ShuffleOrder[static_cast<std::size_t>(list)].order();
}

bool HoldsEachRowOnce(Order pass, int count) {
    Order all(static_cast<std::size_t>(count));
    std::iota(all.begin(), all.end(), 0);
    std::sort(pass.begin(), pass.end());
    return pass == all;
}

TEST_F(ShuffleOrder, ExchangesEachPositionWithOneDrawnFromTheWholeRange) {
    // n = 3, positions 0 to 3: j is 2, 0, 1, 0. 0123 → 2103 → 1203 → 1023 → 3021; the 3 goes back behind the last row.
    Lists fresh({0.9, 0.1, 0.5, 0.0});
    fresh.addLetters(1, "abc");
    fresh.lists.BuildShuffleOrder(1);
    EXPECT_EQ(PassOf(fresh.state, 1), (Order{1, 0, 2}));
    EXPECT_EQ(fresh.state.ShuffleOrder[1].position(), 0);
    EXPECT_EQ(fresh.state.ShuffleOrder[1].last(), 2);
}

TEST_F(ShuffleOrder, HoldsEachEntryOnceWhateverChanceGives) {
    SeededRandom chance(1);
    std::vector<double> drawn(70000);
    std::ranges::generate(drawn, [&] { return chance.next(); });
    Lists many(drawn);
    for (int count = 0; count < 60; ++count) {
        Order seenFirst(static_cast<std::size_t>(count) + 1);
        for (int round = 0; round < 40; ++round) {
            many.lists.BuildShuffleOrder(0);
            ASSERT_TRUE(HoldsEachRowOnce(PassOf(many.state, 0), count)) << count;
            ASSERT_EQ(many.state.ShuffleOrder[0].position(), 0);
            ASSERT_EQ(many.state.ShuffleOrder[0].last(), count - 1);
            if (count > 0) ++seenFirst[static_cast<std::size_t>(PassOf(many.state, 0).front())];
        }
        if (count > 5) {
            EXPECT_LT(*std::max_element(seenFirst.begin(), seenFirst.end()), 30) << "always the same first entry";
        }
        many.lists.AddEntry("C:\\" + std::to_string(count) + ".mp3", 0);
    }
}

TEST_F(ShuffleOrder, APassGoesOnWithTheEntriesThatAreLeft) {
    addLetters(0, "abcde");
    lists.BuildShuffleOrder(0);
    state.ShuffleOrder[0] = RandomOrder({4, 2, 0, 3, 1}, 2);  // e, c and a have been played
    state.CurrentFile = "C:\\c.mp3";
    EXPECT_TRUE(lists.RemoveCurrentFileFromLists());
    EXPECT_EQ(names(0), "abde");
    EXPECT_EQ(PassOf(state, 0), (Order{3, 0, 2, 1})) << "e, a, d, b";
    EXPECT_EQ(state.ShuffleOrder[0].position(), 1);
    EXPECT_EQ(state.ShuffleOrder[0].last(), 3);
}

}  // namespace
}  // namespace quenlox
