#include "platform/win32/palette.h"

#include <map>

namespace quenlox::win32 {
namespace {

bool ContrastTheme() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON);
}

bool DarkApps() {
    DWORD light = 1, size = sizeof light;
    RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                 L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &light, &size);
    return light == 0;
}

}  // namespace

const Palette* PaletteOfUser() { return DarkApps() && !ContrastTheme() ? &kDarkPalette : nullptr; }

HBRUSH BrushOf(Color color) {
    static std::map<COLORREF, OwnedBrush> brushes;
    OwnedBrush& brush = brushes[ToColorRef(color)];
    if (!brush) brush.reset(CreateSolidBrush(ToColorRef(color)));
    return brush.get();
}

void ShowTitleBar(HWND window, bool dark) {
    using SetAttribute = HRESULT(WINAPI*)(HWND, DWORD, LPCVOID, DWORD);
    constexpr DWORD kImmersiveDarkMode = 20;  // DWMWA_USE_IMMERSIVE_DARK_MODE, refused by systems before it
    static const OwnedLibrary library(LoadLibraryExW(L"dwmapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    if (!library) return;
    static const auto set =
        reinterpret_cast<SetAttribute>(reinterpret_cast<void*>(GetProcAddress(library.get(), "DwmSetWindowAttribute")));
    const BOOL value = dark;
    if (set) set(window, kImmersiveDarkMode, &value, sizeof value);
}

}  // namespace quenlox::win32
