#include "text/strings.h"

#include "text/letter_case.h"

#include <gtest/gtest.h>

#include "text/paths.h"

namespace quenlox {
namespace {

TEST(Strings, FieldsOfFixedLengthEndAtTheirNulAndLoseTheirBlanks) {
    EXPECT_EQ(TrimAtNull(std::string_view(" title \0rubbish", 15)), "title");
    EXPECT_EQ(TrimAtNull("   "), "");
    EXPECT_EQ(TrimAtNull("a b "), "a b");
    EXPECT_EQ(TrimBlanks("\ta "), "\ta");
}

TEST(Strings, CaseIsFoldedAsInFileNamesAndIllFormedBytesStay) {
    const struct {
        const char *text, *folded;
    } cases[] = {{"SONG.Mp3", "song.mp3"}, {"ＡＢＣ．ＭＰ３", "ａｂｃ．ｍｐ３"}, {"ÀÉÎ×Þ", "àéî×þ"},
                          {"ŁŻŸČ", "łżÿč"},         {"ΑΩΆΈΌΏ", "αωάέόώ"},        {"ЖЁ", "жё"},
                          {"曲名ｱ😀", "曲名ｱ😀"},     {"A\xFF\xC3Z\xE3\x81", "a\xFF\xC3z\xE3\x81"}};
    for (const auto& c : cases) EXPECT_EQ(FoldCase(c.text), c.folded) << c.text;
    for (const auto& c : cases) EXPECT_EQ(FoldCase(UpperCase(c.text)), c.folded) << c.text;
    EXPECT_EQ(UpperCase("straße, łżÿč ａб 曲ｱ😀"), "STRAßE, ŁŻŸČ ＡБ 曲ｱ😀");
    EXPECT_EQ(WithCapitals("DON'T stop (éTÉ) 2nd 曲名abc"), "Don't Stop (Été) 2nd 曲名Abc");
    EXPECT_TRUE(EqualsNoCase("Default", "DEFAULT"));
    EXPECT_LT(CompareNoCase("a", "B"), 0);
    EXPECT_TRUE(ContainsNoCase("*.MP3;*.rmp", ".mp3"));
}

TEST(Strings, CharactersAreCountedAndCutWhole) {
    EXPECT_EQ(LastCharacters("曲名です", 2), "です");
    EXPECT_EQ(LastCharacters("ab", 4), "ab");
    EXPECT_EQ(CharacterCount("a曲😀"), 3u);
    EXPECT_EQ(CutUtf16Units("ab曲😀c", 3), "ab曲");
    EXPECT_EQ(CutUtf16Units("ab曲😀c", 4), "ab曲");
    EXPECT_EQ(CutUtf16Units("ab曲😀c", 5), "ab曲😀");
    EXPECT_EQ(ReplaceAll("a\nb\n", "\n", "\r\n"), "a\r\nb\r\n");
}

TEST(Paths, AreTakenApartAndPutTogether) {
    const struct {
        const char *path, *folder, *name, *base, *extension, *lastFour;
    } cases[] = {
        {"C:\\music\\a.b.MP3", "C:\\music\\", "a.b.MP3", "a.b", "MP3", ".mp3"},
        {"C:\\my.music\\song", "C:\\my.music\\", "song", "song", "", "song"},
        {"a.mid", "", "a.mid", "a", "mid", ".mid"},
        {"C:\\表示\\曲", "C:\\表示\\", "曲", "曲", "", "表示\\曲"},
        {"mp3", "", "mp3", "mp3", "", "mp3"},
        {"", "", "", "", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FolderOf(c.path), c.folder);
        EXPECT_EQ(FileNameOf(c.path), c.name);
        EXPECT_EQ(BaseNameOf(c.path), c.base);
        EXPECT_EQ(ExtensionOf(c.path), c.extension);
        EXPECT_EQ(LastFour(c.path), c.lastFour);
    }
    EXPECT_EQ(JoinPath("C:\\", "a.ini"), "C:\\a.ini");
    EXPECT_EQ(JoinPath("C:\\dir", "a.ini"), "C:\\dir\\a.ini");
    EXPECT_EQ(JoinPath("", "a.ini"), "a.ini");
    EXPECT_EQ(WithExtension("C:\\a.b\\c.mp3", "wav"), "C:\\a.b\\c.wav");
    EXPECT_EQ(WithExtension("C:\\a.b\\c", "wav"), "C:\\a.b\\c.wav");
}

}  // namespace
}  // namespace quenlox
