#include "forms/placement.h"

#include <algorithm>
#include <cstdlib>

namespace quenlox {
namespace {

// A strip that is smaller than this cannot be seen and dragged.
constexpr int kReachable = 16;

int SnapAlong(int start, int length, int areaStart, int areaLength, int distance) {
    const int toStart = std::abs(start - areaStart);
    const int toEnd = std::abs(start + length - areaStart - areaLength);
    if (std::min(toStart, toEnd) >= distance) return start;
    return toStart <= toEnd ? areaStart : areaStart + areaLength - length;
}

int PutInto(int start, int length, int areaStart, int areaLength) {
    return std::max(areaStart, std::min(start, areaStart + areaLength - length));
}

}  // namespace

Rect SnapToEdges(const Rect& window, const Rect& area, int distance) {
    return {SnapAlong(window.left, window.width, area.left, area.width, distance),
            SnapAlong(window.top, window.height, area.top, area.height, distance), window.width, window.height};
}

Rect BringOntoScreen(const Rect& window, std::span<const Rect> workAreas, const Rect& fallback) {
    const int width = std::min(kReachable, window.width), height = std::min(kReachable, window.height);
    for (const Rect& area : workAreas) {
        const Rect shown = Intersect(window, area);
        if (shown.width >= width && shown.height >= height) return window;
    }
    return {PutInto(window.left, window.width, fallback.left, fallback.width),
            PutInto(window.top, window.height, fallback.top, fallback.height), window.width, window.height};
}

}  // namespace quenlox
