// Contents of controls that belong to another process.
#pragma once

#include <windows.h>

#include "tools/wine_driver/protocol.h"

namespace driver {

// One row per item of a list view: selected, focused, state image (check box: 1 off, 2 on), texts of all columns.
// Items outside [first, first + count) are left out.
Rows ListViewItems(HWND listView, int first, int count);
// Title and width in pixels of each column, in the order of their indices.
Rows ListViewColumns(HWND listView);
// Place on the screen of an item (x, y, width, height); scrolls it into view first.
Row ListViewItemPlace(HWND listView, int item);

// One row per line: selected, text.
Rows ComboBoxItems(HWND comboBox);

// position, minimum, maximum
Row TrackBarState(HWND trackBar);

}  // namespace driver
