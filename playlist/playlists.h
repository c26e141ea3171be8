// The play lists: the three that are kept (A, B, C) and the list of the browser's folder. Every change of a list goes
// through here; one listener is told which rows show something else now. On the user-interface thread.
//
// A row knows its path at once. Its texts are read from the file when they are first needed, or in the idle slices of
// fillSome; no call but those, entry() and a sort by texts touches a media file.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "playback/track_source.h"
#include "playlist/entry_reader.h"
#include "playlist/entry_rows.h"
#include "playlist/list_file.h"
#include "playlist/list_history.h"
#include "playlist/playlist_entry.h"
#include "playlist/row_queue.h"
#include "state/global_state.h"

namespace quenlox {

struct Options;
class Random;
class Vbmp3;

inline constexpr std::string_view kListFileName = "Quenlox.m3u";

class Playlists : public TrackSource {
  public:
    static constexpr int kPersistedLists = 3;
    using Clock = std::chrono::steady_clock;
    using Selection = std::vector<bool>;

    // Rows `first` to `last` of a list (0 to 2) show something else; with `countChanged` there are also more or fewer.
    struct Change {
        int list = 0;
        int first = 0;
        int last = -1;
        bool countChanged = false;
        bool operator==(const Change&) const = default;
    };

    Playlists(GlobalState& state, const Options& options, FileSystem& files, Vbmp3& vbmp3, Random& random);

    std::function<void(const Change&)> onChange;
    // Before rows of a list go, so that a selection can follow the others; not when a list is cleared.
    std::function<void(int list, const Selection& which)> onRemove;
    // While one lives, changes are collected; then each list that changed is reported once.
    class Batch {
      public:
        explicit Batch(Playlists& lists) : lists_(lists) { ++lists_.batches_; }
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

      private:
        Playlists& lists_;
    };

    // Rows. A list or row that does not exist has no path and empty texts.
    int count(int list) const;
    std::string path(int list, int row) const;
    int trackCount(int list) const override { return count(list); }
    std::string trackPath(int list, int row) const override { return path(list, row); }
    PlaylistEntry entry(int list, int row);           // reads the file when its texts are not known
    std::string text(int list, int row, int column);  // the same for one column
    bool known(int list, int row) const;
    int unknownCount(int list) const;
    std::string describe(const std::string& path, std::optional<std::uint64_t> size) {
        return reader_.describe(path, size);
    }  // in lines, read from the file
    std::int64_t knownSeconds(int list) const;  // sum of the lengths that are known
    std::size_t memory(int list) const { return rows(list).memory(); }

    // Reads texts that are not known: first those that were asked for with want(), then the current list, then the
    // others. At least one row, then as many as the budget allows. False when nothing is left to read.
    bool fillSome(std::chrono::microseconds budget);
    bool fillSome(int list, std::chrono::microseconds budget);        // of one list
    void want(int list, int row) { wanted_.push_back({list, row}); }  // a row on the screen
    void forgetTexts();                                               // they are read anew
    void forgetTexts(int list, const Selection& which);
    void forgetTexts(const std::string& path);                        // of the rows of one file

    // Adding. None of these rebuilds the random order; that is done once, behind all that a command adds.
    bool AddEntry(const std::string& path, int list);  // false for a path that no file can have
    // Adds the entries of an M3U file, those that are `wanted`. False: it could not be read.
    bool ImportM3U(const std::string& folder, const std::string& fileName, int list,
                   const std::function<bool(std::string_view path)>& wanted = {});
    // The computers that the entries of an M3U file lie on, other than its own; as ServerOf gives them.
    std::set<std::string> ServersOfM3U(const std::string& folder, const std::string& fileName) const;
    // The media files among the names of a folder, not those of the folders in it. `keepGoing` is asked now and then
    // and may interrupt it; true while there are more names.
    bool AddFolder(const std::string& folder, FolderReader& names, int list,
                   const std::function<bool()>& keepGoing = {});
    // Copies the selected rows of a list to the end of one, which may be the same, and makes that one's random order
    // new.
    void copyRows(int from, const Selection& selection, int to);
    bool ExportM3U(int list, const std::string& path);       // to the file of that ExportName
    static std::string ExportName(const std::string& path);  // with ".m3u" behind it when that is missing

    RandomOrder drawOrder(int list) override;
    void BuildShuffleOrder(int list) override;
    bool RemoveCurrentFileFromLists() override;  // from lists A and B, never from C
    // A file could not be played, or could: its rows are grey until it can again.
    void setPlayable(const std::string& path, bool playable) override;
    bool playable(int list, int row) const;
    void renamePath(const std::string& from, const std::string& to);  // in lists A and B, as the tag editor does

    // Rows to be played next. The selected ones are put behind those that wait, in the order of the list; when all of
    // them wait already they are taken off. The queue stays on its rows, and ends with the program.
    void toggleQueued(int list, const Selection& selection);
    std::optional<int> queuePosition(int list, int row) const { return queue_.positionOf(list, row); }  // from 0
    const std::vector<ListRow>& queue() const override { return queue_.rows(); }
    void takeFromQueue(const ListRow& row) override;
    std::optional<int> goesOnBehind(int list) const override { return queue_.goesOnBehind(list); }
    void forgetPlaces() override { queue_.forgetPlaces(); }

    // "Quenlox.m3u" in the program folder. A file that is there and cannot be read is never overwritten.
    void LoadListFile();
    WriteResult SaveListFile();                          // only when ListDirty
    std::string listFile() const;                        // its path
    WriteResult writeListFile(const std::string& path);  // the same text to another place

    // Sets ListDirty. Whatever changes a list does so, but for a sort by a click on a column.
    void markChanged();
    // Whether a change has not been written yet that can be written quietly, in the middle of a run: not when doing so
    // would first have to bring in a list file that could not be read at the start.
    bool unsavedChanges() const { return state_.ListDirty && changes_ != savedChanges_ && !listFileUnread_; }
    // Writes the lists as SaveListFile does. ListDirty stays: what the end of the program writes may differ by a sort.
    bool saveQuietly();

    // Editing. `selection` holds one flag for each row and follows its rows. CurrentIndex stays on its entry.
    enum class SortBy { Text, Value };  // Value: lengths as numbers, those that are not known first
    void sort(int list, int column, bool descending, Selection& selection, SortBy by = SortBy::Text);
    void randomize(int list, Selection& selection);
    void moveUp(int list, Selection& selection);
    void moveDown(int list, Selection& selection);
    void moveBefore(int list, int row, Selection& selection);  // the selected rows as one block
    void removeSelected(int list, Selection selection);
    void clear(int list);
    // The first row at or behind `from`, going round, whose title begins so, by the rules of sorting; -1 none. A row
    // whose texts are not known counts with its file name.
    int findTitle(int list, std::string_view beginning, int from) const;

    // Taking back. What is done between two calls of beginStep is one step, and `name` is what a menu calls it;
    // goOnWith is for work in slices. A name is empty when there is nothing to take back or to do again.
    void beginStep(std::string_view name) { history_.begin(name); }
    void goOnWith(std::string_view name) { history_.goOn(name); }
    std::string_view undoName() const { return history_.undoName(); }
    std::string_view redoName() const { return history_.redoName(); }
    // What a step has changed: the list, and the rows that came back or moved into their old order.
    struct Restored {
        int list = 0;
        Selection rows;
    };
    Restored undo() { return turnRound(true); }  // only when there is a name
    Restored redo() { return turnRound(false); }

    // What a search looks for words in: what is known of the row, folded as for sorting, and a line end behind each
    // part.
    void appendSearchKey(std::string& key, int list, int row) const;

    // The list of the browser's folder: file names in the order in which the browser shows them.
    void setFolderFiles(const std::string& folder, std::vector<std::string> names);
    const std::string& folder() const { return folder_; }
    int folderTrack(const std::string& name) const;  // its place among them, -1 when it is none
    const std::vector<std::string>& folderFiles() const { return folderFiles_; }

    GlobalState& state() { return state_; }

  private:
    struct Wanted {
        int list = 0;
        int row = 0;
    };

    static bool persisted(int list) { return list >= 0 && list < kPersistedLists; }
    EntryRows& rows(int list) { return lists_[static_cast<std::size_t>(list)]; }
    const EntryRows& rows(int list) const { return lists_[static_cast<std::size_t>(list)]; }
    int currentIndex(int list) const { return state_.CurrentIndex[static_cast<std::size_t>(list)]; }
    void setCurrentIndex(int list, int row);
    bool hasRow(int list, int row) const { return persisted(list) && row >= 0 && row < rows(list).count(); }
    void know(int list, int row);
    void report(int list, int first, int last, bool countChanged = false);
    CodePage codePage() const;
    bool append(int list, std::string_view path);
    void reportAdded(int list, int countBefore);
    void keepAdded(int list, int countBefore);
    std::size_t randomIndex(std::size_t count);
    void reportQueued();
    void followCurrentFile(int list, int a, int b);
    void exchangeSelected(int list, int row, int neighbour, Selection& selection, std::vector<std::int32_t>& order);
    void keepOrder(int list, std::vector<std::int32_t> order);
    void reorder(int list, const std::vector<std::int32_t>& order, Selection& selection);
    ListChange removeRows(int list, const Selection& which);
    ListChange insertRows(const ListChange& went);
    ListChange turnRound(const ListChange& change);
    Restored turnRound(bool undo);
    void readListFile(std::string_view bytes);
    bool joinUnreadListFile(const std::string& path);

    GlobalState& state_;
    FileSystem& files_;
    EntryReader reader_;
    Random& random_;
    std::array<EntryRows, kPersistedLists> lists_;
    ListHistory history_;
    RowQueue queue_;
    std::array<int, kPersistedLists> fillFrom_{};  // every row before it is known
    std::vector<Wanted> wanted_;
    std::set<std::string, std::less<>> unplayable_;  // paths
    std::array<Change, kPersistedLists> pending_;
    int batches_ = 0;
    std::string folder_;
    std::vector<std::string> folderFiles_;
    int changes_ = 0;
    int savedChanges_ = 0;         // those that saveQuietly has written
    bool listFileUnread_ = false;  // there is a list file, and it could not be read
};

}  // namespace quenlox
