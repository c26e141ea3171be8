// What the six drawing procedures share: the picture that they go on with, the sound made ready for its 85 columns,
// bars that fall, and the few operations that they draw with. Integer arithmetic only: the same sound after the same
// frames gives the same picture everywhere.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "forms/surface.h"
#include "speana/panel_colors.h"
#include "speana/sound_frame.h"

namespace quenlox {

// Sine of a circle of 256 steps, -256 to 256.
int PanelSine(int angle);
inline int PanelCosine(int angle) { return PanelSine(angle + 64); }
int PanelRoot(int value);  // integer part of the square root

class PanelCanvas {
  public:
    static constexpr int kWidth = 85, kHeight = 30;
    static constexpr int kMiddleX = kWidth / 2, kMiddleY = kHeight / 2;
    using Columns = std::array<int, kWidth>;

    PanelCanvas();

    // A frame begins: takes the sound in.
    void listen(const SoundFrame& sound);
    // Another view: an empty picture, bars on the ground.
    void clear();

    Surface picture{kWidth, kHeight, PanelColors::kBack};
    PanelColors colors;
    std::uint32_t tick = 0;  // frames since the view was chosen

    Columns wave{}, left{}, right{};  // one sample a column, -256 to 256, begun where the sound rises through zero;
                                      // the loudest of the last seconds is near 256
    Columns side{};                   // left against right, for a picture of the two; of mono, the wave a little later
    int bands = 21;
    Columns bar{}, peak{};  // of each band, 0 to 255: the level, and the mark that stays and then falls
    int loudness = 0;       // mean of the samples' size, 0 to 255
    int calm = 0;           // the same over the last second or so
    int heat = 0;           // the same of the sound itself, however it is enlarged
    bool beat = false;      // this frame is clearly louder than the last second

    // Every pixel goes towards the background, all of it at 0 and nothing of it at 256.
    void fade(int keep) { fade(picture.rect(), keep); }
    void fade(const Rect& where, int keep);
    void set(int x, int y, Color color) { picture.set(x, y, color); }
    // Light upon light.
    void add(int x, int y, Color color) {
        if (!picture.rect().contains({x, y})) return;
        auto& pixel = picture.pixels()[static_cast<std::size_t>(y * kWidth + x)];
        const Color under = Surface::ToColor(pixel);
        const auto sum = [](int a, int b) { return static_cast<std::uint8_t>(std::min(255, a + b)); };
        pixel =
            Surface::ToPixel({sum(under.red, color.red), sum(under.green, color.green), sum(under.blue, color.blue)});
    }
    // The picture moves; what becomes free is background.
    void scroll(int dx, int dy) { scroll(picture.rect(), dx, dy); }
    void scroll(const Rect& where, int dx, int dy);
    // The picture as it is now, to be copied from.
    const Surface& still();

    int barWidth() const { return bands <= 21 ? 3 : 1; }
    int barPitch() const { return bands <= 21 ? 4 : bands <= 42 ? 2 : 1; }
    int barLeft(int band) const { return 1 + band * barPitch() - (bands > 42 ? 1 : 0); }
    // The bar that column x belongs to, 0 to 255.
    int levelAt(int x) const { return bar[static_cast<std::size_t>(std::clamp(x * bands / kWidth, 0, bands - 1))]; }
    // The same row of numbers after every clear().
    int random(int below) {
        seed_ = seed_ * 1664525u + 1013904223u;
        return static_cast<int>((seed_ >> 16) % static_cast<std::uint32_t>(below));
    }

  private:
    void takeWave(const SoundFrame& sound);
    void takeBars(const SoundFrame& sound);
    void fall(std::size_t band, int level);

    Surface still_{kWidth, kHeight};
    std::array<int, kWidth> hold_{}, fall_{};
    int loudestWave_ = 0, loudestLevel_ = 0;  // of the last seconds
    std::uint32_t seed_ = 1;
};

// y of the row for a deflection of -256 to 256 around `middle`, at most `reach` rows away.
inline int Row(int middle, int deflection, int reach) {
    return middle - (deflection * reach + (deflection < 0 ? -128 : 128)) / 256;
}

}  // namespace quenlox
