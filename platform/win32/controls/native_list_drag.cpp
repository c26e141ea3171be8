#include "platform/win32/controls/native_list_drag.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

namespace quenlox::win32 {
namespace {

constexpr UINT_PTR kScrollTimer = 0x51;
constexpr UINT kScrollIntervalMs = 60;
constexpr int kMarkThickness = 2;

RECT RowRect(HWND list, int row) {
    RECT rect{};
    rect.left = LVIR_BOUNDS;
    SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&rect));
    return rect;
}

int Count(HWND list) { return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0)); }

bool IsOfClass(HWND window, const wchar_t* wanted) {
    wchar_t name[32] = L"";
    GetClassNameW(window, name, 32);
    return lstrcmpiW(name, wanted) == 0;
}

}  // namespace

int BorderAt(HWND list, POINT at) {
    const int count = Count(list);
    if (count == 0) return 0;
    const auto top = static_cast<int>(SendMessageW(list, LVM_GETTOPINDEX, 0, 0));
    const RECT first = RowRect(list, top);
    const int height = std::max<int>(1, first.bottom - first.top);
    const int rows = (at.y - first.top + height / 2) / height;
    return std::clamp(top + std::max(rows, 0), 0, count);
}

int InsertionMark::top() const {
    const int count = Count(list_);
    if (count == 0) return RowRect(list_, 0).top;
    return before_ < count ? RowRect(list_, before_).top : RowRect(list_, count - 1).bottom - kMarkThickness;
}

void InsertionMark::invalidate() const {
    if (!shown()) return;
    const int y = top();
    RECT rect{};
    GetClientRect(list_, &rect);
    rect.top = y - kMarkThickness;
    rect.bottom = y + 2 * kMarkThickness;
    InvalidateRect(list_, &rect, FALSE);
}

void InsertionMark::show(HWND list, int before) {
    if (before == before_) return;
    if (list_) invalidate();
    list_ = list;
    before_ = before;
    invalidate();
}

void InsertionMark::paint(HDC dc) const {
    if (!shown()) return;
    RECT rect{};
    GetClientRect(list_, &rect);
    rect.top = top();
    rect.bottom = rect.top + kMarkThickness;
    FillRect(dc, &rect, GetSysColorBrush(COLOR_HIGHLIGHT));
}

void NativeListDrag::begin(HWND list, bool inList, bool toTabs, std::function<void(const Target& target)> drop,
                           std::function<void()> leave) {
    list_ = list;
    target_ = {};
    inList_ = inList;
    toTabs_ = toTabs;
    drop_ = std::move(drop);
    leave_ = std::move(leave);
    SetCapture(list);
    SetTimer(list, kScrollTimer, kScrollIntervalMs, nullptr);
}

void NativeListDrag::setMark(int before) {
    target_.before = before;
    mark_.show(list_, before);
}

// Over a window that is not the list's the drag ends here, and goes on as whoever has begun it wants.
bool NativeListDrag::leaves(POINT at) {
    if (!leave_) return false;
    ClientToScreen(list_, &at);
    HWND under = WindowFromPoint(at);
    // A tip over the rows is a window of its own.
    if (under && (GetAncestor(under, GA_ROOT) == GetAncestor(list_, GA_ROOT) || IsOfClass(under, TOOLTIPS_CLASSW)))
        return false;
    const auto leave = std::exchange(leave_, nullptr);
    end(false);
    leave();
    return true;
}

void NativeListDrag::follow(POINT at) {
    if (Count(list_) == 0 || leaves(at)) return;
    findTab(at);
    setMark(target_.tabs || !inList_ ? -1 : BorderAt(list_, at));
    SetCursor(LoadCursorW(nullptr, target_.tabs ? IDC_HAND : IDC_ARROW));
}

// The tab under the pointer, when it is one of the window that the list stands in.
void NativeListDrag::findTab(POINT at) {
    target_.tabs = nullptr;
    if (!toTabs_) return;
    ClientToScreen(list_, &at);
    HWND under = WindowFromPoint(at);
    if (!IsOfClass(under, WC_TABCONTROLW) || GetParent(under) != GetParent(list_)) return;
    TCHITTESTINFO hit{at, 0};
    ScreenToClient(under, &hit.pt);
    target_.tab = static_cast<int>(SendMessageW(under, TCM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (target_.tab >= 0) target_.tabs = under;
}

void NativeListDrag::end(bool dropped) {
    HWND list = list_;
    const Target target = target_;
    setMark(-1);
    list_ = nullptr;
    KillTimer(list, kScrollTimer);
    if (GetCapture() == list) ReleaseCapture();
    leave_ = nullptr;
    const auto drop = std::exchange(drop_, nullptr);
    if (dropped && drop && (target.before >= 0 || target.tabs)) drop(target);
}

std::optional<LRESULT> NativeListDrag::intercept(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
        case WM_MOUSEMOVE: follow({GET_X_LPARAM(l), GET_Y_LPARAM(l)}); return 0;
        case WM_LBUTTONUP: end(true); return 0;
        case WM_RBUTTONDOWN: end(false); return 0;
        case WM_KEYDOWN:
            if (w != VK_ESCAPE) return {};
            end(false);
            return 0;
        case WM_CAPTURECHANGED: end(false); return {};
        case WM_TIMER: {
            if (w != kScrollTimer) return {};
            POINT at{};
            GetCursorPos(&at);
            ScreenToClient(list_, &at);
            RECT client{};
            GetClientRect(list_, &client);
            const RECT row = RowRect(list_, static_cast<int>(SendMessageW(list_, LVM_GETTOPINDEX, 0, 0)));
            const int height = row.bottom - row.top;
            if (target_.tabs) return 0;
            if (at.y < row.top) SendMessageW(list_, LVM_SCROLL, 0, -height);
            if (at.y >= client.bottom) SendMessageW(list_, LVM_SCROLL, 0, height);
            if (at.y < row.top || at.y >= client.bottom) follow(at);
            return 0;
        }
        default: return {};
    }
}

}  // namespace quenlox::win32
