// Mouse and keyboard as a person uses them: everything goes through SendInput to whatever window is there.
#pragma once

#include <windows.h>

#include <string_view>

namespace driver {

void MoveMouse(POINT screen);
void PressButton(bool right, bool down);
// Presses and releases `count` times; two make a double click. The tip of a button may lie over the place: it goes when
// the mouse comes, which is waited for.
void Click(POINT screen, bool right, int count);
// Presses at `from`, moves in `steps` steps, releases at `to`. Each step is a move event of its own.
void Drag(POINT from, POINT to, bool right, int steps);
// notches > 0 turn away from the user.
void TurnWheel(POINT screen, int notches);

void PressKey(WORD virtualKey, bool down);
// "ctrl+shift+f5", "alt+left", "a", "0x5D": modifiers are held while the last key is struck.
void StrikeKeys(std::string_view combination);
// Types text as characters, whatever the keyboard layout is.
void TypeText(std::wstring_view text);

// Brings a window to the front and gives it the keyboard; false when the system refuses.
bool Activate(HWND window);

}  // namespace driver
