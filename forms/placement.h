// Where a window may stand on the desktop. Pure functions over rectangles in screen pixels.
#pragma once

#include <span>

#include "forms/geometry.h"

namespace quenlox {

// The nearest place of `window` at which its edges lie on those of `area` that are closer than `distance`.
Rect SnapToEdges(const Rect& window, const Rect& area, int distance);

// `window` itself when enough of it to be seen and taken hold of lies on one of the work areas; else moved onto
// `fallback`, whole when it fits there, else with its top left corner at that of the area.
Rect BringOntoScreen(const Rect& window, std::span<const Rect> workAreas, const Rect& fallback);

// `window` moved so that all of it lies on `area`, or begins at its top left corner where it is larger.
Rect PutInto(const Rect& window, const Rect& area);

}  // namespace quenlox
