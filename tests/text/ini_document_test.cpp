#include "text/ini_document.h"

#include <gtest/gtest.h>

#include "text/encoding.h"

namespace quenlox {
namespace {

TEST(IniDocument, ReadsValuesAsTheProfileCallsDo) {
    const IniDocument ini = IniDocument::Parse(
        "stray=1\r\n"
        "[Main] \r\n"
        "  X = 12 \r\n"
        ";Y=9\n"
        "Y=42A\n"
        "y=43\r"
        "Q=\"  two words \"\n"
        "S='single'\n"
        "Half=\"half\n"
        "Both=\"a\" and \"b\"\n"
        "Note=value ; stays\n"
        "Empty=\n"
        "NoValue\n"
        "Eq=a=b\n"
        "[ Other ]\n"
        "X=1\n"
        "[MAIN]\n"
        "Z=5\n");
    const struct {
        const char *section, *key;
        const char* value;  // null: missing
        int number;         // with 7 as the default
    } cases[] = {
        {"Main", "X", "12", 12},
        {"mAIN", "x", "12", 12},
        {"Main", "Y", "42A", 42},                  // the first counts, the comment is none
        {"Main", "Q", "  two words ", 0},
        {"Main", "S", "single", 0},
        {"Main", "Half", "\"half", 0},
        {"Main", "Both", "a\" and \"b", 0},        // the outer pair goes, as simple as the system does it
        {"Main", "Note", "value ; stays", 0},
        {"Main", "Empty", "", 7},                  // no number, so the default serves
        {"Main", "NoValue", nullptr, 7},
        {"Main", "Eq", "a=b", 0},
        {"Other", "X", "1", 1},
        {"Main", "Z", nullptr, 7},                 // a second section of the name is not looked at
        {"", "stray", nullptr, 7},
        {"None", "X", nullptr, 7},
    };
    for (const auto& c : cases) {
        const auto found = ini.find(c.section, c.key);
        EXPECT_EQ(found, c.value ? std::optional<std::string>(c.value) : std::nullopt) << c.section << ' ' << c.key;
        EXPECT_EQ(ini.integer(c.section, c.key, 7), c.number) << c.key;
        EXPECT_EQ(ini.text(c.section, c.key, "?"), c.value ? c.value : "?") << c.key;
    }
}

TEST(IniDocument, WritingKeepsOrderCommentsAndUnknownKeys) {
    IniDocument ini = IniDocument::Parse("; mine\r\n[Main]\r\nfoo = bar\r\nx=1\r\n\r\n[List]\r\nX=2\r\n");
    ini.set("Main", "X", "5");
    ini.set("main", "New", "6");
    ini.set("List", "X", "2");
    ini.set("Tag", "Y", "0\r\nZ=1");
    EXPECT_EQ(ini.serialise(),
              "; mine\r\n[Main]\r\nfoo = bar\r\nx=5\r\nNew=6\r\n\r\n[List]\r\nX=2\r\n[Tag]\r\nY=0  Z=1\r\n");
}

TEST(IniDocument, IsShiftJisUntilACharacterDoesNotFit) {
    IniDocument ini = IniDocument::Parse("[A]\r\nK=\x95\x5C\r\n");  // 表, whose second byte is a backslash
    EXPECT_EQ(ini.find("A", "K"), "表");
    EXPECT_EQ(ini.serialise(), "[A]\r\nK=\x95\x5C\r\n");
    ini.set("A", "L", "é");
    EXPECT_TRUE(ini.serialise().starts_with("\xFF\xFE[\0"));
    EXPECT_EQ(IniDocument::Parse(ini.serialise()).find("A", "K"), "表");
    EXPECT_EQ(IniDocument::Parse("\xEF\xBB\xBF[A]\nK=1").find("A", "K"), "1");
}

}  // namespace
}  // namespace quenlox
