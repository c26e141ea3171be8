// A list model on the fakes, and lists written as plain vectors.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "state/global_state.h"
#include "playlist/playlists.h"
#include "tests/fakes/fake_file_system.h"
#include "state/options.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {

using Paths = std::vector<std::string>;

// Counts how often a file's texts were read.
class CountingVbmp3 : public FakeVbmp3 {
  public:
    Paths infoReads;
    std::chrono::milliseconds delay{};  // of each read, as a slow disk has it
    LibraryResult<TrackInfo> vbmp3_getFileInfo(const std::string& path) override {
        infoReads.push_back(path);
        if (delay.count() > 0) std::this_thread::sleep_for(delay);
        return FakeVbmp3::vbmp3_getFileInfo(path);
    }
};

class SlowFileSystem : public FakeFileSystem {
  public:
    std::chrono::microseconds enumerationDelay{};  // of each name
    std::chrono::milliseconds lookUpDelay{};
    SlowFileSystem() {
        perName = [this] {
            if (enumerationDelay.count() > 0) std::this_thread::sleep_for(enumerationDelay);
        };
    }
    bool folderExists(const std::string& path) override {
        if (lookUpDelay.count() > 0) std::this_thread::sleep_for(lookUpDelay);
        return FakeFileSystem::folderExists(path);
    }
};

struct Lists {
    GlobalState state;
    Options options;
    SlowFileSystem files;
    CountingVbmp3 vbmp3;
    FakeRandom random;
    Playlists lists;

    explicit Lists(std::vector<double> chance = {0.5})
        : random(std::move(chance)), lists(state, options, files, vbmp3, random) {
        state.ListType = 1;
        lists.onCurrentMoved = [this](int list, int row) { state.CurrentIndex[static_cast<std::size_t>(list)] = row; };
    }

    void add(int list, const Paths& paths) {
        for (const std::string& path : paths) lists.AddEntry(path, list);
    }
    Paths paths(int list) const {
        Paths paths;
        for (int row = 0; row < lists.count(list); ++row) paths.push_back(lists.path(list, row));
        return paths;
    }
    // One letter for each row: the file name without folder and extension.
    std::string names(int list) const {
        std::string names;
        for (const std::string& path : paths(list)) names += BaseNameOf(path);
        return names;
    }
    // Rows C:\a.mp3, C:\b.mp3 ... for "ab...".
    void addLetters(int list, const std::string& letters) {
        for (const char letter : letters) lists.AddEntry(pathOf(letter), list);
    }
    static std::string pathOf(char letter) { return std::string("C:\\") + letter + ".mp3"; }
};

struct ListsTest : testing::Test, Lists {};

// "..xx." marks the third and the fourth row.
inline Playlists::Selection Marked(const std::string& marks) {
    Playlists::Selection selection;
    for (const char mark : marks) selection.push_back(mark == 'x');
    return selection;
}

inline std::string MarksOf(const Playlists::Selection& selection) {
    std::string marks;
    for (const bool selected : selection) marks += selected ? 'x' : '.';
    return marks;
}

}  // namespace quenlox
