// Menus of another process can only be read from inside it. The driver hooks the thread of a window with the procedure
// in menu_agent.dll and sends it this registered message; the procedure writes the menu, as UTF-16 text, into shared
// memory.
#pragma once

#include <windows.h>

namespace driver {

inline constexpr wchar_t kMenuMessage[] = L"QuenloxTestReadMenu";    // wParam: the menu
inline constexpr wchar_t kMenuMemory[] = L"Local\\QuenloxTestMenu";  // wchar_t length, then the text
inline constexpr size_t kMenuMemorySize = 256 * 1024;                // bytes

// Text: one line per item, fields separated by tabs: depth, position, command id, state, x, y, width, height, caption.
// State: of MFS_CHECKED 8, MFS_DISABLED 3, with 0x800 for a separator, 0x10 for a sub menu, 0x1000 for the default
// item. The place is in screen pixels and all zero while the item is not shown.

}  // namespace driver
