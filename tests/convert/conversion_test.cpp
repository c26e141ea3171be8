#include "convert/conversion.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

TEST(Conversion, TheTimeLeftFollowsFromWhatIsDone) {
    EXPECT_EQ(TimeText(SecondsLeft(0.5, 0.5)), "");
    EXPECT_EQ(TimeText(SecondsLeft(10, 0)), "");
    EXPECT_EQ(TimeText(SecondsLeft(10, 0.25)), "00:30");
    EXPECT_EQ(TimeText(SecondsLeft(100, 0.1)), "15:00");
    EXPECT_EQ(TimeText(SecondsLeft(100, 1)), "");
}

}  // namespace
}  // namespace quenlox
