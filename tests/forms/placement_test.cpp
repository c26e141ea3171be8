#include "forms/placement.h"

#include <gtest/gtest.h>

#include <array>

namespace quenlox {
namespace {

TEST(Placement, AnEdgeNearTheEdgeOfTheScreenSnapsToIt) {
    const Rect area{0, 0, 1000, 700};
    struct Case {
        Rect window, expected;
    };
    for (const Case& c : {Case{{9, 300, 200, 100}, {0, 300, 200, 100}}, Case{{-9, 300, 200, 100}, {0, 300, 200, 100}},
                          Case{{10, 300, 200, 100}, {10, 300, 200, 100}},
                          Case{{795, 605, 200, 100}, {800, 600, 200, 100}}, Case{{3, -4, 200, 100}, {0, 0, 200, 100}},
                          Case{{4, 0, 995, 700}, {5, 0, 995, 700}}}) {
        EXPECT_EQ(SnapToEdges(c.window, area, 10), c.expected) << c.window.left << "," << c.window.top;
    }
}

TEST(Placement, AWindowOffEveryScreenIsBroughtOntoOne) {
    const std::array<Rect, 2> areas{Rect{0, 0, 1000, 700}, Rect{1000, 0, 800, 600}};
    struct Case {
        Rect window, expected;
    };
    for (const Case& c : {Case{{100, 100, 200, 100}, {100, 100, 200, 100}},    // on the first
                          Case{{1500, 50, 200, 100}, {1500, 50, 200, 100}},    // on the second
                          Case{{-180, 10, 200, 100}, {-180, 10, 200, 100}},    // enough of it is seen
                          Case{{-190, 10, 200, 100}, {0, 10, 200, 100}},       // too little
                          Case{{5000, 5000, 200, 100}, {800, 600, 200, 100}},  // a screen that is gone
                          Case{{-32000, -32000, 200, 100}, {0, 0, 200, 100}},
                          Case{{0, 5000, 3000, 900}, {0, 0, 3000, 900}},       // larger than the screen
                          Case{{900, 690, 8, 8}, {900, 690, 8, 8}}}) {         // a tiny skin
        EXPECT_EQ(BringOntoScreen(c.window, areas, areas[0]), c.expected) << c.window.left << "," << c.window.top;
    }
}

}  // namespace
}  // namespace quenlox
