// Controls drawn with a palette, for those that the system can draw in its own colours only. The control stays the
// system's in everything else: its state is read from it, and its keys, its role and its messages are untouched.
#pragma once

#include "platform/win32/palette.h"

namespace quenlox::win32 {

// Buttons, asked for by NM_CUSTOMDRAW.
void PaintPushButton(const NMCUSTOMDRAW& draw, bool isDefault, const Palette& palette);
enum class Mark { Tick, Dot };
void PaintMarkButton(const NMCUSTOMDRAW& draw, Mark mark, const Palette& palette);
void PaintToolButton(const NMTBCUSTOMDRAW& draw, const Palette& palette);
void PaintHeaderItem(const NMCUSTOMDRAW& draw, const Palette& palette);

// Whole windows, on their client area.
void PaintGroupBox(HWND window, HDC dc, const Palette& palette);
void PaintComboBox(HWND window, HDC dc, const Palette& palette);
void PaintTabs(HWND window, HDC dc, const Palette& palette);
void PaintProgress(HWND window, HDC dc, const Palette& palette);

// What a sunken edge is without a palette.
void PaintEdge(HWND window, const Palette& palette);

}  // namespace quenlox::win32
