// What holds for lyrics of any origin: lines in order, words inside their lines, rows that are whole characters.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "libraries/vbmp3/lyrics/lyrics_show.h"
#include "text/encoding.h"

inline void CheckLyrics(std::string_view utf8, vbmp3::LyricsFormat format) {
    using namespace vbmp3;
    for (const bool atMarkTags : {true, false}) {
        const Lyrics lyrics = ParseLyrics(utf8, format, {atMarkTags});
        if (lyrics.lines.size() > 20000) std::abort();
        for (size_t i = 0; i < lyrics.lines.size(); ++i) {
            const LyricsLine& line = lyrics.lines[i];
            if (lyrics.timed && i > 0 && lyrics.lines[i - 1].ms >= line.ms) std::abort();
            if (line.text.find_first_of("\r\n") != std::string::npos) std::abort();
            if (!quenlox::IsValidUtf8(line.text) || !quenlox::IsValidUtf8(line.translation)) std::abort();
            for (size_t k = 0; k < line.words.size(); ++k) {
                if (line.words[k].byte > line.text.size() || line.words[k].ms < line.ms) std::abort();
                if (k > 0 && line.words[k - 1].ms > line.words[k].ms) std::abort();
                if (k > 0 && line.words[k - 1].byte > line.words[k].byte) std::abort();
            }
        }
    }
    LyricsShow show;
    show.setUntimedStep(1);
    show.set(std::string(utf8), format);
    for (const int64_t ms : {int64_t{0}, int64_t{1500}, int64_t{61000}, int64_t{1} << 40}) {
        vbmp3_LyricsLines record{};
        record.size = sizeof record;
        show.fill(ms, 200000, record);
        if (record.progress < 0 || record.progress > 1000) std::abort();
        for (const auto& row : record.rows) {
            const std::string_view text(row, VBMP3_LYRICS_ROW);
            if (text.back() != '\0' || !quenlox::IsValidUtf8(text.substr(0, text.find('\0')))) std::abort();
        }
        if (record.progressBytes >= VBMP3_LYRICS_ROW) std::abort();
    }
}
