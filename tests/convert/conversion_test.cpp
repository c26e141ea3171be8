#include "convert/conversion.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

TEST(Conversion, DestinationsAreNamedAfterTheirSources) {
    EXPECT_EQ(ProposedDestination("C:\\a\\Live.1999.mp3", Operation::Decode), "C:\\a\\Live.1999.wav");
    EXPECT_EQ(ProposedDestination("C:\\a.b\\song", Operation::Decode), "C:\\a.b\\song.wav");
    EXPECT_EQ(ProposedDestination("C:\\曲.WAV", Operation::Encode), "C:\\曲.mp3");
    const auto jobs =
        JobsFor({"C:\\a\\1.mp3", "C:\\b\\1.RMP", "C:\\c\\2.mp3", "C:\\d\\1.mp2"}, Operation::Decode, "D:\\out");
    ASSERT_EQ(jobs.size(), 4u);
    EXPECT_EQ(jobs[0].destination, "D:\\out\\1.wav");
    EXPECT_EQ(jobs[1].destination, "D:\\out\\1 (2).wav");
    EXPECT_EQ(jobs[2].destination, "D:\\out\\2.wav");
    EXPECT_EQ(jobs[3].destination, "D:\\out\\1 (3).wav");
}

TEST(Conversion, TheTimeLeftFollowsFromWhatIsDone) {
    EXPECT_EQ(TimeLeft(0.5, 0.5), "");
    EXPECT_EQ(TimeLeft(10, 0), "");
    EXPECT_EQ(TimeLeft(10, 0.25), "残り 00:30");
    EXPECT_EQ(TimeLeft(100, 0.1), "残り 15:00");
    EXPECT_EQ(TimeLeft(100, 1), "");
}

}  // namespace
}  // namespace quenlox
