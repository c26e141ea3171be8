#include <gtest/gtest.h>

#include "libraries/vbmp3/lyrics/lyrics_show.h"

namespace vbmp3 {
namespace {

constexpr const char* kSong = "[00:10]a\n[00:20]b\n[00:30]c\n[00:40]d\n[00:50]e";

class Show : public testing::Test {
  protected:
    const vbmp3_LyricsLines& at(int64_t ms, int64_t length = 100000) {
        record_ = {};
        record_.size = sizeof record_;
        any_ = show_.fill(ms, length, record_);
        return record_;
    }
    std::string rows() const {
        std::string all;
        for (const auto& row : record_.rows) all.append(row).append("/");
        return all;
    }

    LyricsShow show_;
    vbmp3_LyricsLines record_{};
    bool any_ = false;
};

TEST_F(Show, RowsStandAroundTheLineBeingSung) {
    show_.set(kSong, LyricsFormat::Lrc);
    const struct {
        int64_t ms;
        int current;
        const char* rows;
    } cases[] = {{0, -1, "///a/b/a/"},      {9999, -1, "///a/b/a/"},    {10000, 0, "//a/b/c/b/"},
                 {20000, 1, "/a/b/c/d/c/"}, {35000, 2, "a/b/c/d/e/d/"}, {1000000, 4, "c/d/e////"}};
    for (const auto& c : cases) {
        EXPECT_EQ(at(c.ms).current, c.current) << c.ms;
        EXPECT_TRUE(any_);
        EXPECT_EQ(record_.total, 5);
        EXPECT_EQ(rows(), c.rows) << c.ms;
        EXPECT_EQ(record_.progressBytes, -1);
    }
    EXPECT_EQ(at(15000).stampMs[1], -1);
    EXPECT_EQ(record_.stampMs[2], 10000);
    EXPECT_EQ(record_.stampMs[4], 30000);
}

TEST_F(Show, AShiftShowsLinesLater) {
    show_.set(kSong, LyricsFormat::Lrc);
    show_.setShift(500);
    EXPECT_EQ(at(10499).current, -1);
    EXPECT_EQ(at(10500).current, 0);
    EXPECT_EQ(at(10500).stampMs[2], 10500);
    show_.setShift(-500);
    EXPECT_EQ(at(9500).current, 0);
}

TEST_F(Show, TheExtraRowIsTheTranslationWhereThereIsOneAndElseTheNextLine) {
    show_.set("[00:01]夜\n[00:01]night\n[00:02]朝\n[00:03]昼\n[00:03]noon", LyricsFormat::Lrc);
    EXPECT_STREQ(at(1000).rows[5], "night");
    EXPECT_STREQ(at(2000).rows[5], "");  // the languages are not mixed
    EXPECT_STREQ(at(3000).rows[5], "noon");
}

TEST_F(Show, KaraokeTellsHowMuchOfTheLineHasBeenSung) {
    show_.set("[00:10:00]さく[00:11:00]ら[00:12:00]\n[00:20:00]x", LyricsFormat::Kra);
    const struct {
        int64_t ms;
        int progress, bytes;
    } cases[] = {{10000, 0, 0},   {10500, 333, 3},  {10900, 600, 3}, {11000, 666, 6},
                 {11999, 999, 6}, {12000, 1000, 9}, {15000, 1000, 9}};
    for (const auto& c : cases) {
        EXPECT_NEAR(at(c.ms).progress, c.progress, 1) << c.ms;
        EXPECT_EQ(record_.progressBytes, c.bytes) << c.ms;
    }
    show_.setKaraoke(false);
    EXPECT_EQ(at(11500).progressBytes, -1);
    EXPECT_EQ(at(11500).progress, 0);
}

TEST_F(Show, UntimedLyricsShowNoLinesUnlessTheyAreSpreadOverTheTrack) {
    show_.set("a\nb\nc\nd\n", LyricsFormat::Text);
    at(50000);
    EXPECT_FALSE(any_);
    EXPECT_EQ(rows(), "//////");
    show_.setUntimedStep(1);
    EXPECT_STREQ(at(0).rows[2], "a");
    EXPECT_STREQ(at(50000).rows[2], "c");
    EXPECT_STREQ(at(100000).rows[2], "d");
    EXPECT_STREQ(at(50000, 0).rows[2], "a");  // a track of unknown length stays at its beginning
    show_.setUntimedStep(2);
    EXPECT_STREQ(at(30000).rows[2], "a");
    EXPECT_STREQ(at(50000).rows[2], "c");
}

TEST_F(Show, ASeekIsFollowedAtOnceOrWithTheNextLine) {
    for (const bool follow : {true, false}) {
        show_.set(kSong, LyricsFormat::Lrc);
        show_.setSeekFollow(follow);
        EXPECT_EQ(at(11000).current, 0);
        show_.noteSeek();
        EXPECT_EQ(at(42000).current, follow ? 3 : 0);
        EXPECT_EQ(at(49000).current, follow ? 3 : 0);
        EXPECT_EQ(at(50000).current, 4);
        EXPECT_EQ(at(12000).current, 0);
    }
}

TEST_F(Show, AChangeOfTheRulesReadsTheTextAgain) {
    show_.set("@Title=x\n[00:00]a", LyricsFormat::Lrc);
    EXPECT_EQ(show_.lyrics().title, "x");
    show_.setAtMarkTags(false);
    EXPECT_EQ(at(0).total, 1);
    EXPECT_EQ(show_.lyrics().title, "");
    show_.clear();
    at(0);
    EXPECT_FALSE(any_);
}

}  // namespace
}  // namespace vbmp3
