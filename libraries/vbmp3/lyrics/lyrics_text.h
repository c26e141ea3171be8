// Texts of lyrics in all their dialects (lrc, kra, txt, and what tags carry) read into Lyrics. Pure:
// any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "libraries/vbmp3/lyrics/lyrics.h"

namespace vbmp3 {

enum class LyricsFormat {
    Lrc,  // stamps in front of a line; several repeat it; stamps inside it, in either kind of bracket, are of its words
    Kra,  // every syllable behind its stamp
    Text  // as Lrc when a line begins with a stamp, else without time
};

struct LyricsRules {
    // Lines such as "@Title=..." are information about the song and are not shown.
    bool atMarkTags = true;
};

// Largest file taken for lyrics. The longest opera libretto with a stamp for each syllable stays below 1 MiB; anything
// larger is something else, and reading it would only delay the sound.
inline constexpr int64_t kMostLyricsBytes = 1 << 20;

// The bytes of a side file as UTF-8, read as every text is (text/encoding.h). Nothing when they are no text at all
// (control characters, sequences that no encoding has).
std::optional<std::string> DecodeLyrics(std::span<const uint8_t> bytes);

// The format by the file name's extension.
LyricsFormat LyricsFormatOf(std::string_view path);

// Never fails: text without a stamp gives untimed lines. At most 20000 lines.
Lyrics ParseLyrics(std::string_view utf8, LyricsFormat format, const LyricsRules& rules = {});

// All text of the lyrics, the lines separated by CR LF.
std::string PlainText(const Lyrics& lyrics);

}  // namespace vbmp3
