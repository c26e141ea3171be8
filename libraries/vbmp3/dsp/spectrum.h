// The levels of a spectrum display. Lives on the thread that asks for them.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "libraries/vbmp3/dsp/tap.h"

namespace vbmp3 {

class SpectrumAnalyzer {
  public:
    SpectrumAnalyzer();
    ~SpectrumAnalyzer();

    // Levels of `levels.size()` bands, logarithmically spaced from 40 Hz to 16 kHz, of the sound around output frame
    // `frame` of the tap. Hann window over 46 ms; both channels count by their power. 1000 is a sine of full scale in
    // both channels, 0 is 72 dB below it, linear in decibels between.
    void read(const Tap& tap, int64_t frame, std::span<int32_t> levels);

  private:
    struct Plan;
    std::unique_ptr<Plan> plan_;
};

}  // namespace vbmp3
