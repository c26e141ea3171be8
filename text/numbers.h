// Numbers as they stand in settings, skins and replies of the system: read leniently, written plainly. Pure functions.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace quenlox {

// Leading blanks are skipped, the longest leading decimal number (sign, digits, fraction) is taken and the rest
// ignored; text without a number gives 0.
double NumericValue(std::string_view text);

// The same as a 32-bit integer, rounded half to even and brought into the range.
std::int32_t NumericInteger(std::string_view text);

// As the private-profile calls of Windows read an integer: leading blanks, a sign, digits up to the first other
// character; "0x", "0o" and "0b" begin a hexadecimal, octal and binary number. What exceeds 32 bits wraps.
std::int32_t ProfileInteger(std::string_view text);

// The numbers of the list that was split last: elements 1 to 12. A shorter list leaves the elements behind its last
// field as they were, and the formats that are read through it rely on that.
class SplitValues {
  public:
    static constexpr int kCount = 12;
    std::int32_t operator()(int element) const { return values_[static_cast<std::size_t>(element - 1)]; }
    void set(int element, std::int32_t value) { values_[static_cast<std::size_t>(element - 1)] = value; }

  private:
    std::array<std::int32_t, kCount> values_{};
};

// Splits a comma-separated list of numbers into elements 1, 2, ...; fields beyond the twelfth are dropped.
void SplitNumbers(std::string_view text, SplitValues& values);

// At least two digits, the sign in front: 5 "05", -5 "-05", 100 "100".
std::string TwoDigits(std::int64_t value);

// Minutes and seconds, each as TwoDigits and each with the sign of the value: 75 "01:15", 6000 "100:00", -5 "00:-05".
std::string MinutesAndSeconds(std::int64_t seconds);

}  // namespace quenlox
