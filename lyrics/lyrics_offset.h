// The timing of a lyrics file changed in the file itself: its offset, "[offset:500]" or "@Offset=-500" (one says how
// much sooner, the other how much later the lines come). Every other byte stays as it is, whatever the coding. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quenlox {

// The bytes of the file with all lines `laterMs` milliseconds later (below 0: sooner). A file without an offset gets
// one in front, of the second kind when `atMark`. Nothing when the offset would be beyond an hour, or the file's
// characters have two bytes and no mark says in which order.
std::optional<std::string> ShiftLyrics(std::string_view bytes, int laterMs, bool atMark);

}  // namespace quenlox
