// The equalizer of the chain: a finite impulse response applied by overlap-save through the Fourier transform. Keeps
// samples back while it collects a block, but never shifts them: the frame that comes out is the frame that went in.
// Off, it passes the samples bit-exact and at once. Changes fade over 20 ms. Output thread.
#pragma once

#include <complex>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "libraries/vbmp3/dsp/sound_settings.h"

namespace vbmp3 {

class Equalizer {
  public:
    explicit Equalizer(int sampleRate);
    ~Equalizer();

    // What is to be heard from the next block on; nothing is off.
    void setGains(const std::optional<BandGains>& gains);
    // Forgets all samples; the gains hold without a fade.
    void reset();
    void process(std::span<const float> stereo, std::vector<float>& out);
    // Gives what was kept back. The history stays, so that a following track goes on without a break.
    void finish(std::vector<float>& out);
    // True when samples pass untouched and none are kept back.
    bool idle() const { return !filter_ && !changing_ && kept_.empty(); }

  private:
    struct Plan;
    using Filter = std::vector<std::complex<float>>;

    std::unique_ptr<Filter> makeFilter(const BandGains& gains);
    void remember(std::span<const float> stereo);
    void runBlock(size_t frames, std::vector<float>& out);
    void convolve(const Filter& filter, size_t frames, std::vector<float>& result);

    int sampleRate_;
    size_t taps_;
    size_t fade_;  // frames
    std::unique_ptr<Plan> plan_;
    std::optional<BandGains> gains_;
    std::unique_ptr<Filter> filter_;  // null: off
    bool changing_ = false;           // the next block fades from filter_ to what gains_ say
    std::vector<float> history_;      // the last taps_ frames that were given out, before the filter
    std::vector<float> kept_;         // frames that wait for their block
    std::vector<float> wet_, next_;   // results of a block
};

}  // namespace vbmp3
