#include "playback/pitch_control.h"

#include "platform/vbmp3.h"
#include "playback/status_display.h"
#include "state/global_state.h"
#include "state/options.h"

namespace quenlox {
namespace {

constexpr int kNormalPercent = 100;
constexpr int kNormalStep = 1;
constexpr int kStepBase = 5;

}  // namespace

PitchControl::PitchControl(GlobalState& state, Vbmp3& vbmp3, const Options& options, StatusDisplay& status)
    : state_(state), vbmp3_(vbmp3), options_(options), status_(status) {}

void PitchControl::High() { togglePitch(kHighPitch, options_.HighPitch); }

void PitchControl::Low() { togglePitch(kLowPitch, options_.LowPitch); }

void PitchControl::togglePitch(int mode, int percent) {
    if (!state_.MediaKind.playedByVbmp3()) return;
    if (state_.PitchMode == kStepPitch) vbmp3_.vbmp3_setStepPitch(kNormalStep, kStepBase);
    const bool on = state_.PitchMode != mode;
    state_.PitchMode = on ? mode : kNormalPitch;
    status_.ShowStatus();
    vbmp3_.vbmp3_setPitch(on ? percent : kNormalPercent);
}

void PitchControl::Double() {
    if (!state_.MediaKind.playedByVbmp3()) return;
    if (state_.PitchMode == kHighPitch || state_.PitchMode == kLowPitch) vbmp3_.vbmp3_setPitch(kNormalPercent);
    const bool on = state_.PitchMode != kStepPitch;
    state_.PitchMode = on ? kStepPitch : kNormalPitch;
    status_.ShowStatus();
    vbmp3_.vbmp3_setStepPitch(on ? options_.StepPitch : kNormalStep, kStepBase);
}

void PitchControl::amountChanged() {
    if (!state_.MediaKind.playedByVbmp3()) return;
    if (state_.PitchMode == kHighPitch) vbmp3_.vbmp3_setPitch(options_.HighPitch);
    if (state_.PitchMode == kLowPitch) vbmp3_.vbmp3_setPitch(options_.LowPitch);
    if (state_.PitchMode == kStepPitch) vbmp3_.vbmp3_setStepPitch(options_.StepPitch, kStepBase);
}

void PitchControl::Undo() {
    if (state_.PitchMode == kStepPitch) vbmp3_.vbmp3_setStepPitch(kNormalStep, kStepBase);
    if (state_.PitchMode == kHighPitch || state_.PitchMode == kLowPitch) vbmp3_.vbmp3_setPitch(kNormalPercent);
    state_.PitchMode = kNormalPitch;
}

}  // namespace quenlox
