#include "forms/geometry.h"

#include <algorithm>
#include <limits>

namespace quenlox {

Rect Intersect(const Rect& a, const Rect& b) {
    const int left = std::max(a.left, b.left);
    const int top = std::max(a.top, b.top);
    const int right = std::min(a.right(), b.right());
    const int bottom = std::min(a.bottom(), b.bottom());
    if (right <= left || bottom <= top) return {};
    return {left, top, right - left, bottom - top};
}

Rect Unite(const Rect& a, const Rect& b) {
    if (a.empty()) return b;
    if (b.empty()) return a;
    const int left = std::min(a.left, b.left);
    const int top = std::min(a.top, b.top);
    return {left, top, std::max(a.right(), b.right()) - left, std::max(a.bottom(), b.bottom()) - top};
}

int RoundHalfToEven(double value) {
    if (std::isnan(value)) return 0;
    const double floor = std::floor(value);
    const double fraction = value - floor;
    const bool up = fraction > 0.5 || (fraction == 0.5 && std::fmod(floor, 2.0) != 0.0);
    const double rounded = up ? floor + 1 : floor;
    return static_cast<int>(std::clamp(rounded, double{std::numeric_limits<int>::min()},
                                       double{std::numeric_limits<int>::max()}));
}

}  // namespace quenlox
