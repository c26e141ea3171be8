// A file opened for playing: what it is, the file itself, and the decoder on it. A file may take long to answer, or
// never do so: a track is opened wherever the opener can wait; read and closed it is by the decode thread alone.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "libraries/formats/source.h"
#include "libraries/vbmp3/lyrics/embedded_lyrics.h"
#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

// How files are opened: openFile, or that of a test.
using FileOpener = std::function<std::unique_ptr<ByteSource>(const std::string& path)>;

// A decoder that can be told from any thread to give up: it then reads no further and is soon at its end. It is of no
// use any more.
struct Stream {
    std::shared_ptr<std::atomic<bool>> givenUp = std::make_shared<std::atomic<bool>>(false);
    std::unique_ptr<Source> source;

    // False when the decoder refuses.
    bool open(std::shared_ptr<const ByteSource> file, const StreamInfo& info);
};

struct Track {
    int64_t id = 0;
    std::string path;
    StreamInfo info;
    int sampleRate = 0;
    std::optional<EmbeddedLyrics> lyrics;

    // Guarded by the mutex of the player once the track is there.
    std::shared_ptr<const ByteSource> file;  // null when it has been closed
    Stream stream;                           // without a source while a decode thread has it
};
using TrackPtr = std::shared_ptr<Track>;

// Of one opening; no two are alike. True: something newer has been ordered, and its file gives nothing any more.
using Ticket = std::shared_ptr<std::atomic<bool>>;

// Opens the file, once, as far as playing and showing need it. Null and a VBMP3_ERROR_* number when that fails.
// `record` may be null; it gets what vbmp3_open tells.
TrackPtr OpenTrack(const FileOpener& openFile, const std::string& path, const Ticket& ticket, int& error,
                   vbmp3_FileInfo* record = nullptr);

// The lyrics in the tags of a file.
std::optional<EmbeddedLyrics> LyricsInTags(const ByteSource& file, const FileLayout& layout,
                                           const std::optional<StreamInfo>& info);

}  // namespace vbmp3
