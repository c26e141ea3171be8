#include "libraries/files/wide_path.h"

#include <windows.h>

namespace vbmp3 {

std::wstring widePath(const std::string& utf8) {
    const int count = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), int(utf8.size()), nullptr, 0);
    std::wstring path(size_t(count), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), int(utf8.size()), path.data(), count);
    for (wchar_t& c : path) {
        if (c == L'/') c = L'\\';
    }
    if (path.size() < MAX_PATH - 12 || path.starts_with(L"\\\\?\\")) return path;
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), DWORD(full.size()), full.data(), nullptr));
    if (full.empty()) return path;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

}  // namespace vbmp3
