// The buttons of the main window: which one is held down, and what a playback button does when it is let go, whether it
// stands alone or is a column of display A. On the user-interface thread.
#pragma once

#include "skin/skin_view.h"

namespace quenlox {

class PitchControl;
class Transport;

class TransportButtons {
  public:
    explicit TransportButtons(SkinView& view) : view_(view) {}
    void connect(Transport& transport, PitchControl& pitch) { transport_ = &transport, pitch_ = &pitch; }

    bool mayAct() const;
    void press(const HeldButton& button);  // nothing while a conversion runs
    void release() { view_.setHeld({}); }
    const std::optional<HeldButton>& held() const { return view_.held(); }
    void perform(int index);  // a PlaybackButton; nothing while a conversion runs

  private:
    SkinView& view_;
    Transport* transport_ = nullptr;
    PitchControl* pitch_ = nullptr;
};

}  // namespace quenlox
