// The colours of the panel, all told from one colour of the skin. Integer arithmetic, so that a frame is the same on
// every machine.
#pragma once

#include <array>

#include "forms/geometry.h"

namespace quenlox {

class PanelColors {
  public:
    static constexpr Color kBack{5, 6, 9};  // the panel is a dark recess in every skin

    explicit PanelColors(Color accent = {255, 190, 128});
    Color accent() const { return accent_; }

    // From the background (0) over the skin's colour to nearly white (255).
    Color shade(int value) const { return shades_[Index(value)]; }
    // The same with the colour across the circle, for the second voice of a picture.
    Color counter(int value) const { return counters_[Index(value)]; }
    // The circle of colours at full light, 256 steps, 0 being the skin's own.
    Color ring(int hue) const { return ring_[static_cast<unsigned>(hue) & 255u]; }

  private:
    static std::size_t Index(int value) { return static_cast<std::size_t>(value < 0 ? 0 : value > 255 ? 255 : value); }

    Color accent_;
    std::array<Color, 256> shades_, counters_, ring_;
};

// `from` at 0 to `to` at 256.
inline Color Mix(Color from, Color to, int weight) {
    const auto mix = [weight](int a, int b) { return static_cast<std::uint8_t>(a + (b - a) * weight / 256); };
    return {mix(from.red, to.red), mix(from.green, to.green), mix(from.blue, to.blue)};
}

}  // namespace quenlox
