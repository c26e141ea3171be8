#include "tests/wine/driver/window_info.h"

namespace driver {
namespace {

std::string Number(int64_t value) {
    return std::to_string(value);
}
std::string Handle(HWND window) {
    return Number(reinterpret_cast<intptr_t>(window));
}

Row Described(HWND window, bool topLevel) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[256] = {};
    GetClassNameW(window, name, 256);
    RECT place = {};
    GetWindowRect(window, &place);
    const HWND above = topLevel ? GetWindow(window, GW_OWNER) : GetParent(window);
    const int id = topLevel ? 0 : GetDlgCtrlID(window);
    return {Handle(window),
            Handle(above),
            Number(process),
            ToUtf8(name),
            Number(id),
            Number(place.left),
            Number(place.top),
            Number(place.right - place.left),
            Number(place.bottom - place.top),
            Number(IsWindowVisible(window)),
            Number(IsWindowEnabled(window)),
            Number(GetWindowLongW(window, GWL_STYLE) & 0xFFFFFFFFll),
            Number(GetWindowLongW(window, GWL_EXSTYLE) & 0xFFFFFFFFll),
            TextOf(window)};
}

struct Collector {
    Rows rows;
    bool topLevel;
};

BOOL CALLBACK Collect(HWND window, LPARAM parameter) {
    auto& collector = *reinterpret_cast<Collector*>(parameter);
    collector.rows.push_back(Described(window, collector.topLevel));
    return TRUE;
}

}  // namespace

HWND WindowOf(const Request& request, size_t index) {
    const auto window = reinterpret_cast<HWND>(static_cast<intptr_t>(request.number(index)));
    if (!IsWindow(window)) throw Failure("no such window: " + request.text(index));
    return window;
}

LRESULT SendWithLimit(HWND window, UINT message, WPARAM w, LPARAM l) {
    DWORD_PTR result = 0;
    SetLastError(0);
    if (!SendMessageTimeoutW(window, message, w, l, SMTO_NORMAL, 5000, &result))
        throw Failure("the window does not answer message " + std::to_string(message) + ", error " +
                      std::to_string(GetLastError()));
    return static_cast<LRESULT>(result);
}

std::string TextOf(HWND window) {
    // A hung window must not hang the listing of all the others.
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, 1000, &length)) return {};
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 1000,
                        &copied);
    text.resize(copied <= length ? copied : length);
    return ToUtf8(text);
}

Rows TopLevelWindows() {
    Collector collector{{}, true};
    EnumWindows(Collect, reinterpret_cast<LPARAM>(&collector));
    return collector.rows;
}

Rows Descendants(HWND parent) {
    Collector collector{{}, false};
    EnumChildWindows(parent, Collect, reinterpret_cast<LPARAM>(&collector));
    return collector.rows;
}

Row FocusState() {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    const HWND foreground = GetForegroundWindow();
    if (foreground) GetGUIThreadInfo(GetWindowThreadProcessId(foreground, nullptr), &info);
    return {Handle(foreground), Handle(info.hwndFocus), Handle(info.hwndCapture), Handle(info.hwndMenuOwner)};
}

Row WindowAt(POINT point) {
    const HWND window = WindowFromPoint(point);
    return {Handle(window), Handle(window ? GetAncestor(window, GA_ROOT) : nullptr)};
}

}  // namespace driver
