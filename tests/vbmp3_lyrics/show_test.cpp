#include <gtest/gtest.h>

#include "libraries/vbmp3/lyrics/lyrics_show.h"

namespace vbmp3 {
namespace {

struct Shown {
    bool any;
    vbmp3_LyricsLines record;

    std::string rows() const {
        std::string all;
        for (const auto& row : record.rows) all.append(row).append("/");
        return all;
    }
};

Shown at(LyricsShow& show, int64_t ms, int64_t length = 100000) {
    Shown shown{false, {}};
    shown.record.size = sizeof shown.record;
    shown.any = show.fill(ms, length, shown.record);
    return shown;
}

constexpr const char* kSong = "[00:10]a\n[00:20]b\n[00:30]c\n[00:40]d\n[00:50]e";

TEST(Show, RowsStandAroundTheLineBeingSung) {
    LyricsShow show;
    show.set(kSong, LyricsFormat::Lrc);
    const struct {
        int64_t ms;
        int current;
        const char* rows;
    } cases[] = {{0, -1, "///a/b/a/"},      {9999, -1, "///a/b/a/"},    {10000, 0, "//a/b/c/b/"},
                 {20000, 1, "/a/b/c/d/c/"}, {35000, 2, "a/b/c/d/e/d/"}, {1000000, 4, "c/d/e////"}};
    for (const auto& c : cases) {
        const Shown shown = at(show, c.ms);
        EXPECT_TRUE(shown.any);
        EXPECT_EQ(shown.record.current, c.current) << c.ms;
        EXPECT_EQ(shown.record.total, 5);
        EXPECT_EQ(shown.rows(), c.rows) << c.ms;
        EXPECT_EQ(shown.record.progressBytes, -1);
    }
    const Shown shown = at(show, 15000);
    EXPECT_EQ(shown.record.stampMs[1], -1);
    EXPECT_EQ(shown.record.stampMs[2], 10000);
    EXPECT_EQ(shown.record.stampMs[4], 30000);
}

TEST(Show, AShiftShowsLinesLater) {
    LyricsShow show;
    show.set(kSong, LyricsFormat::Lrc);
    show.setShift(500);
    EXPECT_EQ(at(show, 10499).record.current, -1);
    EXPECT_EQ(at(show, 10500).record.current, 0);
    EXPECT_EQ(at(show, 10500).record.stampMs[2], 10500);
    show.setShift(-500);
    EXPECT_EQ(at(show, 9500).record.current, 0);
}

TEST(Show, TheExtraRowIsTheTranslationWhereThereIsOneAndElseTheNextLine) {
    LyricsShow show;
    show.set("[00:01]夜\n[00:01]night\n[00:02]朝\n[00:03]昼\n[00:03]noon", LyricsFormat::Lrc);
    EXPECT_STREQ(at(show, 1000).record.rows[5], "night");
    EXPECT_STREQ(at(show, 2000).record.rows[5], "");  // the languages are not mixed
    EXPECT_STREQ(at(show, 3000).record.rows[5], "noon");
}

TEST(Show, LongLinesAreCutAtACharacter) {
    LyricsShow show;
    std::string line;
    for (int i = 0; i < 60; ++i) line += "あ";
    show.set("[00:00]" + line, LyricsFormat::Lrc);
    const std::string row = at(show, 0).record.rows[2];
    EXPECT_EQ(row.size(), 126u);  // 42 characters of three bytes; 127 would split one
    EXPECT_EQ(row, line.substr(0, 126));
}

TEST(Show, KaraokeTellsHowMuchOfTheLineHasBeenSung) {
    LyricsShow show;
    show.set("[00:10:00]さく[00:11:00]ら[00:12:00]\n[00:20:00]x", LyricsFormat::Kra);
    const struct {
        int64_t ms;
        int progress, bytes;
    } cases[] = {{10000, 0, 0},   {10500, 333, 3},  {10900, 600, 3}, {11000, 666, 6},
                 {11999, 999, 6}, {12000, 1000, 9}, {15000, 1000, 9}};
    for (const auto& c : cases) {
        const Shown shown = at(show, c.ms);
        EXPECT_NEAR(shown.record.progress, c.progress, 1) << c.ms;
        EXPECT_EQ(shown.record.progressBytes, c.bytes) << c.ms;
    }
    show.setKaraoke(false);
    EXPECT_EQ(at(show, 11500).record.progressBytes, -1);
    EXPECT_EQ(at(show, 11500).record.progress, 0);
}

TEST(Show, UntimedLyricsShowNoLinesUnlessTheyAreSpreadOverTheTrack) {
    LyricsShow show;
    show.set("a\nb\nc\nd\n", LyricsFormat::Text);
    EXPECT_FALSE(at(show, 50000).any);
    EXPECT_EQ(at(show, 50000).rows(), "//////");
    show.setUntimedStep(1);
    EXPECT_STREQ(at(show, 0).record.rows[2], "a");
    EXPECT_STREQ(at(show, 50000).record.rows[2], "c");
    EXPECT_STREQ(at(show, 100000).record.rows[2], "d");
    EXPECT_STREQ(at(show, 50000, 0).record.rows[2], "a");  // a track of unknown length stays at its beginning
    show.setUntimedStep(2);
    EXPECT_STREQ(at(show, 30000).record.rows[2], "a");
    EXPECT_STREQ(at(show, 50000).record.rows[2], "c");
}

TEST(Show, ASeekIsFollowedAtOnceOrWithTheNextLine) {
    for (const bool follow : {true, false}) {
        LyricsShow show;
        show.set(kSong, LyricsFormat::Lrc);
        show.setSeekFollow(follow);
        EXPECT_EQ(at(show, 11000).record.current, 0);
        show.noteSeek();
        EXPECT_EQ(at(show, 42000).record.current, follow ? 3 : 0);
        EXPECT_EQ(at(show, 49000).record.current, follow ? 3 : 0);
        EXPECT_EQ(at(show, 50000).record.current, 4);
        EXPECT_EQ(at(show, 12000).record.current, 0);
    }
}

TEST(Show, AChangeOfTheRulesReadsTheTextAgain) {
    LyricsShow show;
    show.set("@Title=x\n[00:00]a", LyricsFormat::Lrc);
    EXPECT_EQ(at(show, 0).record.total, 1);
    show.setAtMarkTags(false);
    EXPECT_EQ(at(show, 0).record.total, 1 + 0);
    EXPECT_EQ(show.lyrics().title, "");
    show.clear();
    EXPECT_FALSE(at(show, 0).any);
}

}  // namespace
}  // namespace vbmp3
