// Patterns of the equalizer: those that are there on a fresh start, and one in a file to give away. Pure.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "libraries/response/equalizer_response.h"

namespace quenlox {

inline constexpr int kMostGain = 120;  // to each side, tenths of a decibel

using EqualizerGains = std::array<std::int32_t, kEqualizerBands>;  // tenths of a decibel, band 60 Hz first

struct EqualizerPattern {
    std::string name;
    EqualizerGains gains{};
};

std::span<const EqualizerPattern> FactoryPatterns();

// As the settings file has it: the name, which ends at the first comma, and the gains, parted by commas.
std::string PatternText(const EqualizerPattern& pattern);

// What a name may be there: no comma, no control characters, and not longer than a line of the settings file has room.
std::string PatternName(std::string_view wanted);

// A file with one pattern, and its bytes. Reading gives nothing for whatever is not exactly that: another file, fewer
// or more gains, gains beyond the range, no name.
std::string WritePatternFile(const EqualizerPattern& pattern);
std::optional<EqualizerPattern> ReadPatternFile(std::string_view bytes);

}  // namespace quenlox
