#include "platform/win32/controls/native_list_view.h"

#include <uxtheme.h>
#include <windowsx.h>

#include <algorithm>

#include "forms/form.h"
#include "platform/win32/dark_paint.h"
#include "platform/win32/dropped_files.h"

namespace quenlox::win32 {
namespace {

DWORD StyleOf(const ListView& view) {
    DWORD style = WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS;
    if (!view.hasHeader) style |= LVS_NOCOLUMNHEADER;
    if (!view.manySelected) style |= LVS_SINGLESEL;
    return style;
}
// A tip of our own stands in place of that of a text which does not fit.
DWORD ExtendedStyleOf(const ListView& view) {
    return LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | (view.tipOf ? 0u : UINT{LVS_EX_LABELTIP});
}
// From so many changed rows on the list is not drawn between them.
constexpr std::size_t kManyRows = 32;
constexpr int kLongRange = 1000;
constexpr int kRowAir = 4;       // between the texts of two rows, pixels at 96 dots per inch
constexpr int kTextMargin = 16;  // on both sides of a text together
constexpr int kNoteGap = 12;     // in front of the note behind a text

}  // namespace

NativeListView::NativeListView(ControlHost& host, ListView& view)
    : NativeControl(host, view, {WC_LISTVIEWW, StyleOf(view), WS_EX_CLIENTEDGE}), view_(view) {
    const DWORD extended = ExtendedStyleOf(view);
    send(LVM_SETEXTENDEDLISTVIEWSTYLE, extended, static_cast<LPARAM>(extended));
    makeBoldFont();
    makeIcons();
    subclass();
    if (view.onFilesDropped) takeFiles();
    showColumns();
    showRowCount();
}

NativeListView::~NativeListView() {
    if (icons_) ImageList_Destroy(icons_);
}

// The pictures before the rows; without any, an empty one that gives the rows some air.
void NativeListView::makeIcons() {
    const int side = GetSystemMetricsForDpi(SM_CXSMICON, host().dpi());
    const int height = std::max(view_.iconOf ? side : 0, textSize(L"あ").height + scaled(kRowAir));
    HIMAGELIST made = ImageList_Create(view_.iconOf ? side : 1, height, ILC_COLOR32 | ILC_MASK, 2, 0);
    for (const UINT open : {0u, static_cast<UINT>(SHGFI_OPENICON)}) {  // in the order of ListView::Icon
        SHFILEINFOW info{};
        constexpr UINT kFlags = SHGFI_ICON | SHGFI_SMALLICON | SHGFI_USEFILEATTRIBUTES;
        if (!view_.iconOf || !SHGetFileInfoW(L"folder", FILE_ATTRIBUTE_DIRECTORY, &info, sizeof info, kFlags | open))
            continue;
        ImageList_AddIcon(made, info.hIcon);
        DestroyIcon(info.hIcon);
    }
    send(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(made));
    if (icons_) ImageList_Destroy(icons_);
    icons_ = made;
}

void NativeListView::makeBoldFont() {
    LOGFONTW look{};
    GetObjectW(font(), sizeof look, &look);
    look.lfWeight = FW_BOLD;
    bold_.reset(CreateFontIndirectW(&look));
}

// Only what is on the screen: the window would look at every row of the range.
void NativeListView::redrawRows() {
    const auto top = static_cast<int>(send(LVM_GETTOPINDEX));
    const int first = std::max(view_.firstChanged(), top);
    const int last = std::min(view_.lastChanged(), top + static_cast<int>(send(LVM_GETCOUNTPERPAGE)));
    if (first <= last) send(LVM_REDRAWITEMS, static_cast<WPARAM>(first), static_cast<LPARAM>(last));
}

int NativeListView::scaled(int pixelsAt96) const { return MulDiv(pixelsAt96, static_cast<int>(host().dpi()), 96); }

Size NativeListView::wish() const {
    return view_.hasHeader ? Size{horizontal(180), vertical(100)} : Size{horizontal(90), vertical(60)};
}

void NativeListView::fontChanged() {
    NativeControl::fontChanged();
    makeBoldFont();
    makeIcons();
    columns_.clear();
    showColumns();
}

void NativeListView::changed(Property property) {
    switch (property) {
        case Property::Items: showColumns(); break;
        case Property::Range: showRowCount(); break;
        case Property::Selection:
            if (!takingRow_) showSelection();
            ++selectionChanges_;
            break;
        case Property::Value:
            showFocus();
            if (view_.iconOf) InvalidateRect(window(), nullptr, FALSE);
            break;
        case Property::Picture: redrawRows(); break;
        case Property::Scroll: send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(view_.rowToShow()), LPARAM{FALSE}); break;
        default: NativeControl::changed(property);
    }
}

void NativeListView::showColumns() {
    const Applying guard(*this);
    const auto& wanted = view_.columns();
    while (columns_.size() > wanted.size()) {
        columns_.pop_back();
        send(LVM_DELETECOLUMN, columns_.size());
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const bool isNew = i >= columns_.size();
        if (!isNew && columns_[i] == wanted[i]) continue;
        std::wstring title = Wide(wanted[i].title);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
        column.pszText = title.data();
        column.cx = wanted[i].width == ListView::kAsWideAsNeeded ? 0 : scaled(wanted[i].width);
        column.fmt = wanted[i].rightAligned ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.iSubItem = static_cast<int>(i);
        send(isNew && static_cast<int>(i) >= Header_GetItemCount(ListView_GetHeader(window())) ? LVM_INSERTCOLUMNW
                                                                                               : LVM_SETCOLUMNW,
             i, &column);
        showSortMark(i);
    }
    columns_ = wanted;
    fitColumn();
}

void NativeListView::showSortMark(std::size_t column) {
    HWND header = ListView_GetHeader(window());
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    if (!header || !Header_GetItem(header, static_cast<int>(column), &item)) return;
    const int sorted = view_.columns()[column].sorted;
    item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | (sorted > 0 ? HDF_SORTUP : sorted < 0 ? HDF_SORTDOWN : 0);
    Header_SetItem(header, static_cast<int>(column), &item);
}

// As wide as the window; when the longest row needs more, that much.
void NativeListView::fitColumn() {
    if (columns_.size() != 1 || columns_[0].width != ListView::kAsWideAsNeeded) return;
    const Applying guard(*this);
    const int row = view_.longestRow ? view_.longestRow() : -1;
    int needed = 0;
    if (row >= 0 && view_.textOf) {
        const int icon = view_.iconOf ? GetSystemMetricsForDpi(SM_CXSMICON, host().dpi()) : 0;
        const int steps = view_.levelOf ? view_.levelOf(row) + 1 : 1;
        needed = textSize(Wide(view_.textOf(row, 0))).width + steps * icon + scaled(kTextMargin);
    }
    RECT client{};
    GetClientRect(window(), &client);
    send(LVM_SETCOLUMNWIDTH, 0, LPARAM{std::max<LONG>(client.right, needed)});
}

void NativeListView::showRowCount() {
    const Applying guard(*this);
    send(LVM_SETITEMCOUNT, static_cast<WPARAM>(view_.rowCount()), LPARAM{LVSICF_NOSCROLL});
    shown_.resize(static_cast<std::size_t>(view_.rowCount()), false);
    showSelection();
    showFocus();
    fitColumn();
    InvalidateRect(window(), nullptr, TRUE);
}

void NativeListView::showSelection() {
    const std::vector<bool>& wanted = view_.selection();
    if (applying() && shown_ == wanted) return;
    const Applying guard(*this);
    std::size_t different = 0;
    for (std::size_t i = 0; i < shown_.size(); ++i) different += shown_[i] != wanted[i];
    if (different == 0) return;
    if (different >= kManyRows) send(WM_SETREDRAW, FALSE);
    const auto set = [this](int row, bool selected) {
        LVITEMW item{};
        item.stateMask = LVIS_SELECTED;
        item.state = selected ? static_cast<UINT>(LVIS_SELECTED) : 0u;
        send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), &item);
    };
    const int selectedCount = view_.selectedCount();
    if (different >= kManyRows && selectedCount <= view_.rowCount() / 2) {
        // Fewer steps from none selected than from what is shown.
        set(-1, false);
        std::fill(shown_.begin(), shown_.end(), false);
    } else if (different >= kManyRows) {
        set(-1, true);
        std::fill(shown_.begin(), shown_.end(), true);
    }
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        if (shown_[i] != wanted[i]) set(static_cast<int>(i), wanted[i]);
    }
    shown_ = wanted;
    if (different >= kManyRows) {
        send(WM_SETREDRAW, TRUE);
        InvalidateRect(window(), nullptr, TRUE);
    }
}

void NativeListView::showFocus() {
    const auto shown = static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LPARAM{LVNI_FOCUSED}));
    if (shown == view_.focusedRow()) return;
    const Applying guard(*this);
    LVITEMW item{};
    item.stateMask = LVIS_FOCUSED;
    item.state = view_.focusedRow() >= 0 ? static_cast<UINT>(LVIS_FOCUSED) : 0u;
    send(LVM_SETITEMSTATE, static_cast<WPARAM>(view_.focusedRow() >= 0 ? view_.focusedRow() : shown), &item);
}

void NativeListView::takeItemChange(const NMLISTVIEW& change) {
    if (!(change.uChanged & LVIF_STATE)) return;
    const bool now = change.uNewState & LVIS_SELECTED;
    const bool selectionChanged = ((change.uNewState ^ change.uOldState) & LVIS_SELECTED) != 0;
    if (change.iItem < 0) {
        // All rows at once; what the old state was is not told.
        std::fill(shown_.begin(), shown_.end(), now);
        view_.selectAll(now);
        return;
    }
    const auto row = static_cast<std::size_t>(change.iItem);
    if (row >= shown_.size()) return;
    if ((change.uNewState & LVIS_FOCUSED) && !(change.uOldState & LVIS_FOCUSED)) view_.setFocusedRow(change.iItem);
    if (!alive() || !selectionChanged) return;
    shown_[row] = now;
    // Of a range the window may tell every single row: no look at all the others for each of them, unless a handler
    // has changed more than that row.
    const int before = selectionChanges_;
    takingRow_ = true;
    view_.setSelected(change.iItem, now);
    takingRow_ = false;
    if (alive() && selectionChanges_ > before + 1) showSelection();
}

// True for what may select or release a long range of rows.
bool NativeListView::selectsMany(UINT message, WPARAM w) const {
    if (view_.selectedCount() >= kLongRange) return true;
    return message == WM_KEYDOWN ? (w == VK_HOME || w == VK_END) && (ShiftState() & 1) : (w & MK_SHIFT) != 0;
}

// Drawing between the rows of a long range takes seconds.
LRESULT NativeListView::withoutDrawing(UINT message, WPARAM w, LPARAM l) {
    send(WM_SETREDRAW, FALSE);
    const LRESULT result = DefSubclassProc(window(), message, w, l);
    if (!alive()) return result;
    send(WM_SETREDRAW, TRUE);
    InvalidateRect(window(), nullptr, FALSE);
    return result;
}

void NativeListView::takeRange(const NMLVODSTATECHANGE& change) {
    if (!((change.uNewState ^ change.uOldState) & LVIS_SELECTED)) return;
    const bool now = change.uNewState & LVIS_SELECTED;
    const int last = std::min(change.iTo, static_cast<int>(shown_.size()) - 1);
    for (int i = std::max(change.iFrom, 0); i <= last; ++i) shown_[static_cast<std::size_t>(i)] = now;
    view_.setSelection(shown_);
}

void NativeListView::takeColumnWidth(const NMHEADERW& change) {
    if (applying() || !change.pitem || !(change.pitem->mask & HDI_WIDTH)) return;
    const auto column = static_cast<std::size_t>(change.iItem);
    if (column >= columns_.size() || columns_[column].width == ListView::kAsWideAsNeeded) return;
    const int width = MulDiv(change.pitem->cxy, 96, static_cast<int>(host().dpi()));
    columns_[column].width = width;
    view_.setColumnWidth(change.iItem, width);
}

void NativeListView::giveText(NMLVDISPINFOW& info) const {
    LVITEMW& item = info.item;
    const bool there = item.iItem >= 0 && item.iItem < view_.rowCount();
    if (item.mask & LVIF_IMAGE)
        item.iImage = there && view_.iconOf ? static_cast<int>(view_.iconOf(item.iItem)) : I_IMAGENONE;
    if (item.mask & LVIF_INDENT) item.iIndent = there && view_.levelOf ? view_.levelOf(item.iItem) : 0;
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0) return;
    if (!view_.textOf || !there) {
        item.pszText[0] = L'\0';
        return;
    }
    lstrcpynW(item.pszText, Wide(view_.textOf(item.iItem, item.iSubItem)).c_str(), item.cchTextMax);
}

LRESULT NativeListView::findRow(const NMLVFINDITEMW& search) const {
    if (!view_.find || !(search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !search.lvfi.psz) return -1;
    return view_.find(Narrow(search.lvfi.psz), search.iStart);
}

LRESULT NativeListView::customDraw(NMLVCUSTOMDRAW& draw) {
    switch (draw.nmcd.dwDrawStage) {
        case CDDS_PREPAINT: return CDRF_NOTIFYITEMDRAW | (mark_.shown() ? CDRF_NOTIFYPOSTPAINT : 0);
        case CDDS_ITEMPREPAINT: {
            const auto row = static_cast<int>(draw.nmcd.dwItemSpec);
            if (row >= view_.rowCount()) return CDRF_DODEFAULT;
            colorRow(draw, row);
            const LRESULT note = view_.noteOf ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT;
            if (!marked(row)) return note;
            SelectObject(draw.nmcd.hdc, bold_.get());
            return CDRF_NEWFONT | note;
        }
        case CDDS_ITEMPOSTPAINT: paintNote(draw.nmcd.hdc, static_cast<int>(draw.nmcd.dwItemSpec)); return 0;
        case CDDS_POSTPAINT: mark_.paint(draw.nmcd.hdc); return CDRF_DODEFAULT;
        default: return CDRF_DODEFAULT;
    }
}

void NativeListView::colorRow(NMLVCUSTOMDRAW& draw, int row) const {
    const bool dimmed = view_.dimmed && view_.dimmed(row);
    if (dimmed) draw.clrText = palette() ? ToColorRef(palette()->dim) : GetSysColor(COLOR_GRAYTEXT);
    if (!palette() || !view_.selected(row)) return;
    draw.nmcd.uItemState &= ~UINT{CDIS_SELECTED};  // or the system's colours of a selection count
    draw.clrTextBk = ToColorRef(GetFocus() == window() ? palette()->chosen : palette()->restingChosen);
    draw.clrText = ToColorRef(palette()->text);
}

std::optional<LRESULT> NativeListView::drawHeader(const NMCUSTOMDRAW& draw) const {
    if (!palette() || draw.hdr.hwndFrom != ListView_GetHeader(window())) return {};
    if (draw.dwDrawStage == CDDS_PREPAINT) {
        RECT all{};
        GetClientRect(draw.hdr.hwndFrom, &all);
        FillRect(draw.hdc, &all, BrushOf(palette()->face));
        return CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    }
    if (draw.dwDrawStage == CDDS_POSTPAINT) {
        // What lies behind the last heading has been drawn in the system's colour.
        RECT rest{}, last{};
        GetClientRect(draw.hdr.hwndFrom, &rest);
        if (Header_GetItemRect(draw.hdr.hwndFrom, Header_GetItemCount(draw.hdr.hwndFrom) - 1, &last))
            rest.left = last.right;
        FillRect(draw.hdc, &rest, BrushOf(palette()->face));
        return CDRF_DODEFAULT;
    }
    if (draw.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
    PaintHeaderItem(draw, *palette());
    return CDRF_SKIPDEFAULT;
}

void NativeListView::paletteChanged() {
    // The scroll bars of the system are dark where it has a theme of that name, and light elsewhere.
    SetWindowTheme(window(), palette() ? L"DarkMode_Explorer" : nullptr, nullptr);
    const COLORREF back = palette() ? ToColorRef(palette()->field) : GetSysColor(COLOR_WINDOW);
    send(LVM_SETBKCOLOR, 0, LPARAM{back});
    send(LVM_SETTEXTBKCOLOR, 0, LPARAM{back});
    send(LVM_SETTEXTCOLOR, 0, LPARAM{palette() ? ToColorRef(palette()->text) : GetSysColor(COLOR_WINDOWTEXT)});
    NativeControl::paletteChanged();
}

// Behind the text of the first column, as far as there is room in it.
void NativeListView::paintNote(HDC dc, int row) const {
    if (row >= view_.rowCount() || !view_.noteOf || !view_.textOf) return;
    const std::wstring note = Wide(view_.noteOf(row));
    if (note.empty()) return;
    RECT room{}, client{};
    room.left = LVIR_LABEL;
    send(LVM_GETITEMRECT, static_cast<WPARAM>(row), &room);
    GetClientRect(window(), &client);
    const std::wstring text = Wide(view_.textOf(row, 0));
    SIZE size{};
    {
        const Selected selected(dc, marked(row) ? bold_.get() : font());
        GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    }
    room.left += size.cx + scaled(kNoteGap);
    room.right = std::min(room.right, client.right) - scaled(kRowAir);
    if (room.left >= room.right) return;
    const bool chosen = view_.selected(row) && GetFocus() == window();
    const Selected selected(dc, font());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, palette() ? ToColorRef(chosen ? palette()->text : palette()->dim)
                               : GetSysColor(chosen ? COLOR_HIGHLIGHTTEXT : COLOR_GRAYTEXT));
    DrawTextW(dc, note.c_str(), -1, &room, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void NativeListView::showTip(LPARAM at) {
    LVHITTESTINFO hit{};
    hit.pt = {GET_X_LPARAM(at), GET_Y_LPARAM(at)};
    const auto row = static_cast<int>(send(LVM_SUBITEMHITTEST, 0, &hit));
    if (row == tipRow_) return;
    tipRow_ = row;
    view_.setTooltip(row >= 0 && row < view_.rowCount() ? view_.tipOf(row) : std::string{});
    SendMessageW(host().tooltips(), TTM_POP, 0, 0);  // it comes anew, beside this row
}

void NativeListView::paintEmptyText() const {
    const std::wstring text = Wide(view_.emptyText);
    RECT room{};
    GetClientRect(window(), &room);
    InflateRect(&room, -scaled(kTextMargin), 0);
    const int height = textSize(text, room.right - room.left).height;
    if (HWND header = ListView_GetHeader(window())) {
        RECT above{};
        GetWindowRect(header, &above);
        room.top += above.bottom - above.top;
    }
    room.top += std::max<LONG>(0, (room.bottom - room.top - height) / 3);
    HDC dc = GetDC(window());
    {
        const Selected selected(dc, font());
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, palette() ? ToColorRef(palette()->dim) : GetSysColor(COLOR_GRAYTEXT));
        DrawTextW(dc, text.c_str(), -1, &room, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    }
    ReleaseDC(window(), dc);
}

std::optional<LRESULT> NativeListView::notify(NMHDR& header) {
    switch (header.code) {
        case static_cast<UINT>(LVN_GETDISPINFOW): giveText(reinterpret_cast<NMLVDISPINFOW&>(header)); return 0;
        case static_cast<UINT>(LVN_ODFINDITEMW): return findRow(reinterpret_cast<NMLVFINDITEMW&>(header));
        case static_cast<UINT>(NM_CUSTOMDRAW): return customDraw(reinterpret_cast<NMLVCUSTOMDRAW&>(header));
        case static_cast<UINT>(LVN_ITEMCHANGED):
            if (!applying()) takeItemChange(reinterpret_cast<NMLISTVIEW&>(header));
            return 0;
        case static_cast<UINT>(LVN_ODSTATECHANGED):
            if (!applying()) takeRange(reinterpret_cast<NMLVODSTATECHANGE&>(header));
            return 0;
        case static_cast<UINT>(LVN_COLUMNCLICK):
            if (view_.onColumnClick) view_.onColumnClick(reinterpret_cast<NMLISTVIEW&>(header).iSubItem);
            return 0;
        case static_cast<UINT>(NM_DBLCLK): {
            const int row = reinterpret_cast<NMITEMACTIVATE&>(header).iItem;
            if (row >= 0 && view_.onDoubleClick) view_.onDoubleClick(row);
            return 0;
        }
        case static_cast<UINT>(LVN_KEYDOWN):
            if (view_.onKeyDown) view_.onKeyDown(reinterpret_cast<NMLVKEYDOWN&>(header).wVKey, ShiftState());
            return 0;
        case static_cast<UINT>(LVN_BEGINDRAG): beginDrag(); return 0;
        default: return {};
    }
}

void NativeListView::beginDrag() {
    const bool inList = view_.onRowsDragged != nullptr, toTabs = view_.onRowsDraggedToTab != nullptr;
    if (!inList && !toTabs) return dragOut();
    drag_.begin(
        window(), inList, toTabs, [this](const NativeListDrag::Target& target) { takeDrag(target); },
        view_.filesToDrag ? [this] { dragOut(); } : std::function<void()>());
}

// Rows that have only been shown to others go on where they came from.
void NativeListView::dragOut() {
    if (!view_.filesToDrag) return;
    const bool goesOnHere = view_.onRowsDragged || view_.onRowsDraggedToTab;
    const bool back = DragFiles(view_.filesToDrag(), goesOnHere ? GetAncestor(window(), GA_ROOT) : nullptr);
    if (back && alive()) beginDrag();
}

void NativeListView::takeFiles() {
    AcceptFiles(window());
    dropTarget_ = std::make_unique<FileDropTarget>(
        window(), [this](const POINT* at) { mark_.show(window(), at ? BorderAt(window(), *at) : -1); },
        [this](const std::vector<std::string>& files, POINT at) {
            if (alive() && view_.onFilesDropped) view_.onFilesDropped(files, BorderAt(window(), at));
        });
}

void NativeListView::takeDrag(const NativeListDrag::Target& target) {
    if (!target.tabs) return view_.onRowsDragged(target.before);
    for (const Control* control : view_.form().controls()) {
        const auto* tabs = dynamic_cast<const TabStrip*>(control);
        if (!tabs || host().windowOf(*tabs) != target.tabs) continue;
        view_.onRowsDraggedToTab(*tabs, target.tab);
        return;
    }
}

bool NativeListView::takesKey(WPARAM key) const {
    // Escape ends a drag before it closes the window.
    return key == VK_ESCAPE && drag_.active();
}

bool NativeListView::pressed() {
    const int row = view_.focusedRow();
    if (row < 0 || !view_.onDoubleClick) return false;
    view_.onDoubleClick(row);
    return true;
}

bool NativeListView::contextMenu(POINT screen) {
    if (!view_.onMouseDown) return true;
    POINT at = screen;
    if (screen.x == -1 && screen.y == -1) {
        // Asked for by a key: at the row with the focus.
        RECT row{};
        row.left = LVIR_LABEL;
        if (view_.focusedRow() >= 0) send(LVM_GETITEMRECT, static_cast<WPARAM>(view_.focusedRow()), &row);
        at = {row.left, row.bottom};
    } else {
        ScreenToClient(window(), &at);
    }
    view_.onMouseDown(2, ShiftState(), {static_cast<int>(at.x), static_cast<int>(at.y)});
    return true;
}

std::optional<LRESULT> NativeListView::headerMenu(HWND asked, POINT at) {
    if (asked != ListView_GetHeader(window()) || !view_.onHeaderMenu) return {};
    ScreenToClient(window(), &at);
    view_.onHeaderMenu({static_cast<int>(at.x), static_cast<int>(at.y)});
    return 0;
}

std::optional<LRESULT> NativeListView::intercept(UINT message, WPARAM w, LPARAM l) {
    if (drag_.active()) {
        if (const auto result = drag_.intercept(message, w, l)) return result;
    }
    switch (message) {
        case WM_MOUSEMOVE:
            if (view_.tipOf) showTip(l);
            return {};
        case WM_CONTEXTMENU: return headerMenu(reinterpret_cast<HWND>(w), {GET_X_LPARAM(l), GET_Y_LPARAM(l)});
        case WM_DROPFILES: {
            POINT at{};
            const std::vector<std::string> files = DroppedFiles(window(), reinterpret_cast<HDROP>(w), at);
            if (view_.onFilesDropped) view_.onFilesDropped(files, BorderAt(window(), at));
            return 0;
        }
        case WM_LBUTTONDOWN: {
            // The list view chooses the row first; it returns when the button is up or a drag has begun.
            const LRESULT result =
                selectsMany(message, w) ? withoutDrawing(message, w, l) : DefSubclassProc(window(), message, w, l);
            if (alive() && view_.onMouseDown) view_.onMouseDown(1, ShiftState(), {GET_X_LPARAM(l), GET_Y_LPARAM(l)});
            return result;
        }
        case WM_KEYDOWN:
            if (w == 'A' && ShiftState() == 2) {
                view_.selectAll(true);
                return 0;
            }
            if (selectsMany(message, w)) return withoutDrawing(message, w, l);
            return {};
        case WM_SIZE: {
            const LRESULT result = DefSubclassProc(window(), message, w, l);
            fitColumn();
            if (!view_.hasHeader) InvalidateRect(window(), nullptr, TRUE);  // another width moves what is on the screen
            return result;
        }
        case WM_PAINT: {
            const LRESULT result = DefSubclassProc(window(), message, w, l);
            if (view_.rowCount() == 0 && !view_.emptyText.empty()) paintEmptyText();
            return result;
        }
        case WM_LBUTTONUP:
        case WM_RBUTTONDOWN:
            if (selectsMany(message, w)) return withoutDrawing(message, w, l);
            return {};
        case WM_NOTIFY: {
            const auto& header = *reinterpret_cast<const NMHDR*>(l);
            if (header.code == static_cast<UINT>(HDN_ITEMCHANGEDW))
                takeColumnWidth(*reinterpret_cast<const NMHEADERW*>(l));
            if (header.code == static_cast<UINT>(NM_CUSTOMDRAW))
                return drawHeader(*reinterpret_cast<const NMCUSTOMDRAW*>(l));
            return {};
        }
        default: return {};
    }
}

std::unique_ptr<NativeControl> MakeNativeListView(ControlHost& host, Control& control) {
    if (auto* view = dynamic_cast<ListView*>(&control)) return std::make_unique<NativeListView>(host, *view);
    return nullptr;
}

}  // namespace quenlox::win32
