// Converts stereo sound from one rate to another by a windowed sinc. For the rare stream whose rate changes
// within the file, for rates that no device takes, and for pitch. One thread.
#pragma once

#include <span>
#include <vector>

namespace vbmp3 {

class Resampler {
  public:
    // More taps leave less of the tones that do not fit, and take more work.
    Resampler(int inputRate, int outputRate, int taps = 32);
    int inputRate() const { return inputRate_; }
    // Appends the frames that become ready. The sound is not delayed: the first output frame is at the first input
    // frame; the last few input frames wait for those that follow.
    void process(std::span<const float> stereo, std::vector<float>& out);
    // Appends what still waits, as if silence followed.
    void finish(std::vector<float>& out);

  private:
    static constexpr int kPhases = 512;

    int inputRate_;
    int outputRate_;
    int reach_;                  // input frames on each side of an output frame
    std::vector<float> kernel_;  // kPhases + 1 rows of 2 * reach_ taps
    std::vector<float> input_;   // begins reach_ frames before the next output frame
    long long fraction_ = 0;     // of the next output frame behind input frame reach_, in outputRate_-ths
};

}  // namespace vbmp3
