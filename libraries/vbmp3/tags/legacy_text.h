// Texts of tags without a declared encoding (ID3v1, RIFF INFO, ID3v2 fields that claim Latin-1).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "text/encoding.h"

namespace vbmp3 {

// Without blanks and NULs at the end, and blanks in front.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    return text;
}

// Up to the first NUL, read as Shift-JIS, UTF-8 or Latin-1 by what it looks like.
inline std::string legacyText(std::span<const uint8_t> bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    text = trimmed(text.substr(0, text.find('\0')));
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    return quenlox::DecodeLegacyField(text);
}

}  // namespace vbmp3
