#include "playlist/playlists.h"

#include <algorithm>
#include <utility>

#include "platform/user_files.h"
#include "playlist/list_file.h"
#include "state/media_formats.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// So many names of a folder are looked at between two questions whether to go on.
constexpr int kNamesPerQuestion = 64;

}  // namespace

Playlists::Playlists(GlobalState& state, const Options& options, FileSystem& files, Vbmp3& vbmp3, Random& random)
    : state_(state), files_(files), reader_(state, options, files, vbmp3), random_(random) {}

Playlists::Batch::~Batch() {
    if (--lists_.batches_ > 0) return;
    for (Change& change : lists_.pending_) {
        const Change reported = std::exchange(change, Change{});
        if ((reported.countChanged || reported.first <= reported.last) && lists_.onChange) lists_.onChange(reported);
    }
}

void Playlists::report(int list, int first, int last, bool countChanged) {
    const Change change{list, first, last, countChanged};
    if (batches_ == 0) {
        if (onChange) onChange(change);
        return;
    }
    Change& pending = pending_[static_cast<std::size_t>(list)];
    if (pending.first > pending.last && !pending.countChanged) {
        pending = change;
        return;
    }
    if (first <= last) {
        pending.first = pending.first > pending.last ? first : std::min(pending.first, first);
        pending.last = std::max(pending.last, last);
    }
    pending.countChanged |= countChanged;
}

int Playlists::count(int list) const {
    if (list == kFolderList) return static_cast<int>(folderFiles_.size());
    return persisted(list) ? rows(list).count() : 0;
}

std::string Playlists::path(int list, int row) const {
    if (list == kFolderList && row >= 0 && row < count(list))
        return JoinPath(folder_, folderFiles_[static_cast<std::size_t>(row)]);
    return hasRow(list, row) ? std::string(rows(list).path(row)) : std::string{};
}

void Playlists::setCurrentIndex(int list, int row) {
    if (onCurrentMoved) onCurrentMoved(list, row);
}

void Playlists::setPlayable(const std::string& path, bool playable) {
    if (playable ? unplayable_.erase(path) == 0 : !unplayable_.insert(path).second) return;
    for (int list = 0; list < kPersistedLists; ++list) {
        if (rows(list).count() > 0) report(list, 0, rows(list).count() - 1);
    }
}

bool Playlists::playable(int list, int row) const {
    return unplayable_.empty() || !hasRow(list, row) || !unplayable_.contains(rows(list).path(row));
}

void Playlists::toggleQueued(int list, const Selection& selection) {
    std::vector<int> chosen;
    for (int row = 0; row < static_cast<int>(selection.size()); ++row) {
        if (selection[static_cast<std::size_t>(row)] && hasRow(list, row)) chosen.push_back(row);
    }
    const bool all = std::ranges::all_of(chosen, [&](int row) { return queuePosition(list, row).has_value(); });
    const Batch batch(*this);
    reportQueued();
    for (const int row : chosen) all ? queue_.remove(list, row) : queue_.add(list, row);
    reportQueued();
}

void Playlists::takeFromQueue(const ListRow& row) {
    const Batch batch(*this);
    reportQueued();
    queue_.take(row, currentIndex(row.list));
}

// Every number of the queue may be another.
void Playlists::reportQueued() {
    for (const ListRow& row : queue_.rows()) report(row.list, row.row, row.row);
}

bool Playlists::known(int list, int row) const { return hasRow(list, row) && rows(list).known(row); }

int Playlists::unknownCount(int list) const { return persisted(list) ? rows(list).unknownCount() : 0; }

std::int64_t Playlists::knownSeconds(int list) const {
    std::int64_t sum = 0;
    for (int row = 0; persisted(list) && row < rows(list).count(); ++row) sum += std::max(rows(list).seconds(row), 0);
    return sum;
}

void Playlists::know(int list, int row) {
    EntryRows& entries = rows(list);
    if (entries.known(row)) return;
    const EntryReader::Texts texts = reader_.read(std::string(entries.path(row)));
    entries.setTexts(row, {texts.title, texts.name, texts.album, texts.seconds});
}

std::string Playlists::text(int list, int row, int column) {
    if (column == kFileColumn) return path(list, row);
    if (!hasRow(list, row)) return {};
    know(list, row);
    const EntryTexts texts = rows(list).texts(row);
    switch (column) {
        case kTitleColumn: return std::string(texts.title);
        case kNameColumn: return std::string(texts.name);
        case kAlbumColumn: return std::string(texts.album);
        case kTimeColumn: return PlayTimeText(texts.seconds);
        default: return {};
    }
}

PlaylistEntry Playlists::entry(int list, int row) {
    return {text(list, row, kTitleColumn), text(list, row, kNameColumn), text(list, row, kAlbumColumn),
            text(list, row, kTimeColumn), text(list, row, kFileColumn)};
}

bool Playlists::fillSome(std::chrono::microseconds budget) {
    const Clock::time_point end = Clock::now() + budget;
    const Batch batch(*this);
    bool first = true;
    for (const Wanted& wanted : std::exchange(wanted_, {})) {
        if (!hasRow(wanted.list, wanted.row) || known(wanted.list, wanted.row)) continue;
        // What the budget does not allow is asked for again when it is painted again, or comes in its turn.
        if (!std::exchange(first, false) && Clock::now() >= end) return true;
        know(wanted.list, wanted.row);
        report(wanted.list, wanted.row, wanted.row);
    }
    for (int i = -1; i < kPersistedLists; ++i) {
        const int list = i < 0 ? state_.ListNo : i;
        if (unknownCount(list) == 0) continue;
        if (!first && Clock::now() >= end) return true;
        first = false;
        if (fillSome(list, std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()))) return true;
    }
    return false;
}

bool Playlists::fillSome(int list, std::chrono::microseconds budget) {
    if (!persisted(list)) return false;
    const Clock::time_point end = Clock::now() + budget;
    EntryRows& entries = rows(list);
    int& row = fillFrom_[static_cast<std::size_t>(list)];
    int firstRead = entries.count(), lastRead = -1;
    for (; row < entries.count() && entries.unknownCount() > 0; ++row) {
        if (entries.known(row)) continue;
        if (lastRead >= 0 && Clock::now() >= end) break;
        know(list, row);
        firstRead = std::min(firstRead, row);
        lastRead = row;
    }
    if (lastRead >= 0) report(list, firstRead, lastRead);
    return entries.unknownCount() > 0;
}

void Playlists::forgetTexts() {
    history_.forgetTexts();
    for (int list = 0; list < kPersistedLists; ++list) {
        rows(list).forgetTexts();
        fillFrom_[static_cast<std::size_t>(list)] = 0;
        if (rows(list).count() > 0) report(list, 0, rows(list).count() - 1);
    }
}

void Playlists::forgetTexts(int list, const Selection& which) {
    if (!persisted(list)) return;
    const int n = std::min(rows(list).count(), static_cast<int>(which.size()));
    for (int row = 0; row < n; ++row) {
        if (which[static_cast<std::size_t>(row)]) rows(list).forgetTexts(row);
    }
    fillFrom_[static_cast<std::size_t>(list)] = 0;
    if (n > 0) report(list, 0, n - 1);
}

void Playlists::forgetTexts(const std::string& path) {
    for (int list = 0; list < kPersistedLists; ++list) {
        for (int row = 0; row < rows(list).count(); ++row) {
            if (rows(list).path(row) != path) continue;
            rows(list).forgetTexts(row);
            int& from = fillFrom_[static_cast<std::size_t>(list)];
            from = std::min(from, row);
            report(list, row, row);
        }
    }
}

bool Playlists::append(int list, std::string_view path) {
    // A line end in a path would make two entries of it in the list file; no file has one in its name.
    if (!persisted(list) || path.empty() || path.find('\n') != path.npos || path.find('\r') != path.npos ||
        IsDevicePath(path))
        return false;
    rows(list).append(path);
    return true;
}

void Playlists::reportAdded(int list, int countBefore) {
    if (persisted(list) && rows(list).count() > countBefore) report(list, countBefore, rows(list).count() - 1, true);
}

void Playlists::keepAdded(int list, int countBefore) {
    if (!persisted(list) || rows(list).count() == countBefore) return;
    ListChange came{list, ListChange::Kind::Came, {}, {}};
    for (int row = countBefore; row < rows(list).count(); ++row) came.places.push_back(row);
    history_.keep(std::move(came));
    reportAdded(list, countBefore);
}

bool Playlists::AddEntry(const std::string& path, int list) {
    const int before = count(list);
    const bool added = append(list, path);
    keepAdded(list, before);
    return added;
}

CodePage Playlists::codePage() const {
    return [this](std::string_view bytes) { return files_.fromCodePage(bytes); };
}

bool Playlists::ImportM3U(const std::string& folder, const std::string& fileName, int list,
                          const std::function<bool(std::string_view path)>& wanted) {
    const std::optional<std::string> bytes = files_.read(folder + fileName);
    if (!bytes) return false;
    const int before = count(list);
    const auto add = [&](std::string_view path) {
        if (!wanted || wanted(path)) append(list, path);
    };
    ParseM3U(*bytes, folder, add, codePage());
    keepAdded(list, before);
    return true;
}

std::set<std::string> Playlists::ServersOfM3U(const std::string& folder, const std::string& fileName) const {
    std::set<std::string> servers;
    const auto note = [&](std::string_view path) {
        if (!IsDevicePath(path)) servers.insert(ServerOf(path));
    };
    if (const std::optional<std::string> bytes = files_.read(folder + fileName))
        ParseM3U(*bytes, folder, note, codePage());
    servers.erase("");
    servers.erase(ServerOf(folder));
    return servers;
}

bool Playlists::AddFolder(const std::string& folder, FolderReader& names, int list,
                          const std::function<bool()>& keepGoing) {
    const int before = count(list);
    std::string name;
    bool isFolder = false, more = true;
    int read = 0;
    do {
        more = names.next(name, isFolder);
        if (more && !isFolder && CharacterCount(name) > 4 && MatchesMediaFilter(name))
            append(list, JoinPath(folder, name));
    } while (more && (++read % kNamesPerQuestion != 0 || !keepGoing || keepGoing()));
    keepAdded(list, before);
    return more;
}

void Playlists::copyRows(int from, const Selection& selection, int to) {
    if (!persisted(from) || !persisted(to)) return;
    const int before = count(to), n = std::min(count(from), static_cast<int>(selection.size()));
    for (int row = 0; row < n; ++row) {
        if (selection[static_cast<std::size_t>(row)]) rows(to).append(rows(from), row);
    }
    keepAdded(to, before);
    BuildShuffleOrder(to);
    markChanged();
}

bool Playlists::ExportM3U(int list, const std::string& path) {
    if (path.empty()) return false;
    ListText text;
    for (int row = 0; row < count(list); ++row) text.append(this->path(list, row));
    return static_cast<bool>(files_.write(ExportName(path), text.bytes(codePage())));
}

std::string Playlists::ExportName(const std::string& path) { return LastFour(path) == ".m3u" ? path : path + ".m3u"; }

void Playlists::LoadListFile() {
    const std::optional<std::string> bytes = files_.read(UserFileToRead(files_, kListFileName));
    listFileUnread_ = !bytes && files_.fileExists(UserFileToWrite(files_, kListFileName));
    if (bytes) readListFile(*bytes);
    for (int list = 0; list < kPersistedLists; ++list) BuildShuffleOrder(list);
    state_.ListDirty = false;
}

void Playlists::readListFile(std::string_view bytes) {
    const Batch batch(*this);
    std::array<int, kPersistedLists> before{};
    for (int list = 0; list < kPersistedLists; ++list) before[static_cast<std::size_t>(list)] = count(list);
    const auto add = [&](int list, std::string_view path) {
        if (append(list, path) && path == state_.CurrentFile) setCurrentIndex(list, count(list) - 1);
    };
    ParseListFile(bytes, add, codePage());
    for (int list = 0; list < kPersistedLists; ++list) reportAdded(list, before[static_cast<std::size_t>(list)]);
}

std::string Playlists::listFile() const { return UserFileToWrite(files_, kListFileName); }

WriteResult Playlists::SaveListFile() {
    if (!state_.ListDirty) return {};
    if (listFileUnread_ && !joinUnreadListFile(listFile())) return WriteError::InUse;
    const WriteResult written = writeListFile(listFile());
    state_.ListDirty = !written;
    return written;
}

WriteResult Playlists::writeListFile(const std::string& path) {
    ListText text;
    for (int list = 0; list < kPersistedLists; ++list) {
        text.beginList(list);
        for (int row = 0; row < rows(list).count(); ++row) text.append(rows(list).path(row));
    }
    return files_.write(path, text.bytes(codePage()));
}

void Playlists::markChanged() {
    state_.ListDirty = true;
    ++changes_;
    history_.mark();
}

bool Playlists::saveQuietly() {
    if (!unsavedChanges()) return true;
    const int changes = changes_;
    if (!writeListFile(listFile())) return false;
    savedChanges_ = changes;
    return true;
}

// At the start the list file was locked or damaged. Now it either can be read, and its rows come in front of those of
// this run, or it is moved out of the way.
bool Playlists::joinUnreadListFile(const std::string& path) {
    if (const std::optional<std::string> bytes = files_.read(path)) {
        std::array<EntryRows, kPersistedLists> added = std::exchange(lists_, {});
        fillFrom_ = {};
        history_.clear();
        queue_ = {};
        readListFile(*bytes);
        for (std::size_t list = 0; list < added.size(); ++list) {
            const int before = lists_[list].count();
            for (int row = 0; row < added[list].count(); ++row) lists_[list].append(added[list].path(row));
            reportAdded(static_cast<int>(list), before);
        }
    } else if (files_.fileExists(path)) {
        bool aside = false;
        for (int number = 1; number <= 9 && !aside; ++number)
            aside = files_.rename(path, path + ".bak" + std::to_string(number));
        if (!aside) return false;
    }
    listFileUnread_ = false;
    return true;
}

void Playlists::setFolderFiles(const std::string& folder, std::vector<std::string> names) {
    if (folder == folder_ && names == folderFiles_) return;
    folder_ = folder;
    folderFiles_ = std::move(names);
    const bool here = FolderOf(state_.CurrentFile) == folder_;
    setCurrentIndex(kFolderList, here ? folderTrack(FileNameOf(state_.CurrentFile)) : -1);
    BuildShuffleOrder(kFolderList);
}

int Playlists::folderTrack(const std::string& name) const {
    const auto found = std::find(folderFiles_.begin(), folderFiles_.end(), name);
    return found == folderFiles_.end() ? -1 : static_cast<int>(found - folderFiles_.begin());
}

}  // namespace quenlox
