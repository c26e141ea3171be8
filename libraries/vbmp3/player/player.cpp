#include "libraries/vbmp3/player/player.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

#include "libraries/vbmp3/player/side_thread.h"

namespace vbmp3 {
namespace {

// As long as stop and close wait for a device to be silent.
constexpr auto kOutputPatience = std::chrono::seconds(5);
// As long as a next file may take to open before it counts as taken unseen.
constexpr auto kNextPatience = std::chrono::milliseconds(50);
// As long as play waits to hear that the device is in use. One that needs longer to open is opened all the same.
constexpr auto kDevicePatience = std::chrono::milliseconds(1500);

// Puts the file into `state` as the next one, unless something newer has been ordered; a VBMP3_ERROR_* number.
int OpenNext(PlayerState& state, const FileOpener& openFile, const std::string& path, const Ticket& ticket) {
    try {
        int error = VBMP3_OK;
        TrackPtr track = OpenTrack(openFile, path, ticket, error);
        const std::lock_guard lock(state.mutex);
        if (PlayerState::redeem(state.nextTicket, ticket) && track) state.setNext(std::move(track));
        return error;
    } catch (...) {
        return VBMP3_ERROR_MEMORY;
    }
}

}  // namespace

Player::Player(const SoundSettings& sound, OutputSystem system, FileOpener openFile)
    : openFile_(std::move(openFile)),
      system_(withRecorder(std::move(system))),
      decoder_(shared_),
      output_(state_, system_, sound, tap_, [this](int event) { notify(event); }) {}

Player::~Player() {
    setListener(nullptr);
    close();
    const std::lock_guard lock(state_.mutex);
    state_.quit = true;
    state_.decodeWork.notify_all();
    state_.outputWork.wake();
}

void Player::waitForSilence(std::unique_lock<std::mutex>& lock) {
    const uint64_t generation = state_.generation;
    decoder_.settle(lock);
    state_.answered.wait_for(lock, kOutputPatience, [&] { return state_.outputGeneration >= generation; });
}

OutputSystem Player::withRecorder(OutputSystem system) {
    system.wrap = [this](std::unique_ptr<Output> output) {
        const std::lock_guard lock(recorderMutex_);
        return recorder_ ? MakeRecordingOutput(std::move(output), recorder_) : std::move(output);
    };
    return system;
}

void Player::setRecorder(std::shared_ptr<Recorder> recorder) {
    stopRecording();
    const std::lock_guard lock(recorderMutex_);
    recorder_ = std::move(recorder);
}

void Player::stopRecording() {
    const std::lock_guard lock(recorderMutex_);
    if (recorder_) recorder_->abort();
    recorder_.reset();
}

int Player::open(const std::string& path) {
    const Ticket ticket = beginOpen();
    int error = VBMP3_OK;
    TrackPtr track = OpenTrack(openFile_, path, ticket, error);
    const int outcome = finishOpen(ticket, track);
    return outcome == VBMP3_OK ? error : outcome;
}

Ticket Player::beginOpen() {
    stopRecording();
    std::unique_lock lock(state_.mutex);
    Ticket ticket = PlayerState::newTicket(state_.openTicket);
    PlayerState::newTicket(state_.nextTicket);
    state_.release(std::exchange(state_.current, nullptr));
    state_.setNext(nullptr);
    state_.active = false;
    state_.paused = false;
    state_.setHeard(0);
    state_.newGeneration();
    waitForSilence(lock);
    return ticket;
}

int Player::finishOpen(const Ticket& ticket, TrackPtr& track) {
    const std::lock_guard lock(state_.mutex);
    if (!PlayerState::redeem(state_.openTicket, ticket)) return VBMP3_ERROR_SUPERSEDED;
    if (track) state_.current = std::move(track);
    return VBMP3_OK;
}

void Player::close() { beginOpen(); }

int Player::play() {
    std::unique_lock lock(state_.mutex);
    if (!state_.current) return VBMP3_ERROR_NOT_OPEN;
    state_.active = true;
    state_.paused = false;
    state_.startFrame = 0;
    state_.setHeard(0);
    state_.newGeneration();
    decoder_.hurry();
    const uint64_t generation = state_.generation;
    state_.awaited = generation;
    const bool answered =
        state_.answered.wait_for(lock, kDevicePatience, [&] { return state_.outputGeneration >= generation; });
    state_.awaited = 0;
    if (!answered || state_.outputError == OutputError::None) return VBMP3_OK;
    state_.active = false;
    state_.newGeneration();
    return VBMP3_ERROR_DEVICE_BUSY;
}

int Player::stop() {
    stopRecording();
    std::unique_lock lock(state_.mutex);
    state_.setHeard(0);
    if (state_.active) {
        state_.active = false;
        state_.paused = false;
        state_.newGeneration();
    }
    waitForSilence(lock);
    return state_.current ? VBMP3_OK : VBMP3_ERROR_NOT_OPEN;
}

int Player::pause() {
    const std::lock_guard lock(state_.mutex);
    if (!state_.active) return VBMP3_ERROR_NOT_OPEN;
    state_.paused = true;
    state_.stopHearing();
    state_.outputWork.wake();
    return VBMP3_OK;
}

int Player::restart() {
    const std::lock_guard lock(state_.mutex);
    if (!state_.active) return VBMP3_ERROR_NOT_OPEN;
    state_.paused = false;
    state_.outputWork.wake();
    return VBMP3_OK;
}

int Player::seek(double seconds) {
    const std::lock_guard lock(state_.mutex);
    if (!state_.current) return VBMP3_ERROR_NOT_OPEN;
    const Track& track = *state_.current;
    const double wanted = std::isfinite(seconds) ? std::clamp(seconds, 0.0, 1e9) * track.sampleRate : 0.0;
    int64_t frame = std::llround(wanted);
    if (track.info.exact) frame = std::min(frame, track.info.frames);
    state_.setHeard(frame);
    if (state_.active) {
        state_.startFrame = frame;
        state_.newGeneration();
        decoder_.hurry();
    }
    return VBMP3_OK;
}

int Player::setNext(const std::string& path) {
    Ticket ticket;
    {
        const std::lock_guard lock(state_.mutex);
        ticket = PlayerState::newTicket(state_.nextTicket);
        const bool taken = state_.nextTaken;
        state_.setNext(nullptr);
        if (taken) {
            // The former next file is on its way to the device already: begin anew where the sound is.
            state_.startFrame = state_.heardFrame();
            state_.setHeard(state_.startFrame);
            state_.newGeneration();
            decoder_.hurry();
        }
    }
    if (path.empty()) return VBMP3_OK;
    if (SideThread::leftBehind() >= SideThread::kMostLeftBehind) return VBMP3_ERROR_NOT_FOUND;
    const auto answer = std::make_shared<std::atomic<int>>(VBMP3_OK);
    const SideThread opener(
        [=, state = shared_, openFile = openFile_] { *answer = OpenNext(*state, openFile, path, ticket); },
        std::chrono::milliseconds(0));
    return opener.endsWithin(kNextPatience) ? answer->load() : VBMP3_OK;
}

Player::Snapshot Player::snapshot() {
    const std::lock_guard lock(state_.mutex);
    Snapshot snapshot;
    snapshot.state = !state_.active ? 0 : state_.paused ? 2 : 1;
    snapshot.seconds = state_.current ? static_cast<double>(state_.heardFrame()) / state_.current->sampleRate : 0;
    snapshot.outputFrame = state_.heardOutput.now();
    return snapshot;
}

TrackPtr Player::current() {
    const std::lock_guard lock(state_.mutex);
    return state_.current;
}

void Player::setOutput(OutputSettings settings) {
    const std::lock_guard lock(state_.mutex);
    state_.output = settings;
    state_.outputWork.wake();
}

bool Player::hasDevice() {
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.deviceLost) return false;
    }
    return system_.count() > 0;
}

void Player::setListener(std::function<void(int)> listener) {
    const std::lock_guard lock(listenerMutex_);
    listener_ = std::move(listener);
}

void Player::notify(int event) {
    if (event == VBMP3_EVENT_END_OF_TRACK || event == VBMP3_EVENT_NEXT_TRACK) {
        const std::lock_guard lock(recorderMutex_);
        if (recorder_) recorder_->end();
    }
    const std::lock_guard lock(listenerMutex_);
    if (listener_) listener_(event);
}

}  // namespace vbmp3
