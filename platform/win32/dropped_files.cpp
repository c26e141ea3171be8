#include "platform/win32/dropped_files.h"

#include <shlobj.h>

namespace quenlox::win32 {
namespace {

constexpr UINT kCopyGlobalData = 0x0049;  // carries the names of a drop between processes

}  // namespace

std::vector<std::string> FilesOf(HDROP drop) {
    std::vector<std::string> files;
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring name(DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
        name.resize(DragQueryFileW(drop, i, name.data(), static_cast<UINT>(name.size())));
        files.push_back(Narrow(name));
    }
    return files;
}

std::string DropBytes(const std::vector<std::string>& files) {
    std::wstring names;
    for (const std::string& file : files) (names += Wide(file)) += L'\0';
    names += L'\0';
    DROPFILES header{};
    header.pFiles = sizeof header;
    header.fWide = TRUE;
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    return bytes.append(reinterpret_cast<const char*>(names.data()), names.size() * sizeof(wchar_t));
}

std::vector<std::string> DroppedFiles(HWND window, HDROP drop, POINT& at) {
    std::vector<std::string> files = FilesOf(drop);
    // Outside the client area the place is one of the screen.
    if (!DragQueryPoint(drop, &at)) ScreenToClient(window, &at);
    DragFinish(drop);
    return files;
}

bool PassDropOn(HWND window, HDROP drop) {
    auto* head = static_cast<DROPFILES*>(GlobalLock(drop));
    if (!head) return false;
    POINT at = head->pt;
    if (head->fNC) ScreenToClient(window, &at);
    HWND control = ChildWindowFromPointEx(window, at, CWP_SKIPINVISIBLE | CWP_SKIPDISABLED);
    const bool takes = control && control != window && (GetWindowLongPtrW(control, GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    if (takes) {
        MapWindowPoints(window, control, &at, 1);
        head->pt = at;
        head->fNC = FALSE;
    }
    GlobalUnlock(drop);
    if (takes) SendMessageW(control, WM_DROPFILES, reinterpret_cast<WPARAM>(drop), 0);
    return takes;
}

void AcceptFiles(HWND window) {
    DragAcceptFiles(window, TRUE);
    for (const UINT message : {static_cast<UINT>(WM_DROPFILES), static_cast<UINT>(WM_COPYDATA), kCopyGlobalData}) {
        ChangeWindowMessageFilterEx(window, message, MSGFLT_ALLOW, nullptr);
    }
}

}  // namespace quenlox::win32
