// Side files of lyrics of any content, read as .kra.
#include "tests/fuzz/lyrics_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = vbmp3::decodeLyrics({data, size});
    if (!text) return 0;
    CheckLyrics(*text, vbmp3::LyricsFormat::Kra);
    return 0;
}
