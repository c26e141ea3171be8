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

std::optional<Region> ReadRegionFile(std::string_view bytes) {
    constexpr std::size_t kHeader = 32, kRectangle = 16;
    if (bytes.size() < kHeader || Number(bytes, 0) != kHeader || Number(bytes, 4) != 1) return std::nullopt;
    const auto announced = static_cast<std::uint32_t>(Number(bytes, 8));
    const std::size_t count =
        std::min({std::size_t{announced}, (bytes.size() - kHeader) / kRectangle, kMostRectangles});
    Region region;
    region.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = kHeader + i * kRectangle;
        // Windows keeps regions within 28 bits a coordinate.
        const auto coordinate = [&](std::size_t n) {
            return std::clamp(Number(bytes, at + 4 * n), -(1 << 27), (1 << 27) - 1);
        };
        const int left = coordinate(0), top = coordinate(1), right = coordinate(2), bottom = coordinate(3);
        if (right > left && bottom > top) region.push_back({left, top, right - left, bottom - top});
    }
    return region;
}

}  // namespace quenlox
