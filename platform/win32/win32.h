// What every file of this folder shares: the Windows header, texts and owned handles. Nothing outside the folder may
// include it.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

// The header's macro would rename the method of that name.
#undef WinHelp

#include <string>
#include <string_view>
#include <utility>

#include "forms/geometry.h"

namespace quenlox::win32 {

std::wstring Wide(std::string_view utf8);
std::string Narrow(std::wstring_view utf16);

// The path in the form that the file functions take at any length.
std::wstring WidePath(std::string_view utf8);

// Owns a handle that is null when there is none.
template <typename Handle, void (*Close)(Handle)>
class Owned {
  public:
    Owned() = default;
    explicit Owned(Handle handle) noexcept : handle_(handle) {}
    Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other) reset(std::exchange(other.handle_, nullptr));
        return *this;
    }
    ~Owned() { reset(); }

    Handle get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }
    Handle release() noexcept { return std::exchange(handle_, nullptr); }
    void reset(Handle handle = nullptr) noexcept {
        if (handle_) Close(handle_);
        handle_ = handle;
    }

  private:
    Handle handle_ = nullptr;
};

namespace detail {
template <typename Object>
void CloseObject(Object object) {
    DeleteObject(object);
}
inline void CloseDc(HDC dc) { DeleteDC(dc); }
inline void CloseMenu(HMENU menu) { DestroyMenu(menu); }
inline void CloseWindow(HWND window) { DestroyWindow(window); }
inline void CloseLibrary(HMODULE module) { FreeLibrary(module); }
inline void CloseKernel(HANDLE handle) {
    if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}
}  // namespace detail

using OwnedFont = Owned<HFONT, detail::CloseObject<HFONT>>;
using OwnedBrush = Owned<HBRUSH, detail::CloseObject<HBRUSH>>;
using OwnedBitmap = Owned<HBITMAP, detail::CloseObject<HBITMAP>>;
using OwnedDc = Owned<HDC, detail::CloseDc>;
using OwnedMenu = Owned<HMENU, detail::CloseMenu>;
using OwnedWindow = Owned<HWND, detail::CloseWindow>;
using OwnedLibrary = Owned<HMODULE, detail::CloseLibrary>;
using OwnedHandle = Owned<HANDLE, detail::CloseKernel>;

// Selects an object into a device context for as long as it lives.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) noexcept : dc_(dc), old_(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc_, old_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

  private:
    HDC dc_;
    HGDIOBJ old_;
};

inline RECT ToRect(const Rect& r) { return {r.left, r.top, r.right(), r.bottom()}; }
inline Rect FromRect(const RECT& r) {
    return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right - r.left),
            static_cast<int>(r.bottom - r.top)};
}
inline COLORREF ToColorRef(Color c) { return RGB(c.red, c.green, c.blue); }
inline Color FromColorRef(COLORREF c) { return {GetRValue(c), GetGValue(c), GetBValue(c)}; }

// Shift state of the form layer: 1 shift, 2 control, 4 alt.
int ShiftState();

// "Name" or "Name(index)": under L"Quenlox." + this a window carries a property, so that another program finds it.
void NameWindow(HWND window, const std::string& name, int index);

}  // namespace quenlox::win32
