// Reads Windows bitmaps (BMP) of every kind into a Surface: 1, 4, 8, 16, 24 and 32 bits a pixel, run-length coded,
// bit fields, bottom-up and top-down, headers of OS/2 and of all Windows versions. Format: "Bitmap Storage" of the
// Windows GDI documentation.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "forms/surface.h"

namespace quenlox {

inline constexpr int kLongestBmpSide = 4096;  // pixels

// Nothing when the bytes are no whole picture, or one of more than `mostPixels` pixels or of a longer side than
// kLongestBmpSide: then no memory is taken, else 4 bytes a pixel. Alpha is dropped.
std::optional<Surface> ReadBmp(std::string_view bytes,
                               std::int64_t mostPixels = std::int64_t{kLongestBmpSide} * kLongestBmpSide);
// How opaque each pixel of a picture of 32 bits is, in all three channels: 0 nothing of it, 255 all. Nothing for other
// kinds.
std::optional<Surface> ReadBmpOpacity(std::string_view bytes, std::int64_t mostPixels);
// The same for photographs: of one with more pixels only every second, third … of every second, third … row is taken.
std::optional<Surface> ReadBmpThinned(std::string_view bytes, std::int64_t mostPixels);

}  // namespace quenlox
