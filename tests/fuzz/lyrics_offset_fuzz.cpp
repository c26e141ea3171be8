#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "lyrics/lyrics_offset.h"

using quenlox::ShiftLyrics;

// A shift and the same one back and forth again give the same bytes, and a shift adds no more than an offset.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    const int later = (data[0] - 128) * 100;
    const bool atMark = data[1] & 1;
    const auto shifted = ShiftLyrics(bytes, later, atMark);
    if (!shifted) return 0;
    if (shifted->size() > bytes.size() + 64) std::abort();
    const auto back = ShiftLyrics(*shifted, -later, atMark);
    if (back && ShiftLyrics(*back, later, atMark) != shifted) std::abort();
    return 0;
}
