// Spectrum and wave in one picture.
#include <algorithm>
#include <cstdlib>

#include "speana/drawing.h"
#include "speana/panel_canvas.h"

namespace quenlox {
namespace {

constexpr int kWidth = PanelCanvas::kWidth, kHeight = PanelCanvas::kHeight;
constexpr int kMiddleX = PanelCanvas::kMiddleX, kMiddleY = PanelCanvas::kMiddleY;

std::size_t At(int i) { return static_cast<std::size_t>(i); }
int Rows(int level, int height) { return level * height / 255; }
int Now(const PanelCanvas& c) { return static_cast<int>(c.tick); }

void Trace(PanelCanvas& c, int middle, int reach, Color color) {
    for (int x = 1; x < kWidth; ++x) {
        c.picture.line({x - 1, Row(middle, c.wave[At(x - 1)], reach)}, {x, Row(middle, c.wave[At(x)], reach)}, color);
    }
}

// Bars between two heights, with their marks.
void Standing(PanelCanvas& c, int ground, int height, int light) {
    for (int i = 0; i < c.bands; ++i) {
        const int high = Rows(c.bar[At(i)], height), mark = Rows(c.peak[At(i)], height);
        for (int y = 0; y < high; ++y) {
            c.picture.fillRect({c.barLeft(i), ground - y, c.barWidth(), 1},
                               c.colors.shade(light + y * (light / 2) / height));
        }
        if (mark > 0) c.picture.fillRect({c.barLeft(i), ground - mark, c.barWidth(), 1}, c.colors.shade(light + 70));
    }
}

void WaveOverBars(PanelCanvas& c) {
    c.picture.fill(PanelColors::kBack);
    Standing(c, kHeight - 1, kHeight, 70);
    Trace(c, kMiddleY, 13, c.colors.counter(235));
}

void WaveAboveBars(PanelCanvas& c) {
    c.picture.fill(PanelColors::kBack);
    Standing(c, kHeight - 1, 15, 120);
    Trace(c, 6, 6, c.colors.counter(210));
    for (int x = 0; x < kWidth; x += 2) c.set(x, 13, c.colors.shade(30));
}

void WaveInTheMiddle(PanelCanvas& c) {
    c.fade(70);
    for (int x = 0; x < kWidth; ++x) {
        const int band = std::min(c.bands - 1, std::abs(x - kMiddleX) * c.bands / (kMiddleX + 1));
        const int high = Rows(c.bar[At(band)], 14);
        for (int y = 2; y <= high; y += 2) {
            c.set(x, kMiddleY - y, c.colors.shade(40 + y * 6));
            c.set(x, kMiddleY + y, c.colors.shade(40 + y * 6));
        }
    }
    Trace(c, kMiddleY, 9, c.colors.shade(250));
}

void WaveOnSonogram(PanelCanvas& c) {
    c.scroll(-1, 0);
    for (int y = 0; y < kHeight; ++y) {
        const int level = c.bar[At(y * c.bands / kHeight)];
        c.set(kWidth - 22, kHeight - 1 - y, c.colors.shade(level * level / 300));
    }
    c.picture.fillRect({kWidth - 21, 0, 21, kHeight}, PanelColors::kBack);
    for (int y = 0; y < kHeight; ++y) {
        const int size = std::abs(c.wave[At(y * 2)]) * 20 / 256;
        for (int x = 0; x <= size; ++x) c.set(kWidth - 21 + x, y, c.colors.counter(220 - x * 6));
    }
}

// Northern lights: each column hangs from the wave and is as long as its band is loud.
void Aurora(PanelCanvas& c) {
    c.fade(205);
    for (int x = 0; x < kWidth; ++x) {
        const int drift = PanelSine(x * 4 + Now(c) * 2) * 3 / 256;
        const int top = Row(8, c.wave[At(x)], 4) + drift;
        const int level = (c.levelAt(x) + c.levelAt(std::max(0, x - 2)) + c.levelAt(std::min(kWidth - 1, x + 2))) / 3;
        const int length = 2 + Rows(level, 19);
        const Color light = c.colors.ring(90 + x / 2 + Now(c) / 2);
        for (int y = 0; y < length; ++y) {
            const int weight = (length - y) * 150 / length * (40 + level) / 295;
            c.add(x, top + y, Mix({0, 0, 0}, light, weight));
        }
    }
    for (int star = 0; star < 6; ++star) {
        const int place = (star * 47 + 13) % (kWidth * 12);
        if ((Now(c) / 6 + star) % 7 != 0) c.add(place % kWidth, (star * 5) % 12, {60, 60, 70});
    }
}

void RingAndBars(PanelCanvas& c) {
    c.picture.fillRect({34, 0, kWidth - 34, kHeight}, PanelColors::kBack);
    c.fade({0, 0, 34, kHeight}, 150);
    Point last, first;
    for (int i = 0; i <= 48; ++i) {
        const int radius = 200 + c.wave[At(i == 48 ? 0 : i)] * 110 / 256, angle = i * 256 / 48 - 64;
        const Point next{16 + PanelCosine(angle) * radius / 256 * 13 / 256,
                         kMiddleY + PanelSine(angle) * radius / 256 * 13 / 256};
        if (i == 0) first = next;
        if (i > 0) c.picture.line(last, i == 48 ? first : next, c.colors.counter(200));
        last = next;
    }
    for (int i = 0; i < 17; ++i) {
        const int band = i * c.bands / 17, high = Rows(c.bar[At(band)], kHeight),
                  mark = Rows(c.peak[At(band)], kHeight - 1);
        for (int y = 0; y < high; ++y)
            c.picture.fillRect({35 + i * 3, kHeight - 1 - y, 2, 1}, c.colors.shade(80 + y * 5));
        if (mark > 0) c.picture.fillRect({35 + i * 3, kHeight - 1 - mark, 2, 1}, c.colors.shade(250));
    }
}

// The wave with the colour and the glow of the band that its column stands for.
void ColoredWave(PanelCanvas& c) {
    c.fade(190);
    for (int x = 1; x < kWidth; ++x) {
        const int level = c.levelAt(x);
        const int y = Row(kMiddleY, c.wave[At(x)], 13), from = Row(kMiddleY, c.wave[At(x - 1)], 13);
        c.picture.line({x - 1, from}, {x, y},
                       Mix(c.colors.shade(90), c.colors.ring(x * 2 + Now(c)), 90 + level * 166 / 255));
        const int glow = Rows(level, 6);
        for (int d = 1; d <= glow; ++d) {
            const Color light = Mix({0, 0, 0}, c.colors.ring(x * 2 + Now(c)), (glow - d + 1) * 9);
            c.add(x, y - d, light);
            c.add(x, y + d, light);
        }
    }
}

// A skyline of bands before a sky in which the wave is the moonlit cloud.
void Skyline(PanelCanvas& c) {
    for (int y = 0; y < kHeight; ++y) c.picture.fillRect({0, y, kWidth, 1}, c.colors.counter(4 + y * 2));
    c.picture.fillEllipse({62, 2, 9, 9}, c.colors.shade(225));
    c.picture.fillEllipse({60, 1, 8, 8}, c.colors.counter(10));
    for (int x = 0; x < kWidth; ++x) {
        const int y = Row(9, c.wave[At(x)], 7);
        c.add(x, y, {110, 110, 120});
        c.add(x, y + 1, {50, 50, 60});
    }
    for (int i = 0; i < 21; ++i) {
        const int high = 2 + Rows(c.bar[At(i * c.bands / 21)], 24), x = i * 4;
        c.picture.fillRect({x, kHeight - high, 4, high}, {3, 3, 6});
        for (int y = kHeight - high + 1; y < kHeight; y += 2) {
            // A window is lit or not, for good.
            if ((i * 7 + y * 5) % 3 != 0) c.set(x + 1, y, c.colors.shade(150 + (i * 13 + y * 29) % 60));
            if ((i * 5 + y * 3) % 4 != 0) c.set(x + 2, y, c.colors.shade(110 + (i * 11 + y * 17) % 60));
        }
    }
}

void FigureBetweenBars(PanelCanvas& c) {
    c.fade(150);
    for (int y = 0; y < kHeight; y += 2) {
        const int level = c.bar[At((kHeight - 1 - y) * c.bands / kHeight)], length = Rows(level, 25);
        for (int x = 0; x < length; ++x) {
            c.set(x, y, c.colors.shade(60 + x * 6));
            c.set(kWidth - 1 - x, y, c.colors.shade(60 + x * 6));
        }
    }
    Point last;
    for (int i = 0; i < kWidth; ++i) {
        const Point next{kMiddleX + c.side[At(i)] * 18 / 256, Row(kMiddleY, c.wave[At(i)], 13)};
        if (i > 0) c.picture.line(last, next, c.colors.counter(120 + i));
        last = next;
    }
}

// The wave rides on the hills of the spectrum and leaves its foam behind.
void Surf(PanelCanvas& c) {
    c.scroll(-1, 0);
    c.fade(215);
    int last = 0;
    for (int x = 0; x < kWidth; ++x) {
        const int level = (c.levelAt(x) + c.levelAt(std::max(0, x - 3)) + c.levelAt(std::min(kWidth - 1, x + 3))) / 3;
        const int y = kHeight - 5 - Rows(level, 17) - c.wave[At(x)] * 5 / 256;
        for (int row = y + 1; row < kHeight; ++row) c.set(x, row, c.colors.shade(72 - std::min(66, (row - y) * 5)));
        const int from = x == 0 ? y : last;
        for (int row = std::min(from, y); row <= std::max(from, y); ++row) c.set(x, row, c.colors.shade(220));
        last = y;
    }
}

}  // namespace

void DrawBoth(PanelCanvas& canvas, int variant) {
    static constexpr void (*kViews[])(PanelCanvas&) = {
        WaveOverBars, WaveAboveBars, WaveInTheMiddle, WaveOnSonogram,    Aurora,
        RingAndBars,  ColoredWave,   Skyline,         FigureBetweenBars, Surf};
    kViews[variant](canvas);
}

}  // namespace quenlox
