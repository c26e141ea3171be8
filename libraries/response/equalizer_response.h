// The response of the equalizer: one smooth curve through ten points, both the filter that is heard and the line that a
// user sees through the knobs. Pure: any thread.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace quenlox {

inline constexpr std::size_t kEqualizerBands = 10;
inline constexpr std::array<double, kEqualizerBands> kEqualizerHz = {60,   170,  310,   600,   1000,
                                                                     3000, 6000, 12000, 14000, 16000};

// Drawn over the logarithm of the frequency: piecewise cubic, monotone between neighbours (F. N. Fritsch and J.
// Butland, "A method for constructing local monotone piecewise cubic interpolants", 1984), level outside the outermost
// points. It therefore passes every point and never leaves the room between two of them.
class EqualizerResponse {
  public:
    // The values of the lowest bands, 1 to 10 of them, in any unit: decibels, pixels.
    explicit EqualizerResponse(std::span<const double> values);
    // In that unit, at the natural logarithm of a frequency in Hz.
    double atLog(double logHz) const;

  private:
    std::size_t bands_;
    std::array<double, kEqualizerBands> x_{}, y_{}, slope_{};
};

}  // namespace quenlox
