// Where the tags around a stream of MPEG frames stand, so that the sound between them is known. Only finds the blocks;
// what is in them is read elsewhere.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "libraries/vbmp3/byte_reader.h"

namespace vbmp3 {

struct Range {
    uint64_t begin = 0;
    uint64_t end = 0;
    uint64_t size() const { return end - begin; }
};

struct TagBounds {
    std::vector<Range> id3v2;           // at the front, then one appended with a footer
    std::optional<Range> id3v1;         // 128 bytes
    std::optional<Range> id3v1Enhanced; // 227 bytes, "TAG+"
    std::optional<Range> lyrics3;       // from LYRICSBEGIN to behind LYRICS200 or LYRICSEND
    std::optional<Range> ape;           // with header and footer
    Range audio;                        // what remains between them
};

// Looks at [begin, end) of the file, cut to its size. Tags at the tail may stand in any order.
TagBounds findTags(ByteReader& file, uint64_t begin, uint64_t end);
inline TagBounds findTags(ByteReader& file) { return findTags(file, 0, file.size()); }

} // namespace vbmp3
