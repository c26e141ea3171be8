// The few letters that the panel writes itself, five by seven pixels: a picture of 85 x 30 has no room for a system
// font.
#pragma once

#include <string_view>

#include "forms/surface.h"

namespace quenlox {

inline constexpr int kPixelTextHeight = 7;
int PixelTextWidth(std::string_view text);  // pixels
// Letters that the font does not have are left out as a blank.
void DrawPixelText(Surface& surface, Point at, std::string_view text, Color color);

}  // namespace quenlox
