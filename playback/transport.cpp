#include "playback/transport.h"

#include <set>
#include <utility>

#include "platform/vbmp3.h"
#include "playback/file_kind.h"
#include "playback/media_engine.h"
#include "playback/pitch_control.h"
#include "playback/track_source.h"
#include "state/global_state.h"
#include "state/media_formats.h"
#include "state/options.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

std::size_t At(int list) { return static_cast<std::size_t>(list); }

bool Played(PlayResult result) { return result == PlayResult::Playing || result == PlayResult::Waiting; }

}  // namespace

Transport::Transport(const Parts& parts)
    : state_(parts.state),
      engine_(parts.engine),
      pitch_(parts.pitch),
      vbmp3_(parts.vbmp3),
      tracks_(parts.tracks),
      options_(parts.options),
      handOver_(parts.vbmp3) {
    tracks_.onCurrentMoved = [this](int list, int index) { state_.CurrentIndex[At(list)] = index; };
}

Transport::~Transport() { tracks_.onCurrentMoved = nullptr; }

bool Transport::mayAct() const { return state_.PlayerStatus < kDecode && !opensForConversion_; }

bool Transport::superseded(unsigned request) const { return request != request_ || state_.ShuttingDown; }

StatusDisplay& Transport::status() { return engine_.status(); }

// Commands.

bool Transport::play() {
    if (!mayAct()) return false;
    if (state_.PlayerStatus >= kPlay) return true;
    const unsigned request = newRequest();
    fromCommandLine_ = false;
    state_.PlayIntent = kForward;
    if (engine_.isOpen() || state_.CurrentFile.empty()) {
        startPlaying();
    } else {
        openAndPlay(request);
    }
    return true;
}

bool Transport::stop() {
    if (!mayAct()) return false;
    if (state_.PlayerStatus < kPlay) return true;
    halt();
    noteStopAfter(false);
    pitch_.Undo();
    state_.PlayIntent = kNoIntent;
    RenewNextFile();
    return true;
}

bool Transport::playOrStop() { return state_.PlayerStatus < kPlay ? play() : stop(); }

bool Transport::pause() {
    if (!mayAct()) return false;
    engine_.PauseMedia();
    return true;
}

bool Transport::setStopAfter(bool stops) {
    const bool stands = state_.PlayerStatus == kStop || state_.PlayerStatus == kError;
    if (!mayAct() || (stops && stands)) return false;
    noteStopAfter(stops);
    RenewNextFile();
    return true;
}

void Transport::noteStopAfter(bool stops) {
    if (std::exchange(stopsAfter_, stops) != stops && onStopAfterChanged) onStopAfterChanged(stops);
}

bool Transport::seek(double fraction) {
    if (!mayAct()) return false;
    if (state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause) engine_.SeekMedia(fraction);
    return true;
}

bool Transport::seekBy(int seconds) {
    if (state_.TotalSeconds <= 0) return mayAct();
    return seek(static_cast<double>(state_.PositionSeconds + seconds) / state_.TotalSeconds);
}

OpenResult Transport::open(const Track& track, int intent, Start start) {
    if (!mayAct()) return OpenResult::Busy;
    const bool plays = start == Start::Play || (start == Start::PlayIfPlaying && state_.PlayerStatus == kPlay);
    const unsigned request = newRequest();
    tracks_.forgetPlaces();
    setCurrent(track);
    state_.PlayIntent = intent;
    const Opening opening = plays ? openAndPlay(request).opening : openOnly(request);
    if (opening.result != OpenResult::Superseded) RenewNextFile();
    return opening.result;
}

void Transport::remember(const std::string& path) { setCurrent({path}); }

void Transport::openFirst(const std::string& path, bool named, bool play) {
    const unsigned request = newRequest();
    setCurrent({path});
    fromCommandLine_ = named;
    if (!play) {
        openOnly(request);
        return;
    }
    state_.PlayIntent = kForward;
    openAndPlay(request);
    RenewNextFile();
}

// Opening and playing.

void Transport::setCurrent(const Track& track) {
    fromCommandLine_ = false;
    noteStopAfter(false);
    state_.CurrentFile = track.path;
    if (track.list != kNoList) state_.CurrentIndex[At(track.list)] = track.row;
}

Opening Transport::openCurrent() {
    handOver_.forget();
    const Opening opening = engine_.OpenMedia();
    if (opening.result == OpenResult::Superseded) return opening;
    if (opening.result != OpenResult::Nothing) tracks_.setPlayable(state_.CurrentFile, static_cast<bool>(opening));
    if (onTrackChanged) onTrackChanged();
    return opening;
}

Opening Transport::openOnly(unsigned request) {
    const Opening opening = openCurrent();
    if (superseded(request)) return {OpenResult::Superseded};
    // It stands: said at once, or the play button would stop what is not playing.
    if (state_.PlayerStatus == kLoad) engine_.StopMedia();
    return opening;
}

Transport::Attempt Transport::openAndPlay(unsigned request) {
    const Opening opening = openCurrent();
    if (superseded(request)) return {{OpenResult::Superseded}, false};
    if (opening && Played(startPlaying())) return {opening, true};
    tracks_.setPlayable(state_.CurrentFile, false);
    if (opening.fileAtFault && options_.DeleteFromList) tracks_.RemoveCurrentFileFromLists();
    return {opening, false};
}

PlayResult Transport::startPlaying() {
    handOver_.forget();
    return engine_.PlayMedia();
}

void Transport::retry() {
    if (state_.PlayerStatus == kWait) startPlaying();
}

// From track to track.

int Transport::sourceList() const { return state_.UseFolderList ? kFolderList : state_.ListNo; }

bool Transport::throughList() const {
    return (state_.PlayMode == kProgram || state_.PlayMode == kRandom) && tracks_.trackCount(state_.ListNo) > 0;
}

// Whether another track follows by itself at the end of this one.
bool Transport::goesOn() const {
    if (stopsAfter_) return false;
    return !tracks_.queue().empty() || (state_.PlayIntent > 0 && throughList());
}

bool Transport::sounding() const { return state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause; }

bool Transport::NextTrack() { return step(Direction::Forward); }

bool Transport::PreviousTrack() { return step(Direction::Backward); }

bool Transport::step(Direction direction) {
    if (!mayAct()) return false;
    state_.Actions.note(direction == Direction::Forward ? "next" : "previous");
    walk(direction);
    return true;
}

// To the next entry that can be played; once through the queue and around the list at the most. Where that is not
// wanted, or every entry fails, the step ends at one that could not be played.
void Transport::walk(Direction direction) {
    const unsigned request = newRequest();
    const int intent = direction == Direction::Forward ? kForward : kBackward;
    std::set<std::string> deadRoots;  // a place that does not answer is asked for one file, and not for each
    std::optional<GaplessHandOver::Next> shown;
    const auto queued = direction == Direction::Forward ? static_cast<int>(tracks_.queue().size()) : 0;
    for (int left = queued + tracks_.trackCount(sourceList()); left > 0 || !shown; --left) {
        auto next = planStep(direction);
        if (!next) {
            state_.PlayIntent = kNoIntent;
            return RenewNextFile();
        }
        take(*next, intent);
        const std::string root = FoldCase(VolumeOf(next->path));
        if (deadRoots.contains(root)) {
            tracks_.setPlayable(next->path, false);
            continue;
        }
        shown = std::move(next);
        const Attempt attempt = openAndPlay(request);
        if (attempt.opening.result == OpenResult::Superseded) return;
        if (attempt.plays || !options_.PassOverUnplayable) return RenewNextFile();
        if (attempt.opening.result == OpenResult::Missing && !attempt.opening.fileAtFault) deadRoots.insert(root);
    }
    if (state_.CurrentFile != shown->path) {
        // Rows behind it were not asked for: what was shown last is the current one.
        setCurrent({shown->path, stillThere(*shown) ? shown->list : kNoList, shown->step.index});
        if (onTrackChanged) onTrackChanged();
    }
    RenewNextFile();
}

std::optional<GaplessHandOver::Next> Transport::planStep(Direction direction) {
    if (direction == Direction::Forward && !tracks_.queue().empty()) {
        const ListRow row = tracks_.queue().front();
        return GaplessHandOver::Next{row.list, {row.row, {}, {}}, tracks_.trackPath(row.list, row.row), true};
    }
    const int list = sourceList(), count = tracks_.trackCount(list);
    const auto draw = [&] {
        if (!drawn_ || drawn_->list != list || drawn_->order.last() != count - 1) {
            drawn_ = DrawnOrder{list, tracks_.drawOrder(list)};
        }
        return drawn_->order;
    };
    int current = state_.CurrentIndex[At(list)];
    // Back from a row of the queue leads to the one that was played before it.
    if (const auto behind = tracks_.goesOnBehind(list))
        current = direction == Direction::Forward ? *behind : *behind + 1;
    auto step = PlanStep(direction, {count, current, state_.PlayMode == kRandom, state_.ShuffleOrder[At(list)]}, draw);
    if (!step) return std::nullopt;
    std::string path = tracks_.trackPath(list, step->index);
    return GaplessHandOver::Next{list, std::move(*step), std::move(path)};
}

// The list may have changed since: an index counts only where it still holds that file.
bool Transport::stillThere(const GaplessHandOver::Next& next) const {
    return next.step.index < tracks_.trackCount(next.list) &&
           tracks_.trackPath(next.list, next.step.index) == next.path;
}

void Transport::take(const GaplessHandOver::Next& next, int intent) {
    takePlace(next);
    setCurrent({next.path, next.list, next.step.index});
    takeOrder(next);
    state_.PlayIntent = intent;
}

void Transport::takePlace(const GaplessHandOver::Next& next) {
    if (next.queued) {
        tracks_.takeFromQueue({next.list, next.step.index});
    } else {
        tracks_.forgetPlaces();
    }
}

void Transport::takeOrder(const GaplessHandOver::Next& next) {
    if (next.step.newOrder) {
        state_.ShuffleOrder[At(next.list)] = *next.step.newOrder;
        drawn_.reset();
    }
    if (next.step.position) state_.ShuffleOrder[At(next.list)].moveTo(*next.step.position);
}

void Transport::trackEnded() {
    const bool played = state_.PlayerStatus == kPlay;
    if (played && goesOn()) {
        walk(Direction::Forward);
    } else if (played && state_.PlayIntent > 0 && state_.PlayMode == kRepeat && !fromCommandLine_ &&
               !stopsAfter_) {
        startPlaying();
    } else {
        const bool decoded = state_.PlayerStatus == kDecode;
        noteStopAfter(false);
        engine_.StopMedia();
        if (decoded && onDecodeEnded) onDecodeEnded();
    }
}

std::optional<GaplessHandOver::Next> Transport::planNext() {
    if (!options_.GaplessNext || options_.IntroPlay || !goesOn() || !sounding() || !state_.MediaKind.playedByVbmp3()) {
        return std::nullopt;
    }
    auto next = planStep(Direction::Forward);
    if (next && KindOfExtension(LastFour(next->path)).playedByMediaControl()) return std::nullopt;
    return next;
}

void Transport::RenewNextFile() {
    // When the library has just gone on, what it was handed must still be known when its event is handled.
    if (!state_.ShuttingDown && !engine_.eventUnderway()) handOver_.follow(planNext());
}

void Transport::libraryWentOn() {
    const auto next = handOver_.taken();
    if (!next) return;
    newRequest();
    const bool there = stillThere(*next), tooFar = stopsAfter_;
    if (there) takePlace(*next);
    setCurrent({next->path, there ? next->list : kNoList, next->step.index});
    if (there) takeOrder(*next);
    if (state_.PlayerStatus != kStop) state_.PlayIntent = kForward;  // stopped in this moment, it stays stopped
    engine_.TakeOverNextFile();
    tracks_.setPlayable(next->path, true);
    if (tooFar) engine_.StopMedia();  // it went on before it could be told to stop
    if (onTrackChanged) onTrackChanged();
    RenewNextFile();
}

// Files that change on the disk.

std::optional<Transport::LetGo> Transport::letGoOf(const std::string& path) {
    LetGo file;
    file.current = EqualsNoCase(path, state_.CurrentFile);
    if (!file.current) {
        handOver_.letGoOf(path);
        return file;
    }
    if (!mayAct()) return std::nullopt;
    newRequest();
    engine_.abandonOpening();
    file.status = state_.MediaKind.playedByVbmp3() ? state_.PlayerStatus : kStop;
    file.positionMs = vbmp3_.vbmp3_getPositionMs();
    engine_.CloseMedia();
    return file;
}

void Transport::takeUp(const LetGo& file) {
    if (!file.current) return;
    const unsigned request = newRequest();
    const bool sounded = file.status == kPlay || file.status == kPause;
    if (!sounded) {
        openOnly(request);
        return;
    }
    if (!openCurrent() || superseded(request) || startPlaying() != PlayResult::Playing) return;
    vbmp3_.vbmp3_seek(static_cast<double>(file.positionMs) / 1000);
    state_.PositionSeconds = static_cast<int>(file.positionMs / 1000);
    if (file.status == kPause) engine_.PauseMedia();
}

// The watch over the back ends would take a track that plays no more for one that has ended.
void Transport::leaveClosed(const LetGo& file) {
    if (file.current) engine_.StopMedia();
}

void Transport::renamed(const std::string& from, const std::string& to) {
    if (EqualsNoCase(state_.CurrentFile, from)) state_.CurrentFile = to;
}

// Conversions.

void Transport::showConversion(PlayStatus status) {
    state_.PlayerStatus = status;
    engine_.status().ShowStatus();
}

void Transport::halt() {
    newRequest();
    engine_.abandonOpening();
    engine_.StopMedia();
}

void Transport::openForConversion(const std::string& path) {
    newRequest();
    setCurrent({path});
    opensForConversion_ = true;
    openCurrent();
    opensForConversion_ = false;
}

void Transport::conversionFailed() {
    newRequest();
    setCurrent({});
    engine_.showNothing();
    if (onTrackChanged) onTrackChanged();
}

// Modes.

void Transport::StepPlayMode() {
    state_.PlayMode = state_.PlayMode >= kSingle - 1 && state_.PlayMode < kRandom ? state_.PlayMode + 1 : kSingle;
    engine_.status().ShowPlayMode();
    RenewNextFile();
}

void Transport::StepTimeMode() {
    state_.TimeMode = state_.TimeMode == 0 ? 1 : 0;
    engine_.status().ShowTime(state_.PositionSeconds);
}

}  // namespace quenlox
