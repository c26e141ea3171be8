#include "speana/panel_colors.h"

#include <algorithm>

namespace quenlox {
namespace {

constexpr int kCircle = 1536;  // six sides of 256 steps

// Hue of 0 to kCircle - 1; colours without one count as blue.
int HueOf(Color c) {
    const int most = std::max({c.red, c.green, c.blue}), least = std::min({c.red, c.green, c.blue});
    const int span = most - least;
    if (span < 24) return 850;
    const auto side = [span](int difference) { return difference * 256 / span; };
    int hue = 0;
    if (c.red == most) {
        hue = side(c.green - c.blue);
    } else if (c.green == most) {
        hue = 512 + side(c.blue - c.red);
    } else {
        hue = 1024 + side(c.red - c.green);
    }
    return (hue + kCircle) % kCircle;
}

Color Pure(int hue) {
    hue = ((hue % kCircle) + kCircle) % kCircle;
    const auto up = static_cast<std::uint8_t>(hue % 256), down = static_cast<std::uint8_t>(255 - hue % 256);
    switch (hue / 256) {
        case 0: return {255, up, 0};
        case 1: return {down, 255, 0};
        case 2: return {0, 255, up};
        case 3: return {0, down, 255};
        case 4: return {up, 0, 255};
        default: return {255, 0, down};
    }
}

// A colour of that hue as light as a lamp: a little white takes the harshness of a pure one.
Color Lamp(int hue) { return Mix(Pure(hue), {255, 255, 255}, 56); }

// Dark and a step round the circle at the bottom, the lamp at two thirds, nearly white at the top.
std::array<Color, 256> Shades(int hue, int turn) {
    std::array<Color, 256> shades;
    for (int i = 0; i < 256; ++i) {
        const Color lamp = Lamp(hue + turn * (160 - std::min(i, 160)) / 160);
        shades[static_cast<std::size_t>(i)] =
            i <= 160 ? Mix(PanelColors::kBack, lamp, i * 256 / 160) : Mix(lamp, {255, 255, 250}, (i - 160) * 200 / 95);
    }
    return shades;
}

}  // namespace

PanelColors::PanelColors(Color accent)
    : accent_(accent), shades_(Shades(HueOf(accent), -200)), counters_(Shades(HueOf(accent) + 700, 160)) {
    const int hue = HueOf(accent);
    for (int i = 0; i < 256; ++i) ring_[static_cast<std::size_t>(i)] = Lamp(hue + i * 6);
}

}  // namespace quenlox
