#include "skin/region_file.h"

#include <algorithm>
#include <cstdint>

namespace quenlox {
namespace {

std::int32_t Number(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value |= std::uint32_t{static_cast<unsigned char>(bytes[at + i])} << 8 * i;
    return static_cast<std::int32_t>(value);
}

}  // namespace

std::optional<Region> ReadRegionFile(std::string_view bytes, Size window) {
    constexpr std::size_t kHeader = 32, kRectangle = 16;
    if (bytes.size() < kHeader || Number(bytes, 0) != kHeader || Number(bytes, 4) != 1) return std::nullopt;
    const auto announced = static_cast<std::uint32_t>(Number(bytes, 8));
    const std::size_t count =
        std::min({std::size_t{announced}, (bytes.size() - kHeader) / kRectangle, kMostRectangles});
    Region region;
    region.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = kHeader + i * kRectangle;
        const int left = std::clamp(Number(bytes, at), 0, window.width);
        const int top = std::clamp(Number(bytes, at + 4), 0, window.height);
        const int right = std::clamp(Number(bytes, at + 8), 0, window.width);
        const int bottom = std::clamp(Number(bytes, at + 12), 0, window.height);
        if (right > left && bottom > top) region.push_back({left, top, right - left, bottom - top});
    }
    if (announced > 0 && region.empty()) region.push_back({0, 0, window.width, window.height});
    return region;
}

}  // namespace quenlox
