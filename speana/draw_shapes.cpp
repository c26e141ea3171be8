// Oscilloscope shapes: ellipses and lines on a screen that glows after.
#include <algorithm>
#include <cstdlib>

#include "speana/drawing.h"
#include "speana/panel_canvas.h"

namespace quenlox {
namespace {

constexpr int kWidth = PanelCanvas::kWidth;
constexpr int kMiddleX = PanelCanvas::kMiddleX, kMiddleY = PanelCanvas::kMiddleY;

std::size_t At(int i) { return static_cast<std::size_t>(i); }

void Trace(PanelCanvas& c, const PanelCanvas::Columns& columns, int middle, int reach, Color color) {
    for (int x = 1; x < kWidth; ++x) {
        c.picture.line({x - 1, Row(middle, columns[At(x - 1)], reach)}, {x, Row(middle, columns[At(x)], reach)}, color);
    }
}

void Scope(PanelCanvas& c) {
    c.fade(120);
    for (int x = 2; x < kWidth; x += 8) c.set(x, kMiddleY, c.colors.shade(44));
    // A dim twin on both sides gives the beam its width.
    Trace(c, c.wave, kMiddleY - 1, 14, c.colors.shade(70));
    Trace(c, c.wave, kMiddleY + 1, 14, c.colors.shade(70));
    Trace(c, c.wave, kMiddleY, 14, c.colors.shade(215));
}

void TwoTraces(PanelCanvas& c) {
    c.fade(96);
    c.picture.line({0, 7}, {kWidth - 1, 7}, c.colors.shade(30));
    c.picture.line({0, 22}, {kWidth - 1, 22}, c.colors.counter(30));
    Trace(c, c.left, 7, 8, c.colors.shade(190));
    Trace(c, c.right, 22, 8, c.colors.counter(190));
}

void FilledWave(PanelCanvas& c) {
    c.fade(60);
    for (int x = 0; x < kWidth; ++x) {
        const int y = Row(kMiddleY, c.wave[At(x)], 15), size = std::abs(y - kMiddleY);
        c.picture.line({x, kMiddleY}, {x, y}, c.colors.shade(56 + size * 7));
        c.set(x, y, c.colors.shade(165 + size * 6));
    }
}

void Envelope(PanelCanvas& c) {
    c.fade(150);
    for (int x = 0; x < kWidth; x += 2) {
        const int size = std::abs(c.wave[At(x)]) * 14 / 256;
        c.picture.line({x, kMiddleY - size}, {x, kMiddleY + size}, c.colors.ring(x / 2 + size * 3));
        c.set(x, kMiddleY - size, c.colors.shade(245));
        c.set(x, kMiddleY + size, c.colors.shade(245));
    }
}

// Left against right, turned so that what both have stands upright.
void Lissajous(PanelCanvas& c) {
    c.fade(190);
    Point last;
    for (int i = 0; i < kWidth; ++i) {
        const Point next{kMiddleX + c.side[At(i)] * 40 / 256, Row(kMiddleY, c.wave[At(i)], 14)};
        if (i > 0) c.picture.line(last, next, c.colors.shade(110 + i));
        last = next;
    }
    c.set(last.x, last.y, c.colors.shade(255));
}

void Ring(PanelCanvas& c) {
    c.fade(140);
    Point first, last;
    constexpr int kSteps = 64;
    for (int i = 0; i <= kSteps; ++i) {
        // The last part runs into the first, so that the ring closes.
        const int blend = std::max(0, i - kSteps + 12);
        const int sample = (c.wave[At(i % kSteps)] * (12 - blend) + c.wave[0] * blend) / 12;
        const int radius = 256 + sample * 150 / 256;
        const int angle = i * 4 + static_cast<int>(c.tick);
        const Point next{kMiddleX + PanelCosine(angle) * radius / 256 * 24 / 256,
                         kMiddleY + PanelSine(angle) * radius / 256 * 9 / 256};
        if (i == 0) first = next;
        if (i > 0) c.picture.line(last, i == kSteps ? first : next, c.colors.ring(i * 2 + static_cast<int>(c.tick)));
        last = next;
    }
    const int heart = 2 + c.loudness * 5 / 128;
    c.picture.fillEllipse({kMiddleX - heart, kMiddleY - heart / 2, 2 * heart + 1, heart / 2 * 2 + 1},
                          c.colors.shade(90 + c.loudness));
}

// Rings that a beat throws and that run outwards.
void Pulses(PanelCanvas& c) {
    c.fade(150);
    for (int ring = 0; ring < 5; ++ring) {
        int size = 0;
        for (int i = ring * 17; i < ring * 17 + 17; ++i) size += std::abs(c.wave[At(i)]);
        size = size / 17;
        const int half = 3 + ring * 8 + size * 9 / 256, high = 1 + ring * 2 + size * 8 / 256;
        c.picture.ellipse({kMiddleX - half, kMiddleY - high, half * 2 + 1, high * 2 + 1},
                          ring % 2 == 0 ? c.colors.shade(100 + size) : c.colors.counter(100 + size));
    }
}

void Bubbles(PanelCanvas& c) {
    c.fade(110);
    for (int i = 0; i < 9; ++i) {
        int size = 0;
        for (int x = i * 9; x < i * 9 + 9; ++x) size = std::max(size, std::abs(c.wave[At(x)]));
        const int radius = 1 + size * 5 / 256;
        const int x = 6 + i * 9, y = Row(kMiddleY, c.wave[At(i * 9 + 4)], 9);
        c.picture.fillEllipse({x - radius, y - radius, radius * 2 + 1, radius * 2 + 1}, c.colors.ring(i * 14));
        c.picture.ellipse({x - radius, y - radius, radius * 2 + 1, radius * 2 + 1}, c.colors.shade(230));
        if (radius > 2) c.set(x - radius / 2, y - radius / 2, {255, 255, 255});
    }
}

void Helix(PanelCanvas& c) {
    c.fade(80);
    const auto strand = [&](int x, int turn) {
        const int swing = PanelSine(x * 6 + static_cast<int>(c.tick) * 5 + turn);
        return Row(kMiddleY, swing * (3 * 256 + c.loudness * 6) / 2560 + c.wave[At(x)] / 3, 13);
    };
    for (int x = 0; x < kWidth; x += 4) {
        const int a = strand(x, 0), b = strand(x, 128);
        c.picture.line({x, a}, {x, b}, c.colors.shade(60 + std::abs(c.wave[At(x)]) / 3));
    }
    for (int x = 1; x < kWidth; ++x) {
        c.picture.line({x - 1, strand(x - 1, 0)}, {x, strand(x, 0)}, c.colors.shade(200));
        c.picture.line({x - 1, strand(x - 1, 128)}, {x, strand(x, 128)}, c.colors.counter(190));
    }
}

void Star(PanelCanvas& c) {
    c.fade(130);
    for (int ray = 0; ray < 32; ++ray) {
        const int size = 40 + std::abs(c.wave[At(ray * 2)]) * 5 / 4;
        const int angle = ray * 8 + static_cast<int>(c.tick) * 2;
        c.picture.line({kMiddleX, kMiddleY},
                       {kMiddleX + PanelCosine(angle) * size / 256 * 36 / 256,
                        kMiddleY + PanelSine(angle) * size / 256 * 14 / 256},
                       c.colors.shade(50 + size * 2 / 3));
    }
    const int core = 2 + c.loudness / 48;
    c.picture.fillEllipse({kMiddleX - core * 2, kMiddleY - core, core * 4 + 1, core * 2 + 1},
                          c.colors.shade(180 + c.loudness / 3));
}

}  // namespace

void DrawShapes(PanelCanvas& canvas, int variant) {
    static constexpr void (*kViews[])(PanelCanvas&) = {Scope, TwoTraces, FilledWave, Envelope, Lissajous,
                                                       Ring,  Pulses,    Bubbles,    Helix,    Star};
    kViews[variant](canvas);
}

}  // namespace quenlox
