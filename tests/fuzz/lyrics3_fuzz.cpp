// Lyrics3 blocks of any content.
#include "libraries/vbmp3/lyrics/lyrics3.h"
#include "tests/fuzz/lyrics_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto block = vbmp3::ParseLyrics3({data, size});
    if (!block) return 0;
    if (!quenlox::IsValidUtf8(block->title) || block->version < 1 || block->version > 2) std::abort();
    CheckLyrics(block->lyrics, vbmp3::LyricsFormat::Text);
    return 0;
}
