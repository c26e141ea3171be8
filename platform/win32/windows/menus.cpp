#include "platform/win32/windows/menus.h"

namespace quenlox::win32 {
namespace {

void Fill(HMENU menu, const std::vector<MenuItem>& items, UINT& id);

void Append(HMENU menu, const MenuItem& item, UINT& id) {
    const UINT own = id++;
    OwnedMenu sub;
    if (!item.items.empty()) {
        sub.reset(CreatePopupMenu());
        Fill(sub.get(), item.items, id);
    }
    if (!item.visible) return;
    std::wstring text = Wide(item.caption);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE | MIIM_STRING | (sub ? MIIM_SUBMENU : 0);
    info.wID = own;
    info.fState =
        static_cast<UINT>((item.enabled ? MFS_ENABLED : MFS_GRAYED) | (item.checked ? MFS_CHECKED : MFS_UNCHECKED));
    info.fType = item.radio ? MFT_RADIOCHECK : MFT_STRING;
    if (item.caption == "-") {
        info.fType = MFT_SEPARATOR;
        info.fMask &= ~static_cast<UINT>(MIIM_STRING);
    }
    info.dwTypeData = text.data();
    info.hSubMenu = sub.get();
    if (InsertMenuItemW(menu, static_cast<UINT>(GetMenuItemCount(menu)), TRUE, &info)) {
        (void)sub.release();  // now the menu's
    }
}

void Fill(HMENU menu, const std::vector<MenuItem>& items, UINT& id) {
    for (const MenuItem& item : items) Append(menu, item, id);
}

const MenuItem* Find(const std::vector<MenuItem>& items, UINT& id, UINT wanted) {
    for (const MenuItem& item : items) {
        if (id++ == wanted) return &item;
        if (const MenuItem* found = Find(item.items, id, wanted)) return found;
    }
    return nullptr;
}

OwnedMenu Make(HMENU empty, const Menu& menu) {
    OwnedMenu made(empty);
    UINT id = kFirstMenuId;
    Fill(made.get(), menu.items, id);
    return made;
}

}  // namespace

OwnedMenu MakePopupMenu(const Menu& menu) { return Make(CreatePopupMenu(), menu); }
OwnedMenu MakeMenuBar(const Menu& menu) { return Make(CreateMenu(), menu); }

const MenuItem* FindMenuItem(const Menu& menu, UINT id) {
    UINT first = kFirstMenuId;
    return Find(menu.items, first, id);
}

void PopupMenu(HWND owner, const Menu& menu, POINT screen) {
    const OwnedMenu made = MakePopupMenu(menu);
    // Without the foreground a menu of the notification area stays open when the user clicks beside it; the empty
    // message makes it open anew at once the next time.
    SetForegroundWindow(owner);
    const auto chosen = static_cast<UINT>(
        TrackPopupMenuEx(made.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, owner, nullptr));
    PostMessageW(owner, WM_NULL, 0, 0);
    if (chosen == 0) return;
    if (const MenuItem* item = FindMenuItem(menu, chosen)) {
        // A copy, because what it does may replace the menu.
        const MenuItem copy = *item;
        copy.click();
    }
}

}  // namespace quenlox::win32
