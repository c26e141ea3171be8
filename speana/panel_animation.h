// Display B: lets the panel's picture run while sound is heard, and rest while there is none. Called by Timer2 of the
// main window, on the user-interface thread; it never asks the decoding library for more than one frame's worth.
#pragma once

#include <functional>

#include "forms/control.h"
#include "speana/speana.h"

namespace quenlox {

struct GlobalState;
struct Options;
class Vbmp3;

class PanelAnimation {
  public:
    // `accent` is the label of the main window whose colour the panel follows. All must outlive the animation.
    PanelAnimation(GlobalState& state, const Options& options, Vbmp3& vbmp3, PictureBox& display, Timer& timer,
                   const Label& accent);

    void Timer2_Timer();            // one frame
    void clicked(int button);       // 1: the next variant; another: the next group
    void setBands(int choice);      // the analysis choice, 0 coarse, 1 medium, 2 fine
    void followSpeed();             // the speed option has changed

    static int intervalOf(int speed);  // milliseconds from frame to frame for a speed of 0 to 10

  private:
    bool listen();
    void changeByItself();
    void show();

    GlobalState& state_;
    const Options& options_;
    Vbmp3& vbmp3_;
    PictureBox& display_;
    Timer& timer_;
    const Label& accent_;
    Speana speana_;
    SoundFrame sound_;
    int silentFrames_ = 0;
    int shownMs_ = 0;      // how long the view has been played to
    int lastView_ = -1;
};

}  // namespace quenlox
