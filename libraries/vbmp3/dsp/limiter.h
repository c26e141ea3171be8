// Headroom for what the equalizer and the pitch raise: a look-ahead limiter. Sound that stays within full scale passes
// untouched, so that the response is exact and loudness does not drop when the equalizer is switched on; a louder peak
// is met by a gain that falls smoothly during the 5 ms before it, holds 30 ms (longer than half a wave of the lowest
// band, so that a steady tone is scaled and not bent) and recovers with a time constant of one second, which is slow
// enough not to be heard as pumping. Both channels share the gain. Never shifts samples. Output thread.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace vbmp3 {

class Limiter {
  public:
    explicit Limiter(int sampleRate);

    // Disengaging lets a lowered gain return within 20 ms; from then on samples pass at once and bit-exact.
    void engage(bool on) { engaged_ = on; }
    void reset();
    void process(std::span<const float> stereo, std::vector<float>& out);
    void finish(std::vector<float>& out);

  private:
    void push(float left, float right);
    void emit(std::vector<float>& out);
    void pass(std::span<const float> block, std::vector<float>& out);
    bool atRest() const { return atRest_ >= ahead_ + 1; }

    const int64_t ahead_;     // frames of look-ahead
    const int64_t hold_;      // frames
    const double release_;    // part of the way back to 1 for each frame
    const double disengage_;  // step back to 1 for each frame
    bool engaged_ = false;
    std::vector<float> delay_;  // ring of frames that wait
    std::vector<double> ramp_;  // ring of the gains that the smoothing window covers
    double rampSum_ = 0.0;
    double envelope_ = 1.0;
    int64_t in_ = 0, out_ = 0;  // frames since reset
    int64_t atRest_ = 0;        // frames since the envelope was last below 1
    struct Need {
        int64_t frame;
        double gain;
    };
    std::deque<Need> needs_;  // increasing gains: the front is the smallest of the window
};

}  // namespace vbmp3
