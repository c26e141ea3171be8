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

int PutAlong(int start, int length, int areaStart, int areaLength) {
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
    return PutInto(window, fallback);
}

Rect PutInto(const Rect& window, const Rect& area) {
    return {PutAlong(window.left, window.width, area.left, area.width),
            PutAlong(window.top, window.height, area.top, area.height), window.width, window.height};
}

}  // namespace quenlox
