// The curve of the equalizer through its ten knobs, and its picture. Pure functions over pixels: any thread.
#pragma once

#include <array>

#include "forms/surface.h"
#include "libraries/response/equalizer_response.h"

namespace quenlox {

struct Knobs {
    std::array<double, kEqualizerBands> x{};  // pixels, rising
    std::array<double, kEqualizerBands> y{};
};

// Height of the response at the column `x`, as it is heard: between two knobs the columns stand for frequencies between
// theirs, evenly over the logarithm; beyond the first and the last it is level.
class EqualizerCurve {
  public:
    explicit EqualizerCurve(const Knobs& knobs) : x_(knobs.x), response_(knobs.y) {}
    double at(double x) const;
    double slope(double x) const { return at(x + 0.5) - at(x - 0.5); }

  private:
    std::array<double, kEqualizerBands> x_;
    EqualizerResponse response_;
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
