// Lyrics looked for in the tags of a file, whatever these claim.
#include "libraries/vbmp3/lyrics/embedded_lyrics.h"
#include "tests/fuzz/lyrics_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vbmp3::MemorySource file({data, size});
    const auto lyrics = vbmp3::ReadEmbeddedLyrics(file, vbmp3::ScanFileLayout(file), 26.122);
    if (!lyrics) return 0;
    for (const auto& text : {lyrics->title, lyrics->artist, lyrics->album, lyrics->author})
        if (!quenlox::IsValidUtf8(text)) std::abort();
    CheckLyrics(lyrics->text, vbmp3::LyricsFormat::Text);
    return 0;
}
