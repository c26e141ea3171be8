// ID3v1, RIFF INFO and APE: tags whose texts have no declared encoding.
#include <gtest/gtest.h>

#include "libraries/vbmp3/tags/ape.h"
#include "libraries/vbmp3/tags/id3v1.h"
#include "libraries/vbmp3/tags/riff_info.h"
#include "libraries/vbmp3/tags/tag_reader.h"
#include "tests/vbmp3_tags/tag_bytes.h"
#include "text/encoding.h"

using namespace vbmp3;
using namespace tagbytes;
using namespace std::string_literals;

namespace {
TagFields ReadFile(const std::string& file) {
    const MemorySource source(BytesOf(file));
    HeadTailReader reader(source);
    return ReadTags(reader, ScanFileLayout(reader));
}
}  // namespace

TEST(Id3v1, FieldsEndAtNulOrBlanksAndTrackNumberNeedsItsNul) {
    EXPECT_EQ(ReadId3v1(BytesOf(Id3v1("title", "artist", "album", "1999", "comment", 5, 17))),
              (TagFields{"title", "artist", "album", "comment", "1999", "Rock", "5", 17}));
    EXPECT_EQ(ReadId3v1(BytesOf(Id3v1("title   ", "a\0junk"s, "", "", std::string(30, 'c'), 0, 200))),
              (TagFields{"title", "a", "", std::string(30, 'c'), "", "", "", kNoGenre}));
    EXPECT_EQ(ReadId3v1(BytesOf(Id3v1("\x96\xE9\x8B\xC8", "Bj\xF6rk"))),
              (TagFields{"夜曲", "Björk", "", "", "", "", "", kNoGenre}));
    // A character that the field's end has cut in two is left off.
    const std::string fourteen =
        "x"
        "\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96\xE9\x96"
        "\xE9";
    const std::string nights = "x夜夜夜夜夜夜夜夜夜夜夜夜夜夜", western = std::string(29, 'e') + "\xE9";
    EXPECT_EQ(ReadId3v1(BytesOf(Id3v1(fourteen + "\x96", western, std::string(29, 'e') + "\x96"))),
              (TagFields{nights, std::string(29, 'e') + "é", std::string(29, 'e'), "", "", "", "", kNoGenre}));
    EXPECT_EQ(ReadId3v1(BytesOf(Id3v1("夜夜夜夜夜夜夜夜夜xx\xE5"))).title, "夜夜夜夜夜夜夜夜夜xx");
    EXPECT_EQ(ReadId3v1(BytesOf("TAG"s + std::string(100, 'x'))), TagFields{});  // too short
    EXPECT_EQ(ReadId3v1(BytesOf("tag"s + std::string(125, 'x'))), TagFields{});
}

TEST(Id3v1, TextsAreCutAtCharacterBordersAndSurviveAsFarAsTheyFit) {
    struct {
        std::string text, kept;
    } cases[] = {
        {"plain", "plain"},
        {std::string(40, 'x'), std::string(30, 'x')},
        {"夜曲", "夜曲"},
        {"x" + std::string("夜夜夜夜夜夜夜夜夜夜夜夜夜夜夜夜夜夜夜夜"),
         "x夜夜夜夜夜夜夜夜夜夜夜夜夜夜"},  // 29 of 30 bytes
        {"Café del Mar", "Café del Mar"},   // Latin-1
        {"ﾃｽﾄ", "ﾃｽﾄ"},
        {"한국", "한국"},  // UTF-8
        {"夜曲🎵終", "夜曲🎵終"},
        {"カフェ 🎵🎵🎵🎵🎵🎵🎵🎵", "カフェ 🎵🎵🎵🎵🎵"},
    };
    for (const auto& c : cases) {
        TagFields fields;
        fields.title = c.text;
        const auto block = MakeId3v1(fields);
        EXPECT_EQ(ReadId3v1(block).title, c.kept);
        bool lossless = false;
        EncodeLegacyField(c.text, 30, &lossless);
        EXPECT_EQ(lossless, c.text == c.kept) << c.text;
    }
    const auto block = MakeId3v1({"t", "a", "b", std::string(30, 'c'), "1999", "jpop", "012/20", kNoGenre});
    const std::string raw(block.begin(), block.end());
    EXPECT_EQ(raw, Id3v1("t", "a", "b", "1999", std::string(28, 'c'), 12, 146));
    for (const char* track : {"", "0", "256", "A1"}) {
        TagFields fields;
        fields.comment = std::string(30, 'c');
        fields.track = track;
        EXPECT_EQ(ReadId3v1(MakeId3v1(fields)).comment, fields.comment) << track;
    }
}

TEST(RiffInfo, FieldsAreReadBesideATagThatSaysLess) {
    const std::string info = "INFO" + Chunk("INAM", "\x96\xE9\x8B\xC8\0"s) + Chunk("IART", "夜曲\0"s) +
                             Chunk("IGNR", "Rock") + Chunk("ICRD", "2001") + Chunk("ICMT", "c") + Chunk("ITRK", "4") +
                             Chunk("IPRD", "\xEF\xBB\xBFz");
    EXPECT_EQ(ReadFile(Riff("RMP3", Chunk("data", MpegFrames(3)) + Chunk("LIST", info))),
              (TagFields{"夜曲", "夜曲", "z", "c", "2001", "Rock", "4", 17}));
    const TagFields mixed = ReadFile(
        Riff("RMP3", Chunk("data", Id3v2(3, Frame3("TIT2", "\0v2"s) + Frame3("TPE1", "\0v2"s)) + MpegFrames(3)) +
                         Chunk("LIST", "INFO" + Chunk("INAM", "si") + Chunk("IID3", Id3v1("v1", "v1", "v1")))));
    EXPECT_EQ(mixed.title + " " + mixed.artist + " " + mixed.album, "si v2 v1");
    EXPECT_EQ(ReadFile(Riff("WAVE", Chunk("fmt ", FmtBody()) + Chunk("data", "abcd") +
                                        Chunk("id3 ", Id3v2(3, Frame3("TIT2", "\0v2"s)))))
                  .title,
              "v2");
}

TEST(RiffInfo, TextsAreShiftJisWhenThatIsReadBackAndUnicodeOtherwise) {
    for (const char* text : {"plain", "夜曲", "ﾃｽﾄ", "Café", "한국어", "夜曲🎵", "ﾃｽ", "～"}) {
        const std::string coded = EncodeInfoField(text);
        EXPECT_EQ(
            ReadFile(Riff("RMP3", Chunk("data", MpegFrames(3)) + Chunk("LIST", "INFO" + Chunk("INAM", coded)))).title,
            text);
    }
    EXPECT_EQ(EncodeInfoField("夜曲"), "\x96\xE9\x8B\xC8");
    EXPECT_EQ(EncodeInfoField("夜曲🎵"), "夜曲🎵");
}

TEST(Ape, IsTheLastSource) {
    const std::string tag =
        Ape(ApeItem("TITLE", "t") + ApeItem("Artist", "a\0b"s) + ApeItem("Genre", "Rock") + ApeItem("Year", "x"), 4);
    const TagFields fields = ReadFile(MpegFrames(3) + tag + Id3v1("v1"));
    EXPECT_EQ(fields.title + " " + fields.artist, "v1 a / b");
    EXPECT_EQ(fields.genreNumber, 17);
}
