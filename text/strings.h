// Small helpers on UTF-8 texts. Pure functions, no locale.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quenlox {

std::string_view TrimBlanks(std::string_view text);  // blanks (U+0020) at both ends
// Cut before the first NUL, then trimmed: what is left of a text in a fixed-length field.
std::string TrimAtNull(std::string_view text);

// Simple case folding, one character for one: Latin with its accents, Greek, Cyrillic and full-width Latin; every
// other character and every ill-formed byte stays as it is. Two file names that Windows takes for the same fold alike.
std::string FoldCase(std::string_view utf8);
char32_t FoldCase(char32_t character);
bool EqualsNoCase(std::string_view a, std::string_view b);
int CompareNoCase(std::string_view a, std::string_view b);  // below 0, 0, above 0
bool ContainsNoCase(std::string_view text, std::string_view part);

// The last `count` characters, fewer when the text has fewer.
std::string_view LastCharacters(std::string_view utf8, std::size_t count);
std::size_t CharacterCount(std::string_view utf8);

// The prefix of at most `units` UTF-16 units; a character that needs two is never halved.
std::string_view CutUtf16Units(std::string_view utf8, std::size_t units);

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by);

}  // namespace quenlox
