// Menus of another process.
#pragma once

#include <windows.h>

#include "tools/wine_driver/protocol.h"

namespace driver {

// The menu that is open on the screen, as menu_agent.h describes it; throws when there is none.
std::string PopupMenu();

}  // namespace driver
