#include "speana/panel_animation.h"

#include <algorithm>
#include <array>

#include "platform/vbmp3.h"
#include "state/global_state.h"
#include "state/options.h"

namespace quenlox {
namespace {

constexpr int kLeftButton = 1;
constexpr int kSlowest = 80, kFasterBy = 6;  // milliseconds, and milliseconds for each step of the speed
constexpr int kFastest = 20;
constexpr int kFramesToRest = 90;  // longer than the highest peak needs to fall and the longest trail to fade
constexpr std::array kBands{21, 42, 85};

}  // namespace

PanelAnimation::PanelAnimation(GlobalState& state, const Options& options, Vbmp3& vbmp3, PanelScreen& screen)
    : state_(state), options_(options), vbmp3_(vbmp3), screen_(screen), interval_(kSlowest) {}

int PanelAnimation::intervalOf(int speed) { return std::max(kFastest, kSlowest - kFasterBy * std::max(0, speed)); }

void PanelAnimation::followSpeed() {
    interval_ = intervalOf(options_.SpectrumSpeed);
    screen_.setInterval(interval_);
}

void PanelAnimation::setBands(int choice) {
    sound_.bands = kBands[static_cast<std::size_t>(std::clamp(choice, 0, static_cast<int>(kBands.size()) - 1))];
    silentFrames_ = 0;
}

void PanelAnimation::clicked(int button) {
    state_.ViewType = button == kLeftButton ? NextVariant(state_.ViewType) : NextGroup(state_.ViewType);
    drawFrame();
}

// Takes the sound of now in; false when there is none.
bool PanelAnimation::listen() {
    sound_.left.fill(0);
    sound_.right.fill(0);
    sound_.levels.fill(0);
    if (state_.PlayerStatus != kPlay || !state_.MediaKind.playedByVbmp3()) return false;
    vbmp3_.vbmp3_getWave(sound_.left, sound_.right);
    vbmp3_.vbmp3_getSpectrum(std::span(sound_.levels).first(static_cast<std::size_t>(sound_.bands)));
    const auto isZero = [](auto value) { return value == 0; };
    return !std::ranges::all_of(sound_.left, isZero) || !std::ranges::all_of(sound_.right, isZero) ||
           !std::ranges::all_of(sound_.levels, isZero);
}

void PanelAnimation::changeByItself() {
    shownMs_ += interval_;
    const int seconds = options_.SpectrumIntro * 2;
    if (seconds <= 0 || shownMs_ < seconds * 1000) return;
    state_.ViewType = lastView_ = NextByItself(state_.ViewType);
    shownMs_ = 0;
}

void PanelAnimation::drawFrame() {
    if (!screen_.seen()) return;
    if (state_.ViewType != lastView_) {
        lastView_ = state_.ViewType;
        shownMs_ = 0;
        silentFrames_ = 0;
    }
    const bool heard = listen();
    if (heard) changeByItself();
    silentFrames_ = heard ? 0 : silentFrames_ + 1;
    if (silentFrames_ <= kFramesToRest) {
        speana_.setAccent(screen_.accent());
        speana_.draw(state_.ViewType, sound_);
    }
    screen_.show(speana_.frame());
}

}  // namespace quenlox
