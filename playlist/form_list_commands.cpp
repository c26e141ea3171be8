// What changes the lists: adding, sorting, moving, removing, writing.
#include <algorithm>

#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "playlist/form_list.h"
#include "state/global_state.h"
#include "state/media_formats.h"
#include "text/paths.h"

namespace quenlox {
namespace {

// What is done before the command returns; the rest comes in slices, with a progress bar.
constexpr std::chrono::milliseconds kAtOnce{120};

constexpr std::size_t kLongestNames = 200;  // bytes of the servers that a question names

constexpr const char* kM3UFilter = "*.m3u";
constexpr const char* kM3UFilterName = "M3Uﾌｧｲﾙ";

}  // namespace

// Adding.

void FormList::startAdding(const std::string& step) {
    state_.Actions.note("list add to", state_.ListNo);
    adding_.setStep(step);
    lists_.beginStep(step);
    // What is added is not sorted in.
    for (int list = 0; list < kViews; ++list) {
        if (adding_.touches(list)) PlayView[list].markSorted(-1, 0);
    }
    addSome(kAtOnce);
    showBusy();
    showStatus();
    showTrouble();
    updateMenus();
    updateTimer();
}

// The timer goes on while a question is open; it is asked once all the same.
void FormList::addSome(std::chrono::microseconds budget) {
    adding_.step(budget);
    finishInsertion();
    while (!asking_ && !adding_.question().empty()) {
        std::string names;
        for (const std::string& server : adding_.question()) {
            if (names.size() > kLongestNames) {
                names += "\n　…";
                break;
            }
            names += "\n　\\\\" + (server.size() > kLongestNames ? "…" : server);
        }
        asking_ = true;
        const bool agreed =
            dialogs_.confirmLoss("M3Uファイルの中に、別のコンピューターにあるファイルの行があります。" + names +
                                 "\n追加すると、そのコンピューターに接続します。\nこれらの行も追加しますか？");
        asking_ = false;
        adding_.answer(agreed);
        adding_.step(budget);
        finishInsertion();
    }
}

void FormList::PlayView_FilesDropped(const std::vector<std::string>& files) {
    PlayView_FilesDroppedAt(files, view().rowCount());
}

// Among the found rows there is no place that the list would know.
void FormList::PlayView_FilesDroppedAt(const std::vector<std::string>& files, int before) {
    insertAt(searching() ? view().rowCount() : before);
    for (const std::string& path : files) adding_.addPath(path, state_.ListNo);
    startAdding();
}

void FormList::insertAt(int before) {
    if (!adding_.active() && before < view().rowCount())
        inserting_ = Insertion{state_.ListNo, before, view().rowCount()};
}

// Nobody sees what has not been added.
void FormList::showTrouble() {
    if (adding_.active()) return;
    if (const std::string trouble = adding_.takeTrouble(); !trouble.empty()) showNote(trouble);
}

// Rows that were to stand elsewhere come to their place, selected.
void FormList::finishInsertion() {
    if (!inserting_ || adding_.active()) return;
    const Insertion place = *std::exchange(inserting_, std::nullopt);
    ListView& to = PlayView[place.list];
    if (place.first >= to.rowCount()) return;
    Playlists::Selection added(static_cast<std::size_t>(to.rowCount()));
    std::fill(added.begin() + place.first, added.end(), true);
    lists_.moveBefore(place.list, place.before, added);
    to.setSelection(std::move(added));
    trackChanged();
    to.setFocusedRow(place.before);
    to.ensureVisible(place.before);
}

void FormList::Form_FilesDropped(const std::vector<std::string>& files, Point) { PlayView_FilesDropped(files); }

void FormList::menuAdd1_Click(int list) { addFromBrowser(list, true); }

void FormList::menuAdd2_Click(int list) { addFromBrowser(list, false); }

void FormList::addFromBrowser(int list, bool all) {
    if (list < 0 || list >= kViews) return;
    const std::string folder = folderPath();
    for (int row = 0; row < static_cast<int>(File1.files().size()); ++row) {
        if (!all && !File1.selected(row)) continue;
        const std::string& name = File1.files()[static_cast<std::size_t>(row)];
        if (IsM3U(name)) {
            // The entries of an M3U file go to the list on the screen, whichever list the command names.
            adding_.addM3U(folder, name, state_.ListNo);
        } else {
            adding_.addFile(folder + name, list);
        }
    }
    adding_.touch(list);
    File1.setSelection(std::vector<bool>(File1.files().size(), false));
    startAdding();
}

void FormList::addFiles() {
    FileDialog dialog;
    dialog.title = "追加するファイルの選択";
    dialog.filterName = "再生できるファイル";
    dialog.filter = MediaFilter() + ";" + kM3UFilter;
    dialog.folder = state_.CurrentFolder;
    const std::vector<std::string> chosen = dialogs_.openFiles(dialog);
    if (!chosen.empty()) PlayView_FilesDropped(chosen);
}

void FormList::addFolder(bool withSubfolders) {
    const auto folder = dialogs_.chooseFolder("追加するフォルダの選択", state_.CurrentFolder);
    if (!folder || folder->empty()) return;
    if (!withSubfolders) return PlayView_FilesDropped({*folder});
    adding_.addTree(*folder, state_.ListNo);
    startAdding();
}

void FormList::importM3U() {
    FileDialog dialog;
    dialog.title = "読み込むM3Uﾌｧｲﾙの選択";
    dialog.filterName = kM3UFilterName;
    dialog.filter = kM3UFilter;
    dialog.folder = state_.CurrentFolder;
    const std::vector<std::string> chosen = dialogs_.openFiles(dialog);
    if (chosen.empty()) return;
    for (const std::string& path : chosen) adding_.addM3U(FolderOf(path), FileNameOf(path), state_.ListNo);
    startAdding();
}

// Order.

void FormList::PlayView_ColumnClick(int column) {
    // A second click on the same header turns the order round.
    const bool again = view().columns()[static_cast<std::size_t>(column)].sorted > 0;
    requestSort({state_.ListNo, column, again, false, Playlists::SortBy::Value});
}

void FormList::menuSort_Click(int index) {
    if (folderShown()) return;
    if (index > 4) {
        edit("並替", [&](int list, Playlists::Selection& selection) { lists_.randomize(list, selection); });
        return;
    }
    // In file-name mode only the last two items are there, and stand for the first two columns.
    const int inTagMode = index == 2 ? static_cast<int>(kTimeColumn) : index;
    const int column = state_.ListType != 0 ? inTagMode : index - 3;
    if (column >= 0) requestSort({state_.ListNo, column, false, true});
}

void FormList::requestSort(const SortJob& sort) {
    state_.Actions.note("list sort", sort.column);
    sorting_ = sort;
    // A sort by texts needs those of every row.
    if (sort.column == kFileColumn || !lists_.fillSome(sort.list, kAtOnce)) finishSort();
    showBusy();
    updateTimer();
}

void FormList::finishSort() {
    const SortJob sort = *sorting_;
    sorting_.reset();
    Playlists::Selection selection = PlayView[sort.list].selection();
    lists_.beginStep("並替");
    inserting_.reset();
    lists_.sort(sort.list, sort.column, sort.descending, selection, sort.by);
    PlayView[sort.list].setSelection(std::move(selection));
    PlayView[sort.list].markSorted(sort.column, sort.descending ? -1 : 1);
    if (sort.setsDirty) lists_.markChanged();
    trackChanged();
    updateMenus();
}

void FormList::menuUpDn_Click(int index) {
    if (folderShown() || !hasRows_) return;
    state_.Actions.note(index == 0 ? "list up" : "list down");
    edit("移動", [&](int list, Playlists::Selection& selection) {
        if (index == 0) {
            lists_.moveUp(list, selection);
        } else {
            lists_.moveDown(list, selection);
        }
    });
    const auto& selection = view().selection();
    const auto first = std::find(selection.begin(), selection.end(), true);
    const auto last = std::find(selection.rbegin(), selection.rend(), true);
    if (first == selection.end()) return;
    view().ensureVisible(static_cast<int>(index == 0 ? first - selection.begin() : selection.rend() - last - 1));
}

// Removing.

void FormList::menuDelete_Click() {
    if (folderShown()) return;
    state_.Actions.note("list delete", view().selectedCount());
    removeRows("削除");
}

// The row behind them is selected then, as far as one is seen: the same key goes on with it.
void FormList::removeRows(std::string_view step) {
    const bool any = view().selectedCount() > 0;
    const auto& shown = shownView().selection();
    const int next = static_cast<int>(std::find(shown.begin(), shown.end(), true) - shown.begin());
    lists_.beginStep(step);
    lists_.removeSelected(state_.ListNo, view().selection());
    ListView& left = shownView();
    if (const int row = std::min(next, left.rowCount() - 1); any && row >= 0) {
        left.setFocusedRow(row);
        left.setSelected(row, true);
        left.ensureVisible(row);
    }
    updateMenus();
    showStatus();
}

void FormList::menuClear_Click() {
    if (folderShown()) return;
    state_.Actions.note("list clear", lists_.count(state_.ListNo));
    inserting_.reset();
    lists_.beginStep("初期化");
    lists_.clear(state_.ListNo);
    view().markSorted(-1, 0);
    updateMenus();
    showStatus();
}

// Taking back.

bool FormList::mayTurnBack(std::string_view step) const { return !step.empty() && !busy(); }

void FormList::menuUndo_Click() {
    if (!mayTurnBack(lists_.undoName())) return;
    const std::string note = "「" + std::string(lists_.undoName()) + "」を元に戻しました";
    showRestored(lists_.undo(), note);
}

void FormList::menuRedo_Click() {
    if (!mayTurnBack(lists_.redoName())) return;
    const std::string note = "「" + std::string(lists_.redoName()) + "」をやり直しました";
    showRestored(lists_.redo(), note);
}

void FormList::showRestored(const Playlists::Restored& restored, const std::string& note) {
    state_.Actions.note("list taken back", restored.list);
    TabList.setValue(restored.list);
    TabList_Click();
    view().markSorted(-1, 0);
    const auto first = std::find(restored.rows.begin(), restored.rows.end(), true);
    view().setSelection(restored.rows);
    if (searching()) showFound();
    trackChanged();
    if (first != restored.rows.end()) {
        const int row = static_cast<int>(first - restored.rows.begin());
        view().setFocusedRow(row);
        view().ensureVisible(row);
    }
    updateMenus();
    showNote(note);
}

// Writing.

void FormList::menuSave_Click() {
    FileDialog dialog;
    dialog.title = "保存M3Uﾌｧｲﾙ名の指定";
    dialog.filterName = kM3UFilterName;
    dialog.filter = kM3UFilter;
    dialog.folder = state_.CurrentFolder;
    const auto path = dialogs_.saveFile(dialog);
    if (!path || path->empty()) return;
    // The dialog has asked about the name as it was typed.
    const std::string name = Playlists::ExportName(*path);
    if (name != *path && files_.fileExists(name) &&
        !dialogs_.confirmLoss(FileNameOf(name) + " は既にあります。\n上書きしますか？"))
        return;
    const int list = folderShown() ? kFolderList : state_.ListNo;
    if (!lists_.ExportM3U(list, *path))
        dialogs_.message("M3Uファイルを保存できませんでした。\r保存先に書き込めるかを確かめてください",
                         MessageIcon::Stop);
}

}  // namespace quenlox
