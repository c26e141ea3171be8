// The process behind a window: what it holds, and how it is made to fail.
#pragma once

#include <windows.h>

#include "tests/wine/driver/protocol.h"

namespace driver {

// working set in bytes, handles, GDI objects, windows, threads
Row Resources(HWND window);

// Makes a thread in the process that fails: "fault" calls a bad address, "break" meets a breakpoint, "overflow" fills its
// stack, "abort" ends the C library.
void Fail(HWND window, const std::string& how);

}  // namespace driver
