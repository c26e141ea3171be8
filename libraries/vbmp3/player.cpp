#include "libraries/vbmp3/player.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

#include "libraries/vbmp3/file_source.h"

namespace vbmp3 {
namespace {

constexpr auto kPatience = std::chrono::seconds(5);
// As long as play waits to hear that the device is in use. One that needs longer to open is opened all the same.
constexpr auto kDevicePatience = std::chrono::milliseconds(1500);

}  // namespace

TrackPtr openTrack(const std::string& path, int& error) {
    static std::atomic<int64_t> lastId = 0;
    std::shared_ptr<const ByteSource> file = openFile(path);
    if (!file) {
        error = VBMP3_ERROR_NOT_FOUND;
        return nullptr;
    }
    auto info = probe(*file, scanFileLayout(*file));
    error = VBMP3_ERROR_FORMAT;
    if (!info) return nullptr;
    refineLength(*file, *info);
    auto track = std::make_shared<Track>();
    track->source = openSource(std::move(file), *info);
    if (!track->source) return nullptr;
    track->id = ++lastId;
    track->path = path;
    track->info = std::move(*info);
    track->sampleRate = track->source->sampleRate();
    error = VBMP3_OK;
    return track;
}

Player::Player(const SoundSettings& sound, OutputSystem system)
    : system_(withRecorder(std::move(system))),
      decoder_(state_),
      output_(state_, system_, sound, tap_, [this](int event) { notify(event); }) {}

Player::~Player() {
    setListener(nullptr);
    const std::lock_guard lock(state_.mutex);
    state_.quit = true;
    state_.decodeWork.notify_all();
    state_.outputWork.wake();
}

bool Player::waitFor(std::unique_lock<std::mutex>& lock, uint64_t generation) {
    return state_.answered.wait_for(lock, kPatience, [&] {
        return state_.decodeGeneration >= generation && state_.outputGeneration >= generation;
    });
}

OutputSystem Player::withRecorder(OutputSystem system) {
    system.wrap = [this](std::unique_ptr<Output> output) {
        const std::lock_guard lock(recorderMutex_);
        return recorder_ ? recordingOutput(std::move(output), recorder_) : std::move(output);
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
    close();
    int error = VBMP3_OK;
    TrackPtr track = openTrack(path, error);
    const std::lock_guard lock(state_.mutex);
    state_.current = std::move(track);
    return error;
}

void Player::close() {
    stopRecording();
    TrackPtr current, next;  // die without the lock
    std::unique_lock lock(state_.mutex);
    current = std::move(state_.current);
    next = std::move(state_.next);
    state_.current = nullptr;
    state_.next = nullptr;
    state_.active = false;
    state_.paused = false;
    state_.setHeard(0);
    state_.newGeneration();
    // Afterwards nobody but us holds the file.
    waitFor(lock, state_.generation);
}

int Player::play() {
    std::unique_lock lock(state_.mutex);
    if (!state_.current) return VBMP3_ERROR_NOT_OPEN;
    state_.active = true;
    state_.paused = false;
    state_.startFrame = 0;
    state_.setHeard(0);
    state_.newGeneration();
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
    waitFor(lock, state_.generation);
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
    }
    return VBMP3_OK;
}

int Player::setNext(const std::string& path) {
    TrackPtr track;
    int error = VBMP3_OK;
    if (!path.empty()) track = openTrack(path, error);
    TrackPtr old;
    const std::lock_guard lock(state_.mutex);
    old = std::exchange(state_.next, track);
    if (state_.nextTaken) {
        // The former next file is on its way to the device already: begin anew where the sound is.
        state_.startFrame = state_.heardFrame();
        state_.setHeard(state_.startFrame);
        state_.newGeneration();
    } else if (track && state_.active) {
        state_.decodedAll = false;
        state_.decodeWork.notify_one();
    }
    return error;
}

Player::Snapshot Player::snapshot() {
    const std::lock_guard lock(state_.mutex);
    Snapshot snapshot;
    snapshot.state = !state_.active ? 0 : state_.paused ? 2 : 1;
    snapshot.seconds = state_.current ? double(state_.heardFrame()) / state_.current->sampleRate : 0;
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
    if (event == VBMP3_EVENT_END_OF_TRACK) {
        const std::lock_guard lock(recorderMutex_);
        if (recorder_) recorder_->end();
    }
    const std::lock_guard lock(listenerMutex_);
    if (listener_) listener_(event);
}

}  // namespace vbmp3
