// Side files of lyrics of any content, read as .lrc, .kra and .txt.
#include "tests/fuzz/lyrics_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = vbmp3::DecodeLyrics({data, size});
    if (!text) return 0;
    for (const auto format : {vbmp3::LyricsFormat::Lrc, vbmp3::LyricsFormat::Kra, vbmp3::LyricsFormat::Text})
        CheckLyrics(*text, format);
    return 0;
}
