// Pictures of the form layer on a device context.
#pragma once

#include "forms/surface.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {

// Copies `part` of `surface` to the same place of `dc`.
void PaintSurface(HDC dc, const Surface& surface, const Rect& part);

// Answers WM_PAINT of a window that shows `surface`; what the surface does not cover becomes `beyond`. A null surface
// paints nothing but that.
void PaintWindow(HWND window, const Surface* surface, Color beyond);

}  // namespace quenlox::win32
