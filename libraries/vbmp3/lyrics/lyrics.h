// The words of a song, whatever file they came from: lines with or without time, and inside a line the times of its
// words. A plain value; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vbmp3 {

// From `ms` on the text is sung that begins at byte `byte` of its line. The last word of a line may stand at the end of
// the text and tells then when the line is over.
struct LyricsWord {
    int64_t ms = 0;
    size_t byte = 0;
    bool operator==(const LyricsWord&) const = default;
};

struct LyricsLine {
    int64_t ms = 0;                 // from the beginning of the track, with an offset perhaps below 0; untimed: 0
    std::string text;               // UTF-8, no stamps, no line break
    std::vector<LyricsWord> words;  // rising in time; empty when the line has no word stamps
    std::string translation;        // the second text of the same time
};

struct Lyrics {
    bool timed = false;
    std::string title, artist, album, author;
    std::vector<LyricsLine> lines;  // timed: by rising time, no time twice
};

}  // namespace vbmp3
