#include "text/strings.h"

#include <iterator>

#include "text/letter_case.h"

namespace quenlox {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Bytes of the character at the front of a text that is not empty; 1 for an ill-formed one.
std::size_t CharacterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    if (length > text.size()) return 1;
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) return 1;
    }
    return length;
}

// Two- and three-byte characters are the only ones that fold to another one here, always of the same length class.
char32_t Decode(std::string_view character) {
    const auto byte = [&](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(character[i])); };
    switch (character.size()) {
        case 2: return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
        case 3: return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
        default: return byte(0);
    }
}

void AppendUtf8(std::string& to, char32_t c) {
    const auto put = [&](char32_t byte) { to.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6), put(0x80 | (c & 0x3F));
    } else {
        put(0xE0 | c >> 12), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
    }
}

// Capitals whose small letters stand at one distance.
struct CaseRun {
    char32_t first, last;
    char32_t distance;  // modulo 2^32
};
constexpr CaseRun kCaseRuns[] = {
    {0xC0, 0xD6, 32},     {0xD8, 0xDE, 32},   {0x178, 0x178, 0xFFu - 0x178u},
    {0x386, 0x386, 38},   {0x388, 0x38A, 37}, {0x38C, 0x38C, 64},
    {0x38E, 0x38F, 63},   {0x391, 0x3A1, 32}, {0x3A3, 0x3A9, 32},
    {0x400, 0x40F, 80},   {0x410, 0x42F, 32}, {0x2160, 0x216F, 16},  // Roman numerals
    {0x24B6, 0x24CF, 26},                                            // circled letters
    {0xFF21, 0xFF3A, 32},                                            // full-width
};
// What lies between is most of Japanese and has no case.
constexpr std::size_t kLastBeforeKana = std::size(kCaseRuns) - 2;

// Capitals stand on even places, but on odd ones in two runs.
char32_t FoldLatinExtended(char32_t c) {
    if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F) return c;
    const bool capitalIsOdd = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    return (c % 2 == 1) == capitalIsOdd ? c + 1 : c;
}

char32_t CapitalOf(char32_t c) {
    if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
    for (const CaseRun& run : kCaseRuns) {
        if (c - run.distance >= run.first && c - run.distance <= run.last) return c - run.distance;
    }
    return c > 0x100 && c <= 0x17F && FoldLatinExtended(c - 1) == c ? c - 1 : c;
}

// Every character through `map`, which keeps it one of as many bytes; ill-formed bytes stay.
template <class Map>
std::string Mapped(std::string_view utf8, Map map) {
    std::string mapped;
    mapped.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::size_t length = CharacterLength(utf8);
        const std::string_view character = utf8.substr(0, length);
        if (length == 2 || length == 3 || static_cast<unsigned char>(utf8.front()) < 0x80) {
            AppendUtf8(mapped, map(Decode(character)));
        } else {
            mapped.append(character);
        }
        utf8.remove_prefix(length);
    }
    return mapped;
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string TrimAtNull(std::string_view text) { return std::string(TrimBlanks(text.substr(0, text.find('\0')))); }

char32_t FoldCase(char32_t c) {
    if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
    if (c > kCaseRuns[kLastBeforeKana].last && c < kCaseRuns[kLastBeforeKana + 1].first) return c;
    if (c >= 0x100 && c <= 0x17F && c != 0x178) return FoldLatinExtended(c);
    for (const CaseRun& run : kCaseRuns) {
        if (c >= run.first && c <= run.last) return c + run.distance;
    }
    return c;
}

std::string FoldCase(std::string_view utf8) {
    return Mapped(utf8, [](char32_t c) { return FoldCase(c); });
}

std::string UpperCase(std::string_view utf8) { return Mapped(utf8, CapitalOf); }

std::string WithCapitals(std::string_view utf8) {
    bool inWord = false;
    return Mapped(utf8, [&inWord](char32_t c) {
        const char32_t small = FoldCase(c), capital = CapitalOf(c);
        const char32_t result = inWord ? small : capital;
        const bool isDigit = c >= '0' && c <= '9';
        inWord = small != capital || isDigit || (inWord && (c == '\'' || c == 0x2019));
        return result;
    });
}

bool EqualsNoCase(std::string_view a, std::string_view b) { return CompareNoCase(a, b) == 0; }

int CompareNoCase(std::string_view a, std::string_view b) { return FoldCase(a).compare(FoldCase(b)); }

bool ContainsNoCase(std::string_view text, std::string_view part) {
    return FoldCase(text).find(FoldCase(part)) != std::string::npos;
}

std::string_view LastCharacters(std::string_view utf8, std::size_t count) {
    std::size_t start = utf8.size();
    while (count > 0 && start > 0) {
        --start;
        while (start > 0 && IsContinuation(utf8[start])) --start;
        --count;
    }
    return utf8.substr(start);
}

std::size_t CharacterCount(std::string_view utf8) {
    std::size_t count = 0;
    for (; !utf8.empty(); utf8.remove_prefix(CharacterLength(utf8))) ++count;
    return count;
}

std::string_view CutUtf16Units(std::string_view utf8, std::size_t units) {
    std::size_t end = 0;
    while (end < utf8.size()) {
        const std::size_t length = CharacterLength(utf8.substr(end));
        const std::size_t needed = length == 4 ? 2 : 1;
        if (needed > units) break;
        units -= needed;
        end += length;
    }
    return utf8.substr(0, end);
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    if (what.empty()) return std::string(text);
    for (;;) {
        const std::size_t at = text.find(what);
        result.append(text.substr(0, at));
        if (at == std::string_view::npos) return result;
        result.append(by);
        text.remove_prefix(at + what.size());
    }
}

}  // namespace quenlox
