// The three pitch buttons: high and low pitch at the same speed, and stepped speed. They exclude each other, and the
// active one pressed again returns to normal. Only what the decoding library plays is served.
#pragma once

namespace quenlox {

struct Options;
class StatusDisplay;
class Vbmp3;
struct GlobalState;

class PitchControl {
  public:
    PitchControl(GlobalState& state, Vbmp3& vbmp3, const Options& options, StatusDisplay& status);

    void High();
    void Low();
    void Double();
    void amountChanged();  // the user has moved an amount: heard at once when it is in use
    void Undo();  // back to normal, as a stop does it

  private:
    void togglePitch(int mode, int percent);

    GlobalState& state_;
    Vbmp3& vbmp3_;
    const Options& options_;
    StatusDisplay& status_;
};

}  // namespace quenlox
