// Region files of any content: never more rectangles than allowed or than the bytes hold, all inside the window, and none
// at all only when the file says so.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "skin/region_file.h"

using namespace quenlox;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr Size kWindow{300, 200};
    const auto region = ReadRegionFile({reinterpret_cast<const char*>(data), size}, kWindow);
    if (!region) return 0;
    const bool saysNone = data[8] == 0 && data[9] == 0 && data[10] == 0 && data[11] == 0;
    if (region->empty() != saysNone || region->size() > kMostRectangles) std::abort();
    if (region->size() > 1 && region->size() * 16 + 32 > size) std::abort();
    for (const Rect& rect : *region) {
        if (rect.empty() || Unite(rect, {0, 0, kWindow.width, kWindow.height}) != Rect{0, 0, kWindow.width, kWindow.height}) std::abort();
    }
    return 0;
}
