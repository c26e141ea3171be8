#include "playback/play_state_monitor.h"

#include "platform/media_control.h"
#include "platform/vbmp3.h"
#include "playback/media_engine.h"
#include "playback/transport.h"
#include "state/global_state.h"
#include "state/options.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace quenlox {

PlayStateMonitor::PlayStateMonitor(GlobalState& state, MediaEngine& engine, Transport& transport, Vbmp3& vbmp3,
                                   MediaControl& mediaControl, const Options& options)
    : state_(state),
      engine_(engine),
      transport_(transport),
      vbmp3_(vbmp3),
      mediaControl_(mediaControl),
      options_(options) {
    engine_.onEvent = [this](LibraryEvent event) { libraryEvent(event); };
}

// While it stands, has failed, waits for the device or encodes no track of ours can end, and neither while a file is
// still being opened.
bool PlayStateMonitor::watches() const {
    switch (state_.PlayerStatus) {
        case kPlay:
        case kPause: return true;
        case kLoad: return !engine_.opening();
        case kDecode: return !decodesUnheard || !decodesUnheard();
        default: return false;
    }
}

void PlayStateMonitor::poll() {
    if (watches()) {
        if (state_.MediaKind.playedByMediaControl()) {
            pollMediaControl();
        } else {
            pollLibrary();
        }
    }
    transport_.RenewNextFile();
}

void PlayStateMonitor::retry() { transport_.retry(); }

void PlayStateMonitor::pollMediaControl() {
    const int code = mediaControl_.sendString("status MediaFile mode", &state_.MciReturn);
    const bool stopped = FoldCase(TrimAtNull(state_.MciReturn)) == "stopped";
    // The drivers for discs and MIDI stop for a pause and say so. Only kind 40 goes on sounding, and can end meanwhile.
    if (code == 0 && stopped && state_.PlayerStatus == kPause && state_.MediaKind.base <= kWma) return;
    if (code != 0 || stopped) return transport_.trackEnded();
    if (mediaControl_.sendString("status MediaFile position", &state_.MciReturn) != 0) return;
    std::int32_t position = NumericInteger(TrimAtNull(state_.MciReturn));
    const bool disc = state_.MediaKind.base == kCdAudio;
    if (disc) position -= state_.TrackStartMs;
    state_.PositionSeconds = position / 1000;
    engine_.status().ShowTime(state_.PositionSeconds);
    // The disc would go on with the next track.
    if (disc && state_.PositionSeconds >= state_.TotalSeconds) mediaControl_.sendString("stop MediaFile");
    if (introIsOver()) transport_.trackEnded();
}

void PlayStateMonitor::pollLibrary() {
    const PlayReport report = vbmp3_.vbmp3_getState();
    state_.PositionSeconds = report.seconds;
    switch (report.state) {
        case PlayReport::State::Playing:
            engine_.status().ShowTime(state_.PositionSeconds);
            engine_.TellMissingDevice();
            if (introIsOver()) transport_.trackEnded();
            break;
        case PlayReport::State::Stopped: transport_.trackEnded(); break;
        case PlayReport::State::Paused: break;
    }
}

bool PlayStateMonitor::introIsOver() const {
    return options_.IntroPlay && state_.PlayerStatus == kPlay && !engine_.sought() &&
           state_.PositionSeconds >= options_.IntroSeconds && options_.IntroSeconds < state_.TotalSeconds;
}

void PlayStateMonitor::libraryEvent(LibraryEvent event) {
    state_.Actions.note("event", static_cast<int>(event));
    switch (event) {
        case LibraryEvent::EndOfTrack:
            // It may be one that has been heard of already, by the poll.
            if (watches() && state_.PlayerStatus != kPause && state_.MediaKind.playedByVbmp3() &&
                vbmp3_.vbmp3_getState().state == PlayReport::State::Stopped) {
                transport_.trackEnded();
            }
            transport_.RenewNextFile();
            break;
        case LibraryEvent::NextTrack: transport_.libraryWentOn(); break;
        case LibraryEvent::DeviceLost: engine_.TellMissingDevice(); break;
        case LibraryEvent::JobDone: break;
    }
}

}  // namespace quenlox
