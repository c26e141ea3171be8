#include <fstream>

#include "tests/win32/desk.h"

namespace quenlox {
namespace {

struct Files : testing::Test {
    Files() {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        folder = win32::Narrow(temp) + "quenlox 試験 " + std::to_string(GetCurrentProcessId());
        CreateDirectoryW(win32::Wide(folder).c_str(), nullptr);
    }
    ~Files() override {
        for (const std::string& name : files->files(folder)) {
            SetFileAttributesW(win32::WidePath(folder + "\\" + name).c_str(), FILE_ATTRIBUTE_NORMAL);
            files->remove(folder + "\\" + name);
        }
        RemoveDirectoryW(win32::Wide(folder).c_str());
    }
    std::string at(const std::string& name) const { return folder + "\\" + name; }
    std::unique_ptr<FileSystem> files = MakeFileSystem();
    std::string folder;
};

TEST_F(Files, AWrittenFileIsReadBackWholeAndLeavesNothingBeside) {
    const std::string bytes("\0abc\r\n", 6);
    ASSERT_TRUE(files->write(at("設定.ini"), "old"));
    // What a killed program has left of a write goes, and nothing else.
    for (const char* name : {"設定.ini.~123.tmp", "設定.ini.~mine.tmp", "other.ini.~123.tmp"})
        std::ofstream(win32::Wide(at(name)).c_str());
    ASSERT_TRUE(files->write(at("設定.ini"), bytes));
    EXPECT_EQ(files->read(at("設定.ini")), bytes);
    EXPECT_TRUE(files->remove(at("設定.ini.~mine.tmp")));
    EXPECT_TRUE(files->remove(at("other.ini.~123.tmp")));
    EXPECT_EQ(files->read(at("設定.ini"), 5), std::nullopt) << "larger than the limit";
    EXPECT_EQ(files->files(folder), (std::vector<std::string>{"設定.ini"}));
    EXPECT_TRUE(files->write(at("empty"), ""));
    EXPECT_EQ(files->read(at("empty")), "");
}

TEST_F(Files, AFailedWriteLeavesTheOldFileAsItWas) {
    ASSERT_TRUE(files->write(at("Quenlox.m3u"), "old"));
    SetFileAttributesW(win32::Wide(at("Quenlox.m3u")).c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(files->files(folder).empty()) << "hidden";
    // One after the other: under Wine a user who is not root cannot show a file again that is read only.
    for (const DWORD attributes : {FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_READONLY}) {
        SetFileAttributesW(win32::Wide(at("Quenlox.m3u")).c_str(), attributes);
    }
    EXPECT_TRUE(files->isReadOnly(at("Quenlox.m3u")));
    EXPECT_FALSE(files->write(at("Quenlox.m3u"), "new"));
    EXPECT_EQ(files->read(at("Quenlox.m3u")), "old");
    EXPECT_EQ(files->files(folder), (std::vector<std::string>{"Quenlox.m3u"})) << "no temporary file is left";
    EXPECT_FALSE(files->write(at("missing\\file"), "x"));
}

TEST_F(Files, RenamingNeverReplacesAFile) {
    files->write(at("a"), "1");
    files->write(at("b"), "2");
    EXPECT_FALSE(files->rename(at("a"), at("b")));
    EXPECT_TRUE(files->rename(at("a"), at("ω 夜.mp3")));
    EXPECT_EQ(files->read(at("ω 夜.mp3")), "1");
    EXPECT_FALSE(files->fileExists(at("a")));
    EXPECT_FALSE(files->fileExists(folder));
    EXPECT_TRUE(files->folderExists(folder));
    EXPECT_FALSE(files->folderExists(""));
}

TEST_F(Files, PathsBeyondTheOldLimitWork) {
    const std::string name = std::string(200, 'n') + ".mp3";
    std::string deep = folder;
    std::vector<std::string> made;
    for (int i = 0; i < 2; ++i) {
        deep += "\\" + std::string(120, 'd');
        made.push_back(deep);
        CreateDirectoryW(win32::WidePath(deep).c_str(), nullptr);
    }
    EXPECT_TRUE(files->write(deep + "\\" + name, "x"));
    EXPECT_EQ(files->files(deep), (std::vector<std::string>{name}));
    EXPECT_TRUE(files->remove(deep + "\\" + name));
    for (auto i = made.rbegin(); i != made.rend(); ++i) RemoveDirectoryW(win32::WidePath(*i).c_str());
}

TEST_F(Files, TellsTheDrivesAndThePlaceOfTheProgram) {
    const auto drives = files->drives();
    EXPECT_TRUE(std::find(drives.begin(), drives.end(), "C:\\") != drives.end());
    EXPECT_EQ(files->driveType("C:\\"), DriveType::Fixed);
    EXPECT_EQ(files->driveType("Q:\\"), DriveType::NoRoot);
    EXPECT_TRUE(files->folderExists(files->programFolder()));
    EXPECT_EQ(files->userFolder(), files->programFolder()) << "a folder that can be written";
}

struct Painter : testing::Test {
    static int inked(const Surface& surface, const Rect& where) {
        int count = 0;
        for (int y = where.top; y < where.bottom(); ++y) {
            for (int x = where.left; x < where.right(); ++x) count += surface.at(x, y) != 0x102040;
        }
        return count;
    }
    Surface surface{200, 60, {0x10, 0x20, 0x40}};
    TextStyle style{.font = {"ＭＳ Ｐゴシック", 12, false}, .color = {255, 255, 255}};
    std::unique_ptr<TextPainter> painter = MakeTextPainter();
};

TEST_F(Painter, DrawsJapaneseInsideItsRectangleOnly) {
    painter->draw(surface, {20, 10, 100, 20}, "夜想曲 & ω", style);
    EXPECT_GT(inked(surface, {20, 10, 100, 20}), 100);
    EXPECT_EQ(inked(surface, {0, 0, 200, 60}), inked(surface, {20, 10, 100, 20}));
    EXPECT_GT(painter->measure("&夜", style).width, painter->measure("夜", style).width)
        << "an ampersand is a character";
    for (const Surface::Pixel pixel : surface.pixels()) ASSERT_EQ(pixel & 0xFF000000, 0u);
}

TEST_F(Painter, PutsTextWhereItsStyleSays) {
    const int width = painter->measure("曲", style).width;
    TextStyle right = style, centre = style;
    right.rightAligned = true;
    centre.centred = centre.vertically = true;
    painter->draw(surface, {0, 0, 200, 60}, "曲", right);
    EXPECT_EQ(inked(surface, {0, 0, 200 - width, 60}), 0);
    surface.fill({0x10, 0x20, 0x40});
    painter->draw(surface, {0, 0, 200, 60}, "曲", centre);
    EXPECT_GT(inked(surface, {90, 20, 20, 20}), 0);
    EXPECT_EQ(inked(surface, {0, 0, 80, 60}) + inked(surface, {0, 0, 200, 15}), 0);
    TextStyle lines = style;
    lines.wordBreak = true;
    EXPECT_GT(painter->measure("one two three four", lines, 40).height, 2 * painter->measure("one", style).height);
}

}  // namespace
}  // namespace quenlox
