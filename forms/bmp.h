// Reads Windows bitmaps (BMP) of every kind into a Surface: 1, 4, 8, 16, 24 and 32 bits a pixel, run-length coded,
// bit fields, bottom-up and top-down, headers of OS/2 and of all Windows versions. Format: "Bitmap Storage" of the
// Windows GDI documentation.
#pragma once

#include <optional>
#include <string_view>

#include "forms/surface.h"

namespace quenlox {

// Nothing when the bytes are no whole picture; never takes more memory than 4 bytes for each of the 4096 × 4096 pixels
// that a picture may have. Transparency is not used: alpha is dropped.
std::optional<Surface> ReadBmp(std::string_view bytes);

}  // namespace quenlox
