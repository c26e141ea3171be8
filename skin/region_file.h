// The region file of a skin: the outline of the window as a list of rectangles, a Windows RGNDATA structure as
// GetRegionData returns it (little-endian; 32 bytes of header, then left, top, right, bottom of each rectangle).
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "forms/window_host.h"

namespace quenlox {

inline constexpr std::size_t kMostRectangles = 4001;

// What the rectangles cover of a window of that size in pixels: at most kMostRectangles of them, and no more than the
// file holds. A count of 0 gives an empty region, which hides the window; of rectangles that cover nothing of it, by
// mistake of whoever made them, becomes the rectangle of the whole window. Nothing when the file is shorter than its
// header, says another header size than 32 or another type than rectangles.
std::optional<Region> ReadRegionFile(std::string_view bytes, Size window);

}  // namespace quenlox
