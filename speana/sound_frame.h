// What one frame of the panel is drawn from: the sound being heard, as the decoding library gives it.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace quenlox {

struct SoundFrame {
    static constexpr int kSamples = 512;   // 12 ms at 44.1 kHz
    static constexpr int kMostBands = 85;  // one for each column of the panel

    std::array<std::int16_t, kSamples> left{}, right{};
    std::array<std::int32_t, kMostBands> levels{};  // 0 to 1000, low to high
    int bands = 21;                                 // how many of them count: 21, 42 or 85

    std::span<const std::int32_t> spectrum() const { return std::span(levels).first(static_cast<std::size_t>(bands)); }
};

}  // namespace quenlox
