// Capital and small letters for people to read, of the scripts that FoldCase knows; small letters are what that gives.
// Pure functions, no locale.
#pragma once

#include <string>
#include <string_view>

namespace quenlox {

std::string UpperCase(std::string_view utf8);
// The first letter of every word as a capital, the others small: "DON'T STOP (live)" is "Don't Stop (Live)".
std::string WithCapitals(std::string_view utf8);

}  // namespace quenlox
