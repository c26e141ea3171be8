// Dialogs that the system does not bring along.
#pragma once

#include <optional>
#include <string>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

// One line of text; nothing when the user cancels.
std::optional<std::wstring> InputBox(HWND owner, const std::wstring& title, const std::wstring& prompt,
                                     const std::wstring& text);

}  // namespace quenlox::win32
