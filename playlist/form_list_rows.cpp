// What is done with rows besides changing their order: played next, copied to other programs and lists, looked at.
#include <algorithm>
#include <utility>

#include "platform/dialogs.h"
#include "platform/file_manager.h"
#include "playlist/form_list.h"
#include "state/global_state.h"
#include "state/media_formats.h"
#include "text/paths.h"

namespace quenlox {

// The selected rows; without any, the one with the focus.
Playlists::Selection FormList::chosenRows() const {
    Playlists::Selection rows = view().selection();
    const int row = FirstSelected(view());
    if (row >= 0) rows[static_cast<std::size_t>(row)] = true;
    return rows;
}

std::string FormList::chosenPath() const {
    return folderShown() ? std::string{} : lists_.path(state_.ListNo, FirstSelected(view()));
}

// The first column that is seen holds the marks of a row: the number in the queue, and where the player stops.
std::string FormList::marksOf(int list, int row, int column) const {
    const auto& columns = PlayView[list].columns();
    const auto seen = std::ranges::find_if(columns, [](const ListView::Column& each) { return each.width > 0; });
    if (column != (seen == columns.end() ? 0 : static_cast<int>(seen - columns.begin()))) return {};
    std::string marks;
    if (stopsAfter_ && isCurrent(list, row)) marks = "■ ";
    if (const auto position = lists_.queuePosition(list, row)) marks += "[" + std::to_string(*position + 1) + "] ";
    return marks;
}

// Rows without a title are told apart by their files. Lengths stand here where they have no column.
std::string FormList::noteOf(int list, int row) {
    if (!lists_.known(list, row)) return {};
    std::string note;
    if (lists_.text(list, row, kTitleColumn) == kNoTitle) note = FileNameOf(lists_.path(list, row));
    const std::string length = lists_.text(list, row, EntryColumn::kTimeColumn);
    if (!columnsOnScreen_ && timeColumnShown() && length != kUnknownText)
        note.append(note.empty() ? "" : "　").append(length);
    return note;
}

std::string FormList::tipOf(int list, int row) {
    const bool titled = lists_.known(list, row) && lists_.text(list, row, kTitleColumn) != kNoTitle;
    return (titled ? lists_.text(list, row, kTitleColumn) + "\n" : "") + lists_.path(list, row);
}

void FormList::menuPlay_Click() {
    if (!folderShown() && hasRows_) PlayView_DblClick(FirstSelected(view()));
}

void FormList::menuQueue_Click() {
    if (folderShown() || !hasRows_) return;
    state_.Actions.note("list queue", view().selectedCount());
    lists_.toggleQueued(state_.ListNo, chosenRows());
    if (onQueueChanged) onQueueChanged();
    FindView.refreshAll();
    showStatus();
}

void FormList::menuStopAfter_Click() {
    if (onStopAfter && !onStopAfter(!stopsAfter_)) showNote("再生中の曲がありません");
}

void FormList::setStopAfter(bool stops) {
    stopsAfter_ = stops;
    for (int list = 0; list < kViews; ++list) {
        const int row = state_.CurrentIndex[static_cast<std::size_t>(list)];
        PlayView[list].refreshRows(row, row);
    }
    FindView.refreshAll();
    updateMenus();
    showStatus();
}

// Other programs and lists.

std::vector<std::string> FormList::chosenPaths() const {
    const Playlists::Selection rows = chosenRows();
    std::vector<std::string> paths;
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        if (rows[static_cast<std::size_t>(row)]) paths.push_back(lists_.path(state_.ListNo, row));
    }
    return paths;
}

bool FormList::menuCopy_Click() {
    if (folderShown() || !hasRows_) return false;
    const std::vector<std::string> paths = chosenPaths();
    state_.Actions.note("list copy", static_cast<int>(paths.size()));
    if (!paths.empty() && fileManager_.copyFiles(paths)) return true;
    showNote("クリップボードが使用中のため、コピーできません");
    return false;
}

void FormList::menuCut_Click() {
    if (!menuCopy_Click()) return;
    view().setSelection(chosenRows());
    removeRows("切り取り");
}

// In front of the row with the focus; behind all when none has it, or words are being looked for.
void FormList::menuPaste_Click() {
    if (folderShown()) return;
    const std::vector<std::string> files = fileManager_.copiedFiles();
    if (files.empty()) return showNote("貼り付けるファイルがありません");
    state_.Actions.note("list paste", static_cast<int>(files.size()));
    insertAt(view().focusedRow() >= 0 && !searching() ? view().focusedRow() : view().rowCount());
    for (const std::string& path : files) {
        // What is a sound file by its name is not looked for: a server that is switched off would be waited for.
        if (MatchesMediaFilter(path)) {
            adding_.addFile(path, state_.ListNo);
        } else {
            adding_.addPath(path, state_.ListNo);
        }
    }
    startAdding("貼り付け");
}

void FormList::menuSend_Click(int list) {
    if (folderShown() || !hasRows_ || list < 0 || list >= kViews) return;
    const Playlists::Selection rows = chosenRows();
    const auto count = std::count(rows.begin(), rows.end(), true);
    state_.Actions.note("list send to", list);
    lists_.beginStep("リストへ送る");
    lists_.copyRows(state_.ListNo, rows, list);
    PlayView[list].markSorted(-1, 0);
    updateMenus();
    showNote(std::to_string(count) + "曲を" + TabList.tabs()[static_cast<std::size_t>(list)] + "に追加しました");
}

void FormList::PlayView_RowsDraggedToTab(int tab) {
    if (tab != state_.ListNo) menuSend_Click(tab);
}

// Looking at a row.

void FormList::menuTag_Click() {
    if (const std::string path = chosenPath(); !path.empty() && onEditTag) onEditTag(path);
}

void FormList::menuShowFolder_Click() {
    const std::string path = chosenPath();
    if (!path.empty() && !fileManager_.showInFolder(path)) showNote("フォルダを開けません");
}

void FormList::menuSameArtist_Click() {
    const int row = FirstSelected(view());
    if (folderShown() || row < 0) return;
    const std::string artist = lists_.text(state_.ListNo, row, kNameColumn);
    if (artist == kNoName || artist == kUnknownName) return showNote("アーティスト名がありません");
    FindText.setText(artist);
}

void FormList::menuProperties_Click() {
    const std::string path = chosenPath();
    if (!path.empty())
        dialogs_.message(lists_.describe(path, fileManager_.sizeOf(path)), MessageIcon::Information, "プロパティ");
}

// The texts of the selected rows are read again, or those of all.
void FormList::menuReread_Click() {
    if (folderShown()) return;
    const Playlists::Selection rows = view().selection();
    state_.Actions.note("list read again", view().selectedCount());
    lists_.forgetTexts(state_.ListNo, view().selectedCount() > 0 ? rows : Playlists::Selection(rows.size(), true));
    showStatus();
}

}  // namespace quenlox
