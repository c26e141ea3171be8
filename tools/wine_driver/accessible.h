// What a window tells assistive programs (MSAA), asked from outside as a screen reader asks.
#pragma once

#include <windows.h>

#include "tools/wine_driver/protocol.h"

namespace driver {

// A row for each child that is a simple element: number, role, state, x, y, width, height (screen pixels), name, value,
// description, default action, shortcut.
Rows AccessibleParts(HWND window);
// The same of the window itself, in one row.
Row AccessibleWindow(HWND window);
void DoAccessibleAction(HWND window, int child);
void SetAccessibleValue(HWND window, int child, const std::wstring& value);
// The number of the child at a point of the screen, 0 for the window itself, -1 outside it.
int AccessiblePartAt(HWND window, POINT point);
// The number of the child that comes after (direction 5) or before (6) another; 0 when there is none.
int AccessibleNeighbour(HWND window, int child, int direction);

}  // namespace driver
