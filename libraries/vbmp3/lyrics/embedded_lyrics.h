// The lyrics that a sound file carries in its tags: a Lyrics3 block, else frames of ID3v2 (synchronised ones before
// others). Reads the tags only; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "libraries/formats/file_layout.h"

namespace vbmp3 {

struct EmbeddedLyrics {
    int lyrics3Version = 0;                    // 1 or 2; 0: from ID3v2
    std::string raw;                           // the Lyrics3 block byte for byte; from ID3v2 the same as `text`
    std::string text;                          // UTF-8, with the stamps it has
    std::string title, artist, album, author;  // of the Lyrics3 block
};

// Nothing when the file carries none, or only empty ones. `msPerMpegFrame` is 0 when the file is no MPEG audio.
std::optional<EmbeddedLyrics> ReadEmbeddedLyrics(const ByteSource& file, const FileLayout& layout,
                                                 double msPerMpegFrame);

}  // namespace vbmp3
