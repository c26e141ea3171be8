#include "convert/conversion.h"

#include <cstring>

#include <gtest/gtest.h>

#include "libraries/vbmp3/vbmp3.h"

namespace quenlox {
namespace {

TEST(Conversion, TheListsShowTheirItemsAndCarryWhatTheEncoderTakes) {
    EXPECT_EQ(FrequencyItems().front(), (ComboBox::Item{" 48,000", 48000}));
    EXPECT_EQ(FrequencyItems().back(), (ComboBox::Item{"  8,000", 8000}));
    EXPECT_EQ(BitRateItems().back(), (ComboBox::Item{"  32", 32}));
    const auto qualities = VbrQualityItems();
    ASSERT_EQ(qualities.size(), 11u);
    EXPECT_EQ(qualities[1], (ComboBox::Item{" 0－高音質", 0}));
    EXPECT_EQ(qualities[5], (ComboBox::Item{" 4", 4}));
}

TEST(Conversion, DestinationsAreNamedAfterTheirSources) {
    EXPECT_EQ(ProposedDestination("C:\\a\\Live.1999.mp3", Operation::Decode), "C:\\a\\Live.1999.wav");
    EXPECT_EQ(ProposedDestination("C:\\a.b\\song", Operation::Decode), "C:\\a.b\\song.wav");
    EXPECT_EQ(ProposedDestination("C:\\曲.WAV", Operation::Encode), "C:\\曲.mp3");
    const auto jobs = JobsFor({"C:\\a\\1.mp3", "C:\\b\\1.RMP", "C:\\c\\2.mp3", "C:\\d\\1.mp2"}, Operation::Decode, "D:\\out");
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

TEST(Conversion, OnlyAFileWithTextsGivesATag) {
    vbmp3_FileInfo info{};
    info.genreNumber = 17;
    EXPECT_FALSE(TagOf(info));
    std::strcpy(info.artist, "歌手");
    std::strcpy(info.track, "3");
    const auto tag = TagOf(info);
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->size, sizeof(vbmp3_Tag));
    EXPECT_STREQ(tag->artist, "歌手");
    EXPECT_STREQ(tag->track, "3");
    EXPECT_STREQ(tag->title, "");
    EXPECT_EQ(tag->genreNumber, 17);
}

}  // namespace
}  // namespace quenlox
