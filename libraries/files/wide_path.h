// UTF-8 paths as Windows takes them. Windows only. Pure: any thread.
#pragma once

#include <string>
#include <string_view>

namespace vbmp3 {

// UTF-16 with backslashes; made absolute and prefixed when it is too long for the plain calls (260 characters).
std::wstring WidePath(std::string_view utf8);

}  // namespace vbmp3
