#include "platform/win32/win32.h"

#include "libraries/files/wide_path.h"
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

std::wstring WidePath(std::string_view utf8) { return vbmp3::WidePath(utf8); }

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
