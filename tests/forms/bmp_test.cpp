#include "forms/bmp.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

namespace quenlox {
namespace {

std::string Number(std::uint32_t value, int bytes) {
    std::string out;
    for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> 8 * i);
    return out;
}

std::string Bytes(std::initializer_list<int> values) {
    std::string out;
    for (const int value : values) out += static_cast<char>(value);
    return out;
}

struct Picture {
    int width;
    int height;
    int bits;
    std::uint32_t compression;
    std::vector<std::uint32_t> palette;  // 0x00RRGGBB
    std::string masks;
    std::string pixels;
    bool core = false;
};

std::string Bmp(const Picture& p) {
    const auto width = static_cast<std::uint32_t>(p.width), height = static_cast<std::uint32_t>(p.height);
    const auto bits = static_cast<std::uint32_t>(p.bits);
    std::string header;
    if (p.core) {
        header = Number(12, 4) + Number(width, 2) + Number(height, 2) + Number(1, 2) + Number(bits, 2);
    } else {
        header = Number(40, 4) + Number(width, 4) + Number(height, 4) + Number(1, 2) + Number(bits, 2) +
                 Number(p.compression, 4) + std::string(12, '\0') +
                 Number(static_cast<std::uint32_t>(p.palette.size()), 4) + Number(0, 4);
    }
    header += p.masks;
    for (const std::uint32_t color : p.palette) header += Number(color, p.core ? 3 : 4);
    const auto start = static_cast<std::uint32_t>(14 + header.size());
    return "BM" + Number(start + static_cast<std::uint32_t>(p.pixels.size()), 4) + Number(0, 4) + Number(start, 4) +
           header + p.pixels;
}

std::vector<std::uint32_t> Pixels(const std::optional<Surface>& s) {
    if (!s) return {};
    return {s->pixels().begin(), s->pixels().end()};
}

constexpr std::uint32_t R = 0xFF0000, G = 0x00FF00, B = 0x0000FF, W = 0xFFFFFF, K = 0;
const std::vector<std::uint32_t> kPalette = {K, R, G, B, W};

// Red and green above, blue and white below, in every way to store it.
TEST(Bmp, EveryKindGivesTheSamePicture) {
    std::vector<std::uint32_t> whole = kPalette;
    whole.resize(256);
    const struct {
        const char* name;
        Picture picture;
    } cases[] = {
        {"24 bits", {2, 2, 24, 0, {}, {}, Bytes({255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0})}},
        {"24 bits without the last padding",
         {2, 2, 24, 0, {}, {}, Bytes({255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0})}},
        {"24 bits, top-down",
         {2, -2, 24, 0, {}, {}, Bytes({0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 255, 255, 255, 0, 0})}},
        {"32 bits", {2, 2, 32, 0, {}, {}, Bytes({255, 0, 0, 9, 255, 255, 255, 9, 0, 0, 255, 9, 0, 255, 0, 9})}},
        {"32 bits with fields in another order",
         {2,
          2,
          32,
          3,
          {},
          Number(0xFF, 4) + Number(0xFF00, 4) + Number(0xFF0000, 4),
          Bytes({0, 0, 255, 0, 255, 255, 255, 0, 255, 0, 0, 0, 0, 255, 0, 0})}},
        {"16 bits, 555",
         {2, 2, 16, 0, {}, {}, Number(0x001F, 2) + Number(0x7FFF, 2) + Number(0x7C00, 2) + Number(0x03E0, 2)}},
        {"16 bits, 565",
         {2,
          2,
          16,
          3,
          {},
          Number(0xF800, 4) + Number(0x07E0, 4) + Number(0x001F, 4),
          Number(0x001F, 2) + Number(0xFFFF, 2) + Number(0xF800, 2) + Number(0x07E0, 2)}},
        {"8 bits", {2, 2, 8, 0, kPalette, {}, Bytes({3, 4, 0, 0, 1, 2, 0, 0})}},
        {"8 bits, OS/2 header", {2, 2, 8, 0, whole, {}, Bytes({3, 4, 0, 0, 1, 2, 0, 0}), true}},
        {"4 bits", {2, 2, 4, 0, kPalette, {}, Bytes({0x34, 0, 0, 0, 0x12, 0, 0, 0})}},
        {"RLE8", {2, 2, 8, 1, kPalette, {}, Bytes({1, 3, 1, 4, 0, 0, 1, 1, 1, 2, 0, 1})}},
        {"RLE8, a literal", {2, 2, 8, 1, kPalette, {}, Bytes({1, 3, 1, 4, 0, 0, 1, 1, 1, 2})}},
        {"RLE4", {2, 2, 4, 2, kPalette, {}, Bytes({2, 0x34, 0, 0, 2, 0x12, 0, 1})}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Pixels(ReadBmp(Bmp(c.picture))), (std::vector<std::uint32_t>{R, G, B, W})) << c.name;
        EXPECT_EQ(Pixels(ReadBmpThinned(Bmp(c.picture), 1)), (std::vector<std::uint32_t>{R})) << c.name;
    }
}

TEST(Bmp, LiteralsOfRunLengthCodeArePaddedToWords) {
    const Picture eight{4, 1, 8, 1, kPalette, {}, Bytes({0, 3, 1, 2, 3, 0, 1, 4, 0, 1})};
    EXPECT_EQ(Pixels(ReadBmp(Bmp(eight))), (std::vector<std::uint32_t>{R, G, B, W}));
    const Picture four{6, 1, 4, 2, kPalette, {}, Bytes({0, 5, 0x12, 0x34, 0x10, 0, 1, 0x40, 0, 1})};
    EXPECT_EQ(Pixels(ReadBmp(Bmp(four))), (std::vector<std::uint32_t>{R, G, B, W, R, W}));
}

TEST(Bmp, WhatIsNoWholePictureIsMissing) {
    const std::string good = Bmp({2, 2, 24, 0, {}, {}, std::string(16, 'x')});
    ASSERT_TRUE(ReadBmp(good));
    for (std::size_t length = 0; length < good.size() - 2; ++length) {
        EXPECT_EQ(ReadBmp(good.substr(0, length)), std::nullopt) << length;
    }
    const std::string data(16, 'x');
    const struct {
        const char* name;
        Picture picture;
    } cases[] = {
        {"two gigabytes announced", {30000, 24000, 24, 0, {}, {}, "x"}},
        {"no width", {0, 2, 24, 0, {}, {}, data}},
        {"negative width", {-2, 2, 24, 0, {}, {}, data}},
        {"smallest height there is", {2, std::numeric_limits<int>::min(), 24, 0, {}, {}, data}},
        {"odd depth", {2, 2, 13, 0, {}, {}, data}},
        {"JPEG inside", {2, 2, 24, 4, {}, {}, data}},
        {"run-length coded, nothing there", {4000, 4000, 8, 1, {R}, {}, ""}},
        {"run-length code of the wrong depth", {2, 2, 4, 1, {R}, {}, Bytes({0, 1})}},
    };
    for (const auto& c : cases) EXPECT_EQ(ReadBmp(Bmp(c.picture)), std::nullopt) << c.name;
}

TEST(Bmp, RunsThatLeaveThePictureAreCutOff) {
    const Picture picture{2, 1, 8, 1, {R, G}, {}, Bytes({200, 1, 0, 2, 250, 250, 5, 1, 0, 1})};
    EXPECT_EQ(Pixels(ReadBmp(Bmp(picture))), (std::vector<std::uint32_t>{G, G}));
}

}  // namespace
}  // namespace quenlox
