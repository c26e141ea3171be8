#include "speana/pixel_font.h"

#include <array>
#include <cstdint>

namespace quenlox {
namespace {

struct Glyph {
    char letter;
    std::array<std::uint8_t, kPixelTextHeight> rows;  // bit 4 is the left column
};
constexpr int kAdvance = 6, kColumns = 5;

constexpr Glyph kGlyphs[] = {
    {'=', {0x00, 0x00, 0x1f, 0x00, 0x1f, 0x00, 0x00}}, {'C', {0x0e, 0x11, 0x10, 0x10, 0x10, 0x11, 0x0e}},
    {'E', {0x1f, 0x10, 0x10, 0x1e, 0x10, 0x10, 0x1f}}, {'F', {0x1f, 0x10, 0x10, 0x1e, 0x10, 0x10, 0x10}},
    {'K', {0x11, 0x12, 0x14, 0x18, 0x14, 0x12, 0x11}}, {'L', {0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x1f}},
    {'R', {0x1e, 0x11, 0x11, 0x1e, 0x14, 0x12, 0x11}}, {'U', {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0e}},
    {'V', {0x11, 0x11, 0x11, 0x11, 0x11, 0x0a, 0x04}}, {'Y', {0x11, 0x11, 0x0a, 0x04, 0x04, 0x04, 0x04}},
};

}  // namespace

int PixelTextWidth(std::string_view text) {
    return text.empty() ? 0 : static_cast<int>(text.size()) * kAdvance - (kAdvance - kColumns);
}

void DrawPixelText(Surface& surface, Point at, std::string_view text, Color color) {
    for (const char letter : text) {
        for (const Glyph& glyph : kGlyphs) {
            if (glyph.letter != letter) continue;
            for (int y = 0; y < kPixelTextHeight; ++y) {
                for (int x = 0; x < kColumns; ++x) {
                    if (glyph.rows[static_cast<std::size_t>(y)] >> (kColumns - 1 - x) & 1)
                        surface.set(at.x + x, at.y + y, color);
                }
            }
        }
        at.x += kAdvance;
    }
}

}  // namespace quenlox
