// The volume of the system's mixer in percent, as the volume bar, the wheel and the keys set it. On the user-interface
// thread. Mixer calls that fail change nothing and say nothing.
#pragma once

#include <functional>

#include "platform/mixer.h"

namespace quenlox {

struct Options;
struct GlobalState;

class VolumeControl {
  public:
    VolumeControl(GlobalState& state, Mixer& mixer, const Options& options);

    std::function<void()> onChange;  // VolumePercent is another: bar and display D are to be drawn

    // Finds the controls of the device that is played on and reads the master volume into VolumePercent. To be called
    // again when devices have come or gone or another one is chosen.
    void open();
    void close();
    // Reads it again: somebody else may have changed it, or there is a mixer now where there was none.
    void refresh();
    // y in pixels from the top of a bar of that height. Past an end, where a drag leads, it is that end; the last row
    // is 0.
    void setFromBar(int y, int height);
    void setPercent(int percent);  // brought into 0 to 100
    void mute();                   // or back to what it was before
    bool muted() const;
    void sourcesChosen();          // the bar drives the single sources from now on, or no more: they follow at once

  private:
    void read();

    GlobalState& state_;
    Mixer& mixer_;
    const Options& options_;
    int mutedFrom_ = 0;  // percent; 0 when it is not known
    MixerControl master_;
    MixerControl wave_;
    MixerControl synthesizer_;
    MixerControl disc_;
};

}  // namespace quenlox
