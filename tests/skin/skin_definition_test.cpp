#include "skin/skin_definition.h"

#include <gtest/gtest.h>

#include <array>

#include "skin/region_file.h"

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

TEST(SkinDefinition, NumbersAreBroughtToWhatAWindowCanHave) {
    const std::string huge = "99999999999999,-99999999999,100000,60000,100000,300,-5,x";
    const SkinDefinition skin = Read("[Main]\nSize=2000000000,2000000000\n[Label]\nLabelA=" + huge + "\nLabelB=5,5,-3,-4,-9\nLyrics=100,-20,100000,100000,9\n"
                                     "[Button]\nButtonA=" + huge + "\n[Disp]\nDispC=" + huge + "\nDispD=" + huge + "\nBar=" + huge + "\n");
    const Rect most{kLongestSide, -kLongestSide, kLongestSide, kLongestSide};
    EXPECT_EQ(skin.size, (Size{4096, kMostWindowPixels / 4096}));
    EXPECT_EQ(Read("[Main]\nSize=0,-7\n").size, (Size{1, 1}));
    EXPECT_EQ(Read("[Main]\nSize=1920,1080\n").size, (Size{1920, 1080}));
    EXPECT_EQ(skin.labels[0]->bounds, most);
    EXPECT_EQ(skin.labels[0]->fontField, kLargestType);
    EXPECT_EQ(skin.labels[0]->color, (Color{255, 0, 0}));
    EXPECT_EQ(skin.labels[1]->bounds, (Rect{5, 5, 0, 0}));
    EXPECT_EQ(skin.labels[1]->fontField, 0);
    EXPECT_EQ(skin.lyrics->bounds, (Rect{100, 0, 3996, kMostWindowPixels / 4096}));
    EXPECT_EQ(skin.displayC->bounds, most);
    EXPECT_EQ(skin.displayD->bounds, most);
    for (const auto& place : {skin.buttons[0], skin.bar}) EXPECT_EQ(place, (Point{kLongestSide, -kLongestSide}));
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

constexpr Size kWindow{50, 40};

TEST(RegionFile, ItsRectanglesAreLeftTopRightBottomInsideTheWindow) {
    const std::optional<Region> none, empty = Region{}, whole = Region{{0, 0, 50, 40}};
    const std::vector<std::array<std::int32_t, 4>> many(5000, {0, 0, 1, 1});
    const struct {
        const char* what;
        std::string bytes;
        std::optional<Region> expected;
    } cases[] = {
        {"two", RegionBytes({{1, 2, 4, 9}, {-5, 9, 5, 10}}, 2), Region{{1, 2, 3, 7}, {0, 9, 5, 1}}},
        {"beyond the window", RegionBytes({{-2000000000, 9, 2000000000, 2000000000}}, 1), Region{{0, 9, 50, 31}}},
        {"more than the store holds", RegionBytes(many, 5000), Region(kMostRectangles, {0, 0, 1, 1})},
        {"more than the file holds", RegionBytes({{0, 0, 1, 1}}, 0xFFFFFFFF), Region{{0, 0, 1, 1}}},
        {"some without area", RegionBytes({{0, 0, 1, 1}, {5, 5, 5, 5}, {9, 0, 1, 1}}, 3), Region{{0, 0, 1, 1}}},
        {"a window that shall not be seen", RegionBytes({}, 0), empty},
        {"all without area", RegionBytes({{5, 5, 5, 5}, {9, 0, 1, 1}}, 2), whole},
        {"all outside", RegionBytes({{50, 0, 60, 40}}, 1), whole},
        {"none of those announced", RegionBytes({}, 7), whole},
        {"a cut header", std::string(31, '\0'), none},
        {"no region file", std::string(64, 'x'), none},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadRegionFile(c.bytes, kWindow), c.expected) << c.what;
}

}  // namespace
}  // namespace quenlox
