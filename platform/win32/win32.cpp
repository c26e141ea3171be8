#include "platform/win32/win32.h"

#include "text/encoding.h"

namespace quenlox::win32 {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring Wide(std::string_view utf8) {
    const std::u16string text = Utf8ToUtf16(utf8);
    return {text.begin(), text.end()};
}

std::string Narrow(std::wstring_view utf16) {
    const std::u16string text(utf16.begin(), utf16.end());
    return Utf16ToUtf8(text);
}

std::wstring WidePath(std::string_view utf8) {
    std::wstring path = Wide(utf8);
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

int ShiftState() {
    const auto held = [](int key) { return GetKeyState(key) < 0; };
    return (held(VK_SHIFT) ? 1 : 0) | (held(VK_CONTROL) ? 2 : 0) | (held(VK_MENU) ? 4 : 0);
}

void NameWindow(HWND window, const std::string& name, int index) {
    std::string property = "Quenlox." + name;
    if (index >= 0) property += "(" + std::to_string(index) + ")";
    SetPropW(window, Wide(property).c_str(), reinterpret_cast<HANDLE>(1));
}

}  // namespace quenlox::win32
