#include "libraries/vbmp3/lyrics/stamps.h"

namespace vbmp3 {
namespace {

// Written by hand, or by programs that do not carry over to the minutes.
constexpr int64_t kMostSeconds = 99;

struct Number {
    int64_t value = 0;
    size_t digits = 0;
};

Number ReadNumber(std::string_view text) {
    Number number;
    while (number.digits < text.size() && number.digits < 9) {
        const char c = text[number.digits];
        if (c < '0' || c > '9') break;
        number.value = number.value * 10 + (c - '0');
        ++number.digits;
    }
    return number;
}

size_t Blanks(std::string_view text) {
    const size_t blanks = text.find_first_not_of(" \t");
    return blanks == std::string_view::npos ? text.size() : blanks;
}

int64_t FractionMs(Number fraction) {
    int64_t ms = fraction.value * 1000;
    for (size_t i = 0; i < fraction.digits; ++i) ms /= 10;
    return ms;
}

// Two to four numbers, what stands behind each (a comma is a point), and the bytes of all.
struct Parts {
    Number numbers[4];
    char behind[4] = {};
    int count = 0;
    size_t length = 0;
};

std::optional<Parts> SplitStamp(std::string_view text, char close) {
    Parts parts;
    size_t at = 1;
    while (parts.count < 4) {
        at += Blanks(text.substr(at));
        const Number number = ReadNumber(text.substr(at));
        at += number.digits;
        at += Blanks(text.substr(at));
        if (number.digits == 0 || at >= text.size()) return std::nullopt;
        const char next = text[at] == ',' ? '.' : text[at];
        ++at;
        parts.numbers[parts.count] = number;
        parts.behind[parts.count++] = next;
        parts.length = at;
        if (next == close) return parts;
        if (next != ':' && next != '.') return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

std::optional<Stamp> ReadStamp(std::string_view text, char open) {
    if (text.empty() || text[0] != open) return std::nullopt;
    const auto parts = SplitStamp(text, open == '[' ? ']' : '>');
    if (!parts || parts->count < 2 || parts->behind[0] != ':') return std::nullopt;
    // Four parts: hours, with a fraction behind the point.
    const bool withHours = parts->count == 4;
    if (withHours && (parts->behind[1] != ':' || parts->behind[2] != '.')) return std::nullopt;
    const Number* const clock = parts->numbers + (withHours ? 1 : 0);
    const int64_t hours = withHours ? parts->numbers[0].value : 0, minutes = clock[0].value, seconds = clock[1].value;
    const Number fraction = parts->count > 2 ? clock[2] : Number{};
    if (withHours && (hours > 99 || minutes > 59)) return std::nullopt;
    if (seconds > kMostSeconds || minutes > 99 * 60) return std::nullopt;
    return Stamp{((hours * 60 + minutes) * 60 + seconds) * 1000 + FractionMs(fraction), parts->length};
}

}  // namespace vbmp3
