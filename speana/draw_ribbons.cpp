// Pieces of prepared pictures, put by block copies where the wave is.
#include <algorithm>
#include <cstdlib>

#include "speana/drawing.h"
#include "speana/panel_canvas.h"

namespace quenlox {
namespace {

constexpr int kWidth = PanelCanvas::kWidth, kHeight = PanelCanvas::kHeight;
constexpr int kMiddleX = PanelCanvas::kMiddleX, kMiddleY = PanelCanvas::kMiddleY;

std::size_t At(int i) { return static_cast<std::size_t>(i); }
int Now(const PanelCanvas& c) { return static_cast<int>(c.tick); }

int Largest(const PanelCanvas::Columns& columns, int from, int count) {
    int most = 0;
    for (int x = from; x < std::min(from + count, kWidth); ++x) most = std::max(most, std::abs(columns[At(x)]));
    return most;
}

// A band as wide as the panel, bright in the middle.
Surface Band(const PanelCanvas& c, int height, bool counter, int turn) {
    Surface band(kWidth, height);
    for (int y = 0; y < height; ++y) {
        const int light = 235 - std::abs(2 * y + 1 - height) * 190 / height;
        for (int x = 0; x < kWidth; ++x) {
            const int shine = PanelSine(x * 5 + turn) / 12;
            band.set(x, y, counter ? c.colors.counter(light + shine) : c.colors.shade(light + shine));
        }
    }
    return band;
}

void Lay(PanelCanvas& c, const Surface& band, const PanelCanvas::Columns& columns, int reach) {
    for (int x = 0; x < kWidth; ++x) {
        c.picture.copy(band, {x, 0, 1, band.height()}, {x, Row(kMiddleY, columns[At(x)], reach) - band.height() / 2});
    }
}

void Ribbon(PanelCanvas& c) {
    c.fade(90);
    Lay(c, Band(c, 7, false, Now(c) * 9), c.wave, 11);
}

void TwoRibbons(PanelCanvas& c) {
    c.fade(70);
    Lay(c, Band(c, 5, true, Now(c) * -7), c.right, 12);
    Lay(c, Band(c, 5, false, Now(c) * 7), c.left, 12);
}

// A column of bricks, copied from as many rows as it is high.
Surface Bricks(const PanelCanvas& c, bool lit) {
    Surface bricks(4, kHeight, PanelColors::kBack);
    for (int row = 0; row < kHeight / 3; ++row) {
        const int y = kHeight - 2 - row * 3;
        const Color color = lit ? c.colors.shade(90 + row * 16) : c.colors.shade(18 + row);
        bricks.fillRect({0, y, 4, 2}, color);
    }
    return bricks;
}

void Towers(PanelCanvas& c) {
    const Surface lit = Bricks(c, true), dark = Bricks(c, false);
    for (int i = 0; i < 17; ++i) {
        const int level = Largest(c.wave, i * 5, 5) * 10 / 256 * 3;
        const int x = i * 5;
        c.picture.copy(dark, {x, 0});
        c.picture.copy(lit, {0, kHeight - level, 4, level}, {x, kHeight - level});
        const int peak = Largest(c.left, i * 5, 5) * 10 / 256 * 3;
        if (peak > level) c.picture.copy(lit, {0, kHeight - peak, 4, 2}, {x, kHeight - peak});
    }
}

void TowersMirrored(PanelCanvas& c) {
    c.fade(120);
    const Surface lit = Bricks(c, true);
    for (int i = 0; i < 17; ++i) {
        const int blocks = Largest(c.wave, i * 5, 5) * 5 / 256 + 1;
        for (int block = 0; block < blocks; ++block) {
            const Rect brick{0, kHeight - 2 - block * 6, 4, 2};
            c.picture.copy(lit, brick, {i * 5, kMiddleY - 2 - block * 3});
            c.picture.copy(lit, brick, {i * 5, kMiddleY + 1 + block * 3});
        }
    }
}

// One column of a loudness picture, bright at its ends.
Surface Slice(const PanelCanvas& c) {
    Surface slice(2, kHeight, PanelColors::kBack);
    const int size = std::min(14, Largest(c.wave, 0, kWidth) * 15 / 256);
    for (int y = 0; y <= size; ++y) {
        const Color color = c.beat ? c.colors.counter(90 + y * 9) : c.colors.shade(60 + y * 13);
        slice.fillRect({0, kMiddleY - y, 2, 1}, color);
        slice.fillRect({0, kMiddleY + y, 2, 1}, color);
    }
    slice.fillRect({1, 0, 1, kHeight}, PanelColors::kBack);
    return slice;
}

void History(PanelCanvas& c) {
    c.picture.copy(c.picture, {2, 0, kWidth - 2, kHeight}, {0, 0});
    c.picture.copy(Slice(c), {kWidth - 2, 0});
}

void HistoryBothWays(PanelCanvas& c) {
    const Surface slice = Slice(c);
    c.picture.copy(c.picture, {2, 0, kMiddleX - 2, kHeight}, {0, 0});
    c.picture.copy(c.picture, {kMiddleX, 0, kMiddleX - 1, kHeight}, {kMiddleX + 2, 0});
    c.picture.copy(slice, {kMiddleX - 2, 0});
    c.picture.copy(slice, {kMiddleX, 0});
    c.fade(250);
}

// A sun over the sea: every row of it is put aside by the wave, the lower half more.
void Sun(PanelCanvas& c) {
    Surface sun(41, kHeight, PanelColors::kBack);
    const int swell = c.loudness / 40;
    for (int y = 0; y < kHeight; ++y) {
        const int dy = y - kMiddleY;
        const int half = PanelRoot(std::max(0, 13 * 13 - dy * dy)) * (22 + swell) / 20;
        sun.fillRect({20 - std::min(20, half), y, std::min(20, half) * 2 + 1, 1},
                     dy >= 0 && dy % 3 == 2 ? c.colors.shade(46) : c.colors.shade(220 - y * 5));
    }
    c.fade(60);
    for (int y = 0; y < kHeight; ++y) {
        const int sway = c.wave[At(y * 2)] * (y < kMiddleY ? 3 : 3 + (y - kMiddleY)) / 256;
        c.picture.copy(sun, {0, y, 41, 1}, {kMiddleX - 20 + sway, y});
    }
}

void Flag(PanelCanvas& c) {
    Surface cloth(kWidth, kHeight + 16, PanelColors::kBack);
    for (int y = 0; y < cloth.height(); ++y) {
        const int stripe = (y / 3) % 4;
        cloth.fillRect({0, y, kWidth, 1},
                       stripe % 2 == 0 ? c.colors.shade(90 + stripe * 40) : c.colors.counter(60 + stripe * 20));
    }
    for (int x = 0; x < kWidth; ++x) {
        const int swing = PanelSine(x * 5 - Now(c) * 8) * 3 / 256 + c.wave[At(x)] * 5 / 256;
        c.picture.copy(cloth, {x, 8 + std::clamp(swing, -8, 8), 1, kHeight}, {x, 0});
        // Light on the slopes gives the cloth its folds.
        const int fold = PanelCosine(x * 5 - Now(c) * 8) + (c.wave[At(x)] - c.wave[At(std::max(0, x - 2))]);
        c.fade({x, 0, 1, kHeight}, std::clamp(190 + fold / 4, 90, 256));
    }
}

void Mosaic(PanelCanvas& c) {
    Surface tiles(16 * 5, 5, PanelColors::kBack);
    for (int i = 0; i < 16; ++i)
        tiles.fillRect({i * 5, 0, 4, 4}, i < 8 ? c.colors.counter(150 - i * 18) : c.colors.shade((i - 7) * 28));
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 17; ++column) {
            const int sample = c.wave[At((column * 5 + row * 11) % kWidth)];
            const int tile = std::clamp(8 + sample * 9 / 256, 0, 15);
            c.picture.copy(tiles, {tile * 5, 0, 5, 5}, {column * 5, row * 5});
        }
    }
}

// Four curtains that draw back from a cross of light.
void Cross(PanelCanvas& c) {
    const Surface& still = c.still();
    c.picture.copy(still, {1, 1, kMiddleX - 1, kMiddleY - 1}, {0, 0});
    c.picture.copy(still, {kMiddleX, 1, kWidth - kMiddleX - 1, kMiddleY - 1}, {kMiddleX + 1, 0});
    c.picture.copy(still, {1, kMiddleY, kMiddleX - 1, kHeight - kMiddleY - 1}, {0, kMiddleY + 1});
    c.picture.copy(still, {kMiddleX, kMiddleY, kWidth - kMiddleX - 1, kHeight - kMiddleY - 1},
                   {kMiddleX + 1, kMiddleY + 1});
    c.fade(240);
    for (int x = 0; x < kWidth; ++x) {
        const int light = 30 + std::abs(c.wave[At(x)]);
        c.picture.fillRect({x, kMiddleY - 1, 1, 2}, c.colors.shade(light));
    }
    for (int y = 0; y < kHeight; ++y) {
        const int light = 30 + std::abs(c.wave[At(y * 2 + 12)]);
        c.picture.fillRect({kMiddleX - 1, y, 2, 1}, c.colors.counter(light));
    }
}

}  // namespace

void DrawRibbons(PanelCanvas& canvas, int variant) {
    static constexpr void (*kViews[])(PanelCanvas&) = {Ribbon,          TwoRibbons, Towers, TowersMirrored, History,
                                                       HistoryBothWays, Sun,        Flag,   Mosaic,         Cross};
    kViews[variant](canvas);
}

}  // namespace quenlox
