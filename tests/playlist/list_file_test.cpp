#include "playlist/list_file.h"

#include <gtest/gtest.h>

#include "text/encoding.h"

namespace quenlox {
namespace {

std::string ReadLists(std::string_view bytes, const CodePage& codePage = {}) {
    std::string rows;
    const auto add = [&](int list, std::string_view path) {
        rows += static_cast<char>('A' + list);
        rows += '=';
        rows += path;
        rows += '|';
    };
    ParseListFile(bytes, add, codePage);
    return rows;
}

std::optional<std::string> Western(std::string_view bytes) { return Latin1ToUtf8(bytes); }

std::string ReadM3U(std::string_view bytes) {
    std::string rows;
    ParseM3U(bytes, "D:\\M\\", [&](std::string_view path) {
        rows += path;
        rows += '|';
    });
    return rows;
}

std::string Utf16Bytes(std::string_view utf8, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : Utf8ToUtf16(utf8)) {
        bytes += static_cast<char>(bigEndian ? unit >> 8 : unit);
        bytes += static_cast<char>(bigEndian ? unit : unit >> 8);
    }
    return bytes;
}

TEST(ListFile, MarkersPartTheListsAndNothingElseIsSpecial) {
    const struct {
        const char *bytes, *rows;
    } cases[] = {
        {"", ""},
        {"C:\\a.mp3\r\nC:\\b.mp3\r\n", "A=C:\\a.mp3|A=C:\\b.mp3|"},
        {"#ListC\r\nC:\\a.mp3\r\n", "C=C:\\a.mp3|"},
        {"C:\\0.mp3\r\n#ListB\r\nC:\\1.mp3\r\n#ListA\r\nC:\\2.mp3\r\n", "A=C:\\0.mp3|B=C:\\1.mp3|A=C:\\2.mp3|"},
        {"#lista\r\n#ListA \r\n#EXTM3U\r\n", "A=#lista|A=#ListA |A=#EXTM3U|"},  // the case and every character count
        {"\r\n\r\n#ListB\r\n\r\nmusic/a.mp3\r\n", "B=music/a.mp3|"},            // paths are taken as written
        {"#ListB\nC:\\a.mp3\nC:\\b.mp3", "B=C:\\a.mp3|B=C:\\b.mp3|"},           // no CR, no end of the last line
        {"C:\\a.mp3\rC:\\b.mp3\r", "A=C:\\a.mp3|A=C:\\b.mp3|"},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadLists(c.bytes), c.rows) << c.bytes;
}

TEST(M3U, LinesBecomePathsAsPlayersWriteThem) {
    const struct {
        const char *bytes, *rows;
    } cases[] = {
        {"C:\\a.mp3", "C:\\a.mp3|"},
        {"music\\a.mp3\r\n", "D:\\M\\music\\a.mp3|"},
        {"\\a.mp3x\r\n", "D:\\M\\\\a.mp3x|"},  // one "\" in front: it stands behind that of the folder
        {"\\\\server\\share\\a.mp3\n", "\\\\server\\share\\a.mp3|"},
        {"//server/share/a.mp3\n", "\\\\server\\share\\a.mp3|"},
        {"x.mp3\r\nxy.mp3\r\n", "D:\\M\\xy.mp3|"},   // fewer than 6 characters
        {"あ.mp3\nああ.mp3\n", "D:\\M\\ああ.mp3|"},  // characters are counted, not bytes
        {"#EXTM3U\r\n#EXTINF:12,Artist - Title\r\na1.mp3\r\n#ListB\r\n", "D:\\M\\a1.mp3|"},
        {"\t  music/sub/a.mp3 \t\r\n  #x.mp3333\n", "D:\\M\\music\\sub\\a.mp3|"},
        {"c:/mixed\\a.mp3", "c:\\mixed\\a.mp3|"},
        {"\r\n \r\n", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadM3U(c.bytes), c.rows) << c.bytes;
}

TEST(ListFile, IsReadInEveryEncodingThatProgramsWrite) {
    const std::string text = "#ListB\r\nC:\\表示\\曲.mp3\r\nC:\\ﾊﾝｶｸ.mp3";
    const std::string rows = "B=C:\\表示\\曲.mp3|B=C:\\ﾊﾝｶｸ.mp3|";
    EXPECT_EQ(ReadLists(text), rows);
    EXPECT_EQ(ReadLists("\xEF\xBB\xBF" + text), rows);
    EXPECT_EQ(ReadLists(*Utf8ToShiftJis(text)), rows);
    EXPECT_EQ(ReadLists(Utf16Bytes(text, false)), rows);
    EXPECT_EQ(ReadLists(Utf16Bytes(text, true)), rows);
    EXPECT_EQ(ReadLists(*Utf8ToShiftJis(text), Western), rows);
    EXPECT_EQ(ReadLists("C:\\Caf\xE9\\\xDC\xFE.mp3", Western), "A=C:\\Café\\Üþ.mp3|");
    EXPECT_EQ(ReadLists("C:\\Caf\xE9 au lait", Western), "A=C:\\Café au lait|");
}

}  // namespace
}  // namespace quenlox
