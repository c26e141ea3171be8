#include "libraries/files/wide_path.h"

#include <windows.h>

#include "text/encoding.h"

namespace vbmp3 {

std::wstring WidePath(std::string_view utf8) {
    static_assert(sizeof(wchar_t) == sizeof(char16_t));
    const std::u16string units = quenlox::Utf8ToUtf16(utf8);
    std::wstring path(units.begin(), units.end());
    for (wchar_t& c : path) {
        if (c == L'/') c = L'\\';
    }
    // A folder may not come closer to MAX_PATH than an 8.3 name is long.
    if (path.size() < MAX_PATH - 12 || path.starts_with(L"\\\\?\\")) return path;
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.empty()) return path;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

}  // namespace vbmp3
