#include "platform/win32/windows/skinned_window.h"

#include <windowsx.h>

#include <algorithm>
#include <cstring>

#include "forms/form.h"
#include "platform/win32/paint.h"
#include "platform/win32/windows/accessible.h"
#include "platform/win32/windows/window_system.h"

namespace quenlox::win32 {
namespace {

constexpr WPARAM kTrayIconId = 1;
constexpr int kTipGap = 4;  // pixels between the standing tip and the place that it is for

// The union of the rectangles, for lists that the system does not take as they are.
HRGN UniteOneByOne(const std::vector<RECT>& rects) {
    HRGN whole = CreateRectRgn(0, 0, 0, 0);
    for (const RECT& r : rects) {
        const Owned<HRGN, detail::CloseObject<HRGN>> part(CreateRectRgnIndirect(&r));
        CombineRgn(whole, whole, part.get(), RGN_OR);
    }
    return whole;
}

HRGN MakeRegion(const Region& region, Scale scale) {
    std::vector<RECT> rects;
    Rect bound;
    for (const Rect& part : region) {
        const Rect shown = scale.out(part);
        rects.push_back(ToRect(shown));
        bound = Unite(bound, shown);
    }
    if (rects.empty()) return CreateRectRgn(0, 0, 0, 0);
    const std::size_t size = rects.size() * sizeof(RECT);
    std::vector<char> bytes(sizeof(RGNDATAHEADER) + size);
    auto* data = reinterpret_cast<RGNDATA*>(bytes.data());
    data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rects.size()), static_cast<DWORD>(size),
                 ToRect(bound)};
    std::memcpy(data->Buffer, rects.data(), size);
    HRGN made = ExtCreateRegion(nullptr, static_cast<DWORD>(bytes.size()), data);
    return made ? made : UniteOneByOne(rects);
}

}  // namespace

SkinnedWindow::~SkinnedWindow() {
    if (tooltip_) DestroyWindow(tooltip_);
}

void SkinnedWindow::create() {
    createWindow(kSkinnedClass, WS_POPUP | WS_SYSMENU | WS_MINIMIZEBOX, WS_EX_APPWINDOW, nullptr);
    makeTooltip();
}

void SkinnedWindow::realised() {
    FormWindow::realised();
    if (form()->topmost()) formChanged(FormProperty::Topmost);
    if (form()->visible()) formChanged(FormProperty::Visible);
}

Size SkinnedWindow::windowSize() const {
    const TwipsPerPixel twips = twipsPerPixel();
    return scale_.out(Size{TwipsToPixels(form()->width(), twips.x), TwipsToPixels(form()->height(), twips.y)});
}

Size SkinnedWindow::formSize(Size window) const {
    const TwipsPerPixel twips = twipsPerPixel();
    const Size size = scale_.in(window);
    return {PixelsToTwips(size.width, twips.x), PixelsToTwips(size.height, twips.y)};
}

void SkinnedWindow::formChanged(FormProperty property) {
    FormWindow::formChanged(property);
    if (property == FormProperty::Place && attached()) InvalidateRect(handle(), nullptr, FALSE);
    if (property == FormProperty::Picture && opacity_) invalidate(opacity_->rect());
}

void SkinnedWindow::setRegion(const Region& region) {
    region_ = region;
    hasRegion_ = true;
    applyRegion();
}

std::vector<AccessiblePart> SkinnedWindow::parts() const {
    return attached() ? form()->accessibleParts() : std::vector<AccessiblePart>();
}

void SkinnedWindow::later(std::function<void()> action) { system().post(std::move(action)); }

Rect SkinnedWindow::onScreen(const Rect& where) const {
    const Rect shown = scale_.out(where);
    POINT corner{shown.left, shown.top};
    ClientToScreen(handle(), &corner);
    return {static_cast<int>(corner.x), static_cast<int>(corner.y), shown.width, shown.height};
}

void SkinnedWindow::applyRegion() {
    if (opacity_) {
        SetWindowRgn(handle(), nullptr, FALSE);
        return;
    }
    if (!hasRegion_) return;
    HRGN made = MakeRegion(region_, scale_);
    if (!SetWindowRgn(handle(), made, TRUE)) DeleteObject(made);  // after success it belongs to the system
}

void SkinnedWindow::setScale(Scale scale) {
    if (scale == scale_ || !attached()) return;
    // While it is dragged the pointer stays on the same place of it.
    scaleGrip(scale.factor() / scale_.factor());
    scale_ = scale;
    placeWindow();
    applyRegion();
    if (IsWindowVisible(handle())) bringOntoScreen();
    InvalidateRect(handle(), nullptr, FALSE);
}

void SkinnedWindow::setOpacity(const Surface* opacity) {
    opacity_ = opacity;
    const LONG_PTR style = GetWindowLongPtrW(handle(), GWL_EXSTYLE);
    const bool layered = (style & WS_EX_LAYERED) != 0;
    if (layered != (opacity != nullptr)) {
        SetWindowLongPtrW(handle(), GWL_EXSTYLE, opacity ? style | WS_EX_LAYERED : style & ~WS_EX_LAYERED);
        if (!opacity) layer_.reset();
        applyRegion();
    }
    InvalidateRect(handle(), nullptr, FALSE);
    if (opacity_) invalidate(opacity_->rect());
}

void SkinnedWindow::invalidate(const Rect& where) {
    if (!opacity_) return FormWindow::invalidate(where);
    const bool pending = !layerStale_.empty();
    layerStale_ = Unite(layerStale_, where);
    if (pending) return;
    later([window = std::weak_ptr(shared_from_this())] {
        if (const auto that = std::static_pointer_cast<SkinnedWindow>(window.lock())) {
            that->paintLayer(std::exchange(that->layerStale_, Rect()));
        }
    });
}

bool SkinnedWindow::fitLayer(Size size) {
    if (layer_ && size == layerSize_) return true;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.width;
    info.bmiHeader.biHeight = -size.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    layer_.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    layerPixels_ = static_cast<Surface::Pixel*>(bits);
    layerSize_ = size;
    return static_cast<bool>(layer_);
}

void SkinnedWindow::paintLayer(const Rect& where) {
    const Surface* picture = attached() ? form()->picture() : nullptr;
    if (!picture || !opacity_ || picture->empty() || picture->rect() != opacity_->rect()) return;
    Size size{picture->width(), picture->height()};
    const bool whole = !layer_ || size != layerSize_;
    if (!fitLayer(size)) return;
    const Rect part = whole ? picture->rect() : Intersect(where, picture->rect());
    for (int y = part.top; y < part.bottom(); ++y) {
        for (int x = part.left; x < part.right(); ++x) {
            const Surface::Pixel alpha = opacity_->at(x, y) & 0xFF;
            const Color color = Surface::ToColor(picture->at(x, y));
            const auto times = [alpha](std::uint8_t channel) {
                return static_cast<std::uint8_t>(channel * alpha / 255);
            };
            layerPixels_[static_cast<std::size_t>(y) * size.width + x] =
                alpha << 24 | Surface::ToPixel({times(color.red), times(color.green), times(color.blue)});
        }
    }
    const OwnedDc dc(CreateCompatibleDC(nullptr));
    const HGDIOBJ before = SelectObject(dc.get(), layer_.get());
    POINT origin{};
    SIZE extent{size.width, size.height};
    BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    const RECT dirty = ToRect(part);
    UPDATELAYEREDWINDOWINFO info{};
    info.cbSize = sizeof info;
    info.psize = &extent;
    info.hdcSrc = dc.get();
    info.pptSrc = &origin;
    info.pblend = &blend;
    info.dwFlags = ULW_ALPHA;
    info.prcDirty = whole ? nullptr : &dirty;
    UpdateLayeredWindowIndirect(handle(), &info);
    SelectObject(dc.get(), before);
}

void SkinnedWindow::paint(const Rect& where) {
    if (opacity_) return paintLayer(where);
    const Surface* picture = form()->picture();
    HDC dc = picture ? GetDC(handle()) : nullptr;
    if (!dc) return;
    PaintSurface(dc, *picture, where);
    ReleaseDC(handle(), dc);
}

void SkinnedWindow::partChanged(int part, PartChange change) {
    constexpr DWORD kEvents[] = {EVENT_OBJECT_NAMECHANGE, EVENT_OBJECT_VALUECHANGE, EVENT_OBJECT_STATECHANGE,
                                 EVENT_OBJECT_REORDER};
    NotifyWinEvent(kEvents[static_cast<int>(change)], handle(), OBJID_CLIENT,
                   change == PartChange::All ? CHILDID_SELF : part + 1);
}

void SkinnedWindow::beginDrag() {
    held_ = 0;  // the system takes the mouse and keeps the release to itself
    FormWindow::beginDrag();
}

void SkinnedWindow::makeTooltip() {
    // Without an owner: Wine does not put a window above the others that owns one which is there already.
    tooltip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0,
                               0, 0, nullptr, nullptr, nullptr, nullptr);
    TTTOOLINFOW under = toolOf(false), standing = toolOf(true);
    under.lpszText = LPSTR_TEXTCALLBACKW;
    for (TTTOOLINFOW* tool : {&under, &standing}) {
        SendMessageW(tooltip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(tool));
    }
    SendMessageW(tooltip_, TTM_SETMAXTIPWIDTH, 0, 400);
}

// Of the tip for what is under the pointer, or of the one that stands where the form wants it.
TTTOOLINFOW SkinnedWindow::toolOf(bool standing) const {
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.hwnd = handle();
    if (!standing) return tool;
    tool.uId = 1;
    tool.uFlags = TTF_TRACK | TTF_ABSOLUTE | TTF_TRANSPARENT;  // what lies under it is clicked all the same
    return tool;
}

void SkinnedWindow::showTip(const std::string& text, Point at) {
    const bool shown = !standingTip_.empty();
    if (text.empty() && !shown) return;
    standingTip_ = Wide(text);
    TTTOOLINFOW tool = toolOf(true);
    tool.lpszText = standingTip_.data();
    if (!text.empty()) SendMessageW(tooltip_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    if (shown == text.empty()) SendMessageW(tooltip_, TTM_TRACKACTIVATE, !shown, reinterpret_cast<LPARAM>(&tool));
    if (text.empty()) return;
    RECT tip;
    GetWindowRect(tooltip_, &tip);  // only what is shown has its height
    const Rect place = onScreen({at.x, at.y, 1, 1});
    SendMessageW(tooltip_, TTM_TRACKPOSITION, 0, MAKELPARAM(place.left, place.top - (tip.bottom - tip.top) - kTipGap));
    TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, handle(), 0};
    TrackMouseEvent(&leave);
}

void SkinnedWindow::sized() {
    TTTOOLINFOW tool = toolOf(false);
    GetClientRect(handle(), &tool.rect);
    SendMessageW(tooltip_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
    const Size client = clientSize();
    form()->Form_Resize(client);
}

void SkinnedWindow::relayToTooltip(UINT message, WPARAM w, LPARAM l) {
    if (message == WM_MOUSEMOVE) {
        std::wstring tip = Wide(form()->Form_TooltipAt(scale_.in(Point{GET_X_LPARAM(l), GET_Y_LPARAM(l)})));
        if (tip != tip_) {
            // Another thing is under the pointer: its own waiting time begins.
            tip_ = std::move(tip);
            SendMessageW(tooltip_, TTM_POP, 0, 0);
        }
    }
    MSG relayed{};
    relayed.hwnd = handle();
    relayed.message = message;
    relayed.wParam = w;
    relayed.lParam = l;
    SendMessageW(tooltip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

// The icon in the notification area reports with the message of mouse moves, the number of the icon in w and a mouse
// message in l. A real move over the window never comes while the window is hidden; while it is shown, w 1 means the
// left button, so a report is one that says so although the button is up.
bool SkinnedWindow::isTrayEvent(WPARAM w, LPARAM l) const {
    if (w != kTrayIconId || l < WM_MOUSEFIRST || l > WM_MOUSELAST) return false;
    return !IsWindowVisible(handle()) || GetKeyState(VK_LBUTTON) >= 0;
}

void SkinnedWindow::press(int button, Point at, bool twice) {
    if (held_ == 0) {
        held_ = button;
        SetCapture(handle());
    }
    // The form takes the second press of a double click either as that or as a press like the first.
    if (twice) return form()->Form_DoubleClick(button, ShiftState(), at);
    form()->Form_MouseDown(button, ShiftState(), at);
}

void SkinnedWindow::release(int button, Point at) {
    if (held_ == button) {
        held_ = 0;
        if (GetCapture() == handle()) ReleaseCapture();
    }
    form()->Form_MouseUp(button, ShiftState(), at);
}

// The mouse was taken away while a button was held, by a message box for instance: for the form that is a release far
// from everything.
void SkinnedWindow::letGo() {
    if (held_ == 0) return;
    form()->Form_MouseUp(std::exchange(held_, 0), ShiftState(), {-32000, -32000});
}

FormWindow::Result SkinnedWindow::mouse(UINT message, WPARAM w, LPARAM l) {
    const Point at = scale_.in(Point{GET_X_LPARAM(l), GET_Y_LPARAM(l)});
    relayToTooltip(message, w, l);
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: press(1, at, message == WM_LBUTTONDBLCLK); return 0;
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK: press(2, at, message == WM_RBUTTONDBLCLK); return 0;
        case WM_LBUTTONUP: release(1, at); return 0;
        case WM_RBUTTONUP: release(2, at); return 0;
        default: {
            const int button = w & MK_LBUTTON ? 1 : w & MK_RBUTTON ? 2 : 0;
            form()->Form_MouseMove(button, ShiftState(), at);
            return 0;
        }
    }
}

FormWindow::Result SkinnedWindow::answer(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
        case WM_PAINT:
            if (opacity_) return {};
            PaintWindow(handle(), form()->picture(), Color{});
            return 0;
        case WM_ERASEBKGND: return TRUE;
        case WM_MOUSEMOVE:
            if (isTrayEvent(w, l)) {
                form()->Form_TrayIcon(static_cast<int>(l));
                return 0;
            }
            return mouse(message, w, l);
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_LBUTTONUP:
        case WM_RBUTTONUP: return mouse(message, w, l);
        case WM_MOUSELEAVE:
            if (held_ == 0) showTip("", {});
            return 0;
        case WM_CAPTURECHANGED:
            if (reinterpret_cast<HWND>(l) != handle()) letGo();
            return 0;
        case WM_NOTIFY: {
            auto* header = reinterpret_cast<NMHDR*>(l);
            if (header->code != static_cast<UINT>(TTN_GETDISPINFOW)) return {};
            reinterpret_cast<NMTTDISPINFOW*>(l)->lpszText = tip_.data();
            return 0;
        }
        case WM_KEYDOWN:
        case WM_KEYUP:
        case WM_SYSKEYUP: key(message, w); return {};
        case WM_SYSKEYDOWN: key(message, w); return {};
        case WM_SYSCOMMAND:
            // Alt alone would open the system menu and take the next key away from the player.
            if ((w & 0xFFF0) == SC_KEYMENU && l == 0) return 0;
            return {};
        case WM_CONTEXTMENU:
            // By the keyboard; the mouse has its own message. Under the left upper part of the window, as elsewhere.
            if (l != -1) return {};
            form()->Form_ContextMenu({clientSize().width / 4, clientSize().height / 4});
            return 0;
        case WM_GETOBJECT:
            if (static_cast<LONG>(l) != OBJID_CLIENT) return {};
            if (!accessible_) accessible_ = MakeAccessible(std::static_pointer_cast<SkinnedWindow>(shared_from_this()));
            return AnswerWithObject(w, accessible_.get());
        case WM_DPICHANGED:
            // The form keeps its pixels on every monitor, so its size in twips becomes another one; it says itself at
            // which scale it wants to be seen there.
            tellPlace(false);
            sized();
            return 0;
        default: return FormWindow::answer(message, w, l);
    }
}

}  // namespace quenlox::win32
