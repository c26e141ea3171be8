// What windows look like from outside: lists of them, their texts, messages to them.
#pragma once

#include <windows.h>

#include "tools/wine_driver/protocol.h"

namespace driver {

// The window that a request's field names; WindowOf throws when there is none (any more).
HWND HandleOf(const Request& request, size_t index);
HWND WindowOf(const Request& request, size_t index);

// Sends a message and gives its result; throws when the window does not answer within 20 seconds.
LRESULT SendWithLimit(HWND window, UINT message, WPARAM w, LPARAM l);

std::string TextOf(HWND window);

// Rows of top-level windows or of all descendants of one, which has none when it is gone:
// handle, parent (owner of a top-level one), process, class, control id, x, y, width, height (screen pixels),
// visible, enabled, style, extended style, text.
Rows TopLevelWindows();
Rows Descendants(HWND parent);

// The window that has the keyboard, whichever program it is of; null: none.
HWND Focus();

// The innermost window at a point of the screen and the top-level window it belongs to; respects window regions.
Row WindowAt(POINT point);

}  // namespace driver
