#include "playlist/sort_key.h"

#include <array>

#include "text/strings.h"

namespace quenlox {
namespace {

// Keys of the ASCII characters: controls and signs, then digits, then letters of either case.
constexpr std::array<char, 128> kAsciiKeys = [] {
    std::array<char, 128> keys{};
    char rank = 1;
    for (int c = 0; c < 128; ++c) {
        const bool upper = c >= 'A' && c <= 'Z', lower = c >= 'a' && c <= 'z', digit = c >= '0' && c <= '9';
        const auto at = static_cast<std::size_t>(c);
        if (upper) {
            keys[at] = static_cast<char>(c + 32);
        } else if (lower || digit) {
            keys[at] = static_cast<char>(c);
        } else if (c < 32 || c == 127) {
            keys[at] = 1;
        } else {
            keys[at] = ++rank;  // 33 signs: 2 to 34, below "0"
        }
    }
    return keys;
}();

// Full-width katakana for the half-width ones from U+FF66 on, without and with the voiced mark behind them.
constexpr std::u16string_view kKatakana =
    u"ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワン";

char32_t Katakana(char32_t halfWidth, char32_t next, bool& takesNext) {
    char32_t c = kKatakana[halfWidth - 0xFF66];
    const bool voiced = next == 0xFF9E, halfVoiced = next == 0xFF9F;
    const bool hRow = c >= u'ハ' && c <= u'ホ';
    takesNext = true;
    if (voiced && c == u'ウ') return u'ヴ';
    if (voiced && ((c >= u'カ' && c <= u'ト') || hRow)) return c + 1;
    if (halfVoiced && hRow) return c + 2;
    takesNext = false;
    return c;
}

char32_t ThreeByteCharacter(std::string_view at) {
    const auto byte = [&](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(at[i])); };
    return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
}

void AppendThreeBytes(std::string& key, char32_t c) {
    key += static_cast<char>(0xE0 | c >> 12);
    key += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    key += static_cast<char>(0x80 | (c & 0x3F));
}

bool IsThreeBytes(std::string_view text) {
    return text.size() >= 3 && (static_cast<unsigned char>(text[0]) & 0xF0) == 0xE0;
}

// The character of three bytes at the front of `rest`; gives the bytes that are used up, six where a half-width kana
// takes the mark behind it.
std::size_t AppendThreeByteKey(std::string& key, std::string_view rest) {
    char32_t c = ThreeByteCharacter(rest);
    if (c >= 0xFF01 && c <= 0xFF5E) {
        key += kAsciiKeys[c - 0xFF01 + 0x21];
        return 3;
    }
    if (c == 0x3000) {
        key += kAsciiKeys[' '];
        return 3;
    }
    bool takesNext = false;
    if (c >= 0xFF66 && c <= 0xFF9D) {
        const std::string_view behind = rest.substr(3);
        c = Katakana(c, IsThreeBytes(behind) ? ThreeByteCharacter(behind) : 0, takesNext);
    } else if (c >= 0x3041 && c <= 0x3096) {
        c += 0x60;  // hiragana
    } else {
        c = FoldCase(c);
    }
    AppendThreeBytes(key, c);
    return takesNext ? 6 : 3;
}

}  // namespace

void AppendSortKey(std::string& key, std::string_view utf8) {
    for (std::string_view rest = utf8; !rest.empty();) {
        const auto lead = static_cast<unsigned char>(rest[0]);
        std::size_t used = 1;
        if (lead < 0x80) {
            key += kAsciiKeys[lead];
        } else if (IsThreeBytes(rest)) {
            used = AppendThreeByteKey(key, rest);
        } else if (rest.size() >= 2 && lead >= 0xC2 && lead < 0xE0) {
            const char32_t c =
                FoldCase((static_cast<char32_t>(lead) & 0x1F) << 6 | (static_cast<unsigned char>(rest[1]) & 0x3F));
            key += static_cast<char>(0xC0 | c >> 6);
            key += static_cast<char>(0x80 | (c & 0x3F));
            used = 2;
        } else {
            key += rest[0];
        }
        rest.remove_prefix(used);
    }
}

}  // namespace quenlox
