#include "forms/list_view.h"

#include <algorithm>
#include <utility>

namespace quenlox {

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

void FileListBox::setFiles(std::vector<std::string> files) {
    files_ = std::move(files);
    selected_.assign(files_.size(), false);
    listIndex_ = -1;
    changed(Property::Items);
}

void FileListBox::setSelected(int row, bool selected) {
    if (row < 0 || row >= static_cast<int>(selected_.size()) || this->selected(row) == selected) return;
    selected_[static_cast<std::size_t>(row)] = selected;
    changed(Property::Selection);
    if (onClick) onClick();
}

void FileListBox::setSelection(std::vector<bool> selection) {
    selection.resize(selected_.size(), false);
    if (selection == selected_) return;
    selected_ = std::move(selection);
    changed(Property::Selection);
    if (onClick) onClick();
}

void FileListBox::setListIndex(int row) {
    row = std::clamp(row, -1, static_cast<int>(files_.size()) - 1);
    if (row == listIndex_) return;
    listIndex_ = row;
    changed(Property::Value);
}

void DirListBox::setPath(std::string path) {
    if (path == path_) return;
    path_ = std::move(path);
    changed(Property::Value);
    if (onChange) onChange();
}

void DirListBox::setEntries(std::vector<Entry> entries) {
    entries_ = std::move(entries);
    changed(Property::Items);
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
