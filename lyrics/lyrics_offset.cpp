#include "lyrics/lyrics_offset.h"

#include <algorithm>
#include <charconv>

#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kMostOffset = 3600000;  // milliseconds; the reader takes no more

// One character for each unit of the coding; what is no plain character of ASCII is 1, which nothing here looks for.
std::string Plain(std::string_view bytes, std::size_t unit, bool bigEndian) {
    std::string plain;
    for (std::size_t at = 0; at + unit <= bytes.size(); at += unit) {
        const char low = bytes[at + (unit == 2 && bigEndian ? 1 : 0)];
        const char high = unit == 2 ? bytes[at + (bigEndian ? 0 : 1)] : '\0';
        plain += high == 0 && static_cast<unsigned char>(low) < 0x80 ? low : '\1';
    }
    return plain;
}

std::string Coded(std::string_view ascii, std::size_t unit, bool bigEndian) {
    if (unit == 1) return std::string(ascii);
    std::string bytes;
    for (const char c : ascii) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

struct Offset {
    std::size_t begin = 0, end = 0;  // of the value
    bool atMark = false;
};

std::size_t SkipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
    return at;
}

// The offset that the line begins with, perhaps behind other tags.
std::optional<Offset> OffsetOfLine(std::string_view line) {
    std::size_t at = SkipBlanks(line, 0);
    if (at < line.size() && line[at] == '@') {
        const std::size_t equals = line.find('=', at);
        if (equals == std::string_view::npos ||
            !EqualsNoCase(TrimBlanks(line.substr(at + 1, equals - at - 1)), "offset"))
            return std::nullopt;
        return Offset{equals + 1, line.size(), true};
    }
    while (at < line.size() && line[at] == '[') {
        const std::size_t close = line.find(']', at), colon = line.find(':', at);
        if (close == std::string_view::npos || colon > close) return std::nullopt;
        const std::size_t behind = SkipBlanks(line, close + 1);
        const bool isTag = behind == line.size() || line[behind] == '[';
        if (!isTag) return std::nullopt;
        if (EqualsNoCase(TrimBlanks(line.substr(at + 1, colon - at - 1)), "offset"))
            return Offset{colon + 1, close, false};
        at = behind;
    }
    return std::nullopt;
}

std::optional<Offset> FindOffset(std::string_view plain) {
    for (std::size_t begin = 0; begin < plain.size();) {
        const std::size_t end = std::min(plain.find_first_of("\r\n", begin), plain.size());
        if (auto found = OffsetOfLine(plain.substr(begin, end - begin))) {
            found->begin += begin;
            found->end += begin;
            return found;
        }
        begin = end + 1;
    }
    return std::nullopt;
}

int ValueOf(std::string_view text) {
    text = TrimBlanks(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace

std::optional<std::string> ShiftLyrics(std::string_view bytes, int laterMs, bool atMark) {
    const bool little = bytes.starts_with("\xFF\xFE"), big = bytes.starts_with("\xFE\xFF");
    const std::size_t unit = little || big ? 2 : 1, mark = little || big                       ? 2
                                                           : bytes.starts_with("\xEF\xBB\xBF") ? 3
                                                                                               : 0;
    if (unit == 1 && bytes.find('\0') != std::string_view::npos) return std::nullopt;
    const std::string plain = Plain(bytes.substr(mark), unit, big);
    const auto found = FindOffset(plain);
    if (found) atMark = found->atMark;
    const int before = found ? ValueOf(std::string_view(plain).substr(found->begin, found->end - found->begin)) : 0;
    const auto inRange = [](int value) { return value >= -kMostOffset && value <= kMostOffset; };
    if (!inRange(before) || !inRange(laterMs)) return std::nullopt;
    const int value = before + (atMark ? laterMs : -laterMs);
    if (!inRange(value)) return std::nullopt;
    std::string text = std::to_string(value);
    std::size_t begin = 0, end = 0;
    if (found) {
        begin = found->begin;
        end = found->end;
    } else {
        const std::size_t line = plain.find_first_of("\r\n");
        const std::string_view break_ = line == std::string::npos             ? "\r\n"
                                        : plain.compare(line, 2, "\r\n") == 0 ? "\r\n"
                                        : plain[line] == '\r'                 ? "\r"
                                                                              : "\n";
        text = (atMark ? "@Offset=" + text : "[offset:" + text + "]").append(break_);
    }
    return std::string(bytes.substr(0, mark + begin * unit)) + Coded(text, unit, big) +
           std::string(bytes.substr(mark + end * unit));
}

}  // namespace quenlox
