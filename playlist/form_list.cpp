#include "playlist/form_list.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "forms/keys.h"
#include "forms/window_host.h"
#include "platform/file_system.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "text/numbers.h"
#include "text/paths.h"

namespace quenlox {
namespace {

using std::chrono::milliseconds;

constexpr std::array<const char*, FormList::kColumns> kColumnTitles{"曲名", "アーティスト名", "アルバム名", "時間",
                                                                    "ファイル名"};

// Texts of rows on the screen are read while they are painted as long as that is quick; a slow disk makes them come
// later.
constexpr milliseconds kPaintBudget{40};
constexpr milliseconds kIdleBudget{8};
// A slice of work for which the user waits.
constexpr milliseconds kBusyBudget{50};
constexpr int kBusyInterval = 10;
constexpr int kTicksPerStatus = 10;
constexpr std::chrono::seconds kNoteTime{4};  // that a note stands in the status line
// From this width on the browser stands beside the list and no longer under it; pixels at 96 dots per inch.
constexpr int kWideWindow = 620;
constexpr int kRoomForSearch = 480;  // and the search field beside the tabs

constexpr const char* kBusyText = "ファイル変換中は再生できません";
constexpr const char* kEmptyText =
    "リストは空です\n\nファイルやフォルダをここへドロップするか、「追加」「ﾌｫﾙﾀﾞ追加」で加えてください。\n"
    "フォルダ欄のファイルは、右クリックして「全追加」「選択追加」で加えられます。";

std::string HoursText(std::int64_t seconds) {
    return std::to_string(seconds / 3600) + ":" + TwoDigits(seconds / 60 % 60) + ":" + TwoDigits(seconds % 60);
}

}  // namespace

FormList::FormList(GlobalState& state, OptionStore& options, Playlists& lists, FileSystem& files, Dialogs& dialogs,
                   FileManager& fileManager)
    : Form("FormList", Kind::Sizeable),
      state_(state),
      options_(options),
      lists_(lists),
      files_(files),
      dialogs_(dialogs),
      fileManager_(fileManager),
      adding_(lists, files) {
    setCaption("プレイリスト");
    makeViews();
    makeSearch();
    makeBrowser();
    makeMenus();
    showColumns();
    options_.listen({&Options::ListColumns}, [this] { showColumns(); });
    options_.listen({&Options::ListTimeColumn}, [this] { timeOptionChanged(); });
    TabList.onClick = [this] { TabList_Click(); };
    nameControls();
    cmdCancel.onClick = [this] { cmdCancel_Click(); };
    cmdCancel.setVisible(false);
    Progress.setVisible(false);
    Timer1.onTimer = [this] { Timer1_Timer(); };
    Timer1.setEnabled(false);
    lists_.onChange = [this](const Playlists::Change& change) { listChanged(change); };
    lists_.onRemove = [this](int list, const Playlists::Selection& which) { rowsRemoved(list, which); };
    showStatus();
}

FormList::~FormList() {
    lists_.onChange = nullptr;
    lists_.onRemove = nullptr;
}

// What nothing in the window names is called by assistive programs.
void FormList::nameControls() {
    cmdCancel.setCaption("中止(&C)");
    Toolbar1.setCaption("ツールバー");
    TabList.setCaption("リストの切替");
    for (int list = 0; list < kViews; ++list) PlayView[list].setCaption(TabList.tabs()[static_cast<std::size_t>(list)]);
    FindView.setCaption("検索結果");
    Drive1.setCaption("ドライブ");
    Dir1.setCaption("フォルダ");
    Combo1.setCaption("ファイルの種類");
    File1.setCaption("ファイル");
}

ControlArray<ListView> FormList::makePlayViews() {
    ControlArray<ListView> views;
    views.fill(*this, "PlayView", 0, kViews - 1);
    return views;
}

void FormList::makeViews() {
    std::vector<ListView::Column> columns;
    for (const char* title : kColumnTitles) columns.push_back({title, 100, false});
    columns[kTimeColumn].rightAligned = true;
    for (int list = 0; list < kViews; ++list) {
        ListView& view = PlayView[list];
        view.setColumns(columns);
        view.emptyText = kEmptyText;
        view.setVisible(list == 0);
        view.setRowCount(lists_.count(list));
        view.textOf = [this, list](int row, int column) { return textOf(list, row, column); };
        view.noteOf = [this, list](int row) { return noteOf(list, row); };
        view.tipOf = [this, list](int row) { return tipOf(list, row); };
        view.marked = [this, list](int row) { return isCurrent(list, row); };
        view.dimmed = [this, list](int row) { return !lists_.playable(list, row); };
        view.find = [this, list](const std::string& text, int from) { return lists_.findTitle(list, text, from); };
        view.onDoubleClick = [this](int row) { PlayView_DblClick(row); };
        view.onColumnClick = [this](int column) { PlayView_ColumnClick(column); };
        view.onColumnWidth = [this] {
            if (!settingWidths_) updateMenus();
        };
        view.onHeaderMenu = [this](Point at) { PlayView_HeaderMenu(at); };
        view.onMouseDown = [this](int button, int, Point at) { PlayView_MouseDown(button, at); };
        view.onKeyDown = [this](int key, int shift) { PlayView_KeyDown(key, shift); };
        view.onFilesDropped = [this](const std::vector<std::string>& dropped, int before) {
            PlayView_FilesDroppedAt(dropped, before);
        };
        view.onRowsDragged = [this](int before) { PlayView_RowsDragged(before); };
        view.onRowsDraggedToTab = [this](const TabStrip&, int tab) { PlayView_RowsDraggedToTab(tab); };
        view.filesToDrag = [this] { return chosenPaths(); };
        // A range of many rows comes row by row; the status line waits for the next tick.
        view.onSelectionChange = [this] {
            statusStale_ = true;
            updateTimer();
        };
    }
}

// Views.

void FormList::listChanged(const Playlists::Change& change) {
    ListView& view = PlayView[change.list];
    if (change.countChanged) {
        if (lists_.count(change.list) == 0) view.selectAll(false);
        view.setRowCount(lists_.count(change.list));
        updateMenus();
        showStatus();
    }
    view.refreshRows(change.first, change.last);
    if (change.list == state_.ListNo && searching()) {
        // Texts come in slices, and are searched anew only now and then; who changes the order calls trackChanged.
        search_.forget();
        searchStale_ = true;
        if (change.countChanged) search();
    }
    updateTimer();
}

void FormList::rowsRemoved(int list, const Playlists::Selection& which) {
    ListView& view = PlayView[list];
    const std::vector<bool>& before = view.selection();
    std::vector<bool> after;
    int focused = view.focusedRow();
    for (std::size_t row = 0; row < which.size(); ++row) {
        if (!which[row]) {
            after.push_back(row < before.size() && before[row]);
        } else if (static_cast<int>(row) < view.focusedRow()) {
            --focused;
        }
    }
    if (inserting_ && inserting_->list == list) {
        const auto gone = [&](int end) { return std::count(which.begin(), which.begin() + end, true); };
        inserting_->before -= static_cast<int>(gone(inserting_->before));
        inserting_->first -= static_cast<int>(gone(inserting_->first));
    }
    view.selectAll(false);
    view.setRowCount(static_cast<int>(after.size()));
    view.setSelection(std::move(after));
    view.setFocusedRow(focused);
}

std::string FormList::textOf(int list, int row, int column) {
    return marksOf(list, row, column) + plainTextOf(list, row, column);
}

std::string FormList::plainTextOf(int list, int row, int column) {
    if (column == kFileColumn) return lists_.path(list, row);
    if (!lists_.known(list, row)) {
        if (readWhilePainting_ >= kPaintBudget) {
            lists_.want(list, row);
            updateTimer();
            return column == kTitleColumn ? BaseNameOf(lists_.path(list, row)) : std::string{};
        }
        const Clock::time_point start = Clock::now();
        lists_.entry(list, row);
        statusStale_ = true;
        readWhilePainting_ += std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        updateTimer();
    }
    return lists_.text(list, row, column);
}

bool FormList::isCurrent(int list, int row) const {
    return row == state_.CurrentIndex[static_cast<std::size_t>(list)] && lists_.path(list, row) == state_.CurrentFile;
}

// The row that a command for one row takes: the first selected one, else the one with the focus.
int FormList::FirstSelected(const ListView& view) {
    const auto& selection = view.selection();
    const auto selected = std::find(selection.begin(), selection.end(), true);
    return selected == selection.end() ? view.focusedRow() : static_cast<int>(selected - selection.begin());
}

std::vector<std::string> FormList::browserPaths() const {
    std::vector<std::string> paths;
    for (int row = 0; row < File1.rowCount(); ++row) {
        if (File1.selected(row)) paths.push_back(folderPath() + File1.files()[static_cast<std::size_t>(row)]);
    }
    return paths;
}

std::vector<std::string> FormList::selectedPaths() const {
    if (folderShown()) return browserPaths();
    std::vector<std::string> paths;
    for (int row = 0; row < view().rowCount(); ++row) {
        if (view().selected(row)) paths.push_back(lists_.path(state_.ListNo, row));
    }
    return paths;
}

void FormList::refreshBrowser() { readFolder(); }

void FormList::trackChanged() {
    if (searchStale_) search();
    FindView.refreshAll();
    for (int list = 0; list < kViews; ++list) {
        const int row = state_.CurrentIndex[static_cast<std::size_t>(list)];
        int& marked = markedRow_[static_cast<std::size_t>(list)];
        PlayView[list].refreshRows(marked, marked);
        marked = row;
        PlayView[list].refreshRows(row, row);
        if (isCurrent(list, row)) PlayView[list].ensureVisible(row);
    }
}

// Tabs.

void FormList::showCurrentList() {
    TabList.setValue(state_.ListNo);
    TabList_Click();
}

void FormList::TabList_Click() {
    state_.UseFolderList = folderShown();
    if (!folderShown() && TabList.value() != state_.ListNo) {
        // The lists share what the user makes of the columns.
        setViewWidths(columnWidths(state_.ListNo));
        state_.ListNo = TabList.value();
    }
    if (searching()) search();
    for (int list = 0; list < kViews; ++list) PlayView[list].setVisible(list == TabList.value() && !searching());
    FindView.setVisible(searching());
    LabelFind.setEnabled(!folderShown());
    FindText.setEnabled(!folderShown());
    for (Control* part : std::initializer_list<Control*>{&Drive1, &Combo1, &Dir1, &File1})
        part->setVisible(browserShown_ || folderShown());
    if (folderShown()) lists_.BuildShuffleOrder(kFolderList);
    updateMenus();
    showStatus();
    relayout();
}

// Playing.

void FormList::open(const Transport::Track& track, int intent, Transport::Start start) {
    if (track.path.empty() || !onOpen) return;
    if (onOpen(track, intent, start) == OpenResult::Busy) showNote(kBusyText);
}

void FormList::showNote(const std::string& note) {
    LabelStatus.setCaption(note);
    noteUntil_ = Clock::now() + kNoteTime;
    statusStale_ = true;
    updateTimer();
}

void FormList::PlayView_DblClick(int row) {
    open({lists_.path(state_.ListNo, row), state_.ListNo, row}, kForward, Transport::Start::Play);
}

void FormList::menuLoad1_Click() {
    const int row = FirstSelected(view());
    // What plays goes on with the new file; a player that stands still only opens it.
    open({lists_.path(state_.ListNo, row), state_.ListNo, row}, kNoIntent, Transport::Start::PlayIfPlaying);
}

// Keys and mouse.

void FormList::PlayView_KeyDown(int key, int shift) {
    if (key == kKeyDelete && shift == 0) menuDelete_Click();
    if (shift != kControl) return;
    if (key == 'X') menuCut_Click();
    if (key == 'C') menuCopy_Click();
    if (key == 'V') menuPaste_Click();
}

void FormList::Form_KeyDown(int key, int shift) {
    keyTaken = searchKey(key, shift);
    if (keyTaken || FindText.focused) return;  // what is typed there is no command
    if (shift == kAlt && (key == kKeyUp || key == kKeyDown)) menuUpDn_Click(key == kKeyUp ? 0 : 1);
    if (shift == kControl && key >= '1' && key <= '1' + kFolderTab) {
        TabList.setValue(key - '1');
        if (folderShown()) {
            File1.focus();
        } else {
            view().focus();
        }
    }
    if (shift == 0 && key == kKeyF5) {
        File1.refresh();
        menuReread_Click();
    }
    if (shift == kControl && key == 'Q') menuQueue_Click();
    if (shift == kControl && key == 'T') menuStopAfter_Click();
    if (shift == kAlt && key == kKeyEnter) {
        keyTaken = true;
        menuProperties_Click();
    }
    if (shift == kControl && key == 'Z') menuUndo_Click();
    if ((shift == kControl && key == 'Y') || (shift == (kControl | kShift) && key == 'Z')) menuRedo_Click();
}

void FormList::PlayView_MouseDown(int button, Point at) {
    updateMenus();
    if (button != 2) return;
    Menu menu{"menuList", rowItems()};
    for (const auto& part : {clipboardItems(), listItems(), lookItems()}) {
        menu.items.push_back(MenuSeparator());
        menu.items.insert(menu.items.end(), part.begin(), part.end());
    }
    const Rect bounds = shownView().bounds();
    popup(menu, {bounds.left + at.x, bounds.top + at.y});
}

void FormList::PlayView_RowsDragged(int before) {
    state_.Actions.note("list move", view().selectedCount());
    edit("移動", [&](int list, Playlists::Selection& selection) { lists_.moveBefore(list, before, selection); });
}

// The rows change places, and the selection goes with them.
void FormList::edit(std::string_view step,
                    const std::function<void(int list, Playlists::Selection& selection)>& change) {
    Playlists::Selection selection = view().selection();
    inserting_.reset();
    lists_.beginStep(step);
    change(state_.ListNo, selection);
    view().setSelection(std::move(selection));
    view().markSorted(-1, 0);
    trackChanged();
    updateMenus();
}

void FormList::Form_Shown() {
    if (browserStale_) {
        readDrives();
        readFolder();
    }
    if (!folderShown()) shownView().focus();
    trackChanged();
    showStatus();
    updateTimer();
}

void FormList::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    state_.ListShown = false;
    hide();
    // A folder that was being read is read anew when the window comes back.
    if (std::exchange(reading_, std::nullopt)) browserStale_ = true;
    showBusy();
    updateTimer();
}

// Work in slices.

void FormList::updateTimer() {
    bool unknown = false;
    for (int list = 0; list < kViews; ++list) unknown |= lists_.unknownCount(list) > 0;
    Timer1.setInterval(busy() ? kBusyInterval : kIdleInterval);
    Timer1.setEnabled(busy() || (visible() && (unknown || statusStale_)));
}

void FormList::Timer1_Timer() {
    readWhilePainting_ = {};
    if (reading_) {
        readNames(kBusyBudget);
    } else if (adding_.active()) {
        addSome(kBusyBudget);
        showTrouble();
    } else if (sorting_) {
        if (!lists_.fillSome(sorting_->list, kBusyBudget)) finishSort();
    } else if (visible()) {
        const bool more = lists_.fillSome(kIdleBudget);
        statusStale_ = true;
        if (++ticks_ % kTicksPerStatus == 0 || !more) {
            if (searchStale_) search();
            showStatus();
        }
    }
    showBusy();
    updateTimer();
}

void FormList::cmdCancel_Click() {
    if (reading_) finishReading();
    adding_.cancel();
    finishInsertion();
    sorting_.reset();
    showBusy();
    updateTimer();
}

void FormList::showBusy() {
    if (reading_) {
        LabelStatus.setCaption("フォルダを読み込み中… " +
                               WithThousands(static_cast<std::int64_t>(reading_->files.size())) + "ファイル");
        Progress.setValue(ProgressBar::kEndless);
    } else if (adding_.active()) {
        LabelStatus.setCaption("追加中… " + WithThousands(lists_.count(state_.ListNo)) + "曲");
        Progress.setValue(adding_.permille().value_or(ProgressBar::kEndless));
    } else if (sorting_) {
        const int count = std::max(lists_.count(sorting_->list), 1);
        LabelStatus.setCaption("曲名などを読み込み中…");
        Progress.setValue(static_cast<int>((std::int64_t{count} - lists_.unknownCount(sorting_->list)) * 1000 / count));
    }
    if (busy() == std::exchange(wasBusy_, busy())) return;
    Progress.setVisible(busy());
    cmdCancel.setVisible(busy());
    if (!busy()) showStatus();
    updateMenus();
    relayout();
}

void FormList::showStatus() {
    statusStale_ = Clock::now() < noteUntil_;  // then it is asked for again
    if (busy() || statusStale_) return;
    if (folderShown()) {
        LabelStatus.setCaption(WithThousands(lists_.count(kFolderList)) + "ファイル");
        return;
    }
    const int count = lists_.count(state_.ListNo), unknown = lists_.unknownCount(state_.ListNo);
    std::string text = WithThousands(count) + "曲";
    if (searching()) text += "のうち" + WithThousands(FindView.rowCount()) + "曲が見つかりました";
    if (view().selectedCount() > 0) text += "（" + WithThousands(view().selectedCount()) + "曲を選択）";
    if (count > 0) text += "　合計 " + HoursText(lists_.knownSeconds(state_.ListNo));
    if (unknown > 0) text += "　読込 " + std::to_string((std::int64_t{count} - unknown) * 100 / count) + "%";
    if (!lists_.queue().empty()) text += "　次に再生 " + WithThousands(std::ssize(lists_.queue())) + "曲";
    if (stopsAfter_) text += "　この曲で停止";
    LabelStatus.setCaption(std::move(text));
}

// Room. The list takes what the browser and the toolbar leave; in a wide window the browser stands beside it.

Layout FormList::layout() {
    const double width = host() ? host()->clientSize().width * host()->twipsPerPixel().x / 15 : 0;
    const bool wide = width >= kWideWindow;
    std::vector<Layout> status{Item(LabelStatus, 0, 0, 1)};
    if (wasBusy_) {
        status.push_back(Item(Progress, 60, 9));
        status.push_back(Item(cmdCancel, 36, 12));
    }
    const auto places = [&](int grow) { return Column({Item(Drive1), Item(Dir1, 0, 0, 1)}, grow); };
    const auto names = [&](int grow) { return Column({Item(Combo1), Item(File1, 0, 0, 1)}, grow); };
    Layout middle;
    if (folderShown()) {
        middle = Row({places(2), names(3)}, 1);
    } else if (!browserShown_) {
        middle = Row({Item(shownView(), 0, 0, 1)}, 1);
    } else if (wide) {
        middle = Row({Column({places(2), names(3)}, 2), Item(shownView(), 0, 0, 5)}, 1);
    } else {
        middle = Column({Item(shownView(), 0, 0, 3), Row({places(2), names(3)}, 2)}, 1);
    }
    Layout top = width >= kRoomForSearch ? Row({Item(TabList, 0, 0, 1), Item(LabelFind), Item(FindText, 90)})
                                         : Column({Item(TabList), Row({Item(LabelFind), Item(FindText, 0, 0, 1)})});
    Layout all = Column({Item(Toolbar1), std::move(top), std::move(middle), Row(std::move(status))});
    all.gap = 2;
    return all;
}

}  // namespace quenlox
