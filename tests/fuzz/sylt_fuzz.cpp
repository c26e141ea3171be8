// Frames SYLT and USLT of any content.
#include "libraries/vbmp3/lyrics/id3v2_lyrics.h"
#include "tests/fuzz/lyrics_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const double msPerFrame : {0.0, 26.122}) {
        if (const auto text = vbmp3::ReadSylt({data, size}, msPerFrame)) {
            if (!vbmp3::ParseLyrics(*text, vbmp3::LyricsFormat::Text).timed) std::abort();
            CheckLyrics(*text, vbmp3::LyricsFormat::Text);
        }
    }
    if (const auto text = vbmp3::ReadUslt({data, size})) CheckLyrics(*text, vbmp3::LyricsFormat::Text);
    return 0;
}
