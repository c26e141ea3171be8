#include "tools/wine_driver/menu_agent.h"

#include <string>

namespace {

void Describe(HMENU menu, int depth, std::wstring& out) {
    const int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        wchar_t caption[512] = {};
        MENUITEMINFOW item = {};
        item.cbSize = sizeof item;
        item.fMask = MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING | MIIM_FTYPE;
        item.dwTypeData = caption;
        item.cch = 512;
        if (!GetMenuItemInfoW(menu, position, TRUE, &item)) continue;
        RECT place = {};
        GetMenuItemRect(nullptr, menu, position, &place);
        UINT state = item.fState & (MFS_CHECKED | MFS_DISABLED | MFS_DEFAULT);
        if (item.fType & MFT_SEPARATOR) state |= 0x800;
        if (item.hSubMenu) state |= 0x10;
        const long numbers[] = {depth,      position,  static_cast<long>(item.wID), static_cast<long>(state),
                                place.left, place.top, place.right - place.left,    place.bottom - place.top};
        for (long number : numbers) out += std::to_wstring(number) + L'\t';
        for (const wchar_t* c = caption; *c; ++c) out += *c == L'\t' ? L'|' : *c;
        out += L'\n';
        if (item.hSubMenu) Describe(item.hSubMenu, depth + 1, out);
    }
}

void Publish(const std::wstring& text) {
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_WRITE, FALSE, driver::kMenuMemory);
    if (!mapping) return;
    if (auto* memory = static_cast<wchar_t*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0))) {
        const size_t room = driver::kMenuMemorySize / sizeof(wchar_t) - 1;
        const size_t length = text.size() < room ? text.size() : room;
        text.copy(memory, length);
        memory[length] = L'\0';
        UnmapViewOfFile(memory);
    }
    CloseHandle(mapping);
}

}  // namespace

extern "C" __declspec(dllexport) LRESULT CALLBACK MenuAgentHook(int code, WPARAM w, LPARAM l) {
    static const UINT message = RegisterWindowMessageW(driver::kMenuMessage);
    if (code == HC_ACTION) {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(l);
        if (sent.message == message) {
            std::wstring text;
            Describe(reinterpret_cast<HMENU>(sent.wParam), 0, text);
            Publish(text);
        }
    }
    return CallNextHookEx(nullptr, code, w, l);
}
