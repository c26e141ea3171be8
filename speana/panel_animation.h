// The panel: lets its picture run while sound is heard, and rest while there is none. A timer calls it, on the
// user-interface thread; it never asks the decoding library for more than one frame's worth.
#pragma once

#include "speana/speana.h"

namespace quenlox {

struct GlobalState;
struct Options;
class Vbmp3;

// What the panel is shown on.
class PanelScreen {
  public:
    virtual ~PanelScreen() = default;
    virtual bool seen() const = 0;                   // false: no frame is made
    virtual Color accent() const = 0;                // the colour of the skin that the panel follows
    virtual void show(const Surface& frame) = 0;     // also one that is shown already
    virtual void setInterval(int milliseconds) = 0;  // from frame to frame
};

class PanelAnimation {
  public:
    // All must outlive the animation.
    PanelAnimation(GlobalState& state, const Options& options, Vbmp3& vbmp3, PanelScreen& screen);

    void drawFrame();
    void clicked(int button);   // 1: the next variant; another: the next group
    void setBands(int choice);  // the analysis choice, 0 coarse, 1 medium, 2 fine
    void followSpeed();         // the speed option has changed

    static int intervalOf(int speed);  // milliseconds from frame to frame for a speed of 0 to 10

  private:
    bool listen();
    void changeByItself();

    GlobalState& state_;
    const Options& options_;
    Vbmp3& vbmp3_;
    PanelScreen& screen_;
    Speana speana_;
    SoundFrame sound_;
    int interval_;
    int silentFrames_ = 0;
    int shownMs_ = 0;  // how long the view has been played to
    int lastView_ = -1;
};

}  // namespace quenlox
