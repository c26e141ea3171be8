// Menus of another process.
#pragma once

#include <windows.h>

#include "tests/wine/driver/protocol.h"

namespace driver {

// Rows as menu_agent.h describes them. MenuBar reads the bar of a window with everything below it, PopupMenu the menu
// that is open on the screen; both throw when there is none.
Rows MenuBar(HWND window);
Rows PopupMenu();

}  // namespace driver
