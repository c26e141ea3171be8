// Texts of tags without a declared encoding (ID3v1, RIFF INFO, ID3v2 fields that claim Latin-1).
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "text/encoding.h"

namespace vbmp3 {

// Without blanks and NULs at the end, and blanks in front.
inline std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    return text;
}

// Up to the first NUL, read as Shift-JIS, UTF-8 or Latin-1 by what it looks like.
inline std::string LegacyText(std::span<const uint8_t> bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    text = Trimmed(text.substr(0, text.find('\0')));
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    return quenlox::DecodeLegacyField(text);
}

inline bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

// The same for a field of fixed length: a character that its end has cut in two is left off, as it would make the rest
// unreadable.
inline std::string LegacyField(std::span<const uint8_t> field) {
    std::string_view text(reinterpret_cast<const char*>(field.data()), field.size());
    text = text.substr(0, text.find('\0'));
    // Some writers leave the last byte for a NUL.
    if (text.empty() || text.size() + 1 < field.size() || quenlox::IsValidUtf8(text)) return LegacyText(field);
    for (size_t cut = 1; cut <= 3 && cut < text.size(); ++cut) {
        const std::string_view whole = text.substr(0, text.size() - cut);
        const bool lead = static_cast<uint8_t>(text[whole.size()]) >= 0xC0;
        if (lead && !IsAscii(whole) && quenlox::IsValidUtf8(whole)) return LegacyText(field.first(whole.size()));
    }
    if (quenlox::IsValidShiftJis(text)) return LegacyText(field);
    const std::string_view whole = text.substr(0, text.size() - 1);
    const auto last = static_cast<uint8_t>(text.back());
    const bool lead = (last >= 0x81 && last <= 0x9F) || (last >= 0xE0 && last <= 0xFC);
    if (!lead || !quenlox::IsValidShiftJis(whole)) return LegacyText(field);
    // Behind plain letters it may as well be the accented last one of a Western word.
    const bool japanese =
        IsAscii(whole) ? last <= 0x9F : quenlox::DecodeLegacyField(whole) == quenlox::ShiftJisToUtf8(whole);
    return LegacyText(japanese ? field.first(whole.size()) : field);
}

}  // namespace vbmp3
