#include "convert/conversion.h"

#include <cstring>

#include <gtest/gtest.h>

#include "libraries/gogo/gogo.h"
#include "libraries/vbmp3/vbmp3.h"

namespace quenlox {
namespace {

TEST(Conversion, TheListsShowTheirItemsAndCarryWhatTheEncoderTakes) {
    const std::vector<ComboBox::Item> frequencies{{" 48,000", 48000}, {" 44,100", 44100}, {" 32,000", 32000},
                                                  {" 24,000", 24000}, {" 22,050", 22050}, {" 16,000", 16000},
                                                  {" 12,000", 12000}, {" 11,025", 11025}, {"  8,000", 8000}};
    EXPECT_EQ(FrequencyItems(), frequencies);
    const std::vector<ComboBox::Item> rates{{" 320", 320}, {" 256", 256}, {" 224", 224}, {" 192", 192}, {" 160", 160},
                                            {" 128", 128}, {" 112", 112}, {"  96", 96},  {"  80", 80},  {"  64", 64},
                                            {"  48", 48},  {"  40", 40},  {"  32", 32}};
    EXPECT_EQ(BitRateItems(), rates);
    const auto qualities = VbrQualityItems();
    ASSERT_EQ(qualities.size(), 11u);
    EXPECT_EQ(qualities[0].text, "(使用しない)");
    EXPECT_EQ(qualities[1], (ComboBox::Item{" 0－高音質", 0}));
    EXPECT_EQ(qualities[5], (ComboBox::Item{" 4", 4}));
    EXPECT_EQ(qualities[10], (ComboBox::Item{" 9－高圧縮", 9}));
}

TEST(Conversion, EveryErrorHasItsMessage) {
    const struct {
        int code;
        const char* message;
    } cases[] = {{1, "デコードファイルが不正です"}, {2, "エンコードファイルが不正です"}, {3, "コーデックがありません"},
                 {4, "gogo.dll初期化エラー"},       {5, "gogo.dllエンコードエラー"},     {6, "gogo.dllファイルエラー"},
                 {0, "変換エラー"},                 {7, "変換エラー"}};
    for (const auto& c : cases) EXPECT_EQ(MessageOf(static_cast<ConversionError>(c.code)), c.message) << c.code;
}

TEST(Conversion, AJobsErrorTellsWhatWasWrong) {
    EXPECT_EQ(ErrorOfJob(Operation::Decode, VBMP3_ERROR_FORMAT), ConversionError::DecodeSource);
    EXPECT_EQ(ErrorOfJob(Operation::PlayDecode, VBMP3_ERROR_NOT_FOUND), ConversionError::DecodeSource);
    EXPECT_EQ(ErrorOfJob(Operation::Encode, VBMP3_ERROR_FORMAT), ConversionError::EncodeSource);
    EXPECT_EQ(ErrorOfJob(Operation::Encode, VBMP3_ERROR_NO_CODEC), ConversionError::NoCodec);
    EXPECT_EQ(ErrorOfJob(Operation::Decode, VBMP3_ERROR_WRITE), ConversionError::Other);
    EXPECT_FALSE(ReasonOfJob(VBMP3_ERROR_WRITE).empty());
    EXPECT_FALSE(ReasonOfGogo(GOGO_ERROR_DESTINATION).empty());
    EXPECT_EQ(ReasonOfGogo(1234), "");
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
