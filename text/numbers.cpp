#include "text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace quenlox {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A large number for what is no digit.
std::uint32_t DigitValue(char c) {
    if (IsDigit(c)) return static_cast<std::uint32_t>(c - '0');
    const char small = static_cast<char>(c | 0x20);
    return small >= 'a' && small <= 'f' ? static_cast<std::uint32_t>(small - 'a') + 10 : 99;
}

std::string_view SkipBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

}  // namespace

double NumericValue(std::string_view text) {
    text = SkipBlanks(text);
    bool negative = false;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        negative = text.front() == '-';
        text = SkipBlanks(text.substr(1));
    }
    std::size_t end = 0;
    while (end < text.size() && IsDigit(text[end])) ++end;
    if (end < text.size() && text[end] == '.') {
        ++end;
        while (end < text.size() && IsDigit(text[end])) ++end;
    }
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + end, value, std::chars_format::fixed);
    if (result.ec == std::errc::result_out_of_range) value = std::numeric_limits<double>::max();
    return negative ? -value : value;
}

std::int32_t NumericInteger(std::string_view text) {
    const double rounded = std::nearbyint(NumericValue(text));  // the default rounding is half to even
    return static_cast<std::int32_t>(std::clamp(rounded, double{std::numeric_limits<std::int32_t>::min()},
                                                double{std::numeric_limits<std::int32_t>::max()}));
}

std::int32_t ProfileInteger(std::string_view text) {
    text = SkipBlanks(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    const std::string_view prefix = text.substr(0, 2);
    const std::uint32_t base = prefix == "0x" ? 16 : prefix == "0o" ? 8 : prefix == "0b" ? 2 : 10;
    if (base != 10) text.remove_prefix(2);
    std::uint32_t value = 0;
    for (const char c : text) {
        const std::uint32_t digit = DigitValue(c);
        if (digit >= base) break;
        value = value * base + digit;
    }
    return static_cast<std::int32_t>(negative ? 0u - value : value);
}

void SplitNumbers(std::string_view text, SplitValues& values) {
    if (text.empty()) return;  // no field at all; one behind a last comma is empty, and 0
    for (int element = 1; element <= SplitValues::kCount; ++element) {
        const std::size_t comma = text.find(',');
        values.set(element, NumericInteger(text.substr(0, comma)));
        if (comma == std::string_view::npos) return;
        text.remove_prefix(comma + 1);
    }
}

std::string TwoDigits(std::int64_t value) {
    const bool negative = value < 0;
    std::string digits = std::to_string(value).substr(negative ? 1 : 0);
    if (digits.size() < 2) digits.insert(0, 1, '0');
    return negative ? "-" + digits : digits;
}

std::string MinutesAndSeconds(std::int64_t seconds) { return TwoDigits(seconds / 60) + ":" + TwoDigits(seconds % 60); }

}  // namespace quenlox
