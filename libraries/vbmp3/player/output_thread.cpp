#include "libraries/vbmp3/player/output_thread.h"

#include <algorithm>
#include <utility>

namespace vbmp3 {
namespace {

using Clock = std::chrono::steady_clock;

// A device wakes when it wants more; the clock does not.
constexpr int kDeviceTickMs = 500;
constexpr int kLongestTickMs = 100;
// How far the position runs on by itself.
constexpr int kSightMs = 150;
// From the clock back to the device; longer each time that it did not help.
constexpr auto kFirstRetry = std::chrono::seconds(2);
constexpr auto kLastRetry = std::chrono::seconds(64);
constexpr int kMostLeftBehind = 3;
// A device says that everything was heard when it has left for the mixer of the system; closed at once, it would
// lose its last moment.
constexpr auto kLinger = std::chrono::milliseconds(150);

int64_t MillisecondsLeft(Clock::time_point limit) {
    return std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now()).count();
}

}  // namespace

OutputThread::OutputThread(PlayerState& state, OutputSystem system, const SoundSettings& sound, Tap& tap,
                           std::function<void(int)> notify)
    : state_(state),
      system_(std::move(system)),
      sound_(sound),
      tap_(tap),
      notify_(std::move(notify)),
      retryAfter_(kFirstRetry),
      thread_([this] { run(); }) {}

OutputThread::~OutputThread() { thread_.join(); }

void OutputThread::run() {
    while (takeOrder()) {
        const bool running = active_ && output_ && !paused_;
        if (running) {
            pump();
            observe();
        }
        state_.outputWork.wait(waitTime());
    }
    output_.reset();
    opening_.reset();
    if (retired_) std::this_thread::sleep_until(retiredUntil_);
}

// Milliseconds to sleep: until the sound's end or the next track is heard, at the latest until it is time to look.
int OutputThread::waitTime() {
    if (retired_ && Clock::now() >= retiredUntil_) retired_.reset();
    if (active_ && !output_)  // lost: the next order says how it goes on
        return 0;
    if (active_ && !paused_) {
        const bool device = output_->audible();
        const int tick = device ? kDeviceTickMs : std::clamp(settings_.bufferMs / 3, 10, kLongestTickMs);
        int64_t next = INT64_MAX;
        if (!boundaries_.empty())
            next = boundaries_.front().outputFrame - outputBase_;
        else if (drained_ && !device)
            next = written_;
        if (next == INT64_MAX) return tick;
        const int64_t left = (next - output_->played()) * 1000 / chain_->sampleRate() + 1;
        return static_cast<int>(std::clamp<int64_t>(left, device ? 10 : 1, tick));
    }
    if (opening_ && !active_)
        return static_cast<int>(std::max<int64_t>(1, MillisecondsLeft(opening_->since + system_.patience)));
    return retired_ ? static_cast<int>(kLinger.count()) : -1;
}

void OutputThread::retire(std::unique_ptr<Output> output) {
    if (!output->audible()) return;
    retired_ = std::move(output);
    retiredUntil_ = Clock::now() + kLinger;
}

bool OutputThread::takeOrder() {
    Order order;
    int coming = 0;  // the rate of what has been decoded last
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.quit) return false;
        order = {state_.generation, state_.awaited == state_.generation,
                 state_.active,     state_.paused,
                 state_.current,    state_.startFrame,
                 state_.output};
        if (!state_.queue.empty()) coming = state_.queue.back().track->sampleRate;
    }
    if (order.generation != generation_) begin(order);
    if (!active_) {
        if (opening_ && (opening_->device->opened() || MillisecondsLeft(opening_->since + system_.patience) <= 0))
            opening_.reset();
        return true;
    }
    if (!output_) return true;
    if (order.settings != settings_) {
        output_->pause();
        observe();
        if (active_ && output_) restartAt(outputBase_ + output_->played());
        return true;
    }
    lookAhead(waiting_ ? waiting_->sampleRate : coming);
    if (order.paused != paused_) {
        paused_ = order.paused;
        if (paused_) {
            output_->pause();
            observe();
        } else if (started_) {
            output_->start();
        }
    }
    return true;
}

// Opens the device beforehand for a rate that follows: it may take longer than the buffer lasts.
void OutputThread::lookAhead(int sampleRate) {
    if (sampleRate != 0 && sampleRate != chain_->sampleRate()) {
        if (!avoidDevice_ && output_->audible()) beginOpening(sampleRate, settings_);
    } else if (opening_ && opening_->device->opened()) {
        opening_.reset();
    }
}

void OutputThread::begin(const Order& order) {
    generation_ = order.generation;
    OutputError error = OutputError::None;
    active_ = false;
    if (order.active) {
        if (order.awaited && DeviceThread::leftBehind() == 0) avoidDevice_ = false;
        const auto prepared = prepareOutput(order.track->sampleRate, order.settings);
        if (!prepared) return;
        error = *prepared;
        active_ = error == OutputError::None;
    }
    if (active_) {
        startTrack(order.track, order.startFrame);
        paused_ = order.paused;
    } else {
        output_.reset();
        track_.reset();
        waiting_.reset();
        boundaries_.clear();
    }
    bool tell = false;
    {
        const std::lock_guard lock(state_.mutex);
        if (error != OutputError::None && state_.awaited != generation_ && state_.generation == generation_) {
            // Nobody waits for the answer: what was to be heard goes on silently.
            avoidDevice_ = true;
            state_.newGeneration();
        }
        state_.outputGeneration = std::max(state_.outputGeneration, order.generation);
        state_.outputError = error;
        tell = noteDevice();
        state_.answered.notify_all();
    }
    if (tell) notify_(VBMP3_EVENT_DEVICE_LOST);
}

// With the mutex held, after another output has been chosen: whether the loss of the device is to be told.
bool OutputThread::noteDevice() {
    const bool silent = active_ && !output_->audible();
    const bool tell = silent && hadDevice_;
    if (active_) hadDevice_ = !silent;
    state_.deviceLost = silent;
    return tell;
}

std::optional<OutputError> OutputThread::prepareOutput(int sampleRate, const OutputSettings& settings) {
    const bool same = output_ && chain_ && chain_->sampleRate() == sampleRate && settings == settings_;
    if (settings.device != settings_.device) avoidDevice_ = false;
    if (same && output_->audible() != avoidDevice_ && !output_->lost()) {
        output_->flush();
        return OutputError::None;
    }
    output_.reset();
    settings_ = settings;
    if (!avoidDevice_) {
        const auto error = openDevice(sampleRate, settings);
        if (!error || output_ || *error == OutputError::Busy) return error;
    }
    // Without a device time passes all the same, so that a player runs.
    retryAt_ = Clock::now() + retryAfter_;
    devices_ = system_.count();
    output_ = wrapped(MakeClockOutput());
    return output_->open(sampleRate, settings, state_.outputWork);
}

std::unique_ptr<Output> OutputThread::wrapped(std::unique_ptr<Output> output) const {
    return output && system_.wrap ? system_.wrap(std::move(output)) : std::move(output);
}

// Makes output_ of the device, or leaves that null.
std::optional<OutputError> OutputThread::openDevice(int sampleRate, const OutputSettings& settings) {
    moved_ = false;
    while (beginOpening(sampleRate, settings)) {
        const std::optional<OutputError> error = waitForDevice();
        if (!error) return std::nullopt;
        std::unique_ptr<DeviceThread> device = std::move(opening_->device);
        opening_.reset();
        if (*error == OutputError::None) output_ = wrapped(std::move(device));
        if (*error != OutputError::Busy || !retired_) return error;
        retired_.reset();  // a device that only one may have
    }
    return OutputError::NoDevice;
}

// False when there is no device that could be opened.
bool OutputThread::beginOpening(int sampleRate, const OutputSettings& settings) {
    if (opening_ && opening_->sampleRate == sampleRate && opening_->settings == settings) return true;
    opening_.reset();
    std::unique_ptr<Output> device = DeviceThread::leftBehind() < kMostLeftBehind ? system_.make() : nullptr;
    if (!device) return false;
    opening_ = {std::make_unique<DeviceThread>(std::move(device), system_.patience), sampleRate, settings,
                Clock::now()};
    opening_->device->open(sampleRate, settings, state_.outputWork);
    return true;
}

std::optional<OutputError> OutputThread::waitForDevice() {
    std::optional<OutputError> result;
    bool outdated = false;
    while (!(result = opening_->device->opened())) {
        {
            const std::lock_guard lock(state_.mutex);
            outdated = state_.quit || state_.generation != generation_;
        }
        const int64_t left = MillisecondsLeft(opening_->since + system_.patience);
        if (outdated || left <= 0) break;
        state_.outputWork.wait(static_cast<int>(left));
    }
    state_.outputWork.wake();  // what woke us may have been meant for later
    if (!result && !outdated) result = OutputError::NoDevice;
    return result;
}

void OutputThread::startTrack(const TrackPtr& track, int64_t frame) {
    const int64_t next = chain_ ? chain_->outputFrames() : 0;
    if (!chain_ || chain_->sampleRate() != track->sampleRate)
        chain_ = std::make_unique<Chain>(sound_, &tap_, track->sampleRate);
    tap_.setSampleRate(track->sampleRate);
    chain_->reset(track->id, frame, next);
    track_ = track;
    waiting_.reset();
    boundaries_.clear();
    pending_.clear();
    pendingAt_ = 0;
    started_ = finished_ = drained_ = false;
    outputBase_ = next;
    written_ = 0;
}

void OutputThread::pump() {
    size_t room = 0;
    while ((room = output_->room()) > 0) {
        if (pendingAt_ < pending_.size()) {
            const size_t count = std::min(room, (pending_.size() - pendingAt_) / 2);
            output_->write(std::span(pending_).subspan(pendingAt_, 2 * count));
            pendingAt_ += 2 * count;
            written_ += static_cast<int64_t>(count);
            drained_ = false;
            continue;
        }
        pending_.clear();
        pendingAt_ = 0;
        if (!fetch()) break;
    }
    // Begins with a full buffer, or as full as it gets.
    if (!started_ && written_ > 0 && (room == 0 || finished_)) {
        output_->start();
        started_ = true;
    }
}

// Takes the next block through the chain; false when there is nothing to do for now.
bool OutputThread::fetch() {
    Block block;
    bool all = false;
    if (!waiting_) {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_) return false;
        if (!state_.queue.empty()) {
            block = std::move(state_.queue.front());
            state_.queue.pop_front();
            state_.queuedFrames -= static_cast<int64_t>(block.samples.size() / 2);
            if (state_.queueFull && state_.queuedFrames < block.track->sampleRate / 2) {
                state_.queueFull = false;
                state_.decodeWork.notify_one();
            }
        }
        all = state_.decodedAll;
    }
    const bool otherRate = block.track && block.track->sampleRate != chain_->sampleRate();
    if (otherRate) {
        waiting_ = std::move(block.track);
        waitingSamples_ = std::move(block.samples);
        lookAhead(waiting_->sampleRate);
    }
    if (!block.track) {
        if (!all && !waiting_) return false;
        if (!finished_) chain_->finish(pending_);
        finished_ = true;
        if (pending_.empty() && !drained_) {
            output_->drain();
            drained_ = true;
        }
        return !pending_.empty();
    }
    finished_ = false;
    if (block.track != track_) {
        boundaries_.push_back({chain_->beginTrack(block.track->id), block.track});
        output_->trackEndsAt(boundaries_.back().outputFrame - outputBase_);
        track_ = block.track;
    }
    chain_->process(block.samples, pending_);
    return true;
}

void OutputThread::observe() {
    const bool audible = output_->audible();
    const bool lost = output_->lost();
    const int64_t played = output_->played();
    const int64_t heard = outputBase_ + played;
    if (lost) {
        output_.reset();  // leaves it behind when it hangs
        avoidDevice_ = !moved_ || DeviceThread::leftBehind() > 0;
        return restartAt(heard);
    }
    if (audible && played > 0) {
        moved_ = true;
        retryAfter_ = kFirstRetry;
    }
    while (!boundaries_.empty() && boundaries_.front().outputFrame <= heard) {
        const TrackPtr track = boundaries_.front().track;
        boundaries_.pop_front();
        crossInto(track);
    }
    tellHeard(heard);
    if (drained_ && played >= written_) return waiting_ ? changeRate() : end();
    const int devices = audible ? 0 : system_.count();
    const bool oneMore = devices > std::exchange(devices_, devices);
    if (!audible && (oneMore || Clock::now() >= retryAt_)) {
        retryAt_ = Clock::now() + retryAfter_;
        if (devices > 0 && DeviceThread::leftBehind() == 0) {
            retryAfter_ = std::min(2 * retryAfter_, kLastRetry);
            avoidDevice_ = false;
            restartAt(heard);
        }
    }
}

// Where the sound is, and how it goes on until the next look.
void OutputThread::tellHeard(int64_t outputFrame) {
    const int rate = chain_->sampleRate();
    int64_t limit = std::min(outputFrame + static_cast<int64_t>(rate) * kSightMs / 1000, outputBase_ + written_);
    if (!boundaries_.empty()) limit = std::min(limit, boundaries_.front().outputFrame - 1);
    const TrackPosition now = chain_->position(outputFrame);
    const TrackPosition then = chain_->position(std::max(limit, outputFrame));
    const auto at = Clock::now();
    const bool runs = started_ && !paused_ && limit > outputFrame;
    const std::lock_guard lock(state_.mutex);
    if (state_.generation != generation_) return;
    const bool moving = runs && !state_.paused;
    state_.heardOutput = {outputFrame, at, moving ? static_cast<double>(rate) : 0.0, limit};
    if (!state_.current || now.track != state_.current->id) return;
    state_.shown = std::max(state_.shown, state_.heard.frames);
    const bool on = moving && then.track == now.track && then.frame > now.frame;
    const double speed = on ? (then.frame - now.frame) * rate / static_cast<double>(limit - outputFrame) : 0.0;
    state_.heard = {std::max<int64_t>(0, static_cast<int64_t>(now.frame)), at, speed, static_cast<int64_t>(then.frame)};
}

void OutputThread::crossInto(const TrackPtr& track) {
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_) return;
        state_.release(std::exchange(state_.current, track));
        state_.setHeard(0);
        if (state_.next == track) {
            state_.next.reset();
            state_.nextTaken = false;
        }
    }
    notify_(VBMP3_EVENT_NEXT_TRACK);
}

void OutputThread::changeRate() {
    const TrackPtr track = waiting_;
    retire(std::move(output_));
    if (opening_ && opening_->device->opened().value_or(OutputError::None) != OutputError::None)
        opening_.reset();  // could not be opened beside the other
    auto error = prepareOutput(track->sampleRate, settings_);
    if (error && *error != OutputError::None) {
        avoidDevice_ = true;
        error = prepareOutput(track->sampleRate, settings_);
    }
    active_ = error.has_value();  // else a newer order says how it goes on
    if (!active_) return;
    bool tell = false;
    {
        const std::lock_guard lock(state_.mutex);
        tell = noteDevice();
    }
    if (tell) notify_(VBMP3_EVENT_DEVICE_LOST);
    startTrack(track, 0);
    chain_->process(waitingSamples_, pending_);
    crossInto(track);
    pump();
}

void OutputThread::end() {
    {
        const std::lock_guard lock(state_.mutex);
        const bool more = !state_.queue.empty() || !state_.decodedAll || (state_.next && !state_.nextTaken);
        if (state_.generation != generation_ || more) return;
        state_.active = false;
        state_.paused = false;
        state_.deviceLost = false;
        state_.newGeneration();
        generation_ = state_.outputGeneration = state_.generation;
    }
    active_ = false;
    retire(std::move(output_));
    track_.reset();
    notify_(VBMP3_EVENT_END_OF_TRACK);
}

// Begins anew with exactly the frame that would have been heard next.
void OutputThread::restartAt(int64_t outputFrame) {
    const TrackPosition position = chain_->position(outputFrame);
    const std::lock_guard lock(state_.mutex);
    if (state_.generation != generation_) return;
    const bool current = state_.current && state_.current->id == position.track;
    state_.startFrame = current ? static_cast<int64_t>(position.frame) : state_.heardFrame();
    state_.setHeard(state_.startFrame);
    state_.newGeneration();
}

}  // namespace vbmp3
