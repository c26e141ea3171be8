// Time stamps as they stand in lyrics: mm:ss, mm:ss.x to mm:ss.xxx, mm:ss:xx and hh:mm:ss.xx between a pair of
// brackets. Numbers may have any digits and blanks around them, and a comma for the point. Pure: any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vbmp3 {

struct Stamp {
    int64_t ms = 0;
    size_t length = 0;  // bytes, with the brackets
};

// The stamp that `text` begins with; `open` is '[' or '<'. Nothing when it begins otherwise or the numbers are no time
// (seconds above 99, more than 99 hours).
std::optional<Stamp> ReadStamp(std::string_view text, char open);

}  // namespace vbmp3
