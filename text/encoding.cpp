#include "text/encoding.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quenlox {
namespace {

#include "text/cp932_table.inc"

constexpr char32_t kReplacement = 0xFFFD;
constexpr int kTrailCount = 188;

int LeadRow(unsigned char byte) {
    if (byte >= 0x81 && byte <= 0x9F) return byte - 0x81;
    if (byte >= 0xE0 && byte <= 0xFC) return byte - 0xE0 + 31;
    return -1;
}

int TrailColumn(unsigned char byte) {
    if (byte >= 0x40 && byte <= 0x7E) return byte - 0x40;
    if (byte >= 0x80 && byte <= 0xFC) return byte - 0x41;
    return -1;
}

struct Decoded {
    char32_t character;
    std::size_t length;
    bool valid;
};

// One character of code page 932 at the front of a text that is not empty.
Decoded DecodeShiftJisCharacter(std::string_view bytes) {
    const auto first = static_cast<unsigned char>(bytes[0]);
    if (first < 0x80) return {first, 1, true};
    if (first >= 0xA1 && first <= 0xDF) return {char32_t{0xFF61} + first - 0xA1, 1, true};
    const int row = LeadRow(first);
    if (row < 0 || bytes.size() < 2) return {kReplacement, 1, false};
    const int column = TrailColumn(static_cast<unsigned char>(bytes[1]));
    if (column < 0) return {kReplacement, 1, false};
    const char16_t character = kDoubleByte[row][column];
    if (character == 0) return {kReplacement, 2, false};
    return {character, 2, true};
}

// One character of UTF-8 at the front of a text that is not empty; table 3-7 of the Unicode standard.
Decoded DecodeUtf8Character(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0; };
    const unsigned first = at(0);
    if (first < 0x80) return {first, 1, true};
    std::size_t length = 0;
    unsigned low = 0x80, high = 0xBF;
    char32_t character = 0;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
        character = first & 0x1F;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        character = first & 0x0F;
        if (first == 0xE0) low = 0xA0;
        if (first == 0xED) high = 0x9F;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        character = first & 0x07;
        if (first == 0xF0) low = 0x90;
        if (first == 0xF4) high = 0x8F;
    } else {
        return {kReplacement, 1, false};
    }
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned next = at(i);
        if (next < low || next > high) return {kReplacement, i, false};
        character = (character << 6) | (next & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return {character, length, true};
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Code of each character of the basic plane, 0 where it has none; built once from the table above.
const std::vector<std::uint16_t>& EncodeTable() {
    static const std::vector<std::uint16_t> table = [] {
        std::vector<std::uint16_t> codes(0x10000, 0);
        const auto addRow = [&](int lead) {
            const int row = LeadRow(static_cast<unsigned char>(lead));
            for (int column = 0; column < kTrailCount; ++column) {
                const int trail = column < 63 ? 0x40 + column : 0x41 + column;
                auto& code = codes[kDoubleByte[row][column]];
                if (code == 0) code = static_cast<std::uint16_t>(lead << 8 | trail);
            }
        };
        // Where a character stands in several places Windows writes the first of: JIS, the special characters of row
        // 13, the extension at FA-FC, and last the selection of that extension at ED and EE.
        for (int lead = 0x81; lead <= 0xFC; ++lead) {
            if ((lead <= 0x9F || lead >= 0xE0) && lead != 0xED && lead != 0xEE) addRow(lead);
        }
        addRow(0xED);
        addRow(0xEE);
        for (int i = 0; i < 63; ++i) codes[0xFF61 + i] = static_cast<std::uint16_t>(0xA1 + i);
        for (int i = 0; i < 0x80; ++i) codes[i] = static_cast<std::uint16_t>(i);
        return codes;
    }();
    return table;
}

}  // namespace

bool IsValidUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const Decoded next = DecodeUtf8Character(bytes);
        if (!next.valid) return false;
        bytes.remove_prefix(next.length);
    }
    return true;
}

bool IsValidShiftJis(std::string_view bytes) {
    while (!bytes.empty()) {
        const Decoded next = DecodeShiftJisCharacter(bytes);
        if (!next.valid) return false;
        bytes.remove_prefix(next.length);
    }
    return true;
}

std::u16string Utf8ToUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const Decoded next = DecodeUtf8Character(utf8);
        utf8.remove_prefix(next.length);
        if (next.character < 0x10000) {
            out += static_cast<char16_t>(next.character);
        } else {
            out += static_cast<char16_t>(0xD800 + ((next.character - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((next.character - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view utf16) {
    std::string out;
    out.reserve(utf16.size() * 2);
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        const char16_t unit = utf16[i];
        const bool pair = unit >= 0xD800 && unit <= 0xDBFF && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 &&
                          utf16[i + 1] <= 0xDFFF;
        if (pair) {
            AppendUtf8(out, 0x10000 + ((char32_t{unit} - 0xD800) << 10) + (char32_t{utf16[++i]} - 0xDC00));
        } else {
            AppendUtf8(out, unit >= 0xD800 && unit <= 0xDFFF ? kReplacement : char32_t{unit});
        }
    }
    return out;
}

std::string Utf16BytesToUtf8(std::string_view bytes, bool bigEndian) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto a = static_cast<unsigned char>(bytes[i]);
        const auto b = static_cast<unsigned char>(bytes[i + 1]);
        units += static_cast<char16_t>(bigEndian ? a << 8 | b : b << 8 | a);
    }
    return Utf16ToUtf8(units);
}

std::string ShiftJisToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() * 2);
    while (!bytes.empty()) {
        const Decoded next = DecodeShiftJisCharacter(bytes);
        AppendUtf8(out, next.character);
        bytes.remove_prefix(next.length);
    }
    return out;
}

std::string Latin1ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 4);
    for (const char byte : bytes) AppendUtf8(out, static_cast<unsigned char>(byte));
    return out;
}

std::optional<std::string> Utf8ToShiftJis(std::string_view utf8) {
    const auto& codes = EncodeTable();
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const Decoded next = DecodeUtf8Character(utf8);
        utf8.remove_prefix(next.length);
        if (!next.valid || next.character > 0xFFFF) return std::nullopt;
        const std::uint16_t code = codes[next.character];
        if (code == 0 && next.character != 0) return std::nullopt;
        if (code > 0xFF) out += static_cast<char>(code >> 8);
        out += static_cast<char>(code & 0xFF);
    }
    return out;
}

bool LooksLikeShiftJis(std::string_view bytes) {
    if (!IsValidShiftJis(bytes)) return false;
    // Western text has single accented letters (C0-FF) among plain ones. Read as Shift-JIS each of them would be a
    // half-width kana or would swallow the plain letter behind it. Japanese text has neither in any number.
    std::size_t accents = 0, others = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        if (c < 0x80) continue;
        const bool highBefore = i > 0 && static_cast<signed char>(bytes[i - 1]) < 0;
        const bool highAfter = i + 1 < bytes.size() && static_cast<signed char>(bytes[i + 1]) < 0;
        (c >= 0xC0 && !highBefore && !highAfter ? accents : others) += 1;
    }
    return accents <= others;
}

std::string DecodeLegacyField(std::string_view bytes) {
    if (IsValidUtf8(bytes)) return std::string(bytes);
    return LooksLikeShiftJis(bytes) ? ShiftJisToUtf8(bytes) : Latin1ToUtf8(bytes);
}

namespace {

enum class ByteOrder { None, Little, Big };

// Two bytes a character without a byte-order mark: Western signs and line breaks leave NULs on one side only. Where
// they are few, no other coding may have an explanation for the bytes.
ByteOrder GuessUtf16(std::string_view bytes) {
    constexpr std::size_t kEnough = 4096;
    if (bytes.size() < 4 || bytes.size() % 2 != 0) return ByteOrder::None;
    const std::string_view head = bytes.substr(0, kEnough);
    std::size_t zeros[2] = {};
    for (std::size_t i = 0; i < head.size(); ++i) zeros[i % 2] += head[i] == '\0';
    const std::size_t most = std::max(zeros[0], zeros[1]), least = std::min(zeros[0], zeros[1]);
    if (most * 64 <= head.size() || least * 16 >= most) return ByteOrder::None;
    if (most * 3 < head.size() && (IsValidUtf8(bytes) || IsValidShiftJis(bytes))) return ByteOrder::None;
    return zeros[0] > zeros[1] ? ByteOrder::Big : ByteOrder::Little;
}

}  // namespace

std::string DecodeText(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return Utf16ToUtf8(Utf8ToUtf16(bytes.substr(3)));
    if (bytes.starts_with("\xFF\xFE")) return Utf16BytesToUtf8(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF")) return Utf16BytesToUtf8(bytes.substr(2), true);
    if (const ByteOrder order = GuessUtf16(bytes); order != ByteOrder::None)
        return Utf16BytesToUtf8(bytes, order == ByteOrder::Big);
    if (IsValidUtf8(bytes)) return std::string(bytes);
    return ShiftJisToUtf8(bytes);
}

std::string EncodeText(std::string_view utf8) {
    // A Shift-JIS text may by chance be valid UTF-8, or hold NULs as UTF-16 does, and the reader would take it for that;
    // such a text, too, is written as Unicode.
    if (auto bytes = Utf8ToShiftJis(utf8); bytes && DecodeText(*bytes) == utf8) return *bytes;
    std::string out = "\xFF\xFE";
    for (const char16_t unit : Utf8ToUtf16(utf8)) {
        out += static_cast<char>(unit & 0xFF);
        out += static_cast<char>(unit >> 8);
    }
    return out;
}

std::string_view CutUtf8(std::string_view utf8, std::size_t bytes) {
    if (utf8.size() <= bytes) return utf8;
    while (bytes > 0 && (static_cast<unsigned char>(utf8[bytes]) & 0xC0) == 0x80) --bytes;
    return utf8.substr(0, bytes);
}

void PutUtf8(char* field, std::size_t size, std::string_view utf8) {
    if (size == 0) return;
    const std::string_view part = CutUtf8(utf8.substr(0, utf8.find('\0')), size - 1);
    std::fill(std::copy(part.begin(), part.end(), field), field + size, '\0');
}

}  // namespace quenlox
