// Breaks a long line of lyrics into several: behind blanks and hyphens, and between the characters of texts that are
// written without blanks, but with no closing mark at the front of a line and no opening one at its end. Pure.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace quenlox {

struct TextPart {
    std::size_t begin = 0;  // bytes of the whole
    std::size_t end = 0;    // without the blanks that a break takes away
    bool operator==(const TextPart&) const = default;
};

// `fits` says whether a part has room in line `line` (0 the first); a shorter part fits where a longer one does. What
// has no place to break at is broken anywhere; a line has at least one character.
std::vector<TextPart> WrapText(std::string_view utf8,
                               const std::function<bool(std::string_view part, std::size_t line)>& fits);

}  // namespace quenlox
