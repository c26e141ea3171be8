#include "lyrics/lyrics_places.h"

#include <gtest/gtest.h>

#include "tests/fakes/fake_text_painter.h"
#include "text/strings.h"

namespace quenlox {
namespace {

std::string Repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

TEST(LineWrap, BreaksWhereAReaderWouldAndAnywhereWhenThereIsNoSuchPlace) {
    const struct {
        const char* text;
        std::size_t width;  // characters
        const char* lines;
    } cases[] = {
        {"the quick brown fox", 9, "the quick|brown fox"},
        {"the quick  brown", 10, "the quick|brown"},
        {"half-way there", 6, "half-|way|there"},
        {"Donaudampfschiff ahoi", 6, "Donaud|ampfsc|hiff|ahoi"},
        {"窓をあければ朝のひかり", 4, "窓をあけ|れば朝の|ひかり"},
        {"遠い町、白い雲。", 3, "遠い|町、白|い雲。"},
        {"君は「ここ」にいる", 3, "君は|「こ|こ」に|いる"},
        {"Loveと夢 Story", 5, "Loveと|夢|Story"},
        {"", 5, ""},
    };
    for (const auto& c : cases) {
        std::string lines;
        for (const TextPart& part :
             WrapText(c.text, [&](std::string_view text, std::size_t) { return CharacterCount(text) <= c.width; })) {
            lines += (lines.empty() ? "" : "|") + std::string(c.text).substr(part.begin, part.end - part.begin);
        }
        EXPECT_EQ(lines, c.lines) << c.text;
    }
}

TEST(LyricsPlaces, ALongCurrentLineIsThereAsAWholeAndTheOthersMakeRoom) {
    const struct {
        std::string current, translation;
        int lines;
        bool stamps;
        std::size_t parts;  // 0: any
    } cases[] = {
        {"short", "", 5, false, 1},
        {Repeated("0123456789", 4), "", 5, false, 1},  // a little smaller is enough
        {Repeated("0123 56789 ", 5), "", 5, true, 0},
        {Repeated("あ", 1000), "", 5, false, 0},
        {Repeated("あ", 1000), Repeated("word ", 200), 3, false, 0},
        {Repeated("x", 1000), "x", 1, true, 0},
        {Repeated("words and more ", 60), "", 1, false, 0},
    };
    for (const auto& c : cases) {
        for (const Size picture : {Size{290, 173}, Size{600, 400}}) {
            FakeTextPainter painter;
            LyricsLines lines;
            lines.rows = {"first", "second", c.current, "next", "last", c.translation.empty() ? "next" : c.translation};
            lines.stampMs.fill(83000);
            const auto blocks = PlaceLyrics(painter, lines, {{"", 12, false}, c.lines, c.stamps}, picture);
            std::string seen;
            for (const LyricsBlock& block : blocks) {
                EXPECT_TRUE(block.top >= 0 && block.bottom() <= picture.height) << block.text;
                if (block.row != LyricsLines::kCurrentRow) continue;
                EXPECT_TRUE(c.parts == 0 || picture.width > 300 || block.parts.size() == c.parts) << block.parts.size();
                for (const TextPart& part : block.parts) {
                    const std::string text = block.text.substr(part.begin, part.end - part.begin);
                    EXPECT_LE(painter.measure(text, {block.font, {}}, 0).width, block.width);
                    seen += text;
                }
            }
            EXPECT_EQ(ReplaceAll(seen, " ", ""), ReplaceAll(c.current, " ", ""));
            for (const LyricsBlock& a : blocks)
                for (const LyricsBlock& b : blocks)
                    EXPECT_TRUE(&a == &b || a.bottom() <= b.top || b.bottom() <= a.top) << a.text << '/' << b.text;
        }
    }
}

}  // namespace
}  // namespace quenlox
