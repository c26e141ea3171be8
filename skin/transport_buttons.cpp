#include "skin/transport_buttons.h"

#include "playback/pitch_control.h"
#include "playback/transport.h"

namespace quenlox {

bool TransportButtons::mayAct() const { return transport_->mayAct(); }

void TransportButtons::press(const HeldButton& button) {
    if (mayAct()) view_.setHeld(button);
}

void TransportButtons::perform(int index) {
    if (!mayAct()) return;
    switch (index) {
        case kPlayButton: transport_->playOrStop(); break;
        case kPauseButton: transport_->pause(); break;
        case kBackButton: transport_->PreviousTrack(); break;
        case kNextButton: transport_->NextTrack(); break;
        case kLowButton: pitch_->Low(); break;
        case kHighButton: pitch_->High(); break;
        case kDoubleButton: pitch_->Double(); break;
        default: break;
    }
}

}  // namespace quenlox
