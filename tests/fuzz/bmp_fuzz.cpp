// Bitmaps of any content: a picture, or nothing; a picture never larger than allowed.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "forms/bmp.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto picture = quenlox::ReadBmp({reinterpret_cast<const char*>(data), size});
    if (!picture) return 0;
    if (picture->empty() || picture->width() > 4096 || picture->height() > 4096) std::abort();
    for (const quenlox::Surface::Pixel pixel : picture->pixels()) {
        if (pixel > 0xFFFFFF) std::abort();
    }
    return 0;
}
