#include "equalizer/curve.h"

#include <algorithm>
#include <cmath>

namespace quenlox {
namespace {

constexpr double kMargin = 8;  // above +12 dB and below -12 dB
constexpr double kKnobRadius = 4.5;
constexpr double kLineHalf = 1.3;  // half the thickness of the curve
constexpr Color kGroundTop{34, 40, 50};
constexpr Color kGroundBottom{20, 24, 31};
constexpr Color kGrid{74, 84, 100};
constexpr Color kZeroLine{150, 162, 180};
constexpr Color kCurveOn{64, 196, 255};
constexpr Color kCurveOff{140, 146, 156};

Color Mix(Color a, Color b, double share) {
    const auto mix = [&](int from, int to) {
        return static_cast<std::uint8_t>(std::lround(from + (to - from) * share));
    };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue)};
}

void Tint(Surface& picture, int x, int y, Color color, double alpha) {
    if (alpha <= 0 || !picture.rect().contains({x, y})) return;
    picture.set(x, y, Mix(Surface::ToColor(picture.at(x, y)), color, std::min(alpha, 1.0)));
}

void DrawGround(Surface& picture, const Knobs& knobs, const CurveScale& scale) {
    for (int y = 0; y < picture.height(); ++y) {
        picture.fillRect({0, y, picture.width(), 1},
                         Mix(kGroundTop, kGroundBottom, y / std::max(1.0, picture.height() - 1.0)));
    }
    const int thick = std::max(1, static_cast<int>(scale.unit));
    for (const double x : knobs.x)
        picture.blend({static_cast<int>(std::lround(x)), 0, thick, picture.height()}, kGrid, 0.45);
    for (int decibels = -12; decibels <= 12; decibels += 3) {
        const Rect line{0, static_cast<int>(std::lround(scale.y(-decibels))), picture.width(), thick};
        if (decibels == 0) {
            picture.blend(line, kZeroLine, 0.8);
        } else {
            picture.blend(line, kGrid, decibels % 6 == 0 ? 0.7 : 0.35);
        }
    }
}

void DrawKnob(Surface& picture, double x, double y, double radius, Color ring) {
    const int reach = static_cast<int>(radius) + 2;
    const int centreX = static_cast<int>(std::lround(x)), centreY = static_cast<int>(std::lround(y));
    for (int row = centreY - reach; row <= centreY + reach; ++row) {
        for (int column = centreX - reach; column <= centreX + reach; ++column) {
            const double distance = std::hypot(column - x, row - y);
            Tint(picture, column, row, ring, std::clamp(radius + 0.5 - distance, 0.0, 1.0));
            Tint(picture, column, row, kKnobColor, std::clamp(radius * 0.62 + 0.5 - distance, 0.0, 1.0));
        }
    }
}

}  // namespace

double EqualizerCurve::at(double x) const {
    const auto next = std::upper_bound(x_.begin(), x_.end(), x);
    if (next == x_.begin()) return response_.atLog(0);
    if (next == x_.end()) return response_.atLog(std::log(kEqualizerHz.back()));
    const auto i = static_cast<std::size_t>(next - x_.begin());
    const double from = std::log(kEqualizerHz[i - 1]), to = std::log(kEqualizerHz[i]);
    return response_.atLog(from + (to - from) * (x - x_[i - 1]) / (x_[i] - x_[i - 1]));
}

CurveScale ScaleOfPicture(int height, double unit) {
    const double margin = std::min(kMargin * unit, (height - 1) / 4.0);
    return {margin, height - 1 - margin, unit};
}

void DrawEqualizerCurve(Surface& picture, const Knobs& knobs, const CurveScale& scale, bool on) {
    DrawGround(picture, knobs, scale);
    const EqualizerCurve curve(knobs);
    const Color ink = on ? kCurveOn : kCurveOff;
    const double zero = scale.y(0), half = kLineHalf * scale.unit, reach = scale.bottom - scale.top;
    for (int x = 0; x < picture.width(); ++x) {
        const double height = curve.at(x);
        // From the 0 dB line to the curve, the stronger the farther out.
        const double from = std::min(height, zero), to = std::max(height, zero);
        for (int y = static_cast<int>(std::floor(from)); y <= static_cast<int>(std::ceil(to)); ++y) {
            const double covered = std::clamp(std::min(y + 0.5, to) - std::max(y - 0.5, from), 0.0, 1.0);
            Tint(picture, x, y, ink, covered * (0.14 + 0.5 * std::abs(y - zero) / reach));
        }
        // The distance from a steep line is shorter than the one straight down to it.
        const double slant = std::hypot(1.0, curve.slope(x));
        const int span = static_cast<int>((half + 1) * slant) + 1;
        for (int y = static_cast<int>(height) - span; y <= static_cast<int>(height) + span; ++y) {
            Tint(picture, x, y, ink, half + 0.5 - std::abs(y - height) / slant);
        }
    }
    for (std::size_t i = 0; i < knobs.x.size(); ++i) {
        DrawKnob(picture, knobs.x[i], knobs.y[i], kKnobRadius * scale.unit, ink);
    }
}

}  // namespace quenlox
