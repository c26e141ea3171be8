// The play-list window: the three lists, and a browser of folders from which they are filled. It keeps no list of its
// own; every change goes through Playlists and comes back from there to the views. On the user-interface thread.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/list_view.h"
#include "playback/transport.h"
#include "playlist/add_job.h"
#include "playlist/list_search.h"
#include "playlist/playlists.h"

namespace quenlox {

class Dialogs;
class FileManager;
class FileSystem;
class FolderReader;
class OptionStore;
struct GlobalState;

class FormList : public Form {
  public:
    static constexpr int kViews = Playlists::kPersistedLists;
    static constexpr int kColumns = kEntryColumns;
    static constexpr int kTimeColumn = EntryColumn::kTimeColumn;
    using ColumnWidths = std::array<int, kColumns>;  // pixels at 96 dots per inch
    static constexpr ColumnWidths kStartWidths{162, 113, 162, 40, 300};
    static constexpr ColumnWidths kSingleColumn{9000, 0, 0, 0, 0};
    static constexpr int kLargestWidth = 9000;
    static constexpr int kSortItems = 6;
    static constexpr int kFolderTab = kViews;  // the tab behind those of the lists: the folder is the current list

    FormList(GlobalState& state, OptionStore& options, Playlists& lists, FileSystem& files, Dialogs& dialogs,
             FileManager& fileManager);

    ~FormList() override;

    // A row of a list or a file of the browser has been chosen for playing.
    std::function<OpenResult(const Transport::Track& track, int intent, Transport::Start start)> onOpen;

    std::function<bool(bool stops)> onStopAfter;  // false: nothing plays
    std::function<void()> onQueueChanged;
    std::function<void(const std::string& path)> onEditTag;  // the tag window is to show that file

    Toolbar Toolbar1{*this, "Toolbar1"};
    TabStrip TabList{*this, "TabList", {"リストA", "リストB", "リストC", "フォルダ"}};
    Label LabelFind{*this, "LabelFind"};
    TextBox FindText{*this, "FindText"};  // words to look for in the list
    // Lists A, B and C; the one of the chosen tab is visible.
    ControlArray<ListView> PlayView = makePlayViews();
    ListView FindView{*this, "FindView"};  // in their place while words are looked for: the rows that hold them
    DriveListBox Drive1{*this, "Drive1"};
    DirListBox Dir1{*this, "Dir1"};
    ComboBox Combo1{*this, "Combo1"};  // which files File1 shows
    FileListBox File1{*this, "File1"};
    FileListBox File2{*this, "File2"};  // never shown: the files of File1 that are played as the folder list
    Label LabelStatus{*this, "LabelStatus"};
    ProgressBar Progress{*this, "Progress"};
    CommandButton cmdCancel{*this, "cmdCancel"};
    Timer Timer1{*this, "Timer1", kIdleInterval};  // reads texts and does long work in slices
    Menu menuSort{"menuSort", {}};                 // title, artist, time, folder, file name, random

    // Columns. Whether rows have the five columns or a single one is a mode, told by ListType and the options; the
    // widths are the user's own and outlive a time with the single column.
    bool columnsShown() const;
    bool timeColumnShown() const;                // among the columns
    void showColumns();                          // ListType may have changed
    void setColumnWidth(int column, int width);  // brought into 0 to kLargestWidth; seen in the mode with columns
    int columnWidth(int column);                 // as the user has it in the current list
    ColumnWidths columnWidths(int view) const;   // on the screen
    // Which of the sorts make sense: without tag information a row is its file name, with it the folder is no column.
    void showSortItems(bool tagInformation);
    // Points the browser at a folder that exists.
    void openFolder(const std::string& folder);
    // The same, with the tab of the folder in front: the tracks that are stepped through are those of the folder.
    void showFolder(const std::string& folder);
    // ListNo has been set from outside: brings its list to the front.
    void showCurrentList();
    // The files of the selected rows; on the tab of the folder those of the browser.
    std::vector<std::string> selectedPaths() const;
    // The files of the folder have changed on the disk.
    void refreshBrowser();
    // Rows are being added or sorted, or a folder is being read.
    bool busy() const { return adding_.active() || sorting_ || reading_; }
    // Another track is being played: marks its row and scrolls to it.
    void trackChanged();
    void setStopAfter(bool stops);  // behind the current track; told by who knows

    // Events, called as the user's doing calls them.
    void TabList_Click();
    void FindText_Change();
    void FindView_DblClick(int row);
    void PlayView_DblClick(int row);
    void PlayView_ColumnClick(int column);
    void PlayView_HeaderMenu(Point at);
    void PlayView_MouseDown(int button, Point at);
    void PlayView_KeyDown(int key, int shift);
    void PlayView_FilesDropped(const std::vector<std::string>& files);  // behind all rows
    void PlayView_FilesDroppedAt(const std::vector<std::string>& files, int before);
    void PlayView_RowsDragged(int before);
    void PlayView_RowsDraggedToTab(int tab);
    void Toolbar1_ButtonClick(const std::string& key);
    void File1_DblClick();
    void Drive1_Change();
    void Dir1_Change();
    void Timer1_Timer();
    void cmdCancel_Click();

    // Menu commands.
    void menuClear_Click();
    void menuDelete_Click();
    void menuSort_Click(int index);  // 0 to 4 by text, above that at random
    void menuSave_Click();
    void menuLoad1_Click();
    void menuPlay_Click();
    void menuQueue_Click();      // played next, or no more
    void menuStopAfter_Click();  // behind the current track, or no more
    bool menuCopy_Click();       // false: nothing has been copied
    void menuCut_Click();
    void menuPaste_Click();
    void menuSend_Click(int list);  // copies the rows to it
    void menuTag_Click();
    void menuShowFolder_Click();
    void menuSameArtist_Click();
    void menuProperties_Click();
    void menuReread_Click();
    void menuLoad2_Click();
    void menuAdd1_Click(int list);   // every file of the browser
    void menuAdd2_Click(int list);   // the selected ones
    void menuUpDn_Click(int index);  // 0 up, 1 down
    void addFiles();                 // chosen in a dialog
    void addFolder(bool withSubfolders);
    void importM3U();
    void menuUndo_Click();  // takes the last step back, in whichever list it was
    void menuRedo_Click();
    void menuCd_Click();  // the tracks of the audio CD, on the tab of the folder

    bool menuDeleteEnabled() const { return hasRows_; }  // also those of menuUpDn and menuLoad1

    void Form_Shown() override;
    void Form_Unload(bool& cancel) override;  // closed by the user it is only hidden, and ListShown says so
    void Form_KeyDown(int key, int shift) override;
    void Form_FilesDropped(const std::vector<std::string>& files, Point at) override;
    Layout layout() override;
    const Menu* menuBar() override { return &menuBar_; }
    Size minimumTwips() const override { return {4200, 3600}; }

  private:
    using Clock = std::chrono::steady_clock;
    static constexpr int kIdleInterval = 30;  // ms

    struct SortJob {
        int list = 0;
        int column = 0;
        bool descending = false;
        bool setsDirty = false;
        Playlists::SortBy by = Playlists::SortBy::Text;
    };

    // Where rows that are being added to a list go when all of them are there. Until then they stand behind the others.
    struct Insertion {
        int list = 0;
        int before = 0;  // that row
        int first = 0;   // the first new one
    };

    // The folder of Dir1 while its names are being read.
    struct FolderReading {
        std::unique_ptr<FolderReader> names;
        std::vector<std::string> folders;
        std::vector<std::string> files;  // those that File1 can show
    };

    ListView& view() const { return PlayView[state_.ListNo]; }  // of the list that commands are about
    bool folderShown() const { return TabList.value() == kFolderTab; }

    // form_list.cpp
    ControlArray<ListView> makePlayViews();
    void nameControls();
    void makeViews();
    void listChanged(const Playlists::Change& change);
    void rowsRemoved(int list, const Playlists::Selection& which);
    static int FirstSelected(const ListView& view);
    std::string textOf(int list, int row, int column);
    std::string plainTextOf(int list, int row, int column);
    bool isCurrent(int list, int row) const;
    void open(const Transport::Track& track, int intent, Transport::Start start);
    void edit(std::string_view step, const std::function<void(int list, Playlists::Selection& selection)>& change);
    void showNote(const std::string& note);  // in the status line, for some seconds
    void showBusy();
    void showStatus();
    void updateTimer();

    // form_list_rows.cpp
    Playlists::Selection chosenRows() const;
    std::vector<std::string> chosenPaths() const;   // of them
    std::vector<std::string> browserPaths() const;  // of the selected files of the browser
    std::string chosenPath() const;
    std::string marksOf(int list, int row, int column) const;
    std::string noteOf(int list, int row);
    std::string tipOf(int list, int row);

    // form_list_search.cpp
    void makeSearch();
    bool searching() const { return !FindText.text().empty() && !folderShown(); }
    ListView& shownView() { return searching() ? FindView : view(); }
    const ListView& shownView() const { return searching() ? FindView : view(); }
    void search();
    void showFound();
    void endSearch();
    bool searchKey(int key, int shift);

    // form_list_columns.cpp
    void setViewWidths(const ColumnWidths& widths);
    void takeWidths();
    void applyWidths();
    void timeOptionChanged();
    void toggleColumn(int column);
    std::vector<MenuItem> columnItems();

    // form_list_commands.cpp
    void startAdding(const std::string& step = "追加");
    void insertAt(int before);
    void finishInsertion();
    void showTrouble();
    void removeRows(std::string_view step);
    void addSome(std::chrono::microseconds budget);
    void requestSort(const SortJob& sort);
    void finishSort();
    void addFromBrowser(int list, bool all);
    bool mayTurnBack(std::string_view step) const;
    void showRestored(const Playlists::Restored& restored, const std::string& note);

    // form_list_menus.cpp
    void makeMenus();
    void updateMenus();
    std::vector<MenuItem> listItems();
    std::vector<MenuItem> rowItems();
    std::vector<MenuItem> lookItems();
    std::vector<MenuItem> clipboardItems();
    std::vector<MenuItem> browserItems();
    std::vector<MenuItem> sortItems();
    std::vector<MenuItem> editItems();

    // form_list_browser.cpp
    void makeBrowser();
    void readDrives();
    void readFolder();
    bool readNames(std::chrono::microseconds budget);
    void finishReading();
    void showFolders(std::vector<std::string> names);
    void showFiles();
    std::string nearestFolder(std::string folder) const;
    std::string folderPath() const;  // with "\" at its end

    GlobalState& state_;
    OptionStore& options_;
    Playlists& lists_;
    FileSystem& files_;
    Dialogs& dialogs_;
    FileManager& fileManager_;
    AddJob adding_;
    std::optional<Insertion> inserting_;
    bool stopsAfter_ = false;
    bool asking_ = false;  // about servers
    std::optional<SortJob> sorting_;
    std::optional<FolderReading> reading_;
    std::vector<std::string> folderFiles_;  // of the folder that is shown, those that File1 can show
    std::array<int, kViews> markedRow_{-1, -1, -1};
    ListSearch search_;
    std::vector<int> found_;    // the rows of the current list that FindView shows
    bool searchStale_ = false;  // texts have been read since
    bool selectingFound_ = false;
    ColumnWidths widths_ = kStartWidths;  // the user's; those of columns on the screen may have been dragged since
    bool columnsOnScreen_ = false, timeOnScreen_ = false;
    bool settingWidths_ = false;
    Menu menuBar_{"menuBar", {}};
    std::string menuLook_;  // what the menu bar was made for
    bool hasRows_ = false;
    bool browserShown_ = true;
    bool browserStale_ = true;  // read when the window is shown
    bool wasBusy_ = false;
    bool statusStale_ = false;       // texts have been read since the status line was written
    Clock::time_point noteUntil_{};  // the status line says something else until then
    int ticks_ = 0;
    std::chrono::microseconds readWhilePainting_{0};  // since the last tick
    std::map<std::string, std::string> lastFolders_;  // of each drive
};

}  // namespace quenlox
