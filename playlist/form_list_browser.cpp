// The browser: drive, folder and files, and what is done with a file of it.
#include <algorithm>
#include <utility>

#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "playback/cd_drives.h"
#include "playlist/form_list.h"
#include "playlist/sort_key.h"
#include "state/global_state.h"
#include "state/media_formats.h"
#include "state/option_store.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// What Combo1 offers; File1 shows the names with these extensions. The first takes every file that the window knows.
const std::vector<MediaGroup>& Filters() {
    static const std::vector<MediaGroup> filters = [] {
        std::vector<MediaGroup> groups = MediaGroups();
        MediaGroup music{"音楽ファイル", {}};
        for (const MediaGroup& group : groups) {
            music.extensions.insert(music.extensions.end(), group.extensions.begin(), group.extensions.end());
        }
        MediaGroup all{"すべての対応ファイル", music.extensions};
        all.extensions.emplace_back(".m3u");
        groups.insert(groups.begin(), {all, music});
        groups.push_back({"M3U (m3u)", {".m3u"}});
        return groups;
    }();
    return filters;
}

// How long the folder is read before the window answers again, and after how many names the clock is asked.
constexpr std::chrono::milliseconds kAtOnce{100};
constexpr int kNamesPerLook = 64;
// Folders that lie deeper do not stand further to the right: the box is narrow.
constexpr int kDeepestLevel = 4;

bool Passes(const MediaGroup& filter, const std::string& name) {
    return CharacterCount(name) > 4 && std::ranges::find(filter.extensions, LastFour(name)) != filter.extensions.end();
}

void SortNames(std::vector<std::string>& names) {
    std::vector<std::pair<std::string, std::string>> keyed;
    for (std::string& name : names) {
        std::string key;
        AppendSortKey(key, name);
        keyed.emplace_back(std::move(key), std::move(name));
    }
    std::sort(keyed.begin(), keyed.end());
    for (std::size_t i = 0; i < names.size(); ++i) names[i] = std::move(keyed[i].second);
}

// As the box of drives lists it: "C:\" of "C:\a", "\\server\share" of "\\server\share\a".
std::string DriveItemOf(const std::string& path) {
    const std::string volume(VolumeOf(path));
    return volume.ends_with(':') ? volume + '\\' : volume;
}

std::string WithoutTrailingSlash(const std::string& folder) {
    return folder.size() > 3 && folder.ends_with('\\') ? folder.substr(0, folder.size() - 1) : folder;
}

}  // namespace

void FormList::makeBrowser() {
    std::vector<ComboBox::Item> filters;
    for (const MediaGroup& group : Filters()) filters.push_back({group.name, static_cast<int>(filters.size())});
    Combo1.setItems(std::move(filters));
    Combo1.setListIndex(0);
    Combo1.onClick = [this] { showFiles(); };
    File1.emptyText = "表示するファイルはありません";
    File2.setVisible(false);
    Drive1.onChange = [this] { Drive1_Change(); };
    Dir1.onChange = [this] { Dir1_Change(); };
    Dir1.onDoubleClick = [this](int row) {
        if (row >= 0 && row < static_cast<int>(Dir1.entries().size())) {
            const std::string path = Dir1.entries()[static_cast<std::size_t>(row)].path;
            Dir1.setPath(path);
        }
    };
    for (ListView* box : {static_cast<ListView*>(&Dir1), static_cast<ListView*>(&File1)}) {
        box->find = [box](const std::string& text, int from) {
            return FindByBeginning(
                box->rowCount(), [box](int row) { return box->textOf(row, 0); }, text, std::max(from, 0));
        };
    }
    File2.setVisible(false);
    File1.onDoubleClick = [this](int) { File1_DblClick(); };
    File1.onRefresh = [this] { readFolder(); };
    File1.filesToDrag = [this] { return browserPaths(); };
    File1.onMouseDown = [this](int button, int, Point at) {
        if (button == 2)
            popup(Menu{"menuBrowser", browserItems()}, {File1.bounds().left + at.x, File1.bounds().top + at.y});
    };
}

std::string FormList::folderPath() const { return Dir1.path().empty() ? std::string{} : JoinPath(Dir1.path(), ""); }

void FormList::openFolder(const std::string& folder) {
    const std::string there = nearestFolder(folder);
    if (there.empty()) return;
    Dir1.setPath(there);
    if (there[1] == ':') Drive1.setDrive(there.substr(0, 2) + "\\");
}

void FormList::showFolder(const std::string& folder) {
    openFolder(folder);
    TabList.setValue(kFolderTab);
    TabList_Click();
}

// The folder itself, or that of its parents that is still there. Empty when not even its drive is: a server that is
// switched off is asked twice and not once for each.
std::string FormList::nearestFolder(std::string folder) const {
    folder = WithoutTrailingSlash(folder);
    if (folder.size() < 2 || files_.folderExists(folder)) return folder.size() < 2 ? "" : folder;
    const std::string root = DriveItemOf(folder);
    if (!files_.folderExists(root)) return {};
    do {
        folder = WithoutTrailingSlash(FolderOf(folder.substr(0, folder.find_last_not_of('\\') + 1)));
    } while (folder.size() > root.size() && !files_.folderExists(folder));
    return folder.size() > root.size() ? folder : root;
}

void FormList::readDrives() { Drive1.setDrives(files_.drives()); }

void FormList::Drive1_Change() {
    const std::string drive = Drive1.drive();
    if (!Dir1.path().empty() && EqualsNoCase(DriveItemOf(Dir1.path()), drive)) return;
    if (!files_.folderExists(drive)) {
        dialogs_.message("ドライブの準備ができていません", MessageIcon::Warning);
        if (!Dir1.path().empty()) Drive1.setDrive(DriveItemOf(Dir1.path()));
        return;
    }
    const auto last = lastFolders_.find(drive);
    Dir1.setPath(last != lastFolders_.end() ? nearestFolder(last->second) : drive);
}

void FormList::Dir1_Change() {
    state_.CurrentFolder = Dir1.path();
    lastFolders_[DriveItemOf(Dir1.path())] = Dir1.path();
    readFolder();
}

void FormList::readFolder() {
    // A window that nobody sees does not look at the disk, unless its folder is what is played.
    browserStale_ = !visible() && !folderShown();
    reading_.reset();
    if (browserStale_) return;
    reading_.emplace();
    if (!Dir1.path().empty()) reading_->names = files_.readFolder(Dir1.path());
    if (readNames(kAtOnce)) {
        // The rest comes in slices. What is shown of another folder meanwhile would lead astray.
        if (folderPath() != lists_.folder()) {
            showFolders({});
            folderFiles_.clear();
            showFiles();
        }
    }
    showBusy();
    updateTimer();
}

// False when the folder has been read and is shown.
bool FormList::readNames(std::chrono::microseconds budget) {
    const Clock::time_point end = Clock::now() + budget;
    std::string name;
    bool isFolder = false;
    for (int count = 1; reading_->names && reading_->names->next(name, isFolder); ++count) {
        if (isFolder) {
            reading_->folders.push_back(name);
        } else if (Passes(Filters().front(), name)) {
            reading_->files.push_back(name);
        }
        if (count % kNamesPerLook == 0 && Clock::now() >= end) return true;
    }
    finishReading();
    return false;
}

// What has been read so far is what is shown.
void FormList::finishReading() {
    FolderReading read = std::move(*reading_);
    reading_.reset();
    SortNames(read.folders);
    SortNames(read.files);
    showFolders(std::move(read.folders));
    folderFiles_ = std::move(read.files);
    showFiles();
}

void FormList::showFolders(std::vector<std::string> names) {
    std::vector<DirListBox::Entry> entries;
    if (!Dir1.path().empty()) {
        std::string path = DriveItemOf(Dir1.path());
        entries.push_back({path, path, 0});
        for (std::size_t at = JoinPath(path, "").size(); at < Dir1.path().size();) {
            const std::size_t end = std::min(Dir1.path().find('\\', at), Dir1.path().size());
            const std::string name = Dir1.path().substr(at, end - at);
            path = JoinPath(path, name);
            entries.push_back({path, name, std::min(static_cast<int>(entries.size()), kDeepestLevel - 1)});
            at = end + 1;
        }
        const int level = std::min(static_cast<int>(entries.size()), kDeepestLevel);
        for (const std::string& name : names) entries.push_back({JoinPath(path, name), name, level});
    }
    Dir1.setEntries(std::move(entries));
}

void FormList::showFiles() {
    const MediaGroup& filter = Filters()[static_cast<std::size_t>(std::max(Combo1.data(), 0))];
    std::vector<std::string> names, playable;
    for (const std::string& name : folderFiles_) {
        if (!Passes(filter, name)) continue;
        names.push_back(name);
        if (!IsM3U(name)) playable.push_back(name);
    }
    File1.setFiles(std::move(names));
    File2.setFiles(playable);
    lists_.setFolderFiles(folderPath(), std::move(playable));
    showStatus();
}

void FormList::File1_DblClick() {
    const int row = File1.focusedRow();
    if (row < 0) return;
    const std::string name = File1.files()[static_cast<std::size_t>(row)];
    if (IsM3U(name)) {
        adding_.addM3U(folderPath(), name, state_.ListNo);
        startAdding();
        return;
    }
    open({folderPath() + name, kFolderList, lists_.folderTrack(name)}, kForward, Transport::Start::Play);
}

void FormList::menuCd_Click() {
    const std::string root = CdDrive(files_, options_->DefaultCdDrive);
    if (root.empty()) {
        dialogs_.message("CDドライブが見つかりません", MessageIcon::Warning);
        return;
    }
    Drive1.setDrive(root);
    if (!EqualsNoCase(Drive1.drive(), root)) return;  // not ready, and the user has been told
    TabList.setValue(kFolderTab);
    File1.refresh();  // another disc may be in it
}

void FormList::menuLoad2_Click() {
    const int row = FirstSelected(File1);
    if (row < 0) return;
    const std::string name = File1.files()[static_cast<std::size_t>(row)];
    if (IsM3U(name)) return;
    open({folderPath() + name, kFolderList, lists_.folderTrack(name)}, kNoIntent, Transport::Start::PlayIfPlaying);
}

}  // namespace quenlox
