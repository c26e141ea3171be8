#include "libraries/vbmp3/lyrics/stamps.h"

namespace vbmp3 {
namespace {

struct Number {
    int64_t value = 0;
    size_t digits = 0;
};

Number ReadNumber(std::string_view text) {
    Number number;
    while (number.digits < text.size() && number.digits < 5) {
        const char c = text[number.digits];
        if (c < '0' || c > '9') break;
        number.value = number.value * 10 + (c - '0');
        ++number.digits;
    }
    return number;
}

int64_t FractionMs(Number fraction) {
    int64_t ms = fraction.value * 1000;
    for (size_t i = 0; i < fraction.digits; ++i) ms /= 10;
    return ms;
}

}  // namespace

std::optional<Stamp> ReadStamp(std::string_view text, char open) {
    const char close = open == '[' ? ']' : '>';
    if (text.empty() || text[0] != open) return std::nullopt;
    Number parts[3];
    char separators[3] = {};
    size_t at = 1;
    int count = 0;
    while (count < 3) {
        parts[count] = ReadNumber(text.substr(at));
        if (parts[count].digits == 0) return std::nullopt;
        at += parts[count].digits;
        if (at >= text.size()) return std::nullopt;
        const char next = text[at++];
        separators[count++] = next;
        if (next == close) break;
        if (next != ':' && next != '.') return std::nullopt;
    }
    // Four parts: hours, with a fraction behind the point.
    Number fraction;
    if (count == 3 && separators[2] == '.') {
        fraction = ReadNumber(text.substr(at));
        at += fraction.digits;
        if (fraction.digits == 0 || at >= text.size() || text[at++] != close || separators[1] != ':')
            return std::nullopt;
    } else if (separators[count - 1] != close) {
        return std::nullopt;
    }
    if (count < 2 || separators[0] != ':') return std::nullopt;

    int64_t hours = 0, minutes = parts[0].value, seconds = parts[1].value;
    if (fraction.digits > 0) {
        hours = parts[0].value;
        minutes = parts[1].value;
        seconds = parts[2].value;
        if (hours > 99 || minutes > 59) return std::nullopt;
    } else if (count == 3) {
        if (parts[2].digits > 3) return std::nullopt;
        fraction = parts[2];
    }
    if (fraction.digits > 3 || seconds > 59 || minutes > 99 * 60) return std::nullopt;
    return Stamp{((hours * 60 + minutes) * 60 + seconds) * 1000 + FractionMs(fraction), at};
}

}  // namespace vbmp3
