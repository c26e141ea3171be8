// From ten gains to the filter that has them: pure functions.
//
// The wanted response is the curve of libraries/response, which never exceeds the largest gain, and which a user sees
// through the knobs.
//
// The filter is the minimum-phase impulse response of that curve, found through the real cepstrum (A. V. Oppenheim and
// R. W. Schafer, "Discrete-Time Signal Processing", homomorphic minimum-phase systems). Unlike ten second-order
// sections, whose skirts add up, it meets any set of gains; unlike a linear-phase filter it has no echo before a beat.
#pragma once

#include <array>
#include <vector>

#include "libraries/response/equalizer_response.h"
#include "libraries/vbmp3/dsp/sound_settings.h"

namespace vbmp3 {

inline constexpr const std::array<double, kBands>& kBandHz = quenlox::kEqualizerHz;

// How many bands lie below half the sample rate; the others are left out.
int UsableBands(int sampleRate);

// The wanted gain in decibels at each of `hz` (all above 0), for gains in tenths of a decibel.
std::vector<double> EqualizerCurve(const BandGains& gains, int bands, const std::vector<double>& hz);

// Taps of the filter at a sample rate: a power of two, about 46 ms.
int EqualizerTaps(int sampleRate);
std::vector<float> DesignEqualizer(const BandGains& gains, int sampleRate);

}  // namespace vbmp3
