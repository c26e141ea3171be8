#include "tests/wine/driver/menus.h"

#include "tests/wine/driver/menu_agent.h"
#include "tests/wine/driver/window_info.h"

namespace driver {
namespace {

constexpr UINT kGetMenuHandle = 0x01E1;  // MN_GETHMENU: the menu that a window of class #32768 shows
constexpr wchar_t kMenuWindowClass[] = L"#32768";

struct SharedMemory {
    HANDLE mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kMenuMemorySize, kMenuMemory);
    wchar_t* text = static_cast<wchar_t*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0));
};

Rows SplitLines(std::wstring_view text) {
    Rows rows;
    while (!text.empty()) {
        const size_t end = text.find(L'\n');
        std::wstring_view line = text.substr(0, end);
        Row row;
        for (size_t tab = line.find(L'\t'); tab != std::wstring_view::npos; tab = line.find(L'\t')) {
            row.push_back(ToUtf8(line.substr(0, tab)));
            line.remove_prefix(tab + 1);
        }
        row.push_back(ToUtf8(line));
        rows.push_back(std::move(row));
        text.remove_prefix(end + 1);
    }
    return rows;
}

Rows ReadMenu(HWND window, WPARAM menu) {
    static const SharedMemory memory;
    static const HMODULE agent = LoadLibraryW(L"menu_agent.dll");
    const auto procedure =
        reinterpret_cast<HOOKPROC>(reinterpret_cast<void*>(agent ? GetProcAddress(agent, "MenuAgentHook") : nullptr));
    if (!memory.text || !procedure) throw Failure("menu_agent.dll is not beside the driver");
    constexpr wchar_t kUntouched = 0xFFFF;
    memory.text[0] = kUntouched;
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, procedure, agent, GetWindowThreadProcessId(window, nullptr));
    if (!hook) throw Failure("cannot hook the window's thread, error " + std::to_string(GetLastError()));
    try {
        SendWithLimit(window, RegisterWindowMessageW(kMenuMessage), menu, 0);
    } catch (const Failure&) {
        UnhookWindowsHookEx(hook);
        throw;
    }
    UnhookWindowsHookEx(hook);
    if (memory.text[0] == kUntouched) throw Failure("the menu agent did not answer");
    return SplitLines(memory.text);
}

}  // namespace

Rows MenuBar(HWND window) {
    return ReadMenu(window, 0);
}

Rows PopupMenu() {
    HWND shown = nullptr;
    Rows rows;
    // Menus that were shown before keep their window, hidden.
    while ((shown = FindWindowExW(nullptr, shown, kMenuWindowClass, nullptr)) != nullptr) {
        if (!IsWindowVisible(shown)) continue;
        const auto menu = static_cast<WPARAM>(SendWithLimit(shown, kGetMenuHandle, 0, 0));
        if (menu) return ReadMenu(shown, menu);
    }
    throw Failure("no menu is open");
}

}  // namespace driver
