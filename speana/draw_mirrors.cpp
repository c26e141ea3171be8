// The wave in a picture that is stretched into itself: tunnels, mirrors, lenses. Now and then a word goes through them.
#include <algorithm>
#include <cstdlib>

#include "speana/drawing.h"
#include "speana/panel_canvas.h"
#include "speana/pixel_font.h"

namespace quenlox {
namespace {

constexpr int kWidth = PanelCanvas::kWidth, kHeight = PanelCanvas::kHeight;
constexpr int kMiddleX = PanelCanvas::kMiddleX, kMiddleY = PanelCanvas::kMiddleY;
constexpr int kBetweenWords = 360, kWordShown = 44;  // frames: a word every half a minute
constexpr int kFever = 70;                           // heat from which it is the other word

std::size_t At(int i) { return static_cast<std::size_t>(i); }
int Now(const PanelCanvas& c) { return static_cast<int>(c.tick); }

void Trace(PanelCanvas& c, int middle, int reach, Color color) {
    for (int x = 1; x < kWidth; ++x) {
        c.picture.line({x - 1, Row(middle, c.wave[At(x - 1)], reach)}, {x, Row(middle, c.wave[At(x)], reach)}, color);
    }
}

// The picture as it was, `inX` and `inY` pixels cut off around it, fills the panel again. Each side of the centre is
// stretched for itself and begins with the centre line, so that both run away from it alike.
void Zoom(PanelCanvas& c, int inX, int inY, Point centre = {kMiddleX, kMiddleY}) {
    const int left = inX * 2 * centre.x / kWidth, top = inY * 2 * centre.y / kHeight;
    const int toRight = kWidth - centre.x - 1, toBottom = kHeight - centre.y - 1;
    if (inX > 0) {
        const Surface& still = c.still();
        c.picture.stretch(still, {left + 1, 0, centre.x - left, kHeight}, {0, 0, centre.x, kHeight});
        c.picture.stretch(still, {centre.x, 0, toRight - (2 * inX - left), kHeight},
                          {centre.x + 1, 0, toRight, kHeight});
    }
    if (inY > 0) {
        const Surface& still = c.still();
        c.picture.stretch(still, {0, top + 1, kWidth, centre.y - top}, {0, 0, kWidth, centre.y});
        c.picture.stretch(still, {0, centre.y, kWidth, toBottom - (2 * inY - top)},
                          {0, centre.y + 1, kWidth, toBottom});
    }
}

// A frame in the middle, lit where the wave is large; one after the other runs out to the walls.
void Tunnel(PanelCanvas& c) {
    Zoom(c, 3, 1);
    c.fade(240);
    constexpr int kAcross = 6, kDown = 2, kRound = 4 * (kAcross + kDown);
    if (Now(c) % 2 != 0 && !c.beat) return;
    for (int i = 0; i < kRound; ++i) {
        const int side = i % (kRound / 2);
        const bool flat = side < 2 * kAcross, turned = i >= kRound / 2;
        const int x = flat ? side - kAcross : kAcross, y = flat ? -kDown : side - 2 * kAcross - kDown;
        const int size = std::abs(c.wave[At(i * 2)]);
        c.set(kMiddleX + (turned ? -x : x), kMiddleY + (turned ? -y : y),
              Mix(PanelColors::kBack, c.colors.ring(Now(c) * 3 + i * 2), 50 + size * 4 / 5));
    }
}

void Drain(PanelCanvas& c) {
    const Surface& still = c.still();
    c.picture.fill(PanelColors::kBack);
    c.picture.stretch(still, still.rect(), {3, 1, kWidth - 6, kHeight - 2});
    c.fade(240);
    for (int x = 0; x < kWidth; ++x) {
        const int size = std::abs(c.wave[At(x)]) * 9 / 256;
        const Color color = c.colors.ring(Now(c) * 2 + x);
        c.set(x, size, color);
        c.set(x, kHeight - 1 - size, color);
    }
}

void WideStretch(PanelCanvas& c) {
    Zoom(c, 4, 0);
    c.fade(218);
    Point last{kMiddleX, 0};
    for (int y = 0; y < kHeight; ++y) {
        const Point next{Row(kMiddleX, c.wave[At(y * 2)], 12), y};
        c.picture.line(last, next, c.colors.shade(200 + std::abs(c.wave[At(y * 2)]) / 5));
        last = next;
    }
}

void TallStretch(PanelCanvas& c) {
    Zoom(c, 0, 2);
    c.fade(200);
    Trace(c, kMiddleY, 5, c.colors.counter(215));
}

void Kaleidoscope(PanelCanvas& c) {
    c.fade(180);
    constexpr int kAcross = kMiddleX + 1, kDown = kMiddleY;
    for (int x = 1; x < kAcross; ++x) {
        c.picture.line({x - 1, Row(kDown / 2 + 1, c.left[At(x - 1)], 9)}, {x, Row(kDown / 2 + 1, c.left[At(x)], 9)},
                       c.colors.ring(Now(c) + x * 3));
        c.picture.line({kAcross - x, Row(kDown / 2, c.right[At(x - 1)], 8)},
                       {kAcross - x - 1, Row(kDown / 2, c.right[At(x)], 8)}, c.colors.ring(128 + Now(c) + x * 3));
    }
    for (int x = 0; x < kMiddleX; ++x) c.picture.copy(c.picture, {x, 0, 1, kDown}, {kWidth - 1 - x, 0});
    for (int y = 0; y < kDown; ++y) c.picture.copy(c.picture, {0, y, kWidth, 1}, {0, kHeight - 1 - y});
}

void Lake(PanelCanvas& c) {
    constexpr int kShore = 19;
    Surface sky(kWidth, kShore);
    c.scroll({0, 0, kWidth, kShore}, 0, -1);
    c.fade({0, 0, kWidth, kShore}, 210);
    Trace(c, 11, 8, c.colors.shade(225));
    sky.copy(c.picture, {0, 0, kWidth, kShore}, {0, 0});
    Surface upset(kWidth, kShore);
    for (int y = 0; y < kShore; ++y)
        upset.copy(sky, {0, kShore - 1 - y, kWidth, 1}, {PanelSine(y * 50 + Now(c) * 12) / 128, y});
    c.picture.stretch(upset, upset.rect(), {0, kShore, kWidth, kHeight - kShore});
    c.fade({0, kShore, kWidth, kHeight - kShore}, 120);
    c.picture.fillRect({0, kShore, kWidth, 1}, c.colors.shade(60));
}

// One small picture, shown in nine sizes.
void Windows(PanelCanvas& c) {
    Surface small(28, 10, PanelColors::kBack);
    for (int x = 1; x < 28; ++x) {
        const int y = Row(5, c.wave[At(x * 3)], 5);
        for (int below = y + 1; below < 10; ++below) small.set(x, below, c.colors.shade(72 - below * 4));
        small.line({x - 1, Row(5, c.wave[At(x * 3 - 3)], 5)}, {x, y}, c.colors.shade(170 + x * 3));
    }
    constexpr int kColumns[] = {0, 20, 65, 85}, kRows[] = {0, 7, 23, 30};
    c.fade(110);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const Rect where{kColumns[column], kRows[row], kColumns[column + 1] - kColumns[column] - 1,
                             kRows[row + 1] - kRows[row] - 1};
            c.picture.stretch(small, small.rect(), where);
            if (row != 1 || column != 1) c.fade(where, 130 + 40 * ((row + column + Now(c) / 8) % 3));
        }
    }
}

void Lens(PanelCanvas& c) {
    c.picture.fill(PanelColors::kBack);
    for (int x = 0; x < kWidth; ++x) {
        const int size = std::abs(c.wave[At(x)]) * 15 / 256;
        for (int y = -size; y <= size; y += 2) c.set(x, kMiddleY + y, c.colors.shade(60 + (15 - std::abs(y)) * 5));
    }
    Trace(c, kMiddleY, 12, c.colors.shade(200));
    constexpr int kWide = 28, kHigh = 22;
    const int x = kMiddleX + PanelSine(Now(c) * 2) * 28 / 256 - kWide / 2,
              y = kMiddleY + PanelCosine(Now(c) * 3) * 4 / 256 - kHigh / 2;
    Surface glass(kWide, kHigh);
    glass.stretch(c.still(), {x + kWide / 4, y + kHigh / 4, kWide / 2, kHigh / 2}, glass.rect());
    for (int row = 0; row < kHigh; ++row) {
        const int dy = row * 2 + 1 - kHigh, half = PanelRoot(std::max(0, kHigh * kHigh - dy * dy)) * kWide / kHigh / 2;
        c.picture.copy(glass, {kWide / 2 - half, row, half * 2, 1}, {x + kWide / 2 - half, y + row});
    }
    c.picture.ellipse({x, y, kWide, kHigh}, c.colors.counter(210));
}

// It breathes: in with a beat, out again after it.
void Breath(PanelCanvas& c) {
    const int in = (c.loudness - c.calm) / 12;
    if (in > 0) {
        Zoom(c, 1 + std::min(in, 6), 1 + std::min(in, 6) / 3);
    } else {
        const Surface& still = c.still();
        c.picture.fill(PanelColors::kBack);
        c.picture.stretch(still, still.rect(), {1, 0, kWidth - 2, kHeight});
    }
    c.fade(236);
    Point last;
    for (int i = 0; i <= 32; ++i) {
        const int angle = i * 8, radius = 150 + c.wave[At((i % 32) * 2)] * 100 / 256;
        const Point next{kMiddleX + PanelCosine(angle) * radius / 256 * 30 / 256,
                         kMiddleY + PanelSine(angle) * radius / 256 * 11 / 256};
        if (i > 0) c.picture.line(last, next, c.colors.ring(Now(c) * 3 + i * 4));
        last = next;
    }
}

void Comet(PanelCanvas& c) {
    const Point centre{kMiddleX + PanelSine(Now(c) * 2) * 30 / 256, kMiddleY + PanelSine(Now(c) * 3 + 40) * 9 / 256};
    Zoom(c, 3, 1, centre);
    c.fade(208);
    for (int i = 0; i < 40; ++i) {
        const int angle = i * 6 + Now(c) * 5, radius = 2 + std::abs(c.wave[At(i * 2)]) * 9 / 256;
        c.set(centre.x + PanelCosine(angle) * radius * 2 / 256, centre.y + PanelSine(angle) * radius / 256,
              c.colors.ring(Now(c) * 2 + i));
    }
    c.set(centre.x, centre.y, {255, 255, 255});
}

void Words(PanelCanvas& c) {
    const int at = Now(c) % kBetweenWords - (kBetweenWords - kWordShown);
    if (at < 0 || c.loudness + c.calm == 0) return;
    const bool fever = c.heat >= kFever;
    const char* word = fever ? "= FEVER =" : "= LUCKY =";
    if (fever && at % 4 == 3) return;  // it flashes
    const int x = (kWidth - PixelTextWidth(word)) / 2, y = (kHeight - kPixelTextHeight) / 2;
    DrawPixelText(c.picture, {x + 1, y + 1}, word, PanelColors::kBack);
    DrawPixelText(c.picture, {x, y}, word, fever ? c.colors.ring(at * 12) : c.colors.shade(255));
}

}  // namespace

void DrawMirrors(PanelCanvas& canvas, int variant) {
    static constexpr void (*kViews[])(PanelCanvas&) = {Tunnel, Drain,   WideStretch, TallStretch, Kaleidoscope,
                                                       Lake,   Windows, Lens,        Breath,      Comet};
    kViews[variant](canvas);
    Words(canvas);
}

}  // namespace quenlox
