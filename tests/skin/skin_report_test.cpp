#include "skin/skin_report.h"

#include <gtest/gtest.h>

#include "tests/fakes/bmp_of.h"
#include "tests/fakes/fake_file_system.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr const char* kFolder = "C:\\x\\";

std::string Bmp(int width, int height) { return BmpOf(Surface(width, height)); }

std::string Region(const std::vector<std::array<int, 4>>& boxes) {
    std::string bytes;
    const auto number = [&](int value) {
        for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> 8 * i);
    };
    for (const int field : {32, 1, static_cast<int>(boxes.size()), static_cast<int>(16 * boxes.size()), 0, 0, 300, 100}) number(field);
    for (const auto& box : boxes) std::ranges::for_each(box, number);
    return bytes;
}

// A package without fault: 300 x 100, keys of 10 x 10 in two rows.
std::map<std::string, std::string> Package() {
    std::string lines = "[Main]\nVer=4\nSize=300,100\nRGB=1,2,3\nBox=0\n[Label]\n";
    for (int n = 0; n < kLabelCount; ++n) lines += std::string("Label") + char('A' + n) + "=" + std::to_string(10 + 30 * n) + ",5,28,14,9,255,255,255\n";
    for (const auto& [section, key, y] : {std::tuple{"[Button]", "Button", "30"}, {"[Command]", "Command", "50"}}) {
        lines += section + std::string("\n");
        for (int n = 0; n < kButtonCount; ++n) lines += key + std::string(1, char('A' + n)) + "=" + std::to_string(10 + 20 * n) + "," + y + "\n";
    }
    lines += "[Disp]\nDispA=10,30\nDispB=200,30\nDispC=10,70,60,10,0,0,0\nDispD=170,30,8,40,0,0,0\nBar=10,85\nVol=165,30\n";
    std::map<std::string, std::string> files{{"x.tsk", lines}, {"x.rgn", Region({{2, 0, 298, 1}, {0, 1, 300, 100}})}, {"main_back.bmp", Bmp(300, 100)},
                                             {"main_bar.bmp", Bmp(100, 8)}, {"main_vol.bmp", Bmp(20, 40)}, {"main_panel.bmp", Bmp(140, 10)}};
    for (int n = 0; n < kButtonCount; ++n) {
        for (const char* tail : {"1.bmp", "2.bmp"}) {
            files[std::string("cmd_") + kPlaybackButtonNames[n] + tail] = Bmp(10, 10);
            files[std::string("btn_") + kCommandButtonNames[n] + tail] = Bmp(10, 10);
        }
    }
    return files;
}

SkinNotes Check(const std::map<std::string, std::string>& package) {
    FakeFileSystem files;
    for (const auto& [name, bytes] : package) files.add(kFolder + name, bytes);
    return CheckSkin(files, std::string(kFolder) + "x.tsk");
}

SkinNotes CheckWith(const std::string& line, const std::string& instead) {
    auto package = Package();
    package["x.tsk"] = ReplaceAll(package["x.tsk"], "\n" + line + "\n", "\n" + instead + "\n");
    return Check(package);
}

TEST(SkinReport, EachFaultOfTheDefinitionIsNamedWithItsLine) {
    EXPECT_EQ(Check(Package()), SkinNotes{});
    EXPECT_EQ(CheckWith("Bar=10,85", "; 作者のメモ\n\nBAR = \"10, 85\""), SkinNotes{});
    const struct {
        const char *line, *instead;
        bool error;
        int at;
        const char* text;
    } cases[] = {
        {"Ver=4", "Ver=3", true, 0, "Verが4より小さいので読み込まれません"},
        {"Bar=10,85", "Bra=10,85", true, 37, "Bra は使われません"},
        {"Bar=10,85", "Vol=165,30", true, 38, "Vol は2度目なので読まれません"},
        {"[Disp]", "[Main]", true, 32, "[Main] は2度目なので読まれません"},
        {"[Disp]", "[Dsp]", true, 32, "[Dsp] は使われません"},
        {"Bar=10,85", "a bar at ten", true, 37, "読めない行です"},
        {"Bar=10,85", "Bar=ten,85", true, 37, "Bar：1番目の「ten」は 0 と読まれます"},
        {"Bar=10,85", "Bar=1e1,85", true, 37, "Bar：1番目の「1e1」は 1 と読まれます"},
        {"Bar=10,85", "Bar=- 5,85", true, 37, "Bar：1番目の「- 5」は -5 と読まれます"},
        {"Bar=10,85", "Bar=10,5000000000", true, 37, "Bar：2番目の 2147483647 は 4096 になります"},
        {"Bar=10,85", "Bar=10,85,1", false, 37, "Bar：2個より後の数は使われません"},
        {"RGB=1,2,3", "RGB=1,2,256", true, 4, "RGB：3番目の 256 は 255 になります"},
        {"Size=300,100", "Size=300,0", true, 3, "Size：300×1 になります"},
        {"LabelC=70,5,28,14,9,255,255,255", "LabelC=70,5", false, 9, "LabelC：足りない数は前の行から 28,14,9,255,255,255 になります"},
        {"LabelB=40,5,28,14,9,255,255,255", "LabelB=40,5,28,14,0,255,255,255", true, 8, "LabelBの文字の大きさが0です"},
        {"LabelB=40,5,28,14,9,255,255,255", "LabelB=40,5,28,11,9,255,255,255", false, 8, "LabelBの高さが足りません（9ポイントには12必要）"},
        {"LabelB=40,5,28,14,9,255,255,255", "LabelB=40,5,28,14,9,9,9,9", false, 35, "DispCの文字が背景と見分けにくい色です"},
        {"LabelB=40,5,28,14,9,255,255,255", "LabelB=-1", true, 35, "DispCの文字の色はLabelBの色ですが、LabelBがありません"},
        {"LabelB=40,5,28,14,9,255,255,255", "LabelB=40,5,0,14,9,255,255,255", true, 8, "LabelB（0×14）は大きさがありません"},
        {"ButtonA=10,30", "ButtonA=295,30", true, 17, "ButtonA（10×10）がウィンドウからはみ出しています"},
        {"Bar=10,85", "Bar=60,68", false, 35, "DispCとBarが重なっています"},
    };
    for (const auto& c : cases) {
        const SkinNotes notes = CheckWith(c.line, c.instead);
        EXPECT_NE(std::ranges::find(notes, SkinNote{c.error, "x.tsk", c.at, c.text}), notes.end()) << c.instead << "\n" << ReportOf(notes, 9);
    }
}

TEST(SkinReport, EachFileThatIsPassedOverIsNamed) {
    const struct {
        const char *file, *text;
        std::string bytes;  // empty: the file is not there
    } cases[] = {{"main_panel.bmp", "ありません", ""},
                 {"cmd_play1.bmp", "読めないか、大きすぎる画像です", "PNG"},
                 {"cmd_play1.bmp", "読めないか、大きすぎる画像です", Bmp(300, 300)},
                 {"cmd_play2.bmp", "離した画像と大きさが違います", Bmp(10, 11)},
                 {"main_bar@2x.bmp", "元の画像の整数倍の大きさではないので使われません", Bmp(200, 15)},
                 {"x.rgn", "ありません", ""},
                 {"x.rgn", "矩形データではありません", std::string(31, 'x')},
                 {"x.rgn", "矩形がないのでウィンドウが見えません", Region({})}};
    for (const auto& c : cases) {
        auto package = Package();
        package["main_back@2x.bmp"] = Bmp(600, 200);
        package[c.file] = c.bytes;
        if (c.bytes.empty()) package.erase(c.file);
        const SkinNotes notes = Check(package);
        EXPECT_TRUE(std::ranges::any_of(notes, [&](const SkinNote& n) { return n.file == c.file && n.text == c.text; })) << c.file << "\n" << ReportOf(notes, 9);
    }
    // What has no place needs no picture.
    auto package = Package();
    package["x.tsk"] = ReplaceAll(package["x.tsk"], "ButtonG=130,30\n", "");
    package.erase("cmd_double1.bmp"), package.erase("cmd_double2.bmp");
    EXPECT_EQ(Check(package), SkinNotes{});
    package["x.rgn"] = Region({{0, 0, 300, 53}});
    EXPECT_NE(ReportOf(Check(package), 1).find("輪郭の外"), std::string::npos);
}

TEST(SkinReport, ReadsLikeAList) {
    const SkinNotes notes{{true, "x.tsk", 3, "a"}, {false, "b.bmp", 0, "c"}};
    EXPECT_EQ(ReportOf(notes, 5), "誤り　x.tsk 3行目：a\r注意　b.bmp：c\r\r誤り 1件、注意 1件");
    EXPECT_EQ(ReportOf(notes, 1), "誤り　x.tsk 3行目：a\r…\r\r誤り 1件、注意 1件");
    EXPECT_EQ(ReportOf({}, 5), "問題は見つかりませんでした");
}

}  // namespace
}  // namespace quenlox
