// Conversions between UTF-8, which is the text inside the program, and what stands in files: Shift-JIS (Windows code
// page 932), UTF-16 and Latin-1. Pure functions, no locale, the same result on every system.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quenlox {

bool IsValidUtf8(std::string_view bytes);
// True when every byte belongs to an assigned single- or double-byte code of code page 932.
bool IsValidShiftJis(std::string_view bytes);

// Ill-formed parts become U+FFFD, one for each maximal subpart.
std::u16string Utf8ToUtf16(std::string_view utf8);
std::string Utf16ToUtf8(std::u16string_view utf16);
std::string ShiftJisToUtf8(std::string_view bytes);
std::string Latin1ToUtf8(std::string_view bytes);
std::string Utf16BytesToUtf8(std::string_view bytes, bool bigEndian);  // without a byte-order mark

// Nothing when a character has no code in Shift-JIS.
std::optional<std::string> Utf8ToShiftJis(std::string_view utf8);

// Valid as Shift-JIS, and no Western text that is so by chance: that has single accented letters among plain ones.
bool LooksLikeShiftJis(std::string_view bytes);
// A field of an old tag that claims Latin-1: UTF-8 when it is that; Shift-JIS when it looks like it; else Latin-1.
std::string DecodeLegacyField(std::string_view bytes);

// A whole text file: by its byte-order mark (UTF-8, UTF-16 of both orders), else UTF-16 when NULs stand on one side of
// its pairs of bytes, else UTF-8 when valid, else Shift-JIS.
std::string DecodeText(std::string_view bytes);
// The bytes of a text file: Shift-JIS, and UTF-16LE with a byte-order mark when a character does not fit it.
std::string EncodeText(std::string_view utf8);

// The longest prefix of at most `bytes` bytes that ends at a character border.
std::string_view CutUtf8(std::string_view utf8, std::size_t bytes);
// Puts a text into a field of `size` bytes: as much as fits with its NUL, cut at a character border; what is behind it
// becomes zeros. A NUL inside ends the text. Nothing for a field without bytes.
void PutUtf8(char* field, std::size_t size, std::string_view utf8);
template <std::size_t size>
void PutUtf8(char (&field)[size], std::string_view utf8) {
    PutUtf8(field, size, utf8);
}

}  // namespace quenlox
