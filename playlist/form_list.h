// The play-list window: a list view for each of the three lists, and the browser of folders and files. On the
// user-interface thread.
#pragma once

#include <array>

#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/list_view.h"

namespace quenlox {

struct GlobalState;

class FormList : public Form {
  public:
    static constexpr int kViews = 3;
    static constexpr int kColumns = 5;                // title, artist, album, time, file
    static constexpr int kTimeColumn = 3;
    static constexpr int kWideColumn = 9000;          // the one column of the plain file-name mode
    static constexpr int kSortItems = 6;

    explicit FormList(GlobalState& state);

    ControlArray<ListView> PlayView;                  // lists A, B and C; the current one is visible
    DriveListBox Drive1{*this, "Drive1"};
    DirListBox Dir1{*this, "Dir1"};
    FileListBox File1{*this, "File1"};
    Menu menuSort{"menuSort", {}};                    // title, artist, time, folder, file name, random

    // Widths of the five columns of every view.
    void setColumnWidths(const std::array<int, kColumns>& widths);
    std::array<int, kColumns> columnWidths(int view) const;
    // Which of the sorts make sense: without tag information a row is its file name, with it the folder is no column.
    void showSortItems(bool tagInformation);
    // Points the browser at a folder that exists.
    void openFolder(const std::string& folder);

    // Closed by the user it is only hidden, and ListShown says so.
    void Form_Unload(bool& cancel) override;

  private:
    GlobalState& state_;
};

}  // namespace quenlox
