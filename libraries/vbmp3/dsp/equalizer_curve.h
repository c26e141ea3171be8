// From ten gains to the filter that has them: pure functions.
//
// The wanted response is a smooth curve through the ten points, drawn over the logarithm of the frequency: piecewise
// cubic, monotone between neighbours (F. N. Fritsch and J. Butland, "A method for constructing local monotone piecewise
// cubic interpolants", 1984), level outside the outermost points. It therefore never exceeds the largest gain, and what
// is heard is the line that a user sees through the knobs.
//
// The filter is the minimum-phase impulse response of that curve, found through the real cepstrum (A. V. Oppenheim and
// R. W. Schafer, "Discrete-Time Signal Processing", homomorphic minimum-phase systems). Unlike ten second-order
// sections, whose skirts add up, it meets any set of gains; unlike a linear-phase filter it has no echo before a beat.
#pragma once

#include <array>
#include <vector>

#include "libraries/vbmp3/dsp/sound_settings.h"

namespace vbmp3 {

inline constexpr std::array<double, kBands> kBandHz = {60, 170, 310, 600, 1000, 3000, 6000, 12000, 14000, 16000};

// How many bands lie below half the sample rate; the others are left out.
int usableBands(int sampleRate);

// The wanted gain in decibels at each of `hz` (all above 0), for gains in tenths of a decibel.
std::vector<double> equalizerCurve(const BandGains& gains, int bands, const std::vector<double>& hz);

// Taps of the filter at a sample rate: a power of two, about 46 ms.
int equalizerTaps(int sampleRate);
std::vector<float> designEqualizer(const BandGains& gains, int sampleRate);

}  // namespace vbmp3
