#include "tools/wine_driver/window_info.h"

namespace driver {
namespace {

Row Described(HWND window, bool topLevel) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[256] = {};
    GetClassNameW(window, name, 256);
    RECT place = {};
    GetWindowRect(window, &place);
    const HWND above = topLevel ? GetWindow(window, GW_OWNER) : GetParent(window);
    const int id = topLevel ? 0 : GetDlgCtrlID(window);
    return RowOf(window, above, process, ToUtf8(name), id, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, IsWindowVisible(window), IsWindowEnabled(window),
                 static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE)),
                 static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE)), TextOf(window));
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

HWND HandleOf(const Request& request, size_t index) {
    return reinterpret_cast<HWND>(static_cast<intptr_t>(request.number(index)));
}

HWND WindowOf(const Request& request, size_t index) {
    const HWND window = HandleOf(request, index);
    if (!IsWindow(window)) throw Failure("no such window: " + request.text(index));
    return window;
}

LRESULT SendWithLimit(HWND window, UINT message, WPARAM w, LPARAM l) {
    DWORD_PTR result = 0;
    SetLastError(0);
    if (!SendMessageTimeoutW(window, message, w, l, SMTO_NORMAL, 20000, &result))
        throw Failure("the window does not answer message " + std::to_string(message) + ", error " +
                      std::to_string(GetLastError()));
    return static_cast<LRESULT>(result);
}

std::string TextOf(HWND window) {
    // A hung window must not hang the listing of all the others.
    DWORD_PTR length = 0;
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, 3000, &length)) return {};
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 3000,
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

HWND Focus() {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(0, &info) ? info.hwndFocus : nullptr;
}

Row WindowAt(POINT point) {
    const HWND window = WindowFromPoint(point);
    return RowOf(window, window ? GetAncestor(window, GA_ROOT) : nullptr);
}

}  // namespace driver
