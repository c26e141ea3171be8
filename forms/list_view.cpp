#include "forms/list_view.h"

#include <algorithm>
#include <utility>

namespace quenlox {
namespace {

template <typename Row, typename Length>
int LongestRow(const std::vector<Row>& rows, Length length) {
    const auto longest =
        std::max_element(rows.begin(), rows.end(), [&](const Row& a, const Row& b) { return length(a) < length(b); });
    return longest == rows.end() ? -1 : static_cast<int>(longest - rows.begin());
}

}  // namespace

void ListView::setColumns(std::vector<Column> columns) {
    columns_ = std::move(columns);
    changed(Property::Items);
}

void ListView::setColumnWidth(int column, int width) {
    if (column < 0 || column >= static_cast<int>(columns_.size())) return;
    int& current = columns_[static_cast<std::size_t>(column)].width;
    if (current == width) return;
    current = width;
    changed(Property::Items);
    if (onColumnWidth) onColumnWidth();
}

void ListView::markSorted(int column, int direction) {
    bool different = false;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const int sorted = static_cast<int>(i) == column ? direction : 0;
        different |= std::exchange(columns_[i].sorted, sorted) != sorted;
    }
    if (different) changed(Property::Items);
}

void ListView::setRowCount(int count) {
    selected_.resize(static_cast<std::size_t>(std::max(count, 0)), false);
    selectedCount_ = static_cast<int>(std::count(selected_.begin(), selected_.end(), true));
    if (focusedRow_ >= rowCount()) focusedRow_ = rowCount() - 1;
    changed(Property::Range);
}

void ListView::refreshRows(int first, int last) {
    firstChanged_ = std::max(first, 0);
    lastChanged_ = std::min(last, rowCount() - 1);
    if (firstChanged_ <= lastChanged_) changed(Property::Picture);
}

void ListView::setSelected(int row, bool selected) {
    if (row < 0 || row >= rowCount() || this->selected(row) == selected) return;
    selected_[static_cast<std::size_t>(row)] = selected;
    selectedCount_ += selected ? 1 : -1;
    changed(Property::Selection);
    if (onSelectionChange) onSelectionChange();
}

void ListView::setSelection(std::vector<bool> selection) {
    selection.resize(selected_.size(), false);
    if (selection == selected_) return;
    selected_ = std::move(selection);
    selectedCount_ = static_cast<int>(std::count(selected_.begin(), selected_.end(), true));
    changed(Property::Selection);
    if (onSelectionChange) onSelectionChange();
}

void ListView::selectAll(bool selected) { setSelection(std::vector<bool>(selected_.size(), selected)); }

void ListView::setFocusedRow(int row) {
    row = std::clamp(row, -1, rowCount() - 1);
    if (row == focusedRow_) return;
    focusedRow_ = row;
    changed(Property::Value);
}

void ListView::ensureVisible(int row) {
    if (row < 0 || row >= rowCount()) return;
    rowToShow_ = row;
    changed(Property::Scroll);
}

FileListBox::FileListBox(Form& form, std::string name) : ListView(form, std::move(name)) {
    hasHeader = false;
    setColumns({{"ファイル名", kAsWideAsNeeded}});
    textOf = [this](int row, int) { return files_[static_cast<std::size_t>(row)]; };
    longestRow = [this] { return LongestRow(files_, [](const std::string& file) { return file.size(); }); };
}

void FileListBox::setFiles(std::vector<std::string> files) {
    setRowCount(0);
    files_ = std::move(files);
    setRowCount(static_cast<int>(files_.size()));
}

DirListBox::DirListBox(Form& form, std::string name) : ListView(form, std::move(name)) {
    hasHeader = manySelected = false;
    setColumns({{"フォルダ", kAsWideAsNeeded}});
    textOf = [this](int row, int) { return entries_[static_cast<std::size_t>(row)].name; };
    levelOf = [this](int row) { return entries_[static_cast<std::size_t>(row)].level; };
    iconOf = [this](int row) {
        return path_.starts_with(entries_[static_cast<std::size_t>(row)].path) ? Icon::OpenFolder : Icon::Folder;
    };
    // A step to the right is about as wide as three letters.
    longestRow = [this] {
        return LongestRow(
            entries_, [](const Entry& entry) { return entry.name.size() + static_cast<std::size_t>(3 * entry.level); });
    };
}

void DirListBox::setPath(std::string path) {
    if (path == path_) return;
    path_ = std::move(path);
    changed(Property::Value);
    if (onChange) onChange();
}

void DirListBox::setEntries(std::vector<Entry> entries) {
    setRowCount(0);
    entries_ = std::move(entries);
    setRowCount(static_cast<int>(entries_.size()));
    const auto current =
        std::find_if(entries_.begin(), entries_.end(), [this](const Entry& e) { return e.path == path_; });
    if (current == entries_.end()) return;
    const auto row = static_cast<int>(current - entries_.begin());
    setSelected(row, true);
    setFocusedRow(row);
    ensureVisible(row);
}

void DriveListBox::setDrives(std::vector<std::string> drives) {
    drives_ = std::move(drives);
    changed(Property::Items);
}

void DriveListBox::setDrive(std::string drive) {
    if (drive == drive_) return;
    drive_ = std::move(drive);
    changed(Property::Value);
    if (onChange) onChange();
}

}  // namespace quenlox
