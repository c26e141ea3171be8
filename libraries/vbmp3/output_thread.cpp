#include "libraries/vbmp3/output_thread.h"

#include <algorithm>

namespace vbmp3 {
namespace {

using Clock = std::chrono::steady_clock;

// A device wakes when it wants more; the clock does not.
constexpr int kDeviceTickMs = 500;
constexpr int kLongestTickMs = 100;
// How far the position runs on by itself.
constexpr int kSightMs = 150;
constexpr auto kOpenAheadPatience = std::chrono::milliseconds(150);  // of the buffer that is being heard meanwhile
// From the clock back to the device; longer each time that it did not help.
constexpr auto kFirstRetry = std::chrono::seconds(2);
constexpr auto kLastRetry = std::chrono::seconds(64);
constexpr int kMostLeftBehind = 3;
// A device says that everything was heard when it has left for the mixer of the system; closed at once, it would
// lose its last moment.
constexpr auto kLinger = std::chrono::milliseconds(150);

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
        const bool running = active_ && !paused_;
        if (running) {
            pump();
            observe();
        }
        state_.outputWork.wait(waitTime());
    }
    output_.reset();
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
        return int(std::clamp<int64_t>(left, device ? 10 : 1, tick));
    }
    return retired_ ? int(kLinger.count()) : -1;
}

void OutputThread::retire(std::unique_ptr<Output> output) {
    if (!output->audible()) return;
    retired_ = std::move(output);
    retiredUntil_ = Clock::now() + kLinger;
}

bool OutputThread::takeOrder() {
    Order order;
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.quit) return false;
        order = {state_.generation, state_.awaited == state_.generation,
                 state_.active,     state_.paused,
                 state_.current,    state_.startFrame,
                 state_.output};
    }
    if (order.generation != generation_) begin(order);
    if (active_ && order.paused != paused_) {
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

void OutputThread::begin(const Order& order) {
    generation_ = order.generation;
    OutputError error = OutputError::None;
    active_ = order.active;
    if (active_) {
        if (order.awaited && DeviceThread::leftBehind() == 0) avoidDevice_ = false;
        error = prepareOutput(order.track->sampleRate, order.settings);
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
    ahead_.reset();
    const bool silent = active_ && !output_->audible();
    const bool tell = silent && hadDevice_;
    if (active_) hadDevice_ = !silent;
    {
        const std::lock_guard lock(state_.mutex);
        if (error != OutputError::None && state_.awaited != generation_ && state_.generation == generation_) {
            // Nobody waits for the answer: what was to be heard goes on silently.
            avoidDevice_ = true;
            state_.newGeneration();
        }
        state_.outputGeneration = std::max(state_.outputGeneration, order.generation);
        state_.outputError = error;
        state_.deviceLost = silent;
        state_.answered.notify_all();
    }
    if (tell) notify_(VBMP3_EVENT_DEVICE_LOST);
}

OutputError OutputThread::prepareOutput(int sampleRate, const OutputSettings& settings) {
    const bool same = output_ && chain_ && chain_->sampleRate() == sampleRate && settings.device == settings_.device &&
                      settings.bufferMs == settings_.bufferMs;
    if (same && output_->audible() != avoidDevice_ && !output_->lost()) {
        output_->flush();
        return OutputError::None;
    }
    output_.reset();
    settings_ = settings;
    if (!avoidDevice_) {
        OutputError error = OutputError::None;
        output_ = openDevice(sampleRate, settings, error, system_.patience);
        if (output_ || error == OutputError::Busy) return error;
    }
    // Without a device time passes all the same, so that a player runs.
    retryAt_ = Clock::now() + retryAfter_;
    output_ = wrapped(makeClockOutput());
    return output_->open(sampleRate, settings, state_.outputWork);
}

std::unique_ptr<Output> OutputThread::wrapped(std::unique_ptr<Output> output) const {
    return output && system_.wrap ? system_.wrap(std::move(output)) : std::move(output);
}

std::unique_ptr<Output> OutputThread::openDevice(int sampleRate, const OutputSettings& settings, OutputError& error,
                                                 std::chrono::milliseconds patience) {
    moved_ = false;
    for (;;) {
        std::unique_ptr<Output> device = DeviceThread::leftBehind() < kMostLeftBehind ? system_.make() : nullptr;
        error = OutputError::NoDevice;
        if (!device) return nullptr;
        auto output = std::make_unique<DeviceThread>(std::move(device), system_.patience);
        output->open(sampleRate, settings, state_.outputWork);
        error = waitForDevice(*output, patience);
        if (error == OutputError::None) return wrapped(std::move(output));
        if (error != OutputError::Busy || !retired_) return nullptr;
        retired_.reset();  // a device that only one may have
    }
}

// A newer order ends the wait.
OutputError OutputThread::waitForDevice(const DeviceThread& device, std::chrono::milliseconds patience) {
    const Clock::time_point limit = Clock::now() + patience;
    std::optional<OutputError> result;
    while (!(result = device.opened())) {
        {
            const std::lock_guard lock(state_.mutex);
            if (state_.quit || state_.generation != generation_) break;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now()).count();
        if (left <= 0) break;
        state_.outputWork.wait(int(left));
    }
    state_.outputWork.wake();  // what woke us may have been meant for later
    return result.value_or(OutputError::NoDevice);
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
            written_ += int64_t(count);
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
            state_.queuedFrames -= int64_t(block.samples.size() / 2);
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
        OutputError ignored = OutputError::None;  // is opened at the change when it cannot be opened beside the other
        if (!avoidDevice_ && output_->audible())
            ahead_ = openDevice(waiting_->sampleRate, settings_, ignored, kOpenAheadPatience);
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
    if (!audible && Clock::now() >= retryAt_) {
        retryAt_ = Clock::now() + retryAfter_;
        if (system_.count() > 0 && DeviceThread::leftBehind() == 0) {
            retryAfter_ = std::min(2 * retryAfter_, kLastRetry);
            avoidDevice_ = false;
            restartAt(heard);
        }
    }
}

// Where the sound is, and how it goes on until the next look.
void OutputThread::tellHeard(int64_t outputFrame) {
    const int rate = chain_->sampleRate();
    int64_t limit = std::min(outputFrame + int64_t(rate) * kSightMs / 1000, outputBase_ + written_);
    if (!boundaries_.empty()) limit = std::min(limit, boundaries_.front().outputFrame - 1);
    const TrackPosition now = chain_->position(outputFrame);
    const TrackPosition then = chain_->position(std::max(limit, outputFrame));
    const auto at = Clock::now();
    const bool runs = started_ && !paused_ && limit > outputFrame;
    const std::lock_guard lock(state_.mutex);
    if (state_.generation != generation_) return;
    const bool moving = runs && !state_.paused;
    state_.heardOutput = {outputFrame, at, moving ? double(rate) : 0.0, limit};
    if (!state_.current || now.track != state_.current->id) return;
    state_.shown = std::max(state_.shown, state_.heard.frames);
    const bool on = moving && then.track == now.track && then.frame > now.frame;
    const double speed = on ? (then.frame - now.frame) * rate / double(limit - outputFrame) : 0.0;
    state_.heard = {std::max<int64_t>(0, int64_t(now.frame)), at, speed, int64_t(then.frame)};
}

void OutputThread::crossInto(const TrackPtr& track) {
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_) return;
        state_.current = track;
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
    if (ahead_) {
        output_ = std::move(ahead_);
    } else if (prepareOutput(track->sampleRate, settings_) != OutputError::None) {
        avoidDevice_ = true;
        prepareOutput(track->sampleRate, settings_);
    }
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
    state_.startFrame = current ? int64_t(position.frame) : state_.heardFrame();
    state_.setHeard(state_.startFrame);
    state_.newGeneration();
}

}  // namespace vbmp3
