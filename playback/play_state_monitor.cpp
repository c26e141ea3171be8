#include "playback/play_state_monitor.h"

#include <utility>

#include "app/global_state.h"
#include "app/option_settings.h"
#include "platform/media_control.h"
#include "platform/vbmp3.h"
#include "playback/track_source.h"
#include "playback/track_step.h"
#include "text/numbers.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

std::size_t At(int list) { return static_cast<std::size_t>(list); }

ShufflePlace PlaceIn(const GlobalState& state, int list) {
    return {state.ShuffleOrder[At(list)], state.ShufflePos[At(list)], state.ShufflePos[At(list) + 4]};
}

// The extension alone says that the media control interface plays it.
bool PlayedByMediaControl(const std::string& path) {
    return KindOfFile(LastFour(path), [] { return 0; }) >= kMidi;
}

}  // namespace

PlayStateMonitor::PlayStateMonitor(GlobalState& state, MediaEngine& engine, Vbmp3& vbmp3, MediaControl& mediaControl,
                                   TrackSource& tracks, const OptionSettings& options)
    : state_(state), engine_(engine), vbmp3_(vbmp3), mediaControl_(mediaControl), tracks_(tracks), options_(options) {
    engine_.onEvent = [this](int event) { libraryEvent(event); };
}

void PlayStateMonitor::Timer1_Timer() {
    // Stopped, failed, waiting for the device, or encoding: no track of ours can end.
    const int status = state_.PlayerStatus;
    if (status == kDecode && decodesUnheard && decodesUnheard()) return;
    if (status == kPlay || status == kPause || status == kLoad || status == kDecode) {
        if (state_.baseKind() >= kMidi) {
            pollMediaControl();
        } else {
            pollLibrary();
        }
    }
    RenewNextFile();
}

void PlayStateMonitor::Timer5_Timer() {
    if (state_.PlayerStatus == kWait) engine_.PlayMedia();
}

void PlayStateMonitor::pollMediaControl() {
    const int code = mediaControl_.sendString("status MediaFile mode", &state_.MciReturn);
    const bool stopped = FoldCase(TrimAtNull(state_.MciReturn)) == "stopped";
    // The drivers for discs and MIDI stop for a pause and say so. Only kind 40 goes on sounding, and can end meanwhile.
    if (code == 0 && stopped && state_.PlayerStatus == kPause && state_.baseKind() <= kWma) return;
    if (code != 0 || stopped) {
        endOfTrack();
        return;
    }
    if (mediaControl_.sendString("status MediaFile position", &state_.MciReturn) != 0) return;
    std::int32_t position = NumericInteger(TrimAtNull(state_.MciReturn));
    const bool disc = state_.baseKind() == kCdAudio;
    if (disc) position -= state_.TrackStartMs;
    state_.PositionSeconds = position / 1000;
    engine_.status().ShowTime(state_.PositionSeconds);
    // The disc would go on with the next track.
    if (disc && state_.PositionSeconds >= state_.TotalSeconds) mediaControl_.sendString("stop MediaFile");
    if (introIsOver()) endOfTrack();
}

void PlayStateMonitor::pollLibrary() {
    switch (vbmp3_.vbmp3_getState(state_.PositionSeconds)) {
        case 1:
            engine_.status().ShowTime(state_.PositionSeconds);
            if (introIsOver()) endOfTrack();
            break;
        case 0: endOfTrack(); break;
        default: break;
    }
}

bool PlayStateMonitor::introIsOver() const {
    return options_.introPlay() && state_.PlayerStatus == kPlay && !engine_.sought() &&
           state_.PositionSeconds >= options_.introSeconds() && options_.introSeconds() < state_.TotalSeconds;
}

void PlayStateMonitor::endOfTrack() {
    const bool goesOn = state_.PlayIntent > 0 && state_.PlayerStatus == kPlay;
    const bool throughList = state_.PlayMode == kProgram || state_.PlayMode == kRandom;
    if (goesOn && throughList && tracks_.trackCount(state_.ListNo) > 0) {
        NextTrack();
    } else if (goesOn && state_.PlayMode == kRepeat && engine_.playCount() != playFromNoList_) {
        engine_.PlayMedia();
    } else if (state_.PlayerStatus == kDecode) {
        engine_.StopMedia();
        if (onDecodeEnded) onDecodeEnded();
    } else {
        engine_.StopMedia();
    }
}

int PlayStateMonitor::sourceList() const { return state_.UseFolderList ? kFolderList : state_.ListNo; }

void PlayStateMonitor::NextTrack() { step(+1); }

void PlayStateMonitor::PreviousTrack() { step(-1); }

void PlayStateMonitor::step(int direction) {
    const int list = sourceList();
    const int count = tracks_.trackCount(list);
    if (count <= 0) {
        state_.PlayIntent = kNoIntent;
        return;
    }
    state_.Actions.note(direction > 0 ? "next" : "previous");
    const int current = state_.CurrentIndex[At(list)];
    int index = 0;
    if (state_.PlayMode == kRandom) {
        index = shuffleStep(list, count, direction);
    } else {
        index = direction > 0 ? NextIndex(current, count) : PreviousIndex(current, count);
    }
    state_.CurrentIndex[At(list)] = index;
    state_.CurrentFile = tracks_.trackPath(list, index);
    state_.PlayIntent = direction > 0 ? kForward : kBackward;
    OpenAndPlay();
}

int PlayStateMonitor::shuffleStep(int list, int count, int direction) {
    ShuffleStep step =
        direction > 0 ? NextInShuffle(PlaceIn(state_, list), count) : PreviousInShuffle(PlaceIn(state_, list), count);
    if (step.needsNewOrder) {
        beginNewOrder(list, count);
        step.position = state_.ShufflePos[At(list)];
        const auto& order = state_.ShuffleOrder[At(list)];
        step.index = order.empty() ? 0 : order[static_cast<std::size_t>(step.position)];
        if (step.index < 0 || step.index >= count) step.index = 0;
    }
    state_.ShufflePos[At(list)] = step.position;
    return step.index;
}

void PlayStateMonitor::beginNewOrder(int list, int count) {
    if (drawn_ && drawn_->list == list && drawn_->count == count) {
        state_.ShuffleOrder[At(list)] = std::move(drawn_->order);
        state_.ShufflePos[At(list)] = 0;
        state_.ShufflePos[At(list) + 4] = count - 1;
    } else {
        tracks_.BuildShuffleOrder(list);
    }
    drawn_.reset();
}

void PlayStateMonitor::OpenAndPlay() {
    // Each file that leaves the lists or is passed over makes one turn; nothing is tried twice.
    for (int turns = tracks_.trackCount(sourceList()); ; --turns) {
        engine_.OpenMedia();
        const auto result = engine_.PlayMedia();
        if (onTrackChanged) onTrackChanged();
        if (result != MediaEngine::PlayResult::Failed || !options_.deleteFromList()) break;
        tracks_.RemoveCurrentFileFromLists();
        const int list = sourceList();
        const int count = tracks_.trackCount(list);
        if (turns <= 1 || count <= 0 || state_.PlayIntent == kNoIntent) break;
        const int current = state_.CurrentIndex[At(list)];
        const int index = state_.PlayMode == kRandom ? shuffleStep(list, count, +1) : NextIndex(current, count);
        state_.CurrentIndex[At(list)] = index;
        state_.CurrentFile = tracks_.trackPath(list, index);
    }
    RenewNextFile();
}

void PlayStateMonitor::StepPlayMode() {
    state_.PlayMode = state_.PlayMode >= kSingle - 1 && state_.PlayMode < kRandom ? state_.PlayMode + 1 : kSingle;
    engine_.status().ShowPlayMode();
    RenewNextFile();
}

void PlayStateMonitor::StepTimeMode() {
    state_.TimeMode = state_.TimeMode == 0 ? 1 : 0;
    engine_.status().ShowTime(state_.PositionSeconds);
}

std::optional<PlayStateMonitor::Step> PlayStateMonitor::planNext() {
    const bool throughList = state_.PlayMode == kProgram || state_.PlayMode == kRandom;
    const bool sounding = state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause;
    const int list = sourceList();
    const int count = tracks_.trackCount(list);
    if (!options_.gaplessNext() || options_.introPlay() || !throughList || !sounding || state_.PlayIntent <= 0 ||
        !state_.playedByVbmp3() || tracks_.trackCount(state_.ListNo) <= 0 || count <= 0) {
        return std::nullopt;
    }
    Step next{list, NextIndex(state_.CurrentIndex[At(list)], count), {}, 0, false};
    if (state_.PlayMode == kRandom) {
        const ShuffleStep step = NextInShuffle(PlaceIn(state_, list), count);
        next.index = step.index;
        next.position = step.position;
        next.newOrder = step.needsNewOrder;
        if (step.needsNewOrder) {
            if (!drawn_ || drawn_->list != list || drawn_->count != count) {
                // Going back must still find the order of the present pass.
                const auto order = state_.ShuffleOrder;
                const auto positions = state_.ShufflePos;
                tracks_.BuildShuffleOrder(list);
                drawn_ = {list, count, std::exchange(state_.ShuffleOrder[At(list)], order[At(list)])};
                state_.ShuffleOrder = order;
                state_.ShufflePos = positions;
            }
            next.index = drawn_->order.empty() ? 0 : drawn_->order.front();
            if (next.index < 0 || next.index >= count) return std::nullopt;
        }
    }
    next.path = tracks_.trackPath(list, next.index);
    if (PlayedByMediaControl(next.path)) return std::nullopt;
    return next;
}

void PlayStateMonitor::RenewNextFile() {
    // When the library has just gone on, what it was handed must still be known when its event is handled.
    if (state_.ShuttingDown || engine_.eventUnderway()) return;
    if (handedAtOpen_ != engine_.openCount() || handedAtPlay_ != engine_.playCount()) {
        // Opening and playing begin without a next file.
        handedAtOpen_ = engine_.openCount();
        handedAtPlay_ = engine_.playCount();
        handed_.reset();
        withdrawn_.reset();
        refused_.clear();
    }
    const auto next = planNext();
    if (!next) {
        withdraw();
    } else if (handed_ && handed_->path == next->path) {
        handed_ = next;
    } else if (next->path != refused_) {
        withdrawn_ = std::exchange(handed_, std::nullopt);
        if (vbmp3_.vbmp3_setNextFile(next->path)) {
            handed_ = next;
            refused_.clear();
        } else {
            refused_ = next->path;
        }
    } else {
        withdraw();
    }
}

void PlayStateMonitor::letGoOf(const std::string& path) {
    if (handed_ && EqualsNoCase(handed_->path, path)) withdraw();
}

void PlayStateMonitor::withdraw() {
    if (!handed_) return;
    vbmp3_.vbmp3_setNextFile("");
    withdrawn_ = std::exchange(handed_, std::nullopt);
}

void PlayStateMonitor::libraryEvent(int event) {
    state_.Actions.note("event", event);
    std::int32_t seconds = 0;
    if (event == VBMP3_EVENT_END_OF_TRACK) {
        if (state_.PlayerStatus == kDecode && decodesUnheard && decodesUnheard()) return;
        const bool ours = state_.PlayerStatus == kPlay || state_.PlayerStatus == kDecode;
        if (ours && state_.playedByVbmp3() && vbmp3_.vbmp3_getState(seconds) == 0) endOfTrack();
        RenewNextFile();
    } else if (event == VBMP3_EVENT_NEXT_TRACK) {
        followLibrary();
    } else if (event == VBMP3_EVENT_DEVICE_LOST) {
        engine_.TellMissingDevice();
    }
}

void PlayStateMonitor::followLibrary() {
    const auto step = handed_ ? handed_ : withdrawn_;
    handed_.reset();
    withdrawn_.reset();
    if (!step) return;
    // The list may have changed since the file was handed over; its index counts only where it still holds that file.
    if (step->index < tracks_.trackCount(step->list) && tracks_.trackPath(step->list, step->index) == step->path) {
        state_.CurrentIndex[At(step->list)] = step->index;
        if (state_.PlayMode == kRandom) {
            if (step->newOrder && drawn_) beginNewOrder(step->list, drawn_->count);
            state_.ShufflePos[At(step->list)] = step->position;
        }
    }
    state_.CurrentFile = step->path;
    state_.PlayIntent = kForward;
    engine_.TakeOverNextFile();
    if (onTrackChanged) onTrackChanged();
    RenewNextFile();
}

}  // namespace quenlox
