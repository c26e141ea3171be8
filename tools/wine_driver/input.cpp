#include "tools/wine_driver/input.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tools/wine_driver/protocol.h"

namespace driver {
namespace {

struct NamedKey {
    std::string_view name;
    WORD key;
};

constexpr NamedKey kKeys[] = {
    {"ctrl", VK_CONTROL}, {"shift", VK_SHIFT},   {"alt", VK_MENU},  {"enter", VK_RETURN}, {"esc", VK_ESCAPE},
    {"tab", VK_TAB},      {"delete", VK_DELETE}, {"home", VK_HOME}, {"end", VK_END},      {"left", VK_LEFT},
    {"right", VK_RIGHT},  {"up", VK_UP},         {"down", VK_DOWN}, {"f10", VK_F10},
};

constexpr WORD kExtended[] = {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_HOME, VK_END, VK_DELETE, VK_APPS};

WORD KeyOf(std::string_view name) {
    for (const NamedKey& key : kKeys)
        if (key.name == name) return key.key;
    if (name.size() == 1) {
        const char c = name[0];
        if (c >= 'a' && c <= 'z') return static_cast<WORD>(c - 'a' + 'A');
        if (c >= '0' && c <= '9') return static_cast<WORD>(c);
    }
    if (name.starts_with("0x")) return static_cast<WORD>(std::strtoul(std::string(name).c_str(), nullptr, 16));
    throw Failure("no such key: " + std::string(name));
}

void Send(std::vector<INPUT> events) {
    if (SendInput(static_cast<UINT>(events.size()), events.data(), sizeof(INPUT)) != events.size())
        throw Failure("SendInput was refused, error " + std::to_string(GetLastError()));
}

INPUT MouseEvent(DWORD flags, DWORD data = 0) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = data;
    return input;
}

bool IsTip(HWND window) {
    wchar_t name[32] = {};
    return window && GetClassNameW(window, name, 32) && std::wstring_view(name) == TOOLTIPS_CLASSW;
}

}  // namespace

void MoveMouse(POINT screen) {
    // Absolute coordinates count in 65536ths of the screen; the added half a pixel survives the rounding back.
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    INPUT input = MouseEvent(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE);
    input.mi.dx = static_cast<LONG>((screen.x * 65536ll + 32768) / width);
    input.mi.dy = static_cast<LONG>((screen.y * 65536ll + 32768) / height);
    Send({input});
}

void PressButton(bool right, bool down) {
    constexpr DWORD kFlags[][2] = {{MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN},
                                   {MOUSEEVENTF_RIGHTUP, MOUSEEVENTF_RIGHTDOWN}};
    Send({MouseEvent(kFlags[right][down])});
}

void Click(POINT screen, bool right, int count) {
    MoveMouse(screen);
    for (int tries = 0; tries < 100 && IsTip(WindowFromPoint(screen)); ++tries) Sleep(10);
    for (int i = 0; i < count; ++i) {
        PressButton(right, true);
        PressButton(right, false);
    }
}

void Drag(POINT from, POINT to, bool right, int steps) {
    MoveMouse(from);
    PressButton(right, true);
    for (int i = 1; i <= steps; ++i) {
        Sleep(10);  // a hand takes its time; moves sent at once would be merged into one
        MoveMouse({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps});
    }
    Sleep(10);
    PressButton(right, false);
}

void TurnWheel(POINT screen, int notches) {
    MoveMouse(screen);
    Send({MouseEvent(MOUSEEVENTF_WHEEL, static_cast<DWORD>(notches) * WHEEL_DELTA)});
}

void PressKey(WORD virtualKey, bool down) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    if (std::ranges::find(kExtended, virtualKey) != std::end(kExtended)) input.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
    if (!down) input.ki.dwFlags |= KEYEVENTF_KEYUP;
    Send({input});
}

void StrikeKeys(std::string_view combination) {
    std::vector<WORD> keys;
    while (true) {
        const size_t plus = combination.find('+');
        keys.push_back(KeyOf(combination.substr(0, plus)));
        if (plus == std::string_view::npos) break;
        combination.remove_prefix(plus + 1);
    }
    for (WORD key : keys) PressKey(key, true);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) PressKey(*key, false);
}

void TypeText(std::wstring_view text) {
    for (wchar_t c : text) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wScan = static_cast<WORD>(c);
        input.ki.dwFlags = KEYEVENTF_UNICODE;
        INPUT release = input;
        release.ki.dwFlags |= KEYEVENTF_KEYUP;
        Send({input, release});
    }
}

bool Activate(HWND window) {
    const DWORD other = GetWindowThreadProcessId(window, nullptr), own = GetCurrentThreadId();
    AttachThreadInput(own, other, TRUE);
    BringWindowToTop(window);
    const bool done = SetForegroundWindow(window);
    AttachThreadInput(own, other, FALSE);
    return done;
}

}  // namespace driver
