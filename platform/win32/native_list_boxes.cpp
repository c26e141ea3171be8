// The boxes of the folder browser: files, folders and drives.

#include <algorithm>
#include <vector>

#include "forms/list_view.h"
#include "platform/win32/dialog_window.h"

namespace quenlox::win32 {
namespace {

constexpr DWORD kListStyle = WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS;

class NativeFileList : public NativeControl {
  public:
    NativeFileList(DialogWindow& dialog, FileListBox& box)
        : NativeControl(dialog, box, {WC_LISTBOXW, kListStyle | LBS_EXTENDEDSEL, WS_EX_CLIENTEDGE}), box_(box) {
        showFiles();
        subclass();
    }
    Size wish() const override { return {horizontal(90), vertical(60)}; }
    void contextMenu(POINT screen) override {
        if (!box_.onContextMenu) return;
        if (screen.x == -1 && screen.y == -1) {
            // Asked for by a key: at the row with the focus.
            RECT row{};
            send(LB_GETITEMRECT, static_cast<WPARAM>(std::max(box_.listIndex(), 0)), &row);
            screen = {row.left, row.bottom};
            ClientToScreen(window(), &screen);
        }
        const Point at = dialog().fromScreen({static_cast<int>(screen.x), static_cast<int>(screen.y)});
        box_.onContextMenu(at);
    }
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM) override {
        if (message == WM_RBUTTONDOWN && send(LB_GETSELCOUNT) <= 1) {
            // As everywhere in Windows the right button chooses the row under it first.
            POINT at{};
            GetCursorPos(&at);
            ScreenToClient(window(), &at);
            const LRESULT row = send(LB_ITEMFROMPOINT, 0, MAKELPARAM(at.x, at.y));
            if (HIWORD(row) == 0 && LOWORD(row) < shown_.size()) {
                send(LB_SETSEL, FALSE, LPARAM{-1});
                send(LB_SETSEL, TRUE, LPARAM{LOWORD(row)});
                send(LB_SETCARETINDEX, LOWORD(row), LPARAM{FALSE});
                takeSelection();
            }
        }
        if (message == WM_KEYDOWN && box_.onKeyDown) box_.onKeyDown(static_cast<int>(w), ShiftState());
        return {};
    }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Items) showFiles();
        if (property == Property::Selection) showSelection();
        if (property == Property::Value && !taking_ && send(LB_GETCARETINDEX) != box_.listIndex()) {
            send(LB_SETCARETINDEX, static_cast<WPARAM>(box_.listIndex()), LPARAM{FALSE});
        }
    }
    void command(WORD code, WORD) override {
        if (code == LBN_SELCHANGE) {
            takeSelection();
        } else if (code == LBN_DBLCLK && box_.onDoubleClick) {
            box_.onDoubleClick();
        }
    }
    bool pressed() override { return box_.onDoubleClick ? (box_.onDoubleClick(), true) : false; }

  private:
    void showFiles() {
        send(WM_SETREDRAW, FALSE);
        send(LB_RESETCONTENT);
        send(LB_INITSTORAGE, box_.files().size(), static_cast<LPARAM>(box_.files().size() * 64));
        int widest = 0;
        std::size_t longest = 0;
        for (const std::string& file : box_.files()) {
            const std::wstring text = Wide(file);
            send(LB_ADDSTRING, 0, text.c_str());
            if (text.size() > longest) {
                longest = text.size();
                widest = textSize(text).width;
            }
        }
        send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest + 8));
        shown_.assign(box_.files().size(), false);
        showSelection();
        send(WM_SETREDRAW, TRUE);
        InvalidateRect(window(), nullptr, TRUE);
    }
    void showSelection() {
        if (taking_) return;
        for (std::size_t i = 0; i < shown_.size(); ++i) {
            const bool wanted = box_.selected(static_cast<int>(i));
            if (shown_[i] == wanted) continue;
            shown_[i] = wanted;
            send(LB_SETSEL, wanted, static_cast<LPARAM>(i));
        }
    }
    void takeSelection() {
        std::vector<int> chosen(static_cast<std::size_t>(std::max<LRESULT>(send(LB_GETSELCOUNT), 0)));
        send(LB_GETSELITEMS, chosen.size(), chosen.data());
        std::vector<bool> now(shown_.size(), false);
        for (const int row : chosen) {
            if (row >= 0 && row < static_cast<int>(now.size())) now[static_cast<std::size_t>(row)] = true;
        }
        const auto focused = static_cast<int>(send(LB_GETCARETINDEX));
        shown_ = now;
        taking_ = true;
        box_.setListIndex(focused);
        box_.setSelection(std::move(now));
        taking_ = false;
        if (alive()) showSelection();  // what a handler has changed meanwhile
    }

    FileListBox& box_;
    std::vector<bool> shown_;  // which rows of the window are selected
    bool taking_ = false;
};

// Folders with a picture, one step to the right for each level.
class NativeDirList : public NativeControl {
  public:
    NativeDirList(DialogWindow& dialog, DirListBox& box)
        : NativeControl(dialog, box, {WC_LISTBOXW, kListStyle | LBS_OWNERDRAWFIXED, WS_EX_CLIENTEDGE}), box_(box) {
        loadIcons();
        showEntries();
    }
    ~NativeDirList() override {
        for (HICON icon : {closed_, open_}) {
            if (icon) DestroyIcon(icon);
        }
    }
    Size wish() const override { return {horizontal(90), vertical(60)}; }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Items) showEntries();
        if (property == Property::Value) showPath();
    }
    void command(WORD code, WORD) override {
        if (code == LBN_DBLCLK) pressed();
    }
    bool pressed() override {
        const auto row = static_cast<int>(send(LB_GETCURSEL));
        if (row >= 0 && box_.onDoubleClick) box_.onDoubleClick(row);
        return true;
    }
    void fontChanged() override {
        NativeControl::fontChanged();
        send(LB_SETITEMHEIGHT, 0, static_cast<LPARAM>(rowHeight()));
    }
    void draw(const DRAWITEMSTRUCT& item) override {
        const bool selected = item.itemState & ODS_SELECTED;
        FillRect(item.hDC, &item.rcItem, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
        if (item.itemID < box_.entries().size()) {
            const DirListBox::Entry& entry = box_.entries()[item.itemID];
            const int side = rowHeight() - 2;
            RECT text = item.rcItem;
            text.left += 2 + entry.level * horizontal(4);
            HICON icon = onPath(entry) ? open_ : closed_;
            if (icon) DrawIconEx(item.hDC, text.left, text.top + 1, icon, side, side, 0, nullptr, DI_NORMAL);
            text.left += side + 4;
            SetBkMode(item.hDC, TRANSPARENT);
            SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
            DrawTextW(item.hDC, Wide(entry.name).c_str(), -1, &text, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        }
        if (item.itemState & ODS_FOCUS) DrawFocusRect(item.hDC, &item.rcItem);
    }

  private:
    int rowHeight() const { return vertical(10); }
    bool onPath(const DirListBox::Entry& entry) const { return box_.path().starts_with(entry.path); }
    void loadIcons() {
        const auto load = [](SHSTOCKICONID id) -> HICON {
            SHSTOCKICONINFO info{};
            info.cbSize = sizeof info;
            return SUCCEEDED(SHGetStockIconInfo(id, SHGSI_ICON | SHGSI_SMALLICON, &info)) ? info.hIcon : nullptr;
        };
        closed_ = load(SIID_FOLDER);
        open_ = load(SIID_FOLDEROPEN);
    }
    void showEntries() {
        send(WM_SETREDRAW, FALSE);
        send(LB_RESETCONTENT);
        for (const DirListBox::Entry& entry : box_.entries()) send(LB_ADDSTRING, 0, Wide(entry.name).c_str());
        showPath();
        send(WM_SETREDRAW, TRUE);
        InvalidateRect(window(), nullptr, TRUE);
    }
    void showPath() {
        const auto& entries = box_.entries();
        const auto found = std::find_if(entries.begin(), entries.end(), [this](const auto& e) { return e.path == box_.path(); });
        if (found != entries.end()) send(LB_SETCURSEL, static_cast<WPARAM>(found - entries.begin()));
    }

    DirListBox& box_;
    HICON closed_ = nullptr;
    HICON open_ = nullptr;
};

class NativeDriveBox : public NativeControl {
  public:
    NativeDriveBox(DialogWindow& dialog, DriveListBox& box)
        : NativeControl(dialog, box, {WC_COMBOBOXW, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_HASSTRINGS}), box_(box) {
        showDrives();
    }
    Size wish() const override { return {horizontal(60), vertical(14)}; }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Items) showDrives();
        if (property == Property::Value) showDrive();
    }
    void command(WORD code, WORD) override {
        const auto row = static_cast<std::size_t>(send(CB_GETCURSEL));
        if (code == CBN_SELCHANGE && row < box_.drives().size()) box_.setDrive(box_.drives()[row]);
    }

  private:
    void showDrives() {
        send(CB_RESETCONTENT);
        for (const std::string& drive : box_.drives()) send(CB_ADDSTRING, 0, Wide(drive).c_str());
        showDrive();
    }
    void showDrive() {
        const auto& drives = box_.drives();
        const auto found = std::find(drives.begin(), drives.end(), box_.drive());
        send(CB_SETCURSEL, found == drives.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(found - drives.begin()));
    }

    DriveListBox& box_;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeListBox(DialogWindow& dialog, Control& control) {
    if (auto* box = dynamic_cast<FileListBox*>(&control)) return std::make_unique<NativeFileList>(dialog, *box);
    if (auto* box = dynamic_cast<DirListBox*>(&control)) return std::make_unique<NativeDirList>(dialog, *box);
    if (auto* box = dynamic_cast<DriveListBox*>(&control)) return std::make_unique<NativeDriveBox>(dialog, *box);
    return nullptr;
}

}  // namespace quenlox::win32
