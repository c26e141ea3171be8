// Lists of many rows: the virtual list view of the play lists, and the browser's boxes of files, folders and drives.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/control.h"

namespace quenlox {

// A list view that asks for the texts of the rows it shows and keeps nothing but which rows are selected.
class ListView : public Control {
  public:
    struct Column {
        std::string title;
        int width = 100;  // pixels at 96 dots per inch; 0 hides it, kAsWideAsNeeded the longest text
        bool rightAligned = false;
        int sorted = 0;  // the mark in its header: 1 ascending, -1 descending, 0 none
        bool operator==(const Column&) const = default;
    };

    static constexpr int kAsWideAsNeeded = -1;  // of a list with one column: at least as wide as the window
    enum class Icon { Folder, OpenFolder };

    using Control::Control;

    bool hasHeader = true;     // these are read when the window is made
    bool manySelected = true;  // several rows can be selected
    std::string emptyText;     // stands in the window while there are no rows; may have several lines

    std::function<std::string(int row, int column)> textOf;  // set by the form; called for visible rows only
    std::function<std::string(int row)> noteOf;              // stands grey behind the text of the first column
    std::function<std::string(int row)> tipOf;               // shown while the pointer rests on the row
    std::function<bool(int row)> marked;                     // drawn bold: the entry being played
    std::function<bool(int row)> dimmed;                     // drawn grey: it cannot be used at the moment
    std::function<void(int row)> onDoubleClick;
    std::function<void(int column)> onColumnClick;
    std::function<void()> onColumnWidth;         // a column has become wider or narrower
    std::function<void(Point at)> onHeaderMenu;  // the menu of the headings is asked for
    std::function<void()> onSelectionChange;
    std::function<void(int button, int shift, Point at)> onMouseDown;
    std::function<void(int key, int shift)> onKeyDown;                                      // Windows virtual-key codes
    std::function<void(const std::vector<std::string>& files, int before)> onFilesDropped;  // before that row
    std::function<void(int before)> onRowsDragged;                          // the selected rows, to before that row
    std::function<void(const TabStrip& tabs, int tab)> onRowsDraggedToTab;  // or to a tab of the form
    std::function<std::vector<std::string>()>
        filesToDrag;  // the selected rows for another list or program: whole paths
    std::function<int(const std::string& prefix, int from)> find;  // row for typed letters, -1 none
    std::function<Icon(int row)> iconOf;                           // none without it
    std::function<int(int row)> levelOf;                           // how many icons a row stands to the right
    std::function<int()> longestRow;                               // for kAsWideAsNeeded, -1 none

    const std::vector<Column>& columns() const { return columns_; }
    void setColumns(std::vector<Column> columns);
    void setColumnWidth(int column, int width);
    void markSorted(int column, int direction);  // of that column only; direction as in Column::sorted
    int rowCount() const { return static_cast<int>(selected_.size()); }
    void setRowCount(int count);            // new rows are not selected
    void refreshRows(int first, int last);  // their texts have changed; both ends included
    void refreshAll() { refreshRows(0, rowCount() - 1); }

    bool selected(int row) const { return row >= 0 && row < rowCount() && selected_[static_cast<std::size_t>(row)]; }
    const std::vector<bool>& selection() const { return selected_; }
    int selectedCount() const { return selectedCount_; }
    void setSelected(int row, bool selected);
    void setSelection(std::vector<bool> selection);  // of as many rows as there are
    void selectAll(bool selected);
    int focusedRow() const { return focusedRow_; }  // -1 none
    void setFocusedRow(int row);
    void ensureVisible(int row);
    int rowToShow() const { return rowToShow_; }        // for the host: argument of the last ensureVisible
    int firstChanged() const { return firstChanged_; }  // for the host: range of the last refreshRows
    int lastChanged() const { return lastChanged_; }

  private:
    std::vector<Column> columns_;
    std::vector<bool> selected_;
    int selectedCount_ = 0;
    int focusedRow_ = -1;
    int rowToShow_ = -1;
    int firstChanged_ = 0;
    int lastChanged_ = -1;
};

// The files of the browser. The form gives what else a list view asks for.
class FileListBox : public ListView {
  public:
    FileListBox(Form& form, std::string name);
    std::function<void()> onRefresh;  // set by the form: reads the folder again
    const std::vector<std::string>& files() const { return files_; }
    void setFiles(std::vector<std::string> files);  // names without their folder; nothing is selected
    void refresh() {
        if (onRefresh) onRefresh();
    }

  private:
    std::vector<std::string> files_;
};

// The folder tree, shown as the path from the root to the current folder and the folders in it.
class DirListBox : public ListView {
  public:
    struct Entry {
        std::string path;
        std::string name;
        int level = 0;
        bool operator==(const Entry&) const = default;
    };
    DirListBox(Form& form, std::string name);
    std::function<void()> onChange;  // another folder is the current one
    const std::string& path() const { return path_; }
    void setPath(std::string path);  // raises onChange when it differs
    const std::vector<Entry>& entries() const { return entries_; }
    void setEntries(std::vector<Entry> entries);  // the one of the current folder is selected

  private:
    std::string path_;
    std::vector<Entry> entries_;
};

class DriveListBox : public Control {
  public:
    using Control::Control;
    std::function<void()> onChange;
    const std::vector<std::string>& drives() const { return drives_; }
    void setDrives(std::vector<std::string> drives);  // "C:\\" and so on
    const std::string& drive() const { return drive_; }
    void setDrive(std::string drive);

  private:
    std::vector<std::string> drives_;
    std::string drive_;
};

}  // namespace quenlox
