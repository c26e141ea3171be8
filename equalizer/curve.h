// The curve of the equalizer: a smooth line through ten knobs, and its picture. Pure functions over pixels.
#pragma once

#include <array>

#include "forms/surface.h"

namespace quenlox {

inline constexpr int kEqualizerBands = 10;

struct Knobs {
    std::array<double, kEqualizerBands> x{};  // pixels, rising
    std::array<double, kEqualizerBands> y{};
};

// Height of the curve at `x`: it passes every knob, stays level beyond the first and the last, and between two of them
// never leaves the room that they span, so that it shows no boost that is not set. Monotone cubic interpolation after
// Fritsch and Carlson, "Monotone Piecewise Cubic Interpolation", SIAM J. Numer. Anal. 17 (1980).
class EqualizerCurve {
  public:
    explicit EqualizerCurve(const Knobs& knobs);
    double at(double x) const;
    double slope(double x) const;

  private:
    struct Place {
        int band;   // of the knob to the left, -1 beyond an end
        double t;   // 0 at that knob, 1 at the next
    };
    Place place(double x) const;

    Knobs knobs_;
    std::array<double, kEqualizerBands> tangent_{};
};

// Where +12, 0 and -12 dB lie in a picture, and how large its marks are.
struct CurveScale {
    double top = 0;
    double bottom = 0;
    double unit = 1;  // pixels at 96 dots per inch

    double y(double sliderPosition) const { return top + (bottom - top) * (sliderPosition + 12) / 24; }
    double position(double y) const { return (y - top) / (bottom - top) * 24 - 12; }
};

CurveScale ScaleOfPicture(int height, double unit);

// Grid, 0 dB line, the filled curve and the knobs; grey while the equalizer is off.
void DrawEqualizerCurve(Surface& picture, const Knobs& knobs, const CurveScale& scale, bool on);

// What a knob is drawn in.
inline constexpr Color kKnobColor{255, 255, 255};

}  // namespace quenlox
