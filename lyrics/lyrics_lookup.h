// Finds the lyrics of the track that has been opened: inside the sound file, or a side file of the same name. The
// library keeps lyrics with time tags; a text without them goes into the lyrics window. On the user-interface thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace quenlox {

class FileSystem;
class FormLyrics;
struct Options;
class StatusDisplay;
class Vbmp3;
struct GlobalState;

enum LyricsKindCode : int { kNoLyrics = 0, kTimedLyrics = 1, kPlainLyrics = 2 };

inline constexpr std::uint64_t kLargestLyrics = 4u << 20;  // bytes of a side file; the library takes less

// Names of the side files of a track, the one that counts most first; without folder.
std::array<std::string, 3> LyricsCandidates(const std::string& track);

// Where the picture behind the lyrics of a track is looked for, the one that counts most first: in the picture folder,
// with the name of the track or that of the folder it lies in. Nothing without a picture folder.
std::vector<std::string> LyricsPictures(const std::string& track, const std::string& pictureFolder);

class LyricsLookup {
  public:
    LyricsLookup(GlobalState& state, const Options& options, Vbmp3& vbmp3, FileSystem& files, StatusDisplay& status,
                 FormLyrics& form);

    // Called when a track has been opened: sets LyricsKind. What cannot be read counts as no lyrics.
    void LoadLyrics();
    // Called when the sources have changed while a track is open.
    void lookAgain();
    // Each sets LyricsKind, marks its source behind the format ("+L", "+W") and tells whether there were lyrics.
    bool ReadLyrics3();
    bool FindLyricsFile();
    // Where the current lyrics come from; empty: not from a file of their own.
    const std::string& sideFile() const { return sideFile_; }

  private:
    std::string loadSideFile();  // the path that the library has accepted, or empty

    GlobalState& state_;
    const Options& options_;
    Vbmp3& vbmp3_;
    FileSystem& files_;
    StatusDisplay& status_;
    FormLyrics& form_;
    std::string sideFile_;
};

}  // namespace quenlox
