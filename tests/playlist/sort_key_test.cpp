#include "playlist/sort_key.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

std::string KeyOf(std::string_view text) {
    std::string key;
    AppendSortKey(key, text);
    return key;
}

TEST(SortKey, OrdersTextsAsAListOfWindowsDoes) {
    // Each text stands before the next one.
    const char* const texts[] = {"",  " x", "(a)", "[a]", "_a",   "~",    "0",  "10", "2",  "a",  "Aa", "aＢ",
                                 "b", "É",  "ж",   "あ",  "アイ", "いあ", "ガ", "ｷﾞ", "パ", "ひ", "亜", "曲"};
    for (std::size_t i = 1; i < std::size(texts); ++i) EXPECT_LT(KeyOf(texts[i - 1]), KeyOf(texts[i])) << texts[i];
}

TEST(SortKey, DoesNotRegardCaseWidthAndKindOfKana) {
    const char* const pairs[][2] = {
        {"ABC", "abc"},    {"ＡＢＣ　１", "abc 1"}, {"É", "é"},        {"Ж", "ж"},  {"さくら", "サクラ"},
        {"ｻｸﾗ", "サクラ"}, {"ｶﾞｯﾊﾟｳﾞ", "ガッパヴ"}, {"ｦﾝｰ", "ヲンー"}, {"ｱﾞ", "ｱﾞ"}};
    for (const auto& pair : pairs) EXPECT_EQ(KeyOf(pair[0]), KeyOf(pair[1])) << pair[0];
}

TEST(SortKey, TakesIllFormedTexts) {
    for (const char* text : {"\xE3", "\xE3\x81", "\xC3", "\xFF\xFE", "\xEF\xBD\xB6\xEF", "\xF0\x9F\x98\x80", "\xF0"})
        EXPECT_FALSE(KeyOf(text).empty());
}

}  // namespace
}  // namespace quenlox
