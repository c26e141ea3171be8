#include "lyrics/lyrics_lookup.h"

#include <memory>

#include "lyrics/form_lyrics.h"
#include "platform/file_system.h"
#include "platform/vbmp3.h"
#include "playback/status_display.h"
#include "state/global_state.h"
#include "state/options.h"
#include "text/encoding.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// Lines parted by CR LF, whatever parted them in the file.
std::string WithBoxLines(const std::string& text) {
    return ReplaceAll(ReplaceAll(ReplaceAll(text, "\r\n", "\n"), "\r", "\n"), "\n", "\r\n");
}

}  // namespace

std::array<std::string, 3> LyricsCandidates(const std::string& track) {
    const std::string name = FileNameOf(track);
    std::array<std::string, 3> names;
    for (std::size_t i = 0; i < names.size(); ++i) names[i] = WithExtension(name, kLyricsExtensions[i]);
    return names;
}

std::vector<std::string> LyricsPictures(const std::string& track, const std::string& pictureFolder) {
    if (track.empty() || pictureFolder.empty()) return {};
    std::vector<std::string> paths{JoinPath(pictureFolder, BaseNameOf(track) + ".bmp")};
    std::string folder = FolderOf(track);
    if (folder.ends_with('\\')) folder.pop_back();
    if (const std::string name = FileNameOf(folder); !name.empty() && !name.ends_with(':')) {
        paths.push_back(JoinPath(pictureFolder, name + ".bmp"));
    }
    return paths;
}

LyricsLookup::LyricsLookup(GlobalState& state, const Options& options, Vbmp3& vbmp3, FileSystem& files,
                           StatusDisplay& status, FormLyrics& form)
    : state_(state), options_(options), vbmp3_(vbmp3), files_(files), status_(status), form_(form) {}

void LyricsLookup::lookAgain() {
    vbmp3_.vbmp3_clearLyrics();
    LoadLyrics();
}

void LyricsLookup::LoadLyrics() {
    status_.showLyricsMarker("");
    state_.LyricsKind = kNoLyrics;
    sideFile_.clear();
    form_.setText("");
    if (!state_.MediaKind.lyrics) return;
    vbmp3_.vbmp3_clearLyrics();
    if (options_.Lyrics3First) {
        if (!ReadLyrics3()) FindLyricsFile();
    } else {
        if (!FindLyricsFile()) ReadLyrics3();
    }
}

bool LyricsLookup::ReadLyrics3() {
    state_.LyricsKind = kNoLyrics;
    const auto text = vbmp3_.vbmp3_readLyrics3Data();
    if (!text) return false;
    if (vbmp3_.vbmp3_checkTimeTag()) {
        state_.LyricsKind = kTimedLyrics;
    } else {
        form_.setText(WithBoxLines(vbmp3_.vbmp3_getFileLyrics3InfoVB(state_.CurrentFile).value_or(*text)));
        state_.LyricsKind = kPlainLyrics;
    }
    status_.showLyricsMarker("+L");
    return true;
}

std::string LyricsLookup::loadSideFile() {
    const std::string folder = options_.LyricsFolder;
    for (const std::string& candidate : LyricsCandidates(state_.CurrentFile)) {
        // Without a folder of its own the name alone would mean whatever folder is current.
        if (!folder.empty()) {
            const std::string path = JoinPath(folder, candidate);
            if (vbmp3_.vbmp3_setLyricsFile(path)) return path;
        }
        const std::string path = JoinPath(FolderOf(state_.CurrentFile), candidate);
        if (vbmp3_.vbmp3_setLyricsFile(path)) return path;
    }
    return {};
}

bool LyricsLookup::FindLyricsFile() {
    state_.LyricsKind = kNoLyrics;
    const std::string path = sideFile_ = loadSideFile();
    if (path.empty()) return false;
    if (!vbmp3_.vbmp3_checkTimeTag()) {
        if (const auto bytes = files_.read(path, kLargestLyrics))
            form_.setText(WithBoxLines(TrimAtNull(DecodeText(*bytes))));
        state_.LyricsKind = kPlainLyrics;
    } else {
        state_.LyricsKind = kTimedLyrics;
    }
    status_.showLyricsMarker("+W");
    return true;
}

}  // namespace quenlox
