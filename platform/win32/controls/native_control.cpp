#include "platform/win32/controls/native_control.h"

#include <algorithm>

#include "forms/form.h"
#include "platform/win32/dark_paint.h"

namespace quenlox::win32 {
namespace {

// What makes a control draw itself at once, without WM_PAINT.
bool MayDraw(UINT message) {
    switch (message) {
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
        case WM_ENABLE:
        case WM_SETTEXT:
        case WM_SETFONT:
        case WM_UPDATEUISTATE:
        case WM_COMMAND:
        case WM_KEYDOWN:
        case WM_CHAR:
        case WM_MOUSEWHEEL:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_MOUSELEAVE:
        case WM_CAPTURECHANGED:
        case WM_TIMER:
        case PBM_SETPOS:
        case CB_SETCURSEL:
        case CB_SHOWDROPDOWN:
        case TCM_SETCURSEL: return true;
        default: return false;
    }
}

}  // namespace

NativeControl::NativeControl(ControlHost& host, Control& control, Style style) : host_(host), control_(control) {
    const auto& all = control.form().controls();
    const auto position = std::find(all.begin(), all.end(), &control) - all.begin();
    const DWORD states = (control.enabled() ? 0 : WS_DISABLED);
    window_ = CreateWindowExW(style.extended, style.className, Wide(control.caption()).c_str(),
                              WS_CHILD | style.style | states, 0, 0, 0, 0, host.hostWindow(),
                              reinterpret_cast<HMENU>(1000 + position), GetModuleHandleW(nullptr), nullptr);
    send(WM_SETFONT, reinterpret_cast<WPARAM>(font()), LPARAM{FALSE});
    NameWindow(window_, control.name(), control.index());
    if (!control.tooltip().empty()) setTooltip();
}

NativeControl::~NativeControl() {
    if (window_ && IsWindow(window_)) DestroyWindow(window_);
}

void NativeControl::removed() {
    removed_ = true;
    nameLabel_.reset();
    DestroyWindow(window_);
}

bool NativeControl::alive() const { return !removed_ && host_.alive(); }

bool NativeControl::shown() const { return control_.visible() && host_.onShownPage(control_); }

void NativeControl::changed(Property property) {
    switch (property) {
        case Property::Caption: showCaption(); break;
        case Property::Bounds: place(nullptr); break;
        case Property::Visible:
            ShowWindow(window_, shown() ? SW_SHOWNA : SW_HIDE);
            ShowWindow(nameLabel_.get(), shown() ? SW_SHOWNA : SW_HIDE);
            break;
        case Property::Enabled:
            // A disabled window keeps the keyboard, which would then be lost.
            if (!control_.enabled() && GetFocus() == window_) SendMessageW(host_.hostWindow(), WM_NEXTDLGCTL, 0, FALSE);
            EnableWindow(window_, control_.enabled());
            break;
        case Property::Font: fontChanged(); break;
        case Property::Color: InvalidateRect(window_, nullptr, TRUE); break;
        case Property::Focus:
            // In a window that is not in front it would bring that to the front.
            if (shown() && GetActiveWindow() == host_.hostWindow()) SetFocus(window_);
            break;
        case Property::Tooltip: setTooltip(); break;
        default: break;
    }
}

void NativeControl::place(HDWP* moves) {
    const Rect& to = control_.bounds();
    RECT from{};
    GetWindowRect(window_, &from);
    MapWindowPoints(nullptr, host_.hostWindow(), reinterpret_cast<POINT*>(&from), 2);
    // A control that goes elsewhere is drawn anew: what stands at its old place may be another one by then.
    const UINT copy = from.left == to.left && from.top == to.top ? 0u : UINT{SWP_NOCOPYBITS};
    const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | copy;
    if (moves && *moves) {
        *moves = DeferWindowPos(*moves, window_, nullptr, to.left, to.top, to.width, to.height, flags);
    } else {
        SetWindowPos(window_, nullptr, to.left, to.top, to.width, to.height, flags);
    }
}

HWND NativeControl::follow(HWND before, bool beginsGroup) {
    constexpr UINT kOrderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    if (captionUse() != CaptionUse::Shown) showCaption();
    if (nameLabel_) {
        SetWindowPos(nameLabel_.get(), before, 0, 0, 0, 0, kOrderOnly);
        before = nameLabel_.get();
    }
    SetWindowPos(window_, before, 0, 0, 0, 0, kOrderOnly);
    const LONG_PTR style = GetWindowLongPtrW(window_, GWL_STYLE) & ~LONG_PTR{WS_GROUP};
    SetWindowLongPtrW(window_, GWL_STYLE, style | (beginsGroup ? WS_GROUP : 0));
    return window_;
}

void NativeControl::showCaption() {
    const std::wstring text = Wide(control_.caption());
    const Applying guard(*this);
    if (captionUse() != CaptionUse::NameBesideValue) SetWindowTextW(window_, text.c_str());
    if (captionUse() == CaptionUse::Shown || text.empty()) return;
    if (!nameLabel_) {
        nameLabel_.reset(CreateWindowExW(0, WC_STATICW, nullptr, WS_CHILD | SS_NOPREFIX | (shown() ? WS_VISIBLE : 0), 0,
                                         0, 0, 0, host_.hostWindow(), nullptr, GetModuleHandleW(nullptr), nullptr));
    }
    SetWindowTextW(nameLabel_.get(), text.c_str());
}

HFONT NativeControl::font() const { return control_.font() == Font{} ? host_.font() : host_.fontFor(control_.font()); }

void NativeControl::fontChanged() { send(WM_SETFONT, reinterpret_cast<WPARAM>(font()), LPARAM{TRUE}); }

void NativeControl::paletteChanged() {
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

void NativeControl::setTooltip() {
    std::wstring text = Wide(control_.tooltip());
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = host_.hostWindow();
    tool.uId = reinterpret_cast<UINT_PTR>(window_);
    tool.lpszText = text.data();
    SendMessageW(host_.tooltips(), hasTooltip_ ? TTM_UPDATETIPTEXTW : TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    hasTooltip_ = true;
}

std::wstring NativeControl::windowText() const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
}

Size NativeControl::textSize(const std::wstring& text, int width) const {
    HDC dc = GetDC(window_);
    RECT rect{0, 0, width > 0 ? width : 10000, 0};
    {
        const Selected selected(dc, font());
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rect,
                  DT_CALCRECT | (width > 0 ? DT_WORDBREAK : 0u));
    }
    ReleaseDC(window_, dc);
    return {static_cast<int>(rect.right), static_cast<int>(rect.bottom)};
}

int NativeControl::horizontal(int units) const { return RoundHalfToEven(units * host_.units().x); }
int NativeControl::vertical(int units) const { return RoundHalfToEven(units * host_.units().y); }

void NativeControl::subclass() { SetWindowSubclass(window_, Subclass, 1, reinterpret_cast<DWORD_PTR>(this)); }

std::optional<LRESULT> NativeControl::interceptPaint(UINT message, WPARAM w, LPARAM l) {
    const Palette* colors = palette();
    if (!colors) return {};
    if (message == WM_NCPAINT && (GetWindowLongPtrW(window_, GWL_EXSTYLE) & WS_EX_CLIENTEDGE)) {
        DefSubclassProc(window_, message, w, l);  // scroll bars
        PaintEdge(window_, *colors);
        return 0;
    }
    if (!paintsItself()) return {};
    if (message == WM_ERASEBKGND) return TRUE;
    if (message == WM_PAINT) {
        PAINTSTRUCT area;
        if (HDC dc = BeginPaint(window_, &area)) paint(dc, *colors);
        EndPaint(window_, &area);
        return 0;
    }
    if (!MayDraw(message)) return {};
    const LRESULT result = DefSubclassProc(window_, message, w, l);
    if (alive()) InvalidateRect(window_, nullptr, FALSE);
    return result;
}

LRESULT CALLBACK NativeControl::Subclass(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                         DWORD_PTR data) noexcept {
    auto* native = reinterpret_cast<NativeControl*>(data);
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, Subclass, id);
        return DefSubclassProc(window, message, w, l);
    }
    try {
        const auto keep = native->host_.keepAlive();
        if (native->alive()) {
            if (const auto result = native->interceptPaint(message, w, l)) return *result;
            if (const auto result = native->intercept(message, w, l)) return *result;
        }
    } catch (...) {
    }
    return DefSubclassProc(window, message, w, l);
}

std::unique_ptr<NativeControl> MakeNativeControl(ControlHost& host, Control& control) {
    for (const auto make : {MakeNativeButton, MakeNativeText, MakeNativeSlider, MakeNativePicture, MakeNativeBar,
                            MakeNativeDriveBox, MakeNativeListView}) {
        if (auto made = make(host, control)) return made;
    }
    return nullptr;
}

}  // namespace quenlox::win32
