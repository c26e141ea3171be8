#include "text/encoding.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

TEST(Encoding, ShiftJisGoesBothWaysForEveryKindOfCharacter) {
    const struct {
        const char *utf8, *shiftJis;
    } cases[] = {
        {"abc ~\\", "abc ~\\"},
        {"ＭＳ Ｐゴシック", "\x82\x6C\x82\x72 \x82\x6F\x83\x53\x83\x56\x83\x62\x83\x4E"},
        {"ｲｺﾗｲｻﾞ", "\xB2\xBA\xD7\xB2\xBB\xDE"},
        {"表示", "\x95\x5C\x8E\xA6"},      // the trail byte 5C of 表 is no backslash
        {"～－", "\x81\x60\x81\x7C"},      // code page 932 has the full-width tilde and hyphen, not wave dash and minus
        {"①㈱", "\x87\x40\x87\x8A"},      // special characters of one maker
        {"髙", "\xFB\xFC"},               // extension, written in its second place
        {"∵￢", "\x81\xE6\x81\xCA"},      // characters that stand twice are written in their first place
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Utf8ToShiftJis(c.utf8), c.shiftJis) << c.utf8;
        EXPECT_EQ(ShiftJisToUtf8(c.shiftJis), c.utf8);
    }
}

TEST(Encoding, ACharacterWithoutACodeIsNeverTurnedIntoAQuestionMark) {
    for (const char* text : {"café", "😀", "한국"}) {
        EXPECT_EQ(Utf8ToShiftJis(text), std::nullopt) << text;
    }
}

TEST(Encoding, TextFilesAreTakenByMarkThenUtf8ThenShiftJis) {
    using namespace std::string_literals;
    EXPECT_EQ(DecodeText("\xEF\xBB\xBF" "曲"), "曲");
    EXPECT_EQ(DecodeText("\xFF\xFE\xF2\x66"), "曲");
    EXPECT_EQ(DecodeText("\xFE\xFF\x66\xF2"), "曲");
    EXPECT_EQ(DecodeText("曲"), "曲");
    EXPECT_EQ(DecodeText("\x8B\xC8"), "曲");
    EXPECT_EQ(DecodeText("\xFF\xFE\xF2"s), "");  // half a unit
    EXPECT_EQ(DecodeText("o\0n\0e\0"s), "one");
    EXPECT_EQ(DecodeText("\x4C\x6B\x5E\x8A\x0D\0\x0A\0\x89\x30"s), "歌詞\r\nら");
    EXPECT_EQ(DecodeText("before\0behind\0"s), "before\0behind\0"s);
}

TEST(Encoding, IllFormedBytesBecomeReplacementCharactersAndNothingIsReadBeyondTheEnd) {
    EXPECT_EQ(ShiftJisToUtf8("\x81"), "\uFFFD");
    EXPECT_EQ(ShiftJisToUtf8("\x81 a"), "\uFFFD a");
    EXPECT_EQ(Utf8ToUtf16("\xE3\x81"), u"\uFFFD");
    EXPECT_EQ(Utf8ToUtf16("\xC0\x80"), u"\uFFFD\uFFFD");
    EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t{0xD800})), "\uFFFD");
}

TEST(Encoding, OldTagFieldsAreGuessedByWhatTheyLookLike) {
    EXPECT_EQ(DecodeLegacyField("caf\xE9"), "café");
    EXPECT_EQ(DecodeLegacyField("Sch\xF6ne Gr\xFC\xDF" "e"), "Schöne Grüße");
    EXPECT_EQ(DecodeLegacyField("\x8B\xC8\x96\xBC"), "曲名");
    EXPECT_EQ(DecodeLegacyField("\xB2\xBA\xD7\xB2\xBB\xDE"), "ｲｺﾗｲｻﾞ");
    EXPECT_EQ(DecodeLegacyField("\x83\x65\x83\x58\x83\x67 Test"), "テスト Test");
    EXPECT_EQ(DecodeLegacyField("曲"), "曲");
}

}  // namespace
}  // namespace quenlox
