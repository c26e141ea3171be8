// Region files of any content: never more rectangles than allowed or than the bytes hold, none without area.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "skin/region_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto region = quenlox::ReadRegionFile({reinterpret_cast<const char*>(data), size});
    if (!region) return 0;
    if (region->size() > quenlox::kMostRectangles || region->size() * 16 + 32 > size) std::abort();
    for (const quenlox::Rect& rect : *region) {
        if (rect.width <= 0 || rect.height <= 0) std::abort();
    }
    return 0;
}
