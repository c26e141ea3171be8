#include "skin/skin_definition.h"

#include <gtest/gtest.h>

#include <array>

#include "skin/region_file.h"
#include "tests/fakes/fake_file_system.h"

namespace quenlox {
namespace {

SkinDefinition Read(const std::string& text) {
    SplitValues values;
    return ReadDefinition(IniDocument::Parse(text), values);
}

TEST(SkinDefinition, FieldsThatAListLeavesOutCarryOverFromTheListBefore) {
    const SkinDefinition skin = Read("[Label]\nLabelB=1,2,3,4,9,255,0,0\nLabelC=10,20\n");
    ASSERT_TRUE(skin.labels[2]);
    EXPECT_EQ(skin.labels[2]->bounds, (Rect{10, 20, 3, 4}));
    EXPECT_EQ(skin.labels[2]->fontField, 9);
    EXPECT_EQ(skin.labels[2]->color, (Color{255, 0, 0}));
}

TEST(SkinDefinition, AHiddenElementStillLeavesItsFieldsBehind) {
    const SkinDefinition skin = Read("[Label]\nLabelA=-1,5,6,7,8,1,2,3\nLabelB=0\n");
    EXPECT_FALSE(skin.labels[0]);
    ASSERT_TRUE(skin.labels[1]) << "x = 0 is the left edge, not hidden";
    EXPECT_EQ(skin.labels[1]->bounds, (Rect{0, 5, 6, 7}));
}

TEST(SkinDefinition, TheSecondLyricsListIsReadOnlyWhenThereIsALyricsArea) {
    const SkinDefinition with = Read("[Label]\nLyrics=1,2,30,40,9,10,20,30,40,50,60\nLyrics2=7,8,9,0,0,0,0\n");
    ASSERT_TRUE(with.lyrics);
    EXPECT_EQ(with.lyrics->first, (Color{10, 20, 30}));
    EXPECT_EQ(with.lyrics->second, (Color{40, 50, 60}));
    EXPECT_EQ(with.lyrics->background, (Color{7, 8, 9}));
    // Without the area the store still holds what Lyrics left when ButtonA gives its x alone.
    const SkinDefinition without = Read("[Label]\nLyrics=-1,33\nLyrics2=7,8\n[Button]\nButtonA=4\n");
    EXPECT_FALSE(without.lyrics);
    EXPECT_EQ(without.buttons[0], (Point{4, 33}));
}

TEST(SkinDefinition, EveryKeyLandsInItsPlace) {
    const SkinDefinition skin = Read(
        "[Main]\nVer=5\nSize=400,150\nRGB=1,2,3\nBox=1\n[Button]\nButtonA=1,2\nButtonG=3,4\n[Command]\nCommandA=5,6\n"
        "CommandG=7,8\n[Disp]\nDispA=9,10\nDispB=11,12\nDispC=13,14,15,16,17,18,19\nDispD=20,21,22,23,24,25,26\n"
        "Bar=27,28\nVol=29,30\n");
    EXPECT_EQ(skin.version, 5);
    EXPECT_EQ(skin.size, (Size{400, 150}));
    EXPECT_EQ(skin.background, (Color{1, 2, 3}));
    EXPECT_TRUE(skin.box);
    EXPECT_EQ(skin.buttons[0], (Point{1, 2}));
    EXPECT_EQ(skin.buttons[6], (Point{3, 4}));
    EXPECT_EQ(skin.commands[0], (Point{5, 6}));
    EXPECT_EQ(skin.commands[6], (Point{7, 8}));
    EXPECT_EQ(skin.displayA, (Point{9, 10}));
    EXPECT_EQ(skin.displayB, (Point{11, 12}));
    EXPECT_EQ(skin.displayC->bounds, (Rect{13, 14, 15, 16}));
    EXPECT_EQ(skin.displayC->background, (Color{17, 18, 19}));
    EXPECT_EQ(skin.displayD->bounds, (Rect{20, 21, 22, 23}));
    EXPECT_EQ(skin.bar, (Point{27, 28}));
    EXPECT_EQ(skin.volume, (Point{29, 30}));
}

TEST(SkinDefinition, HostileNumbersStayWithinBounds) {
    std::string many = "[Label]\nLabelA=1";
    for (int i = 0; i < 100; ++i) many += ",99999999999999";
    const SkinDefinition skin =
        Read("[Main]\nSize=2000000000,-7\nRGB=300,-5,x\nBox=01\n" + many + "\nLabelB=5,5,-3,-4,9\n");
    EXPECT_EQ(skin.size, (Size{4096, 0}));
    EXPECT_EQ(skin.background, (Color{255, 0, 0}));
    EXPECT_TRUE(skin.box);
    EXPECT_EQ(skin.labels[1]->bounds, (Rect{5, 5, 0, 0}));
}

TEST(SkinDefinition, BarsOfAPackageThatDoesNotPlaceThemLieBesideItsLabelsInsideTheWindow) {
    const SkinDefinition skin = Read("[Main]\nSize=200,100\n[Label]\nLabelA=10,20,100,15\nLabelB=30,35,150,15\n");
    EXPECT_EQ(PlaceOfBar(skin, {100, 6}), (Point{10, 50}));
    EXPECT_EQ(PlaceOfVolume(skin, {10, 40}), (Point{180, 20}));
    EXPECT_EQ(PlaceOfVolume(skin, {40, 90}), (Point{160, 10}));
    EXPECT_EQ(PlaceOfBar(Read("[Main]\nSize=200,100\n"), {100, 6}), (Point{0, 94}));
}

std::string RegionBytes(const std::vector<std::array<std::int32_t, 4>>& rectangles, std::uint32_t count) {
    std::string out;
    const auto number = [&](std::int64_t value) {
        for (int i = 0; i < 4; ++i) out += static_cast<char>(value >> 8 * i);
    };
    for (const std::int64_t value : {std::int64_t{32}, std::int64_t{1}, std::int64_t{count}, std::int64_t{count} * 16}) {
        number(value);
    }
    for (const int value : {0, 0, 100, 100}) number(value);
    for (const auto& r : rectangles) {
        for (const std::int32_t value : r) number(value);
    }
    return out;
}

TEST(RegionFile, RectanglesAreLeftTopRightBottom) {
    EXPECT_EQ(ReadRegionFile(RegionBytes({{1, 2, 4, 9}, {-5, 9, 5, 10}}, 2)), (Region{{1, 2, 3, 7}, {-5, 9, 10, 1}}));
}

TEST(RegionFile, NoRectanglesAreAnEmptyRegionAndNotNone) {
    ASSERT_TRUE(ReadRegionFile(RegionBytes({}, 0)));
    EXPECT_TRUE(ReadRegionFile(RegionBytes({}, 0))->empty());
}

TEST(RegionFile, NoMoreIsTakenThanTheStoreHoldsAndTheFileHas) {
    const std::vector<std::array<std::int32_t, 4>> many(5000, {0, 0, 1, 1});
    EXPECT_EQ(ReadRegionFile(RegionBytes(many, 5000))->size(), kMostRectangles);
    EXPECT_EQ(ReadRegionFile(RegionBytes({{0, 0, 1, 1}}, 0xFFFFFFFF))->size(), 1u);
    EXPECT_EQ(ReadRegionFile(RegionBytes({{0, 0, 1, 1}, {5, 5, 5, 5}, {9, 0, 1, 1}}, 3))->size(), 1u);
    EXPECT_EQ(ReadRegionFile(std::string(31, '\0')), std::nullopt);
    EXPECT_EQ(ReadRegionFile(std::string(64, 'x')), std::nullopt);
}

TEST(SkinPackage, FileNamesMatchWhateverTheirCaseAndDamagedPicturesCountAsMissing) {
    FakeFileSystem files;
    files.add("C:\\Quenlox\\skin\\x\\Round.tsk", "[Main]\nVer=4\n");
    files.add("C:\\Quenlox\\skin\\x\\ROUND.RGN", RegionBytes({{0, 0, 7, 7}}, 1));
    files.add("C:\\Quenlox\\skin\\x\\Main_Back.BMP", "not a picture");
    SplitValues values;
    const SkinDefinition skin = ReadSkin(files, "C:\\Quenlox\\skin\\x\\Round.tsk", values);
    EXPECT_FALSE(skin.regionFileMissing);
    EXPECT_EQ(skin.region, (Region{{0, 0, 7, 7}}));
    EXPECT_FALSE(skin.back);
}

}  // namespace
}  // namespace quenlox
