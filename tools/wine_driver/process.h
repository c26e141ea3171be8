// Processes, and the one behind a window: what it holds, and how it is made to fail.
#pragma once

#include <windows.h>

#include "tools/wine_driver/protocol.h"

namespace driver {

// How many processes of a program there are.
size_t Running(const std::wstring& name);

// handles, GDI objects
Row Resources(HWND window);

// Makes a thread in the process that fails: "fault" calls a bad address, "break" meets a breakpoint, "overflow" fills
// its stack, "abort" ends the C library.
void Fail(HWND window, const std::string& how);

}  // namespace driver
