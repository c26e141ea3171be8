#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {
namespace {

using namespace std::string_literals;

class LyricsApi : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::path(testing::TempDir()) /
                  ("lyrics_"s + testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(folder_);
        ASSERT_TRUE(vbmp3_init());
    }
    void TearDown() override {
        vbmp3_free();
        std::filesystem::remove_all(folder_);
    }

    std::string write(const std::string& name, const std::string& bytes) {
        const std::string path = (folder_ / name).string();
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    // One second of silence at 128 kbit/s, 44.1 kHz.
    static std::string sound() {
        std::string frames;
        for (int i = 0; i < 40; ++i) frames += "\xFF\xFB\x90\x64"s + std::string(413, '\0');
        return frames;
    }

    static std::string id3v2(const std::string& frame, const std::string& contents) {
        const auto size = [](size_t n) {
            return std::string{0, 0, static_cast<char>(n >> 7 & 0x7F), static_cast<char>(n & 0x7F)};
        };
        const std::string body =
            frame + std::string{0, 0, static_cast<char>(contents.size() >> 8), static_cast<char>(contents.size())} +
            "\0\0"s + contents;
        return "ID3\3\0\0"s + size(body.size()) + body;
    }

    static std::string id3v1() { return "TAG" + std::string(125, '\0'); }

    vbmp3_LyricsLines lines() {
        vbmp3_LyricsLines record{};
        record.size = sizeof record;
        any_ = vbmp3_getLyrics2(&record);
        return record;
    }

    std::filesystem::path folder_;
    std::vector<char> raw_ = std::vector<char>(VBMP3_LYRICS_TEXT, '#'),
                      text_ = std::vector<char>(VBMP3_LYRICS_TEXT, '#');
    int any_ = 0;
};

TEST_F(LyricsApi, ALyrics3BlockBecomesTheCurrentLyrics) {
    const std::string block = "LYRICSBEGIN[00:00]\x82\xA0\r\n[00:59]b\r\nLYRICSEND";
    ASSERT_TRUE(vbmp3_open(write("a.mp3", sound() + block + id3v1()).c_str(), nullptr));
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
    const std::string sylt = id3v2("SYLT", "\3eng\2\1\0first\0\0\0\0\0second\0\0\0\x60\0"s);
    ASSERT_TRUE(vbmp3_open(write("a.mp3", sylt + sound()).c_str(), nullptr));
    EXPECT_NE(vbmp3_readLyrics3Data(raw_.data(), text_.data()), 0);
    EXPECT_STREQ(lines().rows[2], "first");

    const std::string uslt = id3v2("USLT", "\3eng\0words\nwithout time"s);
    const std::string plain = write("b.mp3", uslt + sound());
    ASSERT_TRUE(vbmp3_open(plain.c_str(), nullptr));
    EXPECT_NE(vbmp3_readLyrics3Data(nullptr, nullptr), 0);
    EXPECT_EQ(vbmp3_checkTimeTag(), 0);
    const auto info = std::make_unique<vbmp3_Lyrics3Info>();
    info->size = sizeof *info;
    EXPECT_EQ(vbmp3_getFileLyrics3InfoVB(plain.c_str(), info.get()), 1);
    EXPECT_EQ(info->version, 0);
    EXPECT_STREQ(info->lyrics, "words\r\nwithout time");

    const std::string block = "LYRICSBEGINown words\r\nLYRICSEND";
    ASSERT_TRUE(vbmp3_open(write("c.mp3", sylt + sound() + block + id3v1()).c_str(), nullptr));
    EXPECT_NE(vbmp3_readLyrics3Data(nullptr, text_.data()), 0);
    EXPECT_STREQ(text_.data(), "own words");
}

TEST_F(LyricsApi, InformationOfALyrics3BlockComesWithoutStamps) {
    const std::string path = write("a.mp3", sound() +
                                                "LYRICSBEGININD00003110ETT00004SongLYR00018[00:01]a\r\n[00:02]b"
                                                "000060LYRICS200" +
                                                id3v1());
    const auto info = std::make_unique<vbmp3_Lyrics3Info>();
    info->size = sizeof *info;
    ASSERT_EQ(vbmp3_getFileLyrics3InfoVB(path.c_str(), info.get()), 1);
    EXPECT_EQ(info->version, 2);
    EXPECT_EQ(info->hasTimeTags, 1);
    EXPECT_STREQ(info->title, "Song");
    EXPECT_STREQ(info->lyrics, "a\r\nb");
    EXPECT_EQ(vbmp3_getFileLyrics3InfoVB(write("none.mp3", sound()).c_str(), info.get()), 0);
    EXPECT_STREQ(info->lyrics, "");
    EXPECT_EQ(vbmp3_getFileLyrics3InfoVB((folder_ / "missing.mp3").string().c_str(), info.get()), 0);
}

TEST_F(LyricsApi, ASideFileThatCannotServeLeavesTheLyricsAsTheyWere) {
    ASSERT_EQ(vbmp3_setLyricsFile(write("good.lrc", "[00:00]good").c_str()), 1);
    std::string noise;
    for (uint32_t i = 1, state = 1; i < 4000; ++i)
        noise += static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    EXPECT_EQ(vbmp3_setLyricsFile(write("noise.txt", noise).c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(write("large.txt", std::string(5 << 20, 'x')).c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(write("empty.kra", "").c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(folder_.string().c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile((folder_ / "missing.lrc").string().c_str()), 0);
    EXPECT_EQ(vbmp3_setLyricsFile(nullptr), 0);
    EXPECT_EQ(vbmp3_checkTimeTag(), 1);
    EXPECT_STREQ(lines().rows[2], "good");
}

TEST_F(LyricsApi, ARecordThatIsSmallerIsNotWrittenBeyondItsSize) {
    ASSERT_EQ(vbmp3_setLyricsFile(write("a.lrc", "[00:00]a\n[00:01]b").c_str()), 1);
    vbmp3_LyricsLines record{};
    record.size = offsetof(vbmp3_LyricsLines, progress);
    record.progress = 77;
    EXPECT_EQ(vbmp3_getLyrics2(&record), 1);
    EXPECT_EQ(record.total, 2);
    EXPECT_EQ(record.progress, 77);
    EXPECT_EQ(record.rows[2][0], '\0');
    EXPECT_EQ(vbmp3_getLyrics2(nullptr), 0);
}

}  // namespace
}  // namespace vbmp3
