#include <gtest/gtest.h>

#include "libraries/vbmp3/lyrics/lyrics_text.h"
#include "libraries/vbmp3/lyrics/stamps.h"

namespace vbmp3 {

// For messages and comparisons: "time text|translation <time@byte>...".
static std::string Describe(const Lyrics& lyrics) {
    std::string all;
    for (const LyricsLine& line : lyrics.lines) {
        if (lyrics.timed) all += std::to_string(line.ms) + " ";
        all += line.text;
        if (!line.translation.empty()) all += "|" + line.translation;
        for (const LyricsWord& word : line.words)
            all += " <" + std::to_string(word.ms) + "@" + std::to_string(word.byte) + ">";
        all += "\n";
    }
    return all;
}

namespace {

TEST(Stamps, EveryWayToWriteATimeIsReadAndNothingElse) {
    const struct {
        const char* text;
        int64_t ms;  // -1: no stamp
    } cases[] = {{"[00:00]", 0},
                 {"[01:02]", 62000},
                 {"[01:02.5]", 62500},
                 {"[01:02.05]", 62050},
                 {"[01:02.005]", 62005},
                 {"[01:02:34]", 62340},
                 {"[01:02:03.50]", 3723500},
                 {"[00:59.99]", 59990},
                 {"[00:75.00]", 75000},
                 {"[1:2.3]", 62300},
                 {"[ 00:06 . 50 ]", 6500},
                 {"[00:06,50]", 6500},
                 {"[01:02:03,5]", 3723500},
                 {"[00:12.123456]", 12123},
                 {"[00:100]", -1},
                 {"[-1:00]", -1},
                 {"[ ]", -1},
                 {"[01:02", -1},
                 {"[01:02.]", -1},
                 {"[01.02]", -1},
                 {"[:02]", -1},
                 {"[]", -1},
                 {"[01:02>", -1},
                 {"[123456:00]", -1},
                 {"<01:02>", -1},
                 {"[0１:02]", -1},
                 {"[01:02.03.04]", -1}};
    for (const auto& c : cases) {
        const auto stamp = ReadStamp(c.text, '[');
        EXPECT_EQ(stamp ? stamp->ms : -1, c.ms) << c.text;
        EXPECT_EQ(stamp ? stamp->length : 0, stamp ? std::string_view(c.text).size() : 0) << c.text;
    }
    EXPECT_EQ(ReadStamp("<00:01.00>word", '<')->length, 10u);
}

TEST(Parser, ReadsEveryDialect) {
    constexpr auto kLrc = LyricsFormat::Lrc;
    constexpr auto kKra = LyricsFormat::Kra;
    constexpr auto kText = LyricsFormat::Text;
    const struct {
        const char* rule;
        LyricsFormat format;
        const char* text;
        bool timed;
        const char* expected;
    } cases[] = {
        {"lines come in the order of their times", kLrc, "[00:10.00]b\n[00:05.00]a\n", true, "5000 a\n10000 b\n"},
        {"several stamps repeat a line", kLrc, "[00:10.00][00:30.00]chorus\n[00:20]verse", true,
         "10000 chorus\n20000 verse\n30000 chorus\n"},
        {"blanks between stamps and around the text go", kLrc, "[00:01.00] [00:03.00]  text \r\n", true,
         "1000 text\n3000 text\n"},
        {"a negative offset shows them later, wherever it stands", kLrc, "[00:01.00]a\n[offset:-500]", true,
         "1500 a\n"},
        {"an offset may put words before the beginning", kLrc, "[offset:+2000]\n[00:01.00]a\n[00:01.50]b", true,
         "-1000 a\n-500 b\n"},
        {"an offset without a number does nothing", kLrc, "[offset:soon]\n[00:01.00]a", true, "1000 a\n"},
        {"a stamp may follow tags on their line", kLrc, "[ti:x] [offset:-500][00:01.00]a\n[Refrain:][b]", true,
         "1500 a|[Refrain:][b]\n"},
        {"an empty line clears the display", kLrc, "[00:01.00]a\n[00:02.00]\n[00:03.00]b", true,
         "1000 a\n2000 \n3000 b\n"},
        {"words have stamps in pointed brackets", kLrc, "[00:01.00]<00:01.00>Hello <00:01.50>world<00:02.00>", true,
         "1000 Hello world <1000@0> <1500@6> <2000@11>\n"},
        {"words before the first word stamp begin with the line", kLrc, "[00:01.00] Hello <00:01.50>world", true,
         "1000 Hello world <1000@0> <1500@6>\n"},
        {"the words of a repeated line move with it", kLrc, "[00:01.00][00:11.00]a<00:01.50>b", true,
         "1000 ab <1000@0> <1500@1>\n11000 ab <11000@0> <11500@1>\n"},
        {"word stamps never run backwards", kLrc, "[00:05.00]a<00:07.00>b<00:06.00>c", true,
         "5000 abc <5000@0> <7000@1> <7000@2>\n"},
        {"the second line of a time is the translation", kLrc, "[00:01.00]夜に\n[00:01.00]Into the night\n", true,
         "1000 夜に|Into the night\n"},
        {"the same line twice is one", kLrc, "[00:01.00]a\n[00:01.00]a\n", true, "1000 a\n"},
        {"an empty line of the same time gives way", kLrc, "[00:01.00]\n[00:01.00]a\n", true, "1000 a\n"},
        {"a line without stamp belongs to the one above", kLrc, "[00:01.00]a\nb\n\n[00:02.00]c", true,
         "1000 a|b\n2000 c\n"},
        {"a heading is spread over the time before the song", kLrc, "Title\n\nArtist\n[00:08.00]a", true,
         "0 Title\n4000 Artist\n8000 a\n"},
        {"brackets that are no stamps are text", kLrc, "[00:01.00][Chorus] <3 you\n[Verse 1: all]", true,
         "1000 [Chorus] <3 you|[Verse 1: all]\n"},
        {"information lines are not shown", kLrc, "[ti:T]\n[#:remark]\n[re:editor]\n[length:3:21]\n[00:01.00]a", true,
         "1000 a\n"},
        {"each syllable of kra stands behind its stamp", kKra, "[00:10:00]さ[00:10:50]くら[00:11:00]\n", true,
         "10000 さくら <10000@0> <10500@3> <11000@9>\n"},
        {"stamps of kra without text are pauses, not repetitions", kKra, "[00:10:00][00:12:00]あ[00:13:00]い", true,
         "10000 あい <12000@0> <13000@3>\n"},
        {"what stands in front of the first stamp of a kra line is not sung", kKra, "(A)[00:10:00]あ[00:11:00]", true,
         "10000 (A)あ <10000@3> <11000@6>\n"},
        {"a plain text has no time", kText, "first\n\nsecond\r\nthird\rfourth\n\n", false,
         "first\n\nsecond\nthird\nfourth\n"},
        {"a time mentioned inside a plain text is no stamp", kText, "we met at [10:30]\nagain", false,
         "we met at [10:30]\nagain\n"},
        {"a text whose lines begin with stamps is timed", kText, "[00:01]a\n[00:02]b", true, "1000 a\n2000 b\n"},
        {"an lrc without stamps is plain text", kLrc, "[ti:T]\na\nb", false, "a\nb\n"},
        {"nothing gives nothing", kLrc, "", false, ""},
    };
    for (const auto& c : cases) {
        const Lyrics lyrics = ParseLyrics(c.text, c.format);
        EXPECT_EQ(lyrics.timed, c.timed) << c.rule;
        EXPECT_EQ(Describe(lyrics), c.expected) << c.rule;
    }
}

TEST(Parser, InformationAboutTheSongIsRead) {
    const Lyrics lrc =
        ParseLyrics("[ti: Song ]\n[AR:Singer]\n[al:Album]\n[by:Typist]\n[au:Poet]\n[ti:other]", LyricsFormat::Lrc);
    EXPECT_EQ(lrc.title, "Song");
    EXPECT_EQ(lrc.artist, "Singer");
    EXPECT_EQ(lrc.album, "Album");
    EXPECT_EQ(lrc.author, "Poet");
    EXPECT_EQ(ParseLyrics("[by:Typist]", LyricsFormat::Lrc).author, "Typist");
}

TEST(Parser, AtMarkTagsAreInformationOnlyWhenTheyAreUsed) {
    const char* text = "@Title=Song\n@Artist=Singer\n@Offset=+300\n@Ruby1=桜,さくら\n[00:01:00]あ\n@home tonight";
    const Lyrics used = ParseLyrics(text, LyricsFormat::Kra, {true});
    EXPECT_EQ(used.title, "Song");
    EXPECT_EQ(used.artist, "Singer");
    EXPECT_EQ(Describe(used), "1300 あ|@home tonight\n");
    const Lyrics unused = ParseLyrics(text, LyricsFormat::Kra, {false});
    EXPECT_EQ(unused.title, "");
    EXPECT_EQ(unused.lines.size(), 5u);
    EXPECT_EQ(unused.lines.back().ms, 1000);
}

std::optional<std::string> Decode(std::string_view bytes) {
    return DecodeLyrics({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}

TEST(Decoding, EveryEncodingOfSideFilesGivesTheSameText) {
    using namespace std::string_view_literals;
    const std::string_view cases[] = {"[00]\x82\xA0\x82\xA2"sv,
                                      "[00]あい"sv,
                                      "\xEF\xBB\xBF[00]あい"sv,
                                      "[00]あい\x1A\x1A\0\0"sv,
                                      "\xFF\xFE[\0\60\0\60\0]\0\x42\x30\x44\x30"sv,
                                      "\xFE\xFF\0[\0\60\0\60\0]\x30\x42\x30\x44"sv,
                                      "[\0\60\0\60\0]\0\x42\x30\x44\x30"sv,
                                      "\0[\0\60\0\60\0]\x30\x42\x30\x44"sv};
    for (const std::string_view bytes : cases) EXPECT_EQ(Decode(bytes), "[00]あい") << bytes;
    EXPECT_EQ(Decode(""sv), "");
}

TEST(Decoding, TheFormatFollowsTheExtension) {
    for (const char* lrc : {"a.b/Song.LRC", "lrc"}) EXPECT_EQ(LyricsFormatOf(lrc), LyricsFormat::Lrc) << lrc;
    for (const char* text : {"Song.txt", ""}) EXPECT_EQ(LyricsFormatOf(text), LyricsFormat::Text) << text;
    EXPECT_EQ(LyricsFormatOf("Song.kra"), LyricsFormat::Kra);
}

}  // namespace
}  // namespace vbmp3
