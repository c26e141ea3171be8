#include <gtest/gtest.h>

#include "libraries/vbmp3/lyrics/id3v2_lyrics.h"
#include "libraries/vbmp3/lyrics/lyrics3.h"
#include "tests/vbmp3_tags/tag_bytes.h"

namespace vbmp3 {
namespace {

using namespace std::string_literals;
using tagbytes::BytesOf, tagbytes::Lyrics3v2;

std::string Field(const std::string& id, const std::string& data) {
    std::string length = std::to_string(data.size());
    return id + std::string(5 - length.size(), '0') + length + data;
}

TEST(Lyrics3, VersionTwoHasFields) {
    const auto block = ParseLyrics3(BytesOf(
        Lyrics3v2(Field("IND", "110") + Field("ETT", "\x8B\xC8") + Field("EAR", "Singer") + Field("EAL", "Album") +
                  Field("AUT", "Poet") + Field("IMG", "x.jpg") + Field("LYR", "[00:01]a"))));
    ASSERT_TRUE(block);
    EXPECT_EQ(block->version, 2);
    EXPECT_EQ(block->title, "曲");
    EXPECT_EQ(block->artist, "Singer");
    EXPECT_EQ(block->album, "Album");
    EXPECT_EQ(block->author, "Poet");
    EXPECT_EQ(block->lyrics, "[00:01]a");
}

TEST(Lyrics3, BrokenBlocksGiveWhatCanBeRead) {
    for (const char* none : {"", "LYRICSBEGIN", "LYRICSBEGINLYRICS200", "something elseLYRICSEND"})
        EXPECT_FALSE(ParseLyrics3(BytesOf(none))) << none;
    const auto tooLong = ParseLyrics3(BytesOf(Lyrics3v2("LYR99999ab")));
    ASSERT_TRUE(tooLong);
    EXPECT_EQ(tooLong->lyrics, "ab");
    const auto noNumber = ParseLyrics3(BytesOf(Lyrics3v2(Field("ETT", "T") + "LYR1x345ab")));
    ASSERT_TRUE(noNumber);
    EXPECT_EQ(noNumber->title, "T");
    EXPECT_EQ(noNumber->lyrics, "");
}

std::string Sylt(char encoding, char stampFormat, char kind, const std::string& entries) {
    const std::string noDescription(encoding == 1 || encoding == 2 ? 2 : 1, '\0');
    return std::string(1, encoding) + "jpn" + stampFormat + kind + noDescription + entries;
}

TEST(Id3v2Lyrics, SynchronisedLyricsBecomeTextWithStamps) {
    const struct {
        const char* rule;
        std::string frame;
        double msPerFrame;
        const char* expected;  // null: refused
    } cases[] = {
        {"without line breaks each entry is a line", Sylt(3, 2, 1, "one\0\0\0\3\xE8two\0\0\0\7\xD0"s), 0,
         "[00:01.000]one\r\n[00:02.000]two"},
        {"with line breaks entries are syllables", Sylt(3, 2, 1, "Hel\0\0\0\3\xE8lo\0\0\0\7\xD0\nyou\0\0\0\x0B\xB8"s),
         0, "[00:01.000]<00:01.000>Hel<00:02.000>lo\r\n[00:03.000]<00:03.000>you"},
        {"entries that all end with a break are lines", Sylt(3, 2, 1, "one\n\0\0\0\3\xE8two\n\0\0\0\7\xD0"s), 0,
         "[00:01.000]one\r\n[00:02.000]two"},
        {"stamps may count frames", Sylt(3, 1, 1, "a\0\0\0\0\x64"s), 26.125, "[00:02.612]a"},
        {"frames of unknown length are refused", Sylt(3, 1, 1, "a\0\0\0\0\x64"s), 0, nullptr},
        {"chords are no lyrics", Sylt(3, 2, 5, "Am\0\0\0\0\x64"s), 0, nullptr},
        {"Shift-JIS that claims Latin-1", Sylt(0, 2, 1, "\x82\xA0\0\0\0\0\0\x82\xA2\0\0\0\3\xE8"s), 0,
         "[00:00.000]あ\r\n[00:01.000]い"},
        {"one byte-order mark serves for all texts",
         Sylt(1, 2, 1, "\xFE\xFF\x30\x42\0\0\0\0\0\0\x30\x44\0\0\0\0\3\xE8"s), 0, "[00:00.000]あ\r\n[00:01.000]い"},
        {"a stamp that is cut off ends the lyrics", Sylt(3, 2, 1, "a\0\0\0\0\0b\0\0\1"s), 0, "[00:00.000]a"},
        {"blanks alone are no lyrics", Sylt(3, 2, 1, " \n\0\0\0\0\0"s), 0, nullptr},
        {"nothing at all", "", 0, nullptr},
    };
    for (const auto& c : cases) {
        const auto text = ReadSylt(BytesOf(c.frame), c.msPerFrame);
        EXPECT_EQ(text.value_or("refused"), c.expected ? c.expected : "refused") << c.rule;
    }
}

TEST(Id3v2Lyrics, UnsynchronisedLyricsAreReadInEveryEncoding) {
    EXPECT_EQ(ReadUslt(BytesOf("\0engdescription\0line\nline"s)), "line\nline");
    for (const std::string& frame :
         {"\0jpn\0\x82\xA0"s, "\1jpn\xFF\xFE\0\0\xFF\xFE\x42\x30"s, "\2jpn\0\0\x30\x42"s, "\3jpn\0あ"s}) {
        EXPECT_EQ(ReadUslt(BytesOf(frame)), "あ");
    }
    EXPECT_FALSE(ReadUslt(BytesOf("\3jpn\0 \n"s)));
    EXPECT_FALSE(ReadUslt(BytesOf("\3jp"s)));
}

}  // namespace
}  // namespace vbmp3
