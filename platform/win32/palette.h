// The colours of ordinary windows where they are not the system's own: those of dark windows, which Windows has no
// controls for. No other file names a colour for them. On the user-interface thread.
#pragma once

#include "platform/win32/win32.h"

namespace quenlox::win32 {

struct Palette {
    Color window;  // behind everything
    Color field;   // of boxes that hold a text or rows
    Color text;
    Color dim;  // text of what cannot be used at the moment
    Color border;
    Color face;     // of a button
    Color hotFace;  // under the pointer
    Color pressedFace;
    Color accent;  // ticks, knobs, what has the keyboard
    Color onAccent;
    Color chosen;         // a selected row
    Color restingChosen;  // the same while the keyboard is elsewhere
};

inline constexpr Palette kDarkPalette{
    .window = {32, 32, 32},
    .field = {43, 43, 43},
    .text = {240, 240, 240},
    .dim = {160, 160, 160},
    .border = {110, 110, 110},
    .face = {55, 55, 55},
    .hotFace = {70, 70, 70},
    .pressedFace = {42, 42, 42},
    .accent = {90, 175, 240},
    .onAccent = {16, 16, 16},
    .chosen = {0, 90, 158},
    .restingChosen = {72, 72, 72},
};

// What ordinary windows are to be drawn with now; null: as the system draws them. Dark windows are a choice of the user
// in Windows' settings, which a contrast theme overrules.
const Palette* PaletteOfUser();

// Of that colour, kept until the end.
HBRUSH BrushOf(Color color);

// A dark or a light title bar, where Windows has both.
void ShowTitleBar(HWND window, bool dark);

}  // namespace quenlox::win32
