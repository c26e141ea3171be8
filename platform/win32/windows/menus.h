// Menus of the form layer as menus of the system. The items of a tree are numbered in the order in which they stand,
// hidden ones and sub-menus too, so that a number leads back to its item.
#pragma once

#include "forms/menu.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {

inline constexpr UINT kFirstMenuId = 0x4000;  // above the numbers of controls

OwnedMenu MakePopupMenu(const Menu& menu);
OwnedMenu MakeMenuBar(const Menu& menu);

// Null when no item has the number.
const MenuItem* FindMenuItem(const Menu& menu, UINT id);

// Shows the menu at a point of the screen; returns when it is closed and the chosen item has been clicked.
void PopupMenu(HWND owner, const Menu& menu, POINT screen);

}  // namespace quenlox::win32
