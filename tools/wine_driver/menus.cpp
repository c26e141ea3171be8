#include "tools/wine_driver/menus.h"

#include "tools/wine_driver/menu_agent.h"
#include "tools/wine_driver/window_info.h"

namespace driver {
namespace {

constexpr UINT kGetMenuHandle = 0x01E1;  // MN_GETHMENU: the menu that a window of class #32768 shows
constexpr wchar_t kMenuWindowClass[] = L"#32768";

struct SharedMemory {
    HANDLE mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kMenuMemorySize, kMenuMemory);
    wchar_t* text = static_cast<wchar_t*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0));
};

std::string ReadMenu(HWND window, WPARAM menu) {
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
    return ToUtf8(memory.text);
}

}  // namespace

std::string PopupMenu() {
    HWND shown = nullptr;
    // Menus that were shown before keep their window, hidden.
    while ((shown = FindWindowExW(nullptr, shown, kMenuWindowClass, nullptr)) != nullptr) {
        if (!IsWindowVisible(shown)) continue;
        const auto menu = static_cast<WPARAM>(SendWithLimit(shown, kGetMenuHandle, 0, 0));
        if (menu) return ReadMenu(shown, menu);
    }
    throw Failure("no menu is open");
}

}  // namespace driver
