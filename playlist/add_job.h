// Adding many files, folders and M3U files to the lists, in slices, so that the window goes on answering. Whoever wrote
// an M3U file may have named any computer in it, and Windows signs in wherever a file is looked for: entries that lie
// on another computer than the M3U file itself are added only when the user agrees.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quenlox {

class FileSystem;
class FolderReader;
class Playlists;

// True for "m3u" as the last three characters whatever their case, and for ".m3u8".
bool IsM3U(const std::string& path);

class AddJob {
  public:
    AddJob(Playlists& lists, FileSystem& files);
    ~AddJob();

    // What is to be added behind what waits already.
    void addPath(const std::string& path, int list);  // a folder, an M3U file or any other file
    void addFile(const std::string& path, int list);
    void addM3U(const std::string& folder, const std::string& name, int list);
    void addTree(const std::string& folder, int list);           // with the folders in it, however deep
    void setStep(std::string name) { step_ = std::move(name); }  // what taking back calls it

    // A list whose random order is to be new in any case.
    void touch(int list) { touched_.insert(list); }
    bool touches(int list) const { return touched_.contains(list); }

    bool active() const { return !items_.empty(); }
    // Adds until the time is used up, at least something. True while there is more to do; when there is not, the random
    // orders of the lists that it touched are new. ListDirty is set by the first row, and at the end in any case.
    bool step(std::chrono::microseconds budget);
    void cancel();  // what has been added stays

    // The other computers that the M3U file at hand names and that the user has not agreed to; while there are any,
    // nothing is added. Agreed, they are not asked about again; else their entries are left out, of what waits now.
    const std::set<std::string>& question() const { return question_; }
    void answer(bool agreed);

    // What there was nothing to add of, for the user's eyes: the last of it since it was asked for.
    std::string takeTrouble() { return std::exchange(trouble_, {}); }

    std::optional<int> permille() const;  // nothing for a folder whose size nobody knows

  private:
    enum class Kind { Path, File, M3U, Tree };
    struct Item {
        Kind kind;
        std::string path;  // M3U: the folder with its "\"
        std::string name;
        int list;
        int depth = 0;  // Tree: folders above it
    };
    class Tree;

    void push(Item item);
    bool perform(const Item& item, const std::function<bool()>& keepGoing);
    bool readFolder(const Item& item, const std::function<bool()>& keepGoing);
    bool importM3U(const std::string& folder, const std::string& name, int list);
    int rows() const;  // of all lists
    void finish();

    Playlists& lists_;
    FileSystem& files_;
    std::deque<Item> items_;
    std::unique_ptr<FolderReader> folder_;  // of the first item, while its names are being read
    int rowsBefore_ = 0;                    // the folder
    std::vector<std::string> inside_;       // the folders in it
    std::string step_ = "追加", trouble_;
    std::set<int> touched_;
    std::set<std::string> question_, agreed_, refused_;  // servers
    std::size_t done_ = 0;
};

}  // namespace quenlox
