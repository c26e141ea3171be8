#include "libraries/vbmp3/output_thread.h"

#include <algorithm>

namespace vbmp3 {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kTickMs = 20;
constexpr auto kRetryInterval = std::chrono::seconds(2);
// A device says that everything was heard when it has left for the mixer of the system; closed at once, it would
// lose its last moment.
constexpr auto kLinger = std::chrono::milliseconds(150);

} // namespace

OutputThread::OutputThread(PlayerState& state, OutputSystem system, const SoundSettings& sound, Tap& tap,
                           std::function<void(int)> notify)
    : state_(state), system_(std::move(system)), sound_(sound), tap_(tap), notify_(std::move(notify)),
      thread_([this] { run(); })
{
}

OutputThread::~OutputThread() { thread_.join(); }

void OutputThread::run()
{
    while (takeOrder()) {
        const bool running = active_ && !paused_;
        if (running) {
            pump();
            observe();
        }
        state_.outputWork.wait(waitTime());
    }
    output_.reset();
    if (retired_)
        std::this_thread::sleep_until(retiredUntil_);
}

// Milliseconds to sleep: to the next look at the position, or exactly to the end of the sound.
int OutputThread::waitTime()
{
    if (retired_ && Clock::now() >= retiredUntil_)
        retired_.reset();
    if (active_ && !paused_) {
        if (!drained_)
            return kTickMs;
        const int64_t left = (written_ - output_->played()) * 1000 / chain_->sampleRate();
        return int(std::clamp<int64_t>(left, 1, kTickMs));
    }
    return retired_ ? int(kLinger.count()) : -1;
}

void OutputThread::retire(std::unique_ptr<Output> output)
{
    if (!output->audible())
        return;
    retired_ = std::move(output);
    retiredUntil_ = Clock::now() + kLinger;
}

bool OutputThread::takeOrder()
{
    Order order;
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.quit)
            return false;
        order = {state_.generation, state_.active, state_.paused, state_.current, state_.startFrame, state_.output};
    }
    if (order.generation != generation_)
        begin(order);
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

void OutputThread::begin(const Order& order)
{
    generation_ = order.generation;
    OutputError error = OutputError::None;
    active_ = order.active;
    if (active_) {
        error = prepareOutput(order.track->sampleRate, order.settings);
        if (error != OutputError::None && resuming_) {
            // Nobody waits for an answer: the sound that ran before goes on silently.
            avoidDevice_ = true;
            error = prepareOutput(order.track->sampleRate, order.settings);
        }
        resuming_ = false;
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
    const std::lock_guard lock(state_.mutex);
    state_.outputGeneration = std::max(state_.outputGeneration, order.generation);
    state_.outputError = error;
    state_.deviceLost = avoidDevice_;
    state_.answered.notify_all();
}

OutputError OutputThread::prepareOutput(int sampleRate, const OutputSettings& settings)
{
    const bool same = output_ && chain_ && chain_->sampleRate() == sampleRate && settings.device == settings_.device
                      && settings.bufferMs == settings_.bufferMs;
    if (same && output_->audible() != avoidDevice_ && !output_->lost()) {
        output_->flush();
        return OutputError::None;
    }
    output_.reset();
    settings_ = settings;
    if (!avoidDevice_) {
        OutputError error = OutputError::None;
        output_ = openDevice(sampleRate, settings, error);
        if (output_ || error == OutputError::Busy)
            return error;
    }
    // Without a device time passes all the same, so that a player runs.
    retryAt_ = Clock::now() + kRetryInterval;
    output_ = wrapped(makeClockOutput());
    return output_->open(sampleRate, settings, state_.outputWork);
}

std::unique_ptr<Output> OutputThread::wrapped(std::unique_ptr<Output> output) const
{
    return output && system_.wrap ? system_.wrap(std::move(output)) : std::move(output);
}

std::unique_ptr<Output> OutputThread::openDevice(int sampleRate, const OutputSettings& settings, OutputError& error)
{
    for (;;) {
        auto output = wrapped(system_.make());
        error = output ? output->open(sampleRate, settings, state_.outputWork) : OutputError::NoDevice;
        if (error == OutputError::None)
            return output;
        if (error != OutputError::Busy || !retired_)
            return nullptr;
        retired_.reset(); // a device that only one may have
    }
}

void OutputThread::startTrack(const TrackPtr& track, int64_t frame)
{
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

void OutputThread::pump()
{
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
        if (!fetch())
            break;
    }
    // Begins with a full buffer, or as full as it gets.
    if (!started_ && written_ > 0 && (room == 0 || finished_)) {
        output_->start();
        started_ = true;
    }
}

// Takes the next block through the chain; false when there is nothing to do for now.
bool OutputThread::fetch()
{
    Block block;
    bool all = false;
    if (!waiting_) {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_)
            return false;
        if (!state_.queue.empty()) {
            block = std::move(state_.queue.front());
            state_.queue.pop_front();
            state_.queuedFrames -= int64_t(block.samples.size() / 2);
            state_.decodeWork.notify_one();
        }
        all = state_.decodedAll;
    }
    const bool otherRate = block.track && block.track->sampleRate != chain_->sampleRate();
    if (otherRate) {
        waiting_ = std::move(block.track);
        waitingSamples_ = std::move(block.samples);
        OutputError ignored = OutputError::None; // is opened at the change when it cannot be opened beside the other
        if (!avoidDevice_ && output_->audible())
            ahead_ = openDevice(waiting_->sampleRate, settings_, ignored);
    }
    if (!block.track) {
        if (!all && !waiting_)
            return false;
        if (!finished_)
            chain_->finish(pending_);
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

void OutputThread::observe()
{
    if (output_->lost())
        return restartHere(true);
    const int64_t played = output_->played();
    const int64_t heard = outputBase_ + played;
    while (!boundaries_.empty() && boundaries_.front().outputFrame <= heard) {
        const TrackPtr track = boundaries_.front().track;
        boundaries_.pop_front();
        crossInto(track);
    }
    const TrackPosition position = chain_->position(heard);
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_)
            return;
        if (state_.current && position.track == state_.current->id)
            state_.heardFrame = std::max<int64_t>(0, int64_t(position.frame));
        state_.heardOutputFrame = heard;
    }
    if (drained_ && played >= written_)
        return waiting_ ? changeRate() : end();
    if (!output_->audible() && Clock::now() >= retryAt_) {
        retryAt_ = Clock::now() + kRetryInterval;
        if (system_.count() > 0)
            restartHere(false);
    }
}

void OutputThread::crossInto(const TrackPtr& track)
{
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_)
            return;
        state_.current = track;
        state_.heardFrame = 0;
        if (state_.next == track) {
            state_.next.reset();
            state_.nextTaken = false;
        }
    }
    notify_(VBMP3_EVENT_NEXT_TRACK);
}

void OutputThread::changeRate()
{
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

void OutputThread::end()
{
    {
        const std::lock_guard lock(state_.mutex);
        const bool more = !state_.queue.empty() || !state_.decodedAll || (state_.next && !state_.nextTaken);
        if (state_.generation != generation_ || more)
            return;
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

// Begins anew where the sound is, on the clock when the device has gone, else on the device again.
void OutputThread::restartHere(bool lost)
{
    avoidDevice_ = lost;
    {
        const std::lock_guard lock(state_.mutex);
        if (state_.generation != generation_)
            return;
        resuming_ = true;
        state_.startFrame = state_.heardFrame;
        state_.newGeneration();
    }
    if (lost)
        notify_(VBMP3_EVENT_DEVICE_LOST);
}

} // namespace vbmp3
