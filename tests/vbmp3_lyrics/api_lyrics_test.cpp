#include <gtest/gtest.h>

#include <memory>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3/temp_dir.h"
#include "tests/vbmp3_tags/tag_bytes.h"

namespace vbmp3 {
namespace {

using namespace std::string_literals;
using namespace tagbytes;

class LyricsApi : public testing::Test {
  protected:
    LyricsApi() { vbmp3_init(); }
    ~LyricsApi() override { vbmp3_free(); }

    int open(const std::string& bytes) { return vbmp3_open(folder_.write("a.mp3", bytes).c_str(), nullptr); }
    int setSideFile(const std::string& name, const std::string& bytes) {
        return vbmp3_setLyricsFile(folder_.write(name, bytes).c_str());
    }
    // What the file says of its lyrics, in info_.
    int readInfo(const std::string& bytes) {
        info_->size = sizeof *info_;
        return vbmp3_getFileLyrics3InfoVB(folder_.write("info.mp3", bytes).c_str(), info_.get());
    }
    vbmp3_LyricsLines lines() {
        vbmp3_LyricsLines record{};
        record.size = sizeof record;
        any_ = vbmp3_getLyrics2(&record);
        return record;
    }

    const test::TempDir folder_;
    const std::string sound_ = MpegFrames(40);  // one second
    std::unique_ptr<vbmp3_Lyrics3Info> info_ = std::make_unique<vbmp3_Lyrics3Info>();
    std::vector<char> raw_ = std::vector<char>(VBMP3_LYRICS_TEXT, '#'), text_ = raw_;
    int any_ = 0;
};

TEST_F(LyricsApi, ALyrics3BlockBecomesTheCurrentLyrics) {
    const std::string block = Lyrics3v1("[00:00]\x82\xA0\r\n[00:59]b\r\n");
    ASSERT_TRUE(open(sound_ + block + Id3v1("")));
    EXPECT_EQ(vbmp3_checkTimeTag(), 0);
    EXPECT_NE(vbmp3_readLyrics3Data(raw_.data(), text_.data()), 0);
    EXPECT_EQ(std::string(raw_.data()), block);
    EXPECT_STREQ(text_.data(), "[00:00]あ\r\n[00:59]b");
    EXPECT_EQ(vbmp3_checkTimeTag(), 1);
    EXPECT_STREQ(lines().rows[2], "あ");
    EXPECT_EQ(any_, 1);
    vbmp3_clearLyrics();
    EXPECT_EQ(vbmp3_checkTimeTag(), 0);
    lines();
    EXPECT_EQ(any_, 0);
}

TEST_F(LyricsApi, LyricsOfId3v2ServeWhereThereIsNoLyrics3Block) {
    const std::string sylt = Id3v2(3, Frame3("SYLT", "\3eng\2\1\0first\0\0\0\0\0second\0\0\0\x60\0"s));
    ASSERT_TRUE(open(sylt + sound_));
    EXPECT_NE(vbmp3_readLyrics3Data(raw_.data(), text_.data()), 0);
    EXPECT_STREQ(lines().rows[2], "first");

    const std::string plain = Id3v2(3, Frame3("USLT", "\3eng\0words\nwithout time"s)) + sound_;
    ASSERT_TRUE(open(plain));
    EXPECT_NE(vbmp3_readLyrics3Data(nullptr, nullptr), 0);
    EXPECT_EQ(vbmp3_checkTimeTag(), 0);
    EXPECT_EQ(readInfo(plain), 1);
    EXPECT_EQ(info_->version, 0);
    EXPECT_STREQ(info_->lyrics, "words\r\nwithout time");

    ASSERT_TRUE(open(sylt + sound_ + Lyrics3v1("own words\r\n") + Id3v1("")));
    EXPECT_NE(vbmp3_readLyrics3Data(nullptr, text_.data()), 0);
    EXPECT_STREQ(text_.data(), "own words");
}

TEST_F(LyricsApi, InformationOfALyrics3BlockComesWithoutStamps) {
    const std::string block = Lyrics3v2("IND00003110ETT00004SongLYR00018[00:01]a\r\n[00:02]b");
    ASSERT_EQ(readInfo(sound_ + block + Id3v1("")), 1);
    EXPECT_EQ(info_->version, 2);
    EXPECT_EQ(info_->hasTimeTags, 1);
    EXPECT_STREQ(info_->title, "Song");
    EXPECT_STREQ(info_->lyrics, "a\r\nb");
    EXPECT_EQ(readInfo(sound_), 0);
    EXPECT_STREQ(info_->lyrics, "");
    EXPECT_EQ(vbmp3_getFileLyrics3InfoVB(folder_.path("missing.mp3").c_str(), info_.get()), 0);
}

TEST_F(LyricsApi, ASideFileThatCannotServeLeavesTheLyricsAsTheyWere) {
    ASSERT_EQ(setSideFile("good.lrc", "[00:00]good"), 1);
    std::string noise;
    for (uint32_t i = 1, state = 1; i < 4000; ++i)
        noise += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    EXPECT_EQ(setSideFile("noise.txt", noise), 0);
    EXPECT_EQ(setSideFile("large.txt", std::string(5 << 20, 'x')), 0);
    EXPECT_EQ(setSideFile("empty.kra", ""), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(folder_.path().c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(folder_.path("missing.lrc").c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(nullptr), 0);
    EXPECT_EQ(vbmp3_checkTimeTag(), 1);
    EXPECT_STREQ(lines().rows[2], "good");
}

TEST_F(LyricsApi, LongRowsAndTextsAreThereWholeForWhoAsks) {
    std::string line;
    while (line.size() < 300) line += "長い行";
    ASSERT_EQ(setSideFile("a.lrc", "[00:00]" + line + "\n[00:01]b"), 1);
    EXPECT_EQ(lines().rows[2], line.substr(0, 126));
    const uint32_t needed = vbmp3_getLyricsText(2, nullptr, 0);
    std::string whole(needed, '#');
    EXPECT_EQ(vbmp3_getLyricsText(2, whole.data(), needed), needed);
    EXPECT_EQ(whole.c_str(), line);
    EXPECT_EQ(vbmp3_getLyricsText(5, whole.data(), 1), 2u) << "the next line, cut to nothing";
    EXPECT_EQ(whole[0], '\0');
    EXPECT_EQ(vbmp3_getLyricsText(0, nullptr, 0), 1u);
    EXPECT_EQ(vbmp3_getLyricsText(6, nullptr, 0), 0u);

    const std::string words(70000, 'x');
    const std::string bytes = Id3v2(3, Frame3("USLT", "\3eng\0"s + words)) + sound_;
    ASSERT_EQ(readInfo(bytes), 1);
    EXPECT_EQ(info_->textNeeded, words.size() + 1);
    whole.resize(info_->textNeeded);
    info_->text = whole.data();
    info_->textSize = info_->textNeeded;
    ASSERT_EQ(readInfo(bytes), 1);
    EXPECT_EQ(whole.c_str(), words);
    EXPECT_EQ(std::string(info_->lyrics).size(), size_t{VBMP3_LYRICS_TEXT - 1});
}

}  // namespace
}  // namespace vbmp3
