#include "speana/panel_canvas.h"

#include <algorithm>
#include <cstdlib>

namespace quenlox {
namespace {

constexpr int kStride = 3;     // samples from one column to the next
constexpr int kSearch = 200;   // samples in which the rise through zero is looked for
constexpr int kFloor = 270;    // levels below this show no bar
constexpr int kSpan = 640;     // from there to a full bar
constexpr int kTilt = 170;     // the highest band is shown this much higher: music is weaker there
constexpr int kBarFall = 20;   // of 255 in a frame
constexpr int kSlope = 1600;   // of 255, over all bands: a lone band stands on a foot like this
constexpr int kPeakHold = 10;  // frames

// A soft solo fills the picture as an orchestra does: what was the loudest in the last seconds reaches the edge,
// between these two. Louder is cut off there, softer is drawn smaller: the end of a fade-out.
constexpr int kLoudWave = 21845, kSoftWave = 3000;
constexpr int kLoudLevel = 850, kSoftLevel = 650;
// Two equal sides stand against what they are a little later: mono has no other width.
constexpr int kLater = 11;        // columns
constexpr int kWideEnough = 128;  // of 256: sides that differ so much stand against each other alone
constexpr int kForget = 64;       // frames; a part of 64 of the height is forgotten in one

std::size_t At(int i) { return static_cast<std::size_t>(i); }

int Follow(int heard, int now) { return std::max(now, heard - heard / kForget); }

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
    loudness = calm = heat = 0;
    loudestWave_ = loudestLevel_ = 0;
    beat = false;
    tick = 0;
    seed_ = 1;
}

void PanelCanvas::listen(const SoundFrame& sound) {
    takeWave(sound);
    int sum = 0;
    for (int x = 0; x < kWidth; ++x) sum += (std::abs(left[At(x)]) + std::abs(right[At(x)])) / 2;
    loudness = std::min(255, sum / kWidth);
    beat = loudness > 24 && loudness * 4 > calm * 5;
    calm += (loudness - calm) / 8 + (loudness > calm) - (loudness < calm);
    heat = calm * std::clamp(loudestWave_, kSoftWave, kLoudWave) / kLoudWave;
    takeBars(sound);
}

void PanelCanvas::takeWave(const SoundFrame& sound) {
    constexpr int kDrawn = (kWidth + kLater) * kStride;
    static_assert(kSearch + kDrawn <= SoundFrame::kSamples);
    const std::size_t begin = At(BeginOfWave(sound));
    int loudest = 0;
    for (std::size_t i = begin; i < begin + kDrawn; ++i) {
        loudest = std::max({loudest, std::abs(int{sound.left[i]}), std::abs(int{sound.right[i]})});
    }
    loudestWave_ = Follow(loudestWave_, loudest);
    const int edge = std::clamp(loudestWave_, kSoftWave, kLoudWave);
    const auto deflection = [&](const auto& samples, int x) {
        return std::clamp(samples[begin + At(x * kStride)] * 256 / edge, -256, 256);
    };
    int width = 0;
    for (int x = 0; x < kWidth; ++x) {
        left[At(x)] = deflection(sound.left, x);
        right[At(x)] = deflection(sound.right, x);
        wave[At(x)] = (left[At(x)] + right[At(x)]) / 2;
        width = std::max(width, std::abs(left[At(x)] - right[At(x)]));
    }
    const int narrow = std::max(0, kWideEnough - width);
    for (int x = 0; x < kWidth; ++x) {
        const int later = (deflection(sound.left, x + kLater) + deflection(sound.right, x + kLater)) / 2;
        side[At(x)] = (left[At(x)] - right[At(x)]) * 3 / 2 + later * narrow / kWideEnough;
    }
}

void PanelCanvas::takeBars(const SoundFrame& sound) {
    bands = std::clamp(sound.bands, 1, kWidth);
    loudestLevel_ = Follow(loudestLevel_, *std::max_element(sound.levels.begin(), sound.levels.begin() + bands));
    const int lift = kLoudLevel - std::clamp(loudestLevel_, kSoftLevel, kLoudLevel);
    Columns level{};
    for (int i = 0; i < bands; ++i) {
        const auto band = static_cast<std::size_t>(i);
        const int tilted = sound.levels[band] > 0 ? std::min(1000, sound.levels[band]) + lift + kTilt * i / bands : 0;
        level[band] = std::clamp((tilted - kFloor) * 255 / kSpan, 0, 255);
    }
    const int step = kSlope / bands;
    for (int i = 1; i < bands; ++i) level[At(i)] = std::max(level[At(i)], level[At(i - 1)] - step);
    for (int i = bands - 1; i > 0; --i) level[At(i - 1)] = std::max(level[At(i - 1)], level[At(i)] - step);
    for (int i = 0; i < bands; ++i) fall(At(i), level[At(i)]);
}

// The bar of a band rises at once and falls slowly, its mark stays for a while.
void PanelCanvas::fall(std::size_t band, int level) {
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
