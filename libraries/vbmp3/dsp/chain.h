// The sound chain between a source and the output: equalizer, then pitch and tempo, then a limiter that acts only while
// one of the two is on. With all of them at normal the samples pass bit-exact. Lives on one thread, the player's output
// thread; only the settings and position() are touched by others.
//
// Frames are numbered on both sides. Output frames count what process and finish have given; source frames count
// what was put in, from the number that reset or beginTrack named. A stage that needs to look ahead keeps samples back
// and gives them later, but never shifts them: there is no latency to compensate, and after finish the output is
// exactly as long as the input (divided by the tempo).
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "libraries/vbmp3/dsp/sound_settings.h"
#include "libraries/vbmp3/dsp/tap.h"

namespace vbmp3 {

struct TrackPosition {
    int64_t track = 0;  // as named by reset or beginTrack
    double frame = 0;   // source frame within that track, at the chain's sample rate
};

class Chain {
  public:
    // `tap` may be null (a job that writes a file). Rates from 8000 to 192000 Hz.
    Chain(const SoundSettings& settings, Tap* tap, int sampleRate);
    ~Chain();

    int sampleRate() const;

    // Forgets every sample kept back (seek, stop). What comes in next is `sourceFrame` of `track`, what goes out next
    // is number `outputFrame`, and settings take hold at once, without a fade.
    void reset(int64_t track, int64_t sourceFrame, int64_t outputFrame);

    // What comes in next is frame 0 of `track`; the sound goes on without a gap. Returns the number of the output frame
    // at which the new track will begin (what is before it is the old one).
    int64_t beginTrack(int64_t track);

    // Takes interleaved stereo frames, any number, and appends what is ready to `out`: between nothing and a good deal
    // more than was put in.
    void process(std::span<const float> stereo, std::vector<float>& out);

    // End of the source: appends every frame that is still inside. Afterwards the chain goes on as after reset, with
    // continuing numbers.
    void finish(std::vector<float>& out);

    // Number of the next output frame, that is how many have been given since output frame 0.
    int64_t outputFrames() const;

    // Any thread: which source frame is being heard while output frame `outputFrame` is. Before everything known it is
    // the oldest, beyond the end the extrapolation. Positions of the last five seconds at least are kept.
    TrackPosition position(int64_t outputFrame) const;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace vbmp3
