#include "forms/surface.h"

#include <gtest/gtest.h>

#include <limits>

namespace quenlox {
namespace {

// Each pixel different, so that a misplaced one shows.
Surface Numbered(int width, int height) {
    Surface s(width, height);
    for (int i = 0; i < width * height; ++i) s.pixels()[static_cast<std::size_t>(i)] = static_cast<Surface::Pixel>(i + 1);
    return s;
}

TEST(Surface, ACopyIsClippedOnEverySideOfBothPictures) {
    const Surface source = Numbered(4, 4);
    for (int left = -6; left <= 6; ++left) {
        for (int top = -6; top <= 6; ++top) {
            for (const Rect part : {Rect{0, 0, 4, 4}, Rect{-1, -2, 4, 9}, Rect{2, 3, 5, 5}}) {
                Surface target(3, 5);
                target.copy(source, part, {left, top});
                for (int y = 0; y < 5; ++y) {
                    for (int x = 0; x < 3; ++x) {
                        const Point from{part.left + x - left, part.top + y - top};
                        const bool covered = part.contains(from) && source.rect().contains(from);
                        EXPECT_EQ(target.at(x, y), covered ? source.at(from.x, from.y) : 0);
                    }
                }
            }
        }
    }
}

TEST(Surface, ACopyOntoItselfReadsWhatStoodThereBefore) {
    for (const Point to : {Point{1, 0}, Point{0, 1}, Point{-1, 0}, Point{0, -1}, Point{1, 1}, Point{-1, 1}}) {
        Surface expected = Numbered(5, 4), moved = Numbered(5, 4);
        expected.copy(Numbered(5, 4), to);
        moved.copy(moved, to);
        EXPECT_EQ(moved, expected) << to.x << ',' << to.y;
    }
}

TEST(Surface, ASmoothStretchMakesEachPixelTheMeanOfWhatItCovers) {
    Surface picture(8, 4, {200, 100, 0});
    picture.fillRect({4, 0, 4, 4}, {0, 100, 200});
    for (const Size size : {Size{1, 1}, {3, 7}, {8, 4}, {40, 40}}) {
        Surface target(size.width, size.height);
        target.stretchSmoothly(picture, {0, 0, 4, 4});
        EXPECT_EQ(target, Surface(size.width, size.height, {200, 100, 0})) << size.width;  // nothing from beside the part
    }
    Surface same(8, 4), one(1, 1), wide(80, 1);
    same.stretchSmoothly(picture, picture.rect());
    EXPECT_EQ(same, picture);
    one.stretchSmoothly(picture, picture.rect());
    EXPECT_EQ(one, Surface(1, 1, {100, 100, 100}));
    wide.stretchSmoothly(picture, picture.rect());
    for (int x = 1; x < 80; ++x) EXPECT_LE(Surface::ToColor(wide.at(x, 0)).red, Surface::ToColor(wide.at(x - 1, 0)).red) << x;
    EXPECT_NEAR(Surface::ToColor(wide.at(40, 0)).red, 95, 10);
    wide.stretchSmoothly(picture, {20, 0, 4, 4});  // outside
}

TEST(Surface, EnlargedWholeFactorsAreSharpAndOthersTheMeanOfWhatTheyCover) {
    Surface source(2, 2);
    source.set(0, 0, {200, 0, 100}), source.set(1, 0, {0, 100, 100}), source.set(1, 1, {255, 255, 255});
    Surface three(6, 6);
    three.enlarge(source, {}, {3, 1}, three.rect());
    for (int i = 0; i < 36; ++i) EXPECT_EQ(three.at(i % 6, i / 6), source.at(i % 6 / 3, i / 18)) << i;

    Surface half(3, 3);
    half.enlarge(source, {}, {3, 2}, half.rect());
    EXPECT_EQ(half.at(0, 0), source.at(0, 0));
    EXPECT_EQ(half.at(1, 0), Surface::ToPixel({100, 50, 100})) << "half of each";
    EXPECT_EQ(half.at(2, 2), source.at(1, 1));

    // Between a picture and what it lies on: its left border is in the middle of the third pixel.
    Surface ground(6, 3, {100, 100, 100});
    ground.enlarge(source, {1, 0}, {5, 2}, ground.rect());
    EXPECT_EQ(ground.at(1, 0), Surface::ToPixel({100, 100, 100}));
    EXPECT_EQ(ground.at(2, 0), Surface::ToPixel({150, 50, 100}));
    EXPECT_EQ(ground.at(3, 0), source.at(0, 0));
}

TEST(Surface, DrawingOutsideChangesNothing) {
    Surface s(3, 3);
    s.line({-5, 1}, {9, 1}, {1, 2, 3});
    s.ellipse({-10, -10, 30, 30}, {9, 9, 9});
    s.fillEllipse({10, 10, 5, 5}, {9, 9, 9});
    s.fillRect({-1, -1, 2, 2}, {0, 0, 255});
    EXPECT_EQ(s.at(0, 0), 255u);
    EXPECT_EQ(s.at(2, 1), 0x010203u);
    EXPECT_EQ(s.at(2, 2), 0u);
    EXPECT_EQ(s.at(3, 0), 0u);
}

TEST(Geometry, HalvesRoundToTheEvenNeighbour) {
    const std::pair<double, int> cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {12.5, 12}, {2.51, 3},
                                            {-2.49, -2}, {1e300, std::numeric_limits<int>::max()},
                                            {-1e300, std::numeric_limits<int>::min()}};
    for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundHalfToEven(value), rounded) << value;
    EXPECT_EQ(RoundHalfToEven(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace quenlox
