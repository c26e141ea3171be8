#include "speana/panel_canvas.h"

#include <algorithm>
#include <cstdlib>

namespace quenlox {
namespace {

constexpr int kStride = 3;         // samples from one column to the next
constexpr int kSearch = 200;       // samples in which the rise through zero is looked for
constexpr int kFloor = 270;        // levels below this show no bar
constexpr int kSpan = 640;         // from there to a full bar
constexpr int kTilt = 170;         // the highest band is shown this much higher: music is weaker there
constexpr int kBarFall = 20;       // of 255 in a frame
constexpr int kPeakHold = 10;      // frames

// Loud music fills the height, quiet music is still seen.
int Deflection(int sample) { return std::clamp(sample * 3 / 2, -32767, 32767) / 128; }

int BeginOfWave(const SoundFrame& sound) {
    const auto at = [&](int i) {
        return sound.left[static_cast<std::size_t>(i)] + sound.right[static_cast<std::size_t>(i)];
    };
    for (int i = 1; i < kSearch; ++i) {
        if (at(i - 1) < 0 && at(i) >= 0) return i;
    }
    return 0;
}

}  // namespace

int PanelSine(int angle) {
    const int a = angle & 255, half = a & 127;
    // Bhaskara's approximation on a half circle of 128 steps.
    const int product = half * (128 - half);
    const int value = 256 * 16 * product / (5 * 128 * 128 - 4 * product);
    return a < 128 ? value : -value;
}

int PanelRoot(int value) {
    int root = 0;
    for (int bit = 1 << 12; bit > 0; bit >>= 1) {
        if ((root + bit) * (root + bit) <= value) root += bit;
    }
    return root;
}

PanelCanvas::PanelCanvas() = default;

void PanelCanvas::clear() {
    picture.fill(PanelColors::kBack);
    bar = peak = {};
    hold_ = fall_ = {};
    loudness = calm = 0;
    beat = false;
    tick = 0;
    seed_ = 1;
}

void PanelCanvas::listen(const SoundFrame& sound) {
    const int begin = BeginOfWave(sound);
    int sum = 0;
    for (int x = 0; x < kWidth; ++x) {
        const auto i = static_cast<std::size_t>(begin + x * kStride);
        const auto column = static_cast<std::size_t>(x);
        left[column] = Deflection(sound.left[i]);
        right[column] = Deflection(sound.right[i]);
        wave[column] = (left[column] + right[column]) / 2;
        sum += (std::abs(left[column]) + std::abs(right[column])) / 2;
    }
    loudness = std::min(255, sum / kWidth);
    beat = loudness > 24 && loudness * 4 > calm * 5;
    calm += (loudness - calm) / 8 + (loudness > calm) - (loudness < calm);
    takeBars(sound);
}

void PanelCanvas::takeBars(const SoundFrame& sound) {
    bands = std::clamp(sound.bands, 1, kWidth);
    for (int i = 0; i < bands; ++i) {
        const auto band = static_cast<std::size_t>(i);
        const int tilted = sound.levels[band] > 0 ? std::min(1000, sound.levels[band]) + kTilt * i / bands : 0;
        const int level = std::clamp((tilted - kFloor) * 255 / kSpan, 0, 255);
        bar[band] = std::max(level, bar[band] - kBarFall);
        if (bar[band] >= peak[band]) {
            peak[band] = bar[band];
            hold_[band] = kPeakHold;
            fall_[band] = 0;
        } else if (hold_[band] > 0) {
            --hold_[band];
        } else {
            peak[band] = std::max(0, peak[band] - ++fall_[band]);  // it falls faster and faster, as things do
        }
    }
}

void PanelCanvas::fade(const Rect& where, int keep) {
    const Rect r = Intersect(where, picture.rect());
    const auto pixels = picture.pixels();
    for (int y = r.top; y < r.bottom(); ++y) {
        for (int x = r.left; x < r.right(); ++x) {
            auto& pixel = pixels[static_cast<std::size_t>(y * kWidth + x)];
            pixel = Surface::ToPixel(Mix(PanelColors::kBack, Surface::ToColor(pixel), keep));
        }
    }
}

void PanelCanvas::scroll(const Rect& where, int dx, int dy) {
    const Rect source = Intersect(where, {where.left - dx, where.top - dy, where.width, where.height});
    picture.copy(picture, source, {source.left + dx, source.top + dy});
    if (dx > 0) picture.fillRect({where.left, where.top, dx, where.height}, PanelColors::kBack);
    if (dx < 0) picture.fillRect({where.right() + dx, where.top, -dx, where.height}, PanelColors::kBack);
    if (dy > 0) picture.fillRect({where.left, where.top, where.width, dy}, PanelColors::kBack);
    if (dy < 0) picture.fillRect({where.left, where.bottom() + dy, where.width, -dy}, PanelColors::kBack);
}

const Surface& PanelCanvas::still() {
    still_.copy(picture, {0, 0});
    return still_;
}

}  // namespace quenlox
