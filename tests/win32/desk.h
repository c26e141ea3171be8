// What the tests of real windows share: a window system, waiting with a limit, and the pixels of the screen.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

#include "forms/form.h"
#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

namespace quenlox {

class Desk : public testing::Test {
  protected:
    // Handles messages until `done` holds; false when that takes longer than half a minute.
    bool waitFor(const std::function<bool()>& done) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!done()) {
            if (std::chrono::steady_clock::now() > end) return false;
            system->pumpMessages();
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        }
        return true;
    }
    void pump() { system->pumpMessages(); }

    static HWND WindowOf(const Form& form) { return reinterpret_cast<HWND>(form.host()->nativeHandle()); }
    // The window of a control, found as another program finds it: by its property.
    static HWND WindowOf(const Form& form, const std::wstring& control) {
        struct Search {
            std::wstring property;
            HWND found = nullptr;
        } search{L"Quenlox." + control};
        EnumChildWindows(
            WindowOf(form),
            [](HWND window, LPARAM data) -> BOOL {
                auto& wanted = *reinterpret_cast<Search*>(data);
                if (!GetPropW(window, wanted.property.c_str())) return TRUE;
                wanted.found = window;
                return FALSE;
            },
            reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    static std::wstring TextOf(HWND window) {
        std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
        return text;
    }
    static Color PixelOf(HWND window, int x, int y) {
        HDC dc = GetDC(window);
        const COLORREF color = GetPixel(dc, x, y);
        ReleaseDC(window, dc);
        return {GetRValue(color), GetGValue(color), GetBValue(color)};
    }
    static LPARAM At(int x, int y) { return MAKELPARAM(x, y); }

    std::unique_ptr<WindowSystem> system = MakeWindowSystem();
};

}  // namespace quenlox
