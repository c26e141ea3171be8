// The packages that ship, composed as the main window shows them, against the checksums in shipped_pictures.txt. After a
// wanted change: tests/skin/renew_pictures, and look at the pictures that it leaves.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "forms/bmp.h"
#include "skin/region_file.h"
#include "skin/skin_report.h"
#include "tests/skin/skin_fixture.h"

namespace quenlox {
namespace {

const std::string kRoot = QUENLOX_SOURCE_DIR;
const std::string kStored = kRoot + "/tests/skin/shipped_pictures.txt";

std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// FNV-1a over size and pixels, 64 bits: http://www.isthe.com/chongo/tech/comp/fnv
std::uint64_t Checksum(const Surface& picture) {
    std::uint64_t sum = 0xCBF29CE484222325;
    const auto add = [&](std::uint32_t value) {
        for (int i = 0; i < 4; ++i) sum = (sum ^ (value >> 8 * i & 0xFF)) * 0x100000001B3;
    };
    add(static_cast<std::uint32_t>(picture.width()));
    add(static_cast<std::uint32_t>(picture.height()));
    for (const Surface::Pixel pixel : picture.pixels()) add(pixel);
    return sum;
}

class ShippedSkin : public SkinTest, public ::testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        SkinTest::SetUp();
        for (const auto& file : std::filesystem::directory_iterator(kRoot + "/skins/" + skin() + "/package")) addFile(file.path().filename().string());
        top->LoadSkin(folder() + skin() + ".tsk");
        top->showTitle("春の歌", "演奏する人");
        top->showInformation("MPEG-1 Layer3 44.1kHz 128kbps");
        top->showTime("01:15");
        top->showLength("03:20");
        top->showStatus("PLAY");
        top->showPlayMode("PROGRAM");
        top->showKind("MP3");
        top->showBar(0.4);
        volume->setPercent(60);
    }
    std::string skin() const { return GetParam(); }
    std::string folder() const { return "C:\\Quenlox\\skin\\" + skin() + "\\"; }
    void addFile(const std::string& name) { files.add(folder() + name, BytesOf(kRoot + "/skins/" + skin() + "/package/" + name)); }
    Surface picture(const std::string& name) { return ReadBmp(files.bytesOf(folder() + name + ".bmp")).value_or(Surface()); }
    static Point middleOf(const Control& control) {
        return {control.bounds().left + control.bounds().width / 2, control.bounds().top + control.bounds().height / 2};
    }

    // Compares with the stored checksum; a picture that differs is left beside the test program.
    void look(const std::string& what, const Surface& picture) {
        const std::string name = skin() + "-" + what;
        const std::uint64_t sum = Checksum(picture);
        if (const char* target = std::getenv("QUENLOX_RENEW_PICTURES")) {
            std::ofstream(std::string(target) + "/" + name + ".bmp", std::ios::binary) << BmpOf(picture);
            std::ofstream(std::string(target) + "/shipped_pictures.txt", std::ios::app) << name << ' ' << std::hex << sum << '\n';
            return;
        }
        std::map<std::string, std::uint64_t> stored;
        std::ifstream file(kStored);
        for (std::string key; file >> key;) file >> std::hex >> stored[key];
        EXPECT_EQ(sum, stored[name]) << "the picture is left in " << name << ".bmp";
        if (sum != stored[name]) std::ofstream(name + ".bmp", std::ios::binary) << BmpOf(picture);
    }
};

TEST_P(ShippedSkin, IsComposedAsStoredInTheOutlineOfItsRegionFile) {
    const Surface released = *top->picture();
    look("released", released);
    ASSERT_FALSE(host->regions.empty());
    EXPECT_TRUE(host->regions.back() == ReadRegionFile(files.bytesOf(folder() + skin() + ".rgn"), {released.width(), released.height()}));
}

TEST_P(ShippedSkin, HasNothingThatAnAuthorWouldBeTold) {
    EXPECT_EQ(ReportOf(CheckSkin(files, folder() + skin() + ".tsk"), 20), ReportOf({}, 0));
    for (const int fineness : {2, 3}) EXPECT_EQ(ReadSkin(files, folder() + skin() + ".tsk", values, Scale(100 * fineness)).fineness, fineness);
}

TEST_P(ShippedSkin, AHeldButtonShowsItsPressedPictureAndChangesNothingElse) {
    const Surface released = *top->picture();
    Surface together = released;
    for (auto [array, prefix, names] : {std::tuple(&top->cmdPicture, "cmd_", kPlaybackButtonNames),
                                        std::tuple(&top->taskPicture, "btn_", kCommandButtonNames)}) {
        for (int n = 0; n < kButtonCount; ++n) {
            const PictureBox& button = (*array)[n];
            ASSERT_TRUE(button.visible());
            const Rect place = button.bounds();
            top->Form_MouseDown(1, 0, middleOf(button));
            EXPECT_TRUE(host->captured);
            const Surface held = *top->picture();
            Surface expected = released;
            expected.copy(picture(std::string(prefix) + names[static_cast<std::size_t>(n)] + "2"), {place.left, place.top});
            EXPECT_TRUE(held == expected) << prefix << n;
            EXPECT_FALSE(held == released) << "pressed and released look the same: " << prefix << n;
            together.copy(held, place, {place.left, place.top});
            top->Form_MouseUp(1, 0, {-1, -1});
            EXPECT_TRUE(*top->picture() == released) << prefix << n;
        }
    }
    look("pressed", together);
}

TEST_P(ShippedSkin, TheOperationPanelTakesThePlaceOfTheButtons) {
    options.set(&Options::OperationPanel, true);
    top->optionsChanged();
    if (!top->DisplayA.visible()) GTEST_SKIP() << "this skin has no panel";
    look("panel", *top->picture());
    top->Form_MouseDown(1, 0, middleOf(top->DisplayA));
    look("panel-pressed", *top->picture());
    top->Form_MouseUp(1, 0, {-1, -1});
}

INSTANTIATE_TEST_SUITE_P(All, ShippedSkin, ::testing::Values("default", "hakuji", "obi"),
                         [](const auto& skin) { return std::string(skin.param); });

}  // namespace
}  // namespace quenlox
