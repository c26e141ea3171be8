#include "platform/win32/windows/form_window.h"

#include <windowsx.h>

#include "forms/form.h"
#include "forms/placement.h"
#include "platform/win32/windows/menus.h"
#include "platform/win32/windows/window_system.h"

namespace quenlox::win32 {
namespace {

constexpr int kSnapDistance = 10;

struct MediaCommand {
    int command;  // the first of a key is what the key alone means
    WPARAM key;
};
constexpr MediaCommand kMediaCommands[] = {
    {APPCOMMAND_MEDIA_PLAY_PAUSE, VK_MEDIA_PLAY_PAUSE}, {APPCOMMAND_MEDIA_PLAY, VK_MEDIA_PLAY_PAUSE},
    {APPCOMMAND_MEDIA_PAUSE, VK_MEDIA_PLAY_PAUSE},      {APPCOMMAND_MEDIA_STOP, VK_MEDIA_STOP},
    {APPCOMMAND_MEDIA_NEXTTRACK, VK_MEDIA_NEXT_TRACK},  {APPCOMMAND_MEDIA_PREVIOUSTRACK, VK_MEDIA_PREV_TRACK},
};

}  // namespace

FormWindow::FormWindow(WindowSystemWin32& system, Form& form) : system_(system), form_(&form) {}

void FormWindow::RegisterClasses() {
    WNDCLASSEXW look{};
    look.cbSize = sizeof look;
    look.lpfnWndProc = Procedure;
    look.hInstance = GetModuleHandleW(nullptr);
    look.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    look.hIcon = LoadIconW(look.hInstance, MAKEINTRESOURCEW(1));
    if (!look.hIcon) look.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    look.style = CS_DBLCLKS | CS_OWNDC;  // it draws many times a second
    look.lpszClassName = kSkinnedClass;
    RegisterClassExW(&look);
    look.style = CS_DBLCLKS;
    look.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    look.lpszClassName = kDialogClass;
    RegisterClassExW(&look);
}

std::shared_ptr<FormWindow> FormWindow::FromHandle(HWND window) {
    if (!window || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) return nullptr;
    if (reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC)) != &Procedure) return nullptr;
    auto* form = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return form ? form->shared_from_this() : nullptr;
}

void FormWindow::createWindow(const wchar_t* className, DWORD style, DWORD extendedStyle, HWND owner) {
    CreateWindowExW(extendedStyle, className, Wide(form_->caption()).c_str(), style, 0, 0, 1, 1, owner, nullptr,
                    GetModuleHandleW(nullptr), this);
    NameWindow(window_, form_->name(), -1);
    AcceptFiles(window_);
    for (Control* control : form_->controls()) {
        if (auto* timer = dynamic_cast<Timer*>(control)) setTimer(*timer);
    }
}

void FormWindow::realised() {
    ready_ = true;
    placeWindow();
}

void FormWindow::detach() {
    form_ = nullptr;
    if (window_) DestroyWindow(window_);
}

void FormWindow::formChanged(FormProperty property) {
    if (!attached()) return;
    switch (property) {
        case FormProperty::Caption: SetWindowTextW(window_, Wide(form_->caption()).c_str()); break;
        case FormProperty::Place: placeWindow(); break;
        case FormProperty::Visible: show(form_->visible()); break;
        case FormProperty::Topmost:
            SetWindowPos(window_, form_->topmost() ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                         SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
            break;
        case FormProperty::Picture: InvalidateRect(window_, nullptr, FALSE); break;
        case FormProperty::Region:
        case FormProperty::Menu:
        case FormProperty::Layout: break;
    }
}

void FormWindow::controlChanged(Control& control, Property property) {
    if (!attached()) return;
    if (auto* timer = dynamic_cast<Timer*>(&control)) {
        if (property == Property::Enabled || property == Property::Range) setTimer(*timer);
    }
}

void FormWindow::controlRemoved(Control& control) {
    // The control is half gone already; its address is all that is used of it.
    if (window_) KillTimer(window_, reinterpret_cast<UINT_PTR>(&control));
}

void FormWindow::setTimer(Timer& timer) {
    const auto id = reinterpret_cast<UINT_PTR>(static_cast<Control*>(&timer));
    if (timer.enabled() && timer.interval() > 0) {
        SetTimer(window_, id, static_cast<UINT>(timer.interval()), nullptr);
    } else {
        KillTimer(window_, id);
    }
}

void FormWindow::timerDue(WPARAM id) {
    for (Control* control : form_->controls()) {
        if (reinterpret_cast<UINT_PTR>(control) != id) continue;
        auto* timer = dynamic_cast<Timer*>(control);
        // A message that was under way when the timer was switched off does not count.
        if (timer && timer->enabled() && timer->onTimer) timer->onTimer();
        return;
    }
}

void FormWindow::invalidate(const Rect& where) {
    const RECT rect = ToRect(where);
    InvalidateRect(window_, &rect, FALSE);
}

void FormWindow::beginDrag() {
    ReleaseCapture();
    POINT pointer{};
    GetCursorPos(&pointer);
    SendMessageW(window_, WM_NCLBUTTONDOWN, HTCAPTION, MAKELPARAM(pointer.x, pointer.y));
}

void FormWindow::popup(const Menu& menu, Point at) {
    const auto keep = shared_from_this();
    const Point pixel = scale().out(at);
    POINT screen{pixel.x, pixel.y};
    ClientToScreen(window_, &screen);
    PopupMenu(window_, menu, screen);
}

void FormWindow::bringToFront() {
    if (IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
    SetForegroundWindow(window_);
}

Point FormWindow::fromScreen(Point screen) const {
    POINT at{screen.x, screen.y};
    ScreenToClient(window_, &at);
    return scale().in(Point{static_cast<int>(at.x), static_cast<int>(at.y)});
}

Size FormWindow::clientSize() const {
    RECT rect{};
    GetClientRect(window_, &rect);
    return scale().in(Size{static_cast<int>(rect.right), static_cast<int>(rect.bottom)});
}

TwipsPerPixel FormWindow::twipsPerPixel() const { return TwipsFor(GetDpiForWindow(window_)); }

void FormWindow::captureMouse(bool on) {
    if (on) {
        SetCapture(window_);
    } else if (GetCapture() == window_) {
        ReleaseCapture();
    }
}

void FormWindow::show(bool visible) {
    if (!visible) {
        ShowWindow(window_, SW_HIDE);
        return;
    }
    bringOntoScreen();
    if (!form_->activates()) {
        ShowWindow(window_, SW_SHOWNOACTIVATE);
        return;
    }
    ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
    SetForegroundWindow(window_);
}

// Places are counted on one grid for the whole desktop, that of the primary monitor; sizes on the window's own.
void FormWindow::placeWindow() {
    const TwipsPerPixel grid = system_.twipsPerPixel();
    const bool before = std::exchange(placing_, true);
    const Size size = windowSize();
    SetWindowPos(window_, nullptr, TwipsToPixels(form_->left(), grid.x), TwipsToPixels(form_->top(), grid.y),
                 size.width, size.height, SWP_NOZORDER | SWP_NOACTIVATE);
    placing_ = before;
}

void FormWindow::tellPlace(bool byUser) {
    if (IsIconic(window_) || IsZoomed(window_)) return;
    RECT rect{};
    GetWindowRect(window_, &rect);
    const TwipsPerPixel grid = system_.twipsPerPixel();
    const Rect place = FromRect(rect);
    const int left = PixelsToTwips(place.left, grid.x), top = PixelsToTwips(place.top, grid.y);
    Size size = formSize({place.width, place.height});
    // A size that has not changed stays as exact as it was given.
    const Size pixels = windowSize();
    if (pixels.width == place.width) size.width = form_->width();
    if (pixels.height == place.height) size.height = form_->height();
    form_->placedByUser(left, top, size.width, size.height);
    if (byUser) form_->Form_Moved();
}

void FormWindow::bringOntoScreen() {
    if (IsIconic(window_)) return;
    RECT rect{};
    GetWindowRect(window_, &rect);
    const Rect place = FromRect(rect);
    const Rect area = system_.workArea(place);
    const Rect seen = form_->placeSuggested() ? PutInto(place, area) : BringOntoScreen(place, WorkAreas(), area);
    if (seen == place) return;
    const bool before = std::exchange(placing_, true);
    SetWindowPos(window_, nullptr, seen.left, seen.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    placing_ = before;
    tellPlace(false);
}

// The system counts the way of the pointer from the window's last place, which would let a snapped window stick and
// slip away from under the pointer; so the wanted place is counted anew from the pointer.
void FormWindow::moving(RECT& rect) const {
    POINT pointer{};
    GetCursorPos(&pointer);
    // The window may have another size by now, on a monitor of another resolution.
    RECT now{};
    GetWindowRect(window_, &now);
    Rect wanted = FromRect(now);
    wanted.left = pointer.x - grip_.x;
    wanted.top = pointer.y - grip_.y;
    rect = ToRect(SnapToEdges(
        wanted, system_.workArea({static_cast<int>(pointer.x), static_cast<int>(pointer.y), 1, 1}), kSnapDistance));
}

void FormWindow::scaleGrip(double factor) {
    grip_ = {RoundHalfToEven(grip_.x * factor), RoundHalfToEven(grip_.y * factor)};
}

void FormWindow::filesDropped(HDROP drop) {
    if (PassDropOn(window_, drop)) return;
    POINT at{};
    const std::vector<std::string> files = DroppedFiles(window_, drop, at);
    SetForegroundWindow(window_);
    form_->Form_FilesDropped(files, scale().in(Point{static_cast<int>(at.x), static_cast<int>(at.y)}));
}

FormWindow::Result FormWindow::wheel(WPARAM w, LPARAM l) {
    wheelRest_ += GET_WHEEL_DELTA_WPARAM(w);
    const int notches = wheelRest_ / WHEEL_DELTA;
    wheelRest_ -= notches * WHEEL_DELTA;
    if (notches != 0) form_->Form_Wheel(notches, fromScreen({GET_X_LPARAM(l), GET_Y_LPARAM(l)}));
    return 0;
}

bool FormWindow::key(UINT message, WPARAM virtualKey) {
    if (!attached()) return false;
    const auto code = static_cast<int>(virtualKey);
    const bool down = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
    for (const MediaCommand& media : kMediaCommands) {
        if (media.key != virtualKey) continue;
        // One that is held down comes again and again.
        if (down && std::exchange(mediaHeld_, virtualKey) != virtualKey) {
            mediaKey_ = virtualKey;
            form_->Form_AppCommand(media.command);
        }
        if (!down) mediaHeld_ = 0;
        return true;
    }
    if (down) {
        form_->keyTaken = false;
        form_->Form_KeyDown(code, ShiftState());
    } else {
        form_->Form_KeyUp(code, ShiftState());
    }
    return true;
}

FormWindow::Result FormWindow::appCommand(LPARAM l) {
    for (const MediaCommand& media : kMediaCommands) {
        if (media.command != GET_APPCOMMAND_LPARAM(l)) continue;
        // The command that follows a key which this window has seen is the same press.
        const bool seen = GET_DEVICE_LPARAM(l) == FAPPCOMMAND_KEY && std::exchange(mediaKey_, 0) == media.key;
        if (seen || form_->Form_AppCommand(media.command)) return TRUE;
        return {};
    }
    return {};
}

bool FormWindow::preview(MSG& message) {
    (void)message;
    return false;
}

FormWindow::Result FormWindow::answer(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
        case WM_TIMER: timerDue(w); return 0;
        case WM_CLOSE: form_->unload(); return 0;
        case WM_QUERYENDSESSION: return TRUE;
        case WM_ENDSESSION:
            if (w) system_.endSession();
            return 0;
        case WM_ACTIVATE:
            // Keys that are let go elsewhere are not told of.
            if (LOWORD(w) == WA_INACTIVE) form_->Form_KeyUp(0, 0);
            return {};
        case WM_MOVE:
            if (ready_ && !placing_) tellPlace(true);
            return {};
        case WM_SIZE:
            form_->minimisedByHost(w == SIZE_MINIMIZED);
            if (!ready_ || w == SIZE_MINIMIZED) return {};
            if (!placing_) tellPlace(false);
            sized();
            return {};
        case WM_ENTERSIZEMOVE: {
            RECT rect{};
            GetWindowRect(window_, &rect);
            GetCursorPos(&grip_);
            grip_ = {grip_.x - rect.left, grip_.y - rect.top};
            dragging_ = true;
            return {};
        }
        case WM_EXITSIZEMOVE: dragging_ = false; return {};
        case WM_MOVING:
            if (!dragging_) return {};
            moving(*reinterpret_cast<RECT*>(l));
            return TRUE;
        case WM_DISPLAYCHANGE:
            if (IsWindowVisible(window_)) bringOntoScreen();
            return {};
        case WM_DROPFILES: filesDropped(reinterpret_cast<HDROP>(w)); return 0;
        case WM_MOUSEWHEEL: return wheel(w, l);
        case WM_APPCOMMAND: return appCommand(l);
        case WM_HELP:
            if (form_->onHelp) form_->onHelp();
            return TRUE;
        default: return {};
    }
}

LRESULT CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    if (message == WM_NCCREATE) {
        auto* form = static_cast<FormWindow*>(reinterpret_cast<const CREATESTRUCTW*>(l)->lpCreateParams);
        form->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(form));
    }
    auto* form = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!form) return DefWindowProcW(window, message, w, l);
    const auto keep = form->shared_from_this();
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        keep->window_ = nullptr;
        return DefWindowProcW(window, message, w, l);
    }
    try {
        if (keep->attached()) {
            if (const Result result = keep->answer(message, w, l)) return *result;
        }
    } catch (...) {
        // Nothing may pass through the system's code. What failed stays undone.
    }
    return DefWindowProcW(window, message, w, l);
}

}  // namespace quenlox::win32
