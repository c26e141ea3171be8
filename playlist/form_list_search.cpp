// The search field: while words stand in it, the rows of the list that hold them are shown in the list's place.
#include <algorithm>

#include "forms/keys.h"
#include "forms/window_host.h"
#include "playlist/form_list.h"
#include "state/global_state.h"

namespace quenlox {

void FormList::makeSearch() {
    LabelFind.setCaption("検索(&I)");
    FindText.setTooltip("曲名、アーティスト名、アルバム名、ファイル名から探します (Ctrl+F)");
    FindText.onChange = [this] { FindText_Change(); };
    const auto rowOf = [this](int found) { return found_[static_cast<std::size_t>(found)]; };
    FindView.setColumns(view().columns());
    FindView.emptyText = "見つかりません";
    FindView.setVisible(false);
    FindView.textOf = [this, rowOf](int row, int column) { return textOf(state_.ListNo, rowOf(row), column); };
    FindView.noteOf = [this, rowOf](int row) { return noteOf(state_.ListNo, rowOf(row)); };
    FindView.tipOf = [this, rowOf](int row) { return tipOf(state_.ListNo, rowOf(row)); };
    FindView.marked = [this, rowOf](int row) { return isCurrent(state_.ListNo, rowOf(row)); };
    FindView.dimmed = [this, rowOf](int row) { return !lists_.playable(state_.ListNo, rowOf(row)); };
    FindView.onDoubleClick = [this](int row) { FindView_DblClick(row); };
    FindView.onColumnClick = view().onColumnClick;
    FindView.onHeaderMenu = view().onHeaderMenu;
    FindView.onMouseDown = view().onMouseDown;
    FindView.onKeyDown = view().onKeyDown;
    FindView.onFilesDropped = view().onFilesDropped;
    FindView.onRowsDraggedToTab = view().onRowsDraggedToTab;
    FindView.filesToDrag = view().filesToDrag;
    // What is selected among the found rows is selected in the list, where every command looks.
    FindView.onSelectionChange = [this] {
        if (selectingFound_) return;
        Playlists::Selection selection(static_cast<std::size_t>(view().rowCount()));
        for (int row = 0; row < FindView.rowCount(); ++row)
            selection[static_cast<std::size_t>(found_[static_cast<std::size_t>(row)])] = FindView.selected(row);
        view().setSelection(std::move(selection));
    };
}

void FormList::FindText_Change() {
    state_.Actions.note("list search", static_cast<int>(FindText.text().size()));
    view().selectAll(false);
    search();
    TabList_Click();
}

// Finds anew and shows it. Rows that were selected stay so where they are found.
void FormList::search() {
    searchStale_ = false;
    if (!searching()) {
        search_.forget();
        found_.clear();
        FindView.setRowCount(0);
        return;
    }
    found_ = search_.find(lists_, state_.ListNo, FindText.text());
    showFound();
}

void FormList::showFound() {
    Playlists::Selection selection;
    for (const int row : found_) selection.push_back(view().selected(row));
    selectingFound_ = true;
    FindView.selectAll(false);
    FindView.setRowCount(static_cast<int>(found_.size()));
    FindView.setSelection(std::move(selection));
    FindView.setFocusedRow(found_.empty() ? -1 : std::max(FindView.focusedRow(), 0));
    selectingFound_ = false;
    FindView.refreshAll();
    showStatus();
}

void FormList::FindView_DblClick(int row) {
    if (row >= 0 && row < FindView.rowCount()) PlayView_DblClick(found_[static_cast<std::size_t>(row)]);
}

// The list comes back, at the row that was chosen.
void FormList::endSearch() {
    const int row = FirstSelected(view());
    FindText.setText("");
    if (view().selected(row)) {
        view().setFocusedRow(row);
        view().ensureVisible(row);
    }
    view().focus();
}

// True for a key that belongs to the search.
bool FormList::searchKey(int key, int shift) {
    if (shift == kControl && key == 'F' && !folderShown()) {
        FindText.focus();
        return true;
    }
    if (shift != 0 || !searching()) return false;
    if (key == kKeyEscape) {
        endSearch();
        return true;
    }
    if (!FindText.focused) return false;
    if (key == kKeyDown) FindView.focus();
    if (key == kKeyEnter) FindView_DblClick(std::max(FindView.focusedRow(), 0));
    return key == kKeyDown || key == kKeyEnter;
}

}  // namespace quenlox
