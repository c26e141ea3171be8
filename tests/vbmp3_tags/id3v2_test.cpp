#include "libraries/vbmp3/tags/id3v2.h"

#include <gtest/gtest.h>

#include "libraries/vbmp3/tags/genres.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;
using namespace std::string_literals;

namespace {

TagFields Read(const std::string& tag) {
    const MemorySource source(BytesOf(tag));
    HeadTailReader reader(source);
    return ReadId3v2(reader, {0, static_cast<int64_t>(tag.size())});
}

std::optional<Id3v2Tag> Parse(const std::string& tag) {
    const MemorySource source(BytesOf(tag));
    HeadTailReader reader(source);
    return ParseId3v2(reader, {0, static_cast<int64_t>(tag.size())});
}

std::string Written(const Id3v2Tag& tag) {
    const auto recipe = MakeId3v2(tag, 0);
    std::string out;
    if (recipe)
        recipe->carryOut(MemorySource({}), [&](auto part) { return out.append(part.begin(), part.end()), true; });
    return recipe ? out : "too large";
}

// "夜" and "曲" in the encodings of the tag.
const std::string kShiftJis = "\x96\xE9\x8B\xC8", kUtf8 = "夜曲";
const std::string kUtf16Le = "\x1C\x59\xF2\x66", kUtf16Be = "\x59\x1C\x66\xF2";

}  // namespace

TEST(Id3v2, TextsAreReadInEveryEncoding) {
    struct {
        const char* what;
        std::string body, text;
    } cases[] = {
        {"Latin-1", "\0Caf\xE9"s, "Café"},
        {"Shift-JIS that claims Latin-1", "\0"s + kShiftJis, kUtf8},
        {"UTF-8 that claims Latin-1", "\0"s + kUtf8, kUtf8},
        {"UTF-16 with mark", "\1\xFF\xFE"s + kUtf16Le, kUtf8},
        {"UTF-16 with mark, other order", "\1\xFE\xFF"s + kUtf16Be, kUtf8},
        {"UTF-16 without mark", "\1"s + "\x42\x30\x44\x30\x61\x00"s, "あいa"},
        {"UTF-16 without mark, other order", "\1"s + "\x30\x42\x30\x44\x00\x61"s, "あいa"},
        {"UTF-16BE", "\2"s + kUtf16Be, kUtf8},
        {"UTF-8", "\3"s + kUtf8, kUtf8},
        {"Shift-JIS that claims UTF-8", "\3"s + kShiftJis, kUtf8},
        {"UTF-8 with a bad byte", "\3"s + "夜\xFF曲", "夜\xEF\xBF\xBD曲"},
        {"emoji as a pair", "\1\xFF\xFE\x3C\xD8\xB5\xDF"s, "🎵"},
        {"half a pair", "\1\xFF\xFE\x3C\xD8"s, "\xEF\xBF\xBD"},
        {"odd length", "\1\xFF\xFE\x61\x00\x62"s, "a"},
        {"NUL at the end", "\0abc\0\0"s, "abc"},
        {"blanks around", "\0 abc  "s, "abc"},
        {"several values", "\3a\0b\0c"s, "a / b / c"},
        {"several values, one mark", "\1\xFF\xFE\x61\0\0\0\x62\0"s, "a / b"},
        {"several values, each with its mark", "\1\xFF\xFE\x61\0\0\0\xFE\xFF\0\x62"s, "a / b"},
        {"a missing encoding", "abc", "abc"},
        {"an unknown encoding", "\7abc"s, "abc"},
        {"nothing", "", ""},
        {"only an encoding", "\1"s, ""},
        {"only a mark", "\1\xFF\xFE"s, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Read(Id3v2(2, Frame2("TT2", c.body))).title, c.text) << c.what;
        EXPECT_EQ(Read(Id3v2(3, Frame3("TIT2", c.body))).title, c.text) << c.what;
        EXPECT_EQ(Read(Id3v2(4, Frame4("TIT2", c.body))).title, c.text) << c.what;
    }
}

TEST(Id3v2, OtherFramesStandInForAMissingOne) {
    const auto text = [](const std::string& s) { return "\0"s + s; };
    // Also names that converters from 2.2 left behind.
    const TagFields other = Read(Id3v2(3, Frame3("TPE2", text("band")) + Frame3("TDRC", text("2001-05-06")) +
                                              Frame3("TT2\0"s, text("x")) + Frame3("TAL ", text("y"))));
    EXPECT_EQ(other.artist + other.year + other.title + other.album, "band2001xy");
}

TEST(Id3v2, GenresAreNumbersNamesOrBoth) {
    struct {
        std::string text, name;
        int number;
    } cases[] = {
        {"(17)", "Rock", 17},
        {"17", "Rock", 17},
        {"Rock", "Rock", 17},
        {"rock", "rock", 17},
        {"(4)Eurodisco", "Eurodisco", 255},
        {"(4)Dance", "Dance", 3},
        {"(51)(39)", "Techno-Industrial / Noise", 51},
        {"(4)(5)Eurodisco", "Disco / Eurodisco", 4},
        {"(4)(live)", "Disco", 4},
        {"(191)", "Psybient", 191},
        {"192", "192", 255},
        {"(255)", "", 255},
        {"(RX)", "Remix", 255},
        {"(CR)", "Cover", 255},
        {"((live)", "(live)", 255},
        {"(live)", "(live)", 255},
        {"()", "()", 255},
        {"(17", "(17", 255},
        {"演歌", "演歌", 255},
        {"", "", 255},
        {"-1", "-1", 255},
        {"(99999999999)", "(99999999999)", 255},
    };
    for (const auto& c : cases) {
        const Genre genre = ReadGenre(c.text);
        EXPECT_EQ(genre.name, c.name) << c.text;
        EXPECT_EQ(genre.number, c.number) << c.text;
    }
    const std::string several = Frame4("TCON", "\3"s + "17\0Enka\0(20)"s);
    EXPECT_EQ(Read(Id3v2(4, several)).genre, "Rock / Enka / Alternative");
    for (const auto& [number, name] :
         {std::pair{0, "Blues"}, {79, "Hard Rock"}, {80, "Folk"}, {146, "JPop"}, {192, ""}, {-1, ""}})
        EXPECT_EQ(GenreName(number), name) << number;
}

TEST(Id3v2, HeadersOfEveryShapeAreSkipped) {
    const std::string t3 = Frame3("TIT2", "\1\xFF\xFE"s + kUtf16Le), t4 = Frame4("TIT2", "\3"s + kUtf8);
    struct {
        const char* what;
        int version;
        std::string body;
        int flags;
    } cases[] = {
        {"2.3 extended header of 6", 3, Be32(6) + "\0\0"s + Be32(0) + t3, 0x40},
        {"2.3 extended header of 10 with checksum", 3, Be32(10) + "\x80\0"s + Be32(0) + "abcd" + t3, 0x40},
        {"2.3 extended header whose size counts itself", 3, Be32(10) + "\0\0"s + Be32(0) + t3, 0x40},
        {"2.3 extended header announced and not there", 3, t3, 0x40},
        {"2.4 extended header of 6", 4, Synchsafe(6) + "\1\0"s + t4, 0x40},
        {"2.4 extended header of 12 with checksum", 4, Synchsafe(12) + "\1\x20\5\1\2\3\4\5"s + t4, 0x40},
        {"2.4 extended header whose size leaves itself out", 4, Synchsafe(2) + "\1\0"s + t4, 0x40},
        {"2.4 with footer", 4, t4, 0x10},
        {"2.3 unsynchronised", 3, Unsynchronised(t3), 0x80},
        {"2.3 unsynchronised with a picture in front", 3, Unsynchronised(Frame3("APIC", std::string(300, '\xFF')) + t3),
         0x80},
        {"2.3 unsynchronised and extended", 3, Unsynchronised(Be32(6) + "\0\0"s + Be32(0) + t3), 0xC0},
        {"2.2 unsynchronised", 2, Unsynchronised(Frame2("TT2", "\1\xFF\xFE"s + kUtf16Le)), 0x80},
        {"2.4 frame unsynchronised", 4, Frame4("TIT2", Unsynchronised("\1\xFF\xFE"s + kUtf16Le), 0x0002), 0x80},
        {"2.4 frame unsynchronised, tag does not say so", 4,
         Frame4("TIT2", Unsynchronised("\1\xFF\xFE"s + kUtf16Le), 0x0002), 0},
        {"2.4 only the tag says so", 4, Frame4("TIT2", Unsynchronised("\1\xFF\xFE"s + kUtf16Le)), 0x80},
        {"2.4 the tag says so and the frame is not", 4, Frame4("TIT2", "\1\xFF\xFE"s + kUtf16Le), 0x80},
        {"2.4 data length", 4, Frame4("TIT2", Synchsafe(7) + "\3"s + kUtf8, 0x0001), 0},
        {"2.4 group, data length, unsynchronised", 4, Frame4("TIT2", "g" + Synchsafe(7) + "\3"s + kUtf8, 0x0043), 0},
        {"2.3 group", 3, Frame3("TIT2", "g\1\xFF\xFE"s + kUtf16Le, 0x0020), 0},
        {"2.4 sizes of eight bits", 4, Frame3("TPE1", "\3"s + std::string(200, 'x')) + t4, 0},
        {"2.3 sizes of seven bits", 3, Frame4("TPE1", "\0"s + std::string(200, 'x')) + t3, 0},
        {"2.4 long frame with true sizes", 4, Frame4("TPE1", "\3"s + std::string(200, 'x')) + t4, 0},
    };
    for (const auto& c : cases) EXPECT_EQ(Read(Id3v2(c.version, c.body, c.flags)).title, kUtf8) << c.what;
    // Compressed and encrypted frames are passed over, the next one is read.
    for (const std::string& tag : {Id3v2(3, Frame3("TIT2", "????", 0x80) + Frame3("TALB", "\0b"s)),
                                   Id3v2(3, Frame3("TIT2", "????", 0x40) + Frame3("TALB", "\0b"s)),
                                   Id3v2(4, Frame4("TIT2", "????", 0x08) + Frame4("TALB", "\0b"s)),
                                   Id3v2(4, Frame4("TIT2", "????", 0x04) + Frame4("TALB", "\0b"s))})
        EXPECT_EQ(Read(tag).title + "|" + Read(tag).album, "|b");
}

TEST(Id3v2, FieldsThatAreNotEditedKeepTheirFrames) {
    const std::string frames = Frame4("TPE1", "\3a\0b"s) + Frame4("TCON", "\0(17)Hard\0x"s) +
                               Frame4("TDRC", "\0"s + "2004-05-06") + Frame4("COMM", "\3jpnfirst\0words"s) +
                               Frame4("TIT2", "\1\xFF\xFE\x61\0"s);
    auto tag = Parse(Id3v2(4, frames));
    ASSERT_TRUE(tag);
    TagFields fields = FieldsOf(*tag);
    EXPECT_EQ(fields.artist, "a / b");
    SetFields(*tag, fields);
    EXPECT_EQ(Written(*tag), Id3v2(4, frames));
    // A caller whose texts are short hands back a part of the title; nothing is lost by that.
    TagFields shown = fields;
    shown.artist = fields.artist = "a /";
    fields.year = "2005";
    SetFields(*tag, fields, &shown);
    EXPECT_EQ(FieldsOf(*tag).artist, "a / b");
    EXPECT_EQ(FieldsOf(*tag).year, "2005");
}
