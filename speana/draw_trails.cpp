// Flowing trails: the wave as single pixels on a picture that is copied on, a little away and a little darker, with
// every frame.
#include <cstdlib>

#include "speana/drawing.h"
#include "speana/panel_canvas.h"

namespace quenlox {
namespace {

constexpr int kWidth = PanelCanvas::kWidth, kHeight = PanelCanvas::kHeight;
constexpr int kMiddleX = PanelCanvas::kMiddleX, kMiddleY = PanelCanvas::kMiddleY;
constexpr Rect kLeft{0, 0, kMiddleX, kHeight}, kRight{kMiddleX, 0, kWidth - kMiddleX, kHeight};
constexpr Rect kUpper{0, 0, kWidth, kMiddleY}, kLower{0, kMiddleY, kWidth, kHeight - kMiddleY};

std::size_t At(int i) { return static_cast<std::size_t>(i); }
int Now(const PanelCanvas& c) { return static_cast<int>(c.tick); }

// A dot in every column, and one between two dots that are far apart, so that the trace holds together.
void Dots(PanelCanvas& c, const PanelCanvas::Columns& columns, int middle, int reach, int hue) {
    int last = Row(middle, columns[0], reach);
    for (int x = 0; x < kWidth; ++x) {
        const int y = Row(middle, columns[At(x)], reach);
        const Color color = c.colors.ring(hue + x / 3);
        if (std::abs(y - last) > 1) c.set(x, (y + last) / 2, Mix(PanelColors::kBack, color, 150));
        c.set(x, y, color);
        last = y;
    }
}

// The wave from top to bottom around a column.
void Upright(PanelCanvas& c, int middle, int reach, int hue) {
    for (int y = 0; y < kHeight; ++y) {
        const int x = Row(middle, c.wave[At(y * 2)], reach);
        c.set(x, y, c.colors.ring(hue + y * 2));
        c.set(x + 1, y, c.colors.shade(230));
    }
}

void Smoke(PanelCanvas& c) {
    c.scroll(0, -1);
    c.fade(225);
    Dots(c, c.wave, kHeight - 9, 8, Now(c));
}

void Rain(PanelCanvas& c) {
    c.scroll(0, 1);
    c.fade(225);
    Dots(c, c.wave, 8, 8, 90 + Now(c));
}

void Stream(PanelCanvas& c) {
    c.scroll(-2, 0);
    c.fade(244);
    Upright(c, kWidth - 14, 12, Now(c) / 2);
}

void TwoStreams(PanelCanvas& c) {
    c.scroll(kUpper, 2, 0);
    c.scroll(kLower, -2, 0);
    c.fade(242);
    for (int y = 0; y < kMiddleY; ++y) {
        c.set(10 + c.left[At(y * 4)] * 9 / 256, y, c.colors.ring(Now(c) + y * 3));
        c.set(kWidth - 11 + c.right[At(y * 4)] * 9 / 256, kMiddleY + y, c.colors.ring(128 + Now(c) + y * 3));
    }
}

void OpeningCurtain(PanelCanvas& c) {
    c.scroll(kLeft, -1, 0);
    c.scroll(kRight, 1, 0);
    c.fade(243);
    for (int y = 0; y < kHeight; ++y) {
        const int size = std::abs(c.wave[At(y * 2)]) * 10 / 256;
        c.set(kMiddleX - 1 - size, y, c.colors.shade(120 + size * 14));
        c.set(kMiddleX + size, y, c.colors.shade(120 + size * 14));
    }
}

void ClosingCurtain(PanelCanvas& c) {
    c.scroll(kLeft, 1, 0);
    c.scroll(kRight, -1, 0);
    c.fade(240);
    for (int y = 0; y < kHeight; ++y) {
        const int size = std::abs(c.wave[At(y * 2)]) * 14 / 256;
        c.set(size, y, c.colors.ring(Now(c) + size * 6));
        c.set(kWidth - 1 - size, y, c.colors.ring(Now(c) + size * 6));
    }
}

void Blossom(PanelCanvas& c) {
    c.scroll(kUpper, 0, -1);
    c.scroll(kLower, 0, 1);
    c.fade(222);
    for (int x = 0; x < kWidth; ++x) {
        const int size = std::abs(c.wave[At(x)]) * 9 / 256;
        const Color color = c.colors.shade(130 + size * 14);
        c.set(x, kMiddleY - 1 - size, color);
        c.set(x, kMiddleY + size, color);
    }
}

void Slope(PanelCanvas& c) {
    c.scroll(-2, -1);
    c.fade(228);
    Dots(c, c.left, kHeight - 9, 8, Now(c));
    Dots(c, c.right, kHeight - 9, 8, 110 + Now(c));
}

// Each quarter of the picture moves along the next side: the picture turns.
void Whirl(PanelCanvas& c) {
    c.scroll({0, 0, kMiddleX, kMiddleY}, 1, 0);
    c.scroll({kMiddleX, 0, kWidth - kMiddleX, kMiddleY}, 0, 1);
    c.scroll({kMiddleX, kMiddleY, kWidth - kMiddleX, kHeight - kMiddleY}, -1, 0);
    c.scroll({0, kMiddleY, kMiddleX, kHeight - kMiddleY}, 0, -1);
    c.fade(236);
    for (int i = 0; i < kWidth; ++i) {
        const int angle = i * 3 + Now(c) * 3;
        const int radius = 120 + c.wave[At(i)];
        c.set(kMiddleX + PanelCosine(angle) * radius / 256 * 30 / 256,
              kMiddleY + PanelSine(angle) * radius / 256 * 12 / 256, c.colors.ring(Now(c) + i));
    }
}

// Sparks that a changing wind carries off.
void Sparks(PanelCanvas& c) {
    const int wind = PanelSine(Now(c) * 2) * 5 / 512;
    c.scroll(wind, c.tick % 3 == 0 ? 1 : 0);
    c.fade(234);
    for (int i = 0; i < 26; ++i) {
        const int from = c.random(kWidth);
        const int y = Row(kMiddleY, c.wave[At(from)], 14);
        const int strength = std::abs(c.wave[At(from)]);
        c.set(from, y, c.colors.ring(Now(c) / 2 + strength / 3));
        if (strength > 150) c.set(from, y + (y < kMiddleY ? -1 : 1), c.colors.shade(250));
    }
}

}  // namespace

void DrawTrails(PanelCanvas& canvas, int variant) {
    static constexpr void (*kViews[])(PanelCanvas&) = {Smoke,          Rain,    Stream, TwoStreams, OpeningCurtain,
                                                       ClosingCurtain, Blossom, Slope,  Whirl,      Sparks};
    kViews[variant](canvas);
}

}  // namespace quenlox
