// Adding many files, folders and M3U files to the lists, in slices, so that the window goes on answering.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <set>
#include <string>

namespace quenlox {

class FileSystem;
class Playlists;

// True for "m3u" as the last three characters whatever their case, and for ".m3u8".
bool IsM3U(const std::string& path);

class AddJob {
  public:
    // `breathe` is called every now and then while one folder is being listed, which is the one thing that cannot be
    // done in slices; it may handle messages.
    AddJob(Playlists& lists, FileSystem& files, std::function<void()> breathe);

    // What is to be added behind what waits already.
    void addPath(const std::string& path, int list);  // a folder, an M3U file or any other file
    void addFile(const std::string& path, int list);
    void addM3U(const std::string& folder, const std::string& name, int list);

    // A list whose random order is to be new in any case.
    void touch(int list) { touched_.insert(list); }

    bool active() const { return !items_.empty() || inStep_; }
    // Adds until the time is used up, at least one item. True while there is more to do; when there is not, the random
    // orders of the lists that it touched are new and ListDirty is set.
    bool step(std::chrono::microseconds budget);
    void cancel();  // what has been added stays
    int permille() const;

  private:
    enum class Kind { Path, File, M3U };
    struct Item {
        Kind kind;
        std::string path;    // M3U: the folder with its "\"
        std::string name;
        int list;
    };

    void push(Item item);
    void perform(const Item& item);
    void finish();

    Playlists& lists_;
    FileSystem& files_;
    std::function<void()> breathe_;
    std::deque<Item> items_;
    std::set<int> touched_;
    std::size_t done_ = 0;
    bool inStep_ = false;
    bool cancelled_ = false;
};

}  // namespace quenlox
