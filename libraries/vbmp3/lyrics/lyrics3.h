// The Lyrics3 block at the tail of an MPEG file, versions 1 and 2.00 (P. Nilsson, "Lyrics3 made easy", id3.org). Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vbmp3 {

struct Lyrics3 {
    int version = 0;
    std::string lyrics;  // UTF-8, with its stamps, lines separated by CR LF
    std::string title, artist, album, author;
};

// `block` is the whole block, from "LYRICSBEGIN" to "LYRICSEND" or "LYRICS200". Nothing when it is none. Lengths that
// do not fit the block are cut.
std::optional<Lyrics3> ParseLyrics3(std::span<const uint8_t> block);

}  // namespace vbmp3
