// The spectrum: bars with falling peaks and what else can be made of it.
#include <algorithm>
#include <array>
#include <cstdlib>

#include "speana/drawing.h"
#include "speana/panel_canvas.h"

namespace quenlox {
namespace {

constexpr int kWidth = PanelCanvas::kWidth, kHeight = PanelCanvas::kHeight;
constexpr int kMiddleX = PanelCanvas::kMiddleX, kMiddleY = PanelCanvas::kMiddleY;

std::size_t At(int i) { return static_cast<std::size_t>(i); }
int Rows(int level, int height) { return level * height / 255; }

// A column of colours from the ground up, from which bars are copied.
Surface Gradient(const PanelCanvas& c, int width, int height) {
    Surface gradient(width, height);
    for (int y = 0; y < height; ++y) gradient.fillRect({0, y, width, 1}, c.colors.shade(225 - y * 165 / height));
    return gradient;
}

void Bars(PanelCanvas& c) {
    c.picture.fill(PanelColors::kBack);
    const Surface gradient = Gradient(c, c.barWidth(), kHeight);
    for (int i = 0; i < c.bands; ++i) {
        const int x = c.barLeft(i), high = Rows(c.bar[At(i)], kHeight), mark = Rows(c.peak[At(i)], kHeight - 1);
        c.picture.fillRect({x, kHeight - 1, c.barWidth(), 1}, c.colors.shade(36));
        c.picture.copy(gradient, {0, kHeight - high, c.barWidth(), high}, {x, kHeight - high});
        if (mark > 0) c.picture.fillRect({x, kHeight - 1 - mark, c.barWidth(), 1}, c.colors.shade(250));
    }
}

void Lamps(PanelCanvas& c) {
    c.picture.fill(PanelColors::kBack);
    constexpr int kLamps = 10;
    Surface lit(3, kHeight, PanelColors::kBack), dark(3, kHeight, PanelColors::kBack);
    for (int lamp = 0; lamp < kLamps; ++lamp) {
        const Rect where{0, kHeight - 2 - lamp * 3, 3, 2};
        lit.fillRect(where, lamp >= 8 ? c.colors.counter(190) : c.colors.shade(110 + lamp * 12));
        dark.fillRect(where, lamp >= 8 ? c.colors.counter(22) : c.colors.shade(24));
    }
    for (int i = 0; i < 21; ++i) {
        const int band = i * c.bands / 21, x = 1 + i * 4;
        const int lamps = (c.bar[At(band)] * kLamps + 200) / 255, mark = (c.peak[At(band)] * kLamps + 200) / 255;
        c.picture.copy(dark, {x, 0});
        c.picture.copy(lit, {0, kHeight - lamps * 3, 3, lamps * 3}, {x, kHeight - lamps * 3});
        if (mark > 0) c.picture.copy(lit, {0, kHeight - mark * 3, 3, 3}, {x, kHeight - mark * 3});
    }
}

// The lowest band in the middle, the highest at both sides.
void FromTheMiddle(PanelCanvas& c) {
    c.fade(120);
    for (int x = 0; x <= kMiddleX; x += 2) {
        const int band = std::min(c.bands - 1, x * c.bands / (kMiddleX + 1));
        const int high = Rows(c.bar[At(band)], 14), mark = Rows(c.peak[At(band)], 14);
        for (const int column : {kMiddleX - x, kMiddleX + x}) {
            for (int y = 0; y <= high; ++y) {
                c.set(column, kMiddleY - y, c.colors.ring(x * 2 + y * 3));
                c.set(column, kMiddleY + y, c.colors.ring(x * 2 + y * 3));
            }
            if (mark > high) {
                c.set(column, kMiddleY - mark, c.colors.shade(240));
                c.set(column, kMiddleY + mark, c.colors.shade(240));
            }
        }
    }
}

// Bars on a shore, and below them their picture in the moving water.
void Water(PanelCanvas& c) {
    constexpr int kShore = 20;
    Bars(c);
    Surface land(kWidth, kShore);
    land.stretch(c.still(), c.picture.rect(), land.rect());
    c.picture.copy(land, {0, 0});
    for (int y = kShore; y < kHeight; ++y) {
        const int depth = y - kShore;
        const int sway = PanelSine(depth * 40 - static_cast<int>(c.tick) * 10) * (1 + depth / 4) / 256;
        c.picture.fillRect({0, y, kWidth, 1}, PanelColors::kBack);
        c.picture.copy(land, {0, kShore - 1 - depth * 2, kWidth, 1}, {sway, y});
        c.fade({0, y, kWidth, 1}, 150 - depth * 9);
        for (int x = 0; x < kWidth; ++x)
            c.add(x, y, {0, static_cast<std::uint8_t>(4 + depth), static_cast<std::uint8_t>(10 + depth * 2)});
    }
}

void Curve(PanelCanvas& c) {
    c.scroll(0, 1);
    c.fade(205);
    int last = 0;
    for (int x = 0; x < kWidth; ++x) {
        // Between the middles of two bands the curve is a straight line.
        const int at = std::clamp((2 * x * c.bands - kWidth) * 128 / kWidth, 0, (c.bands - 1) * 256);
        const int band = at / 256, next = std::min(band + 1, c.bands - 1), part = at % 256;
        const int level = (c.bar[At(band)] * (256 - part) + c.bar[At(next)] * part) / 256;
        const int y = kHeight - 3 - Rows(level, kHeight - 4);
        const int from = x == 0 ? y : last;
        for (int step = std::min(from, y); step <= std::max(from, y); ++step) c.set(x, step, c.colors.shade(150));
        c.set(x, y, c.colors.ring(x));
        last = y;
    }
}

// Time runs to the left, low sounds lie at the bottom.
void Sonogram(PanelCanvas& c) {
    c.scroll(-1, 0);
    for (int y = 0; y < kHeight; ++y) {
        const int level = c.bar[At(y * c.bands / kHeight)];
        c.set(kWidth - 1, kHeight - 1 - y, c.colors.shade(level * level / 255));
    }
}

// Ridges that wander to the back: each frame of the past stands one row higher and a little aside.
void Ridges(PanelCanvas& c) {
    if (c.tick % 2 == 0) {
        c.scroll(c.tick % 8 == 0 ? 1 : 0, -1);
        c.fade(232);
    }
    for (int x = 0; x < kWidth; ++x) {
        // The ends of a ridge lie on the ground.
        const int slope = std::min(256, std::min(x, kWidth - 1 - x) * 24);
        const int high = Rows(c.levelAt(x), 13) * slope / 256;
        const int top = kHeight - 1 - high;
        c.picture.fillRect({x, top, 1, kHeight - top}, PanelColors::kBack);
        c.set(x, top, c.colors.shade(120 + high * 9));
        if (high > 1) c.set(x, top + 1, c.colors.shade(50));
    }
}

// The lowest row burns as the bands say; each row above takes the heat of a place near by below it and cools. How hot a
// pixel is is told by its light, so that flames go through the colours from white to dark.
void Fire(PanelCanvas& c) {
    const auto light = [](Surface::Pixel pixel) {
        const Color color = Surface::ToColor(pixel);
        return At(color.red + color.green + color.blue);
    };
    std::array<std::uint8_t, 3 * 255 + 1> heatOf{};
    for (int heat = 0, from = 0; heat < 256; ++heat) {
        for (const int to = static_cast<int>(light(Surface::ToPixel(c.colors.shade(heat)))); from <= to; ++from) {
            heatOf[At(from)] = static_cast<std::uint8_t>(heat);
        }
    }
    const auto pixels = c.picture.pixels();
    for (int y = 0; y < kHeight - 1; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int below = std::clamp(x + c.random(3) - 1, 0, kWidth - 1);
            const int heat = heatOf[light(pixels[At((y + 1) * kWidth + below)])];
            pixels[At(y * kWidth + x)] = Surface::ToPixel(c.colors.shade(heat - c.random(19)));
        }
    }
    for (int x = 0; x < kWidth; ++x) c.set(x, kHeight - 1, c.colors.shade(c.levelAt(x) * (170 + c.random(130)) / 255));
}

// A very small picture of the bars, stretched to the panel.
void Blocks(PanelCanvas& c) {
    Surface small(17, 6, PanelColors::kBack);
    for (int x = 0; x < 17; ++x) {
        const int level = c.bar[At(x * c.bands / 17)], mark = Rows(c.peak[At(x * c.bands / 17)], 6);
        for (int y = 0; y < 6; ++y) {
            const int part = std::clamp(level * 6 - y * 255, 0, 255);
            if (part > 0) small.set(x, 5 - y, Mix(PanelColors::kBack, c.colors.ring(x * 7 + y * 8), part * 220 / 255));
        }
        if (mark > 0 && mark <= 5) small.set(x, 5 - mark, c.colors.shade(235));
    }
    c.picture.stretch(small, small.rect(), c.picture.rect());
    for (int x = 4; x < kWidth; x += 5) c.fade({x, 0, 1, kHeight}, 90);
    for (int y = 4; y < kHeight; y += 5) c.fade({0, y, kWidth, 1}, 90);
}

// Low bands stand on the ground, high bands hang from above, and their marks fall as snow between them.
void Caves(PanelCanvas& c) {
    c.scroll(0, 1);
    c.fade(214);
    const int half = (c.bands + 1) / 2;
    for (int x = 0; x < kWidth; ++x) {
        const int low = Rows(c.bar[At(x * half / kWidth)], 15);
        const int high = Rows(c.bar[At(std::min(c.bands - 1, half + (kWidth - 1 - x) * half / kWidth))], 14);
        for (int y = 0; y < low; ++y) c.set(x, kHeight - 1 - y, c.colors.shade(60 + y * 11));
        for (int y = 0; y < high; ++y) c.set(x, y, c.colors.counter(60 + y * 11));
    }
    for (int i = 0; i < c.bands; i += std::max(1, c.bands / 21)) {
        if (c.bar[At(i)] == c.peak[At(i)] && c.bar[At(i)] > 60) {
            c.set(c.barLeft(i) + c.random(c.barPitch()), kHeight - 2 - Rows(c.bar[At(i)], 15), c.colors.shade(255));
        }
    }
}

}  // namespace

void DrawBars(PanelCanvas& canvas, int variant) {
    static constexpr void (*kViews[])(PanelCanvas&) = {Bars,     Lamps,  FromTheMiddle, Water,  Curve,
                                                       Sonogram, Ridges, Fire,          Blocks, Caves};
    kViews[variant](canvas);
}

}  // namespace quenlox
