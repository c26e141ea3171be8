// Pitch and tempo of the chain, through SoundTouch. At normal, samples pass bit-exact and at once. A change of either
// begins a new run at the present source frame: the old run plays on for 20 ms and fades into the new one. Every run
// gives exactly as many frames as its source frames divided by the tempo. Inside, SoundTouch takes pieces from up to 35
// ms beside the place that the tempo gives; places() tells where from. Output thread.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "libraries/vbmp3/dsp/sound_settings.h"

namespace vbmp3 {

class Stretcher {
  public:
    explicit Stretcher(int sampleRate);
    ~Stretcher();

    // Takes hold with the next frame put in. `tempo` is the speed, 0.25 to 4.
    void set(int pitchPercent, double tempo, Quality quality);
    double tempo() const { return wanted_.tempo; }

    void reset();
    void process(std::span<const float> stereo, std::vector<float>& out);
    // Gives the end of the run; the next frame begins a new one.
    void finish(std::vector<float>& out);
    bool idle() const { return !changing_ && run_ == nullptr && fading_.empty(); }

    // The runs so far wanted: at input frame `in` the run with the present values has begun, as output frame `out`,
    // both counted since reset.
    struct Start {
        int64_t in = 0, out = 0;
    };
    Start start() const { return start_; }
    int64_t inputFrames() const { return in_; }
    // Where output frames came from: from output frame `out` on, until the next place, the input frame is `in`, and
    // goes on by `slope` a frame. Of what has been given since the last call, counted since reset. None at normal.
    struct Place {
        double in = 0;
        int64_t out = 0;
        double slope = 1;
    };
    const std::vector<Place>& places() const { return places_; }
    void forgetPlaces() { places_.clear(); }
    // Output frame that belongs to an input frame at or after start().
    int64_t outputFrameOf(int64_t in) const;

  private:
    struct Values {
        int pitchPercent = 100;
        double tempo = 1.0;
        Quality quality = Quality::Standard;
        bool normal() const { return pitchPercent == 100 && tempo == 1.0; }
        friend bool operator==(const Values&, const Values&) = default;
    };
    class Run;

    void feed(std::span<const float> stereo, std::vector<float>& out);
    void change(std::vector<float>& out);
    void give(std::span<const float> stereo, std::vector<float>& out);

    int sampleRate_;
    Values wanted_, present_;
    std::unique_ptr<Run> run_;  // null: normal
    bool changing_ = false;     // held_ collects what both the old and the new run need
    Start start_;
    int64_t in_ = 0;  // frames taken, those of held_ included
    std::vector<float> held_;
    std::vector<float> fading_;  // what the old run still has to say
    size_t faded_ = 0;           // how much of fading_ has been mixed in, in samples
    std::vector<float> work_;
    std::vector<Place> places_;
};

}  // namespace vbmp3
