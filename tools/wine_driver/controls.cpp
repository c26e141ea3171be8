#include "tools/wine_driver/controls.h"

#include <commctrl.h>

#include "tools/wine_driver/window_info.h"

namespace driver {
namespace {

constexpr int kTextRoom = 2048;  // characters read of one item

// Memory inside the process of a window: the common controls take pointers of their own process only.
class RemoteMemory {
  public:
    RemoteMemory(HWND window, size_t size) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        process_ = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
        if (process_) memory_ = VirtualAllocEx(process_, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
        if (!memory_) {
            if (process_) CloseHandle(process_);
            throw Failure("no memory in the other process");
        }
    }
    ~RemoteMemory() {
        VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
        CloseHandle(process_);
    }
    RemoteMemory(const RemoteMemory&) = delete;
    RemoteMemory& operator=(const RemoteMemory&) = delete;

    char* at(size_t offset) const { return static_cast<char*>(memory_) + offset; }
    LPARAM parameter(size_t offset = 0) const { return reinterpret_cast<LPARAM>(at(offset)); }

    template <class T>
    void write(const T& value, size_t offset = 0) {
        WriteProcessMemory(process_, at(offset), &value, sizeof value, nullptr);
    }
    template <class T>
    T read(size_t offset = 0) const {
        T value = {};
        ReadProcessMemory(process_, at(offset), &value, sizeof value, nullptr);
        return value;
    }
    std::string readText(size_t offset) const {
        std::wstring text(kTextRoom, L'\0');
        ReadProcessMemory(process_, at(offset), text.data(), text.size() * sizeof(wchar_t), nullptr);
        return ToUtf8(text.substr(0, text.find(L'\0')));
    }

  private:
    HANDLE process_ = nullptr;
    void* memory_ = nullptr;
};

Row OnScreen(HWND window, RECT place) {
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return RowOf(place.left, place.top, place.right - place.left, place.bottom - place.top);
}

int ColumnCount(HWND listView) {
    const auto header = reinterpret_cast<HWND>(SendWithLimit(listView, LVM_GETHEADER, 0, 0));
    return header ? static_cast<int>(SendWithLimit(header, HDM_GETITEMCOUNT, 0, 0)) : 1;
}

}  // namespace

Rows ListViewItems(HWND listView, int first, int count) {
    constexpr size_t kTextAt = 256;
    RemoteMemory memory(listView, kTextAt + kTextRoom * sizeof(wchar_t));
    const int all = static_cast<int>(SendWithLimit(listView, LVM_GETITEMCOUNT, 0, 0));
    const int columns = ColumnCount(listView);
    Rows rows;
    for (int item = first; item < all && item - first < count; ++item) {
        const auto state = static_cast<UINT>(
            SendWithLimit(listView, LVM_GETITEMSTATE, item, LVIS_SELECTED | LVIS_FOCUSED | LVIS_STATEIMAGEMASK));
        Row row = RowOf((state & LVIS_SELECTED) != 0, (state & LVIS_FOCUSED) != 0, (state & LVIS_STATEIMAGEMASK) >> 12);
        for (int column = 0; column < columns; ++column) {
            LVITEMW query = {};
            query.iSubItem = column;
            query.pszText = reinterpret_cast<wchar_t*>(memory.at(kTextAt));
            query.cchTextMax = kTextRoom;
            memory.write(query);
            memory.write(L'\0', kTextAt);
            SendWithLimit(listView, LVM_GETITEMTEXTW, item, memory.parameter());
            row.push_back(memory.readText(kTextAt));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

Rows ListViewColumns(HWND listView) {
    constexpr size_t kTextAt = 256;
    RemoteMemory memory(listView, kTextAt + kTextRoom * sizeof(wchar_t));
    Rows rows;
    for (int column = 0, count = ColumnCount(listView); column < count; ++column) {
        LVCOLUMNW query = {};
        query.mask = LVCF_TEXT | LVCF_WIDTH;
        query.pszText = reinterpret_cast<wchar_t*>(memory.at(kTextAt));
        query.cchTextMax = kTextRoom;
        memory.write(query);
        if (SendWithLimit(listView, LVM_GETCOLUMNW, column, memory.parameter()))
            rows.push_back(RowOf(memory.readText(kTextAt), memory.read<LVCOLUMNW>().cx));
    }
    return rows;
}

Row ListViewItemPlace(HWND listView, int item) {
    SendWithLimit(listView, LVM_ENSUREVISIBLE, item, FALSE);
    RemoteMemory memory(listView, sizeof(RECT));
    RECT query = {};
    query.left = LVIR_LABEL;
    memory.write(query);
    if (!SendWithLimit(listView, LVM_GETITEMRECT, item, memory.parameter())) throw Failure("no such item");
    return OnScreen(listView, memory.read<RECT>());
}

Rows ComboBoxItems(HWND comboBox) {
    Rows rows;
    const auto count = static_cast<int>(SendWithLimit(comboBox, CB_GETCOUNT, 0, 0));
    const auto selected = SendWithLimit(comboBox, CB_GETCURSEL, 0, 0);
    for (int i = 0; i < count; ++i) {
        std::wstring text(static_cast<size_t>(SendWithLimit(comboBox, CB_GETLBTEXTLEN, i, 0)), L'\0');
        SendWithLimit(comboBox, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        rows.push_back(RowOf(i == selected, ToUtf8(text)));
    }
    return rows;
}

Row TrackBarState(HWND trackBar) {
    return RowOf(SendWithLimit(trackBar, TBM_GETPOS, 0, 0), SendWithLimit(trackBar, TBM_GETRANGEMIN, 0, 0),
                 SendWithLimit(trackBar, TBM_GETRANGEMAX, 0, 0));
}

}  // namespace driver
