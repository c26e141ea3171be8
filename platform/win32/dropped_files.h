// Files that are dropped on a window. On the user-interface thread.
#pragma once

#include <string>
#include <vector>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

std::vector<std::string> FilesOf(HDROP drop);                  // their names
std::string DropBytes(const std::vector<std::string>& files);  // what stands for them on the clipboard (CF_HDROP)
// The names of files that were dropped, and where in the client area of `window`; ends the drop.
std::vector<std::string> DroppedFiles(HWND window, HDROP drop, POINT& at);
// When a control of `window` that takes files lies under the place of the drop, it gets the message instead: some
// systems give every drop to the window around. False when there is none; then nothing has happened.
bool PassDropOn(HWND window, HDROP drop);
// Lets a window receive files, also from an Explorer with fewer rights.
void AcceptFiles(HWND window);

}  // namespace quenlox::win32
