#include "libraries/vbmp3/player/decode_thread.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <system_error>
#include <utility>

namespace vbmp3 {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr size_t kBlockFrames = 1152;
constexpr milliseconds kLongRead{250};
// In settle: for what the decoder is at to come to its end, or to be given up; and for a new thread to begin.
constexpr milliseconds kBlockPatience{40}, kGiveUpPatience{65}, kStartPatience{15};
// For a thread that is at nothing but has not had a processor yet.
constexpr milliseconds kIdlePatience{1000};
constexpr milliseconds kLook{5};

}  // namespace

// Everything is guarded by the mutex of the state, but for the source, which is the thread's.
struct DecodeThread::Worker {
    explicit Worker(std::shared_ptr<PlayerState> shared) : state(std::move(shared)) {}

    std::shared_ptr<PlayerState> state;
    uint64_t generation = 0;
    TrackPtr track;
    Stream stream;
    std::optional<Clock::time_point> busySince;  // inside a file, or waiting for one
    bool left = false;

    void run();
    bool hasRoom() const;
    void takeOrder(std::unique_lock<std::mutex>& lock);
    void go(std::unique_lock<std::mutex>& lock, const TrackPtr& wanted, int64_t frame);
    void decodeBlock(std::unique_lock<std::mutex>& lock);
    void giveUp() {
        if (busySince) *stream.givenUp = true;
    }
};

DecodeThread::DecodeThread(std::shared_ptr<PlayerState> state) : state_(std::move(state)) { start(); }

DecodeThread::~DecodeThread() {
    const std::lock_guard lock(state_->mutex);
    state_->quit = true;
    state_->decodeWork.notify_all();
}

// Leaves what there is as it is when it throws.
void DecodeThread::start() {
    const auto worker = std::make_shared<Worker>(state_);
    auto thread = std::make_unique<SideThread>([worker] { worker->run(); }, kIdlePatience);
    if (worker_) {
        worker_->left = true;
        thread_->leaveBehind();
    }
    worker_ = worker;
    thread_ = std::move(thread);
}

void DecodeThread::hurry() {
    if (worker_->busySince && Clock::now() - *worker_->busySince > kLongRead) worker_->giveUp();
}

void DecodeThread::settle(std::unique_lock<std::mutex>& lock) {
    const uint64_t order = state_->generation;
    const std::shared_ptr<Worker> asked = worker_;
    const auto answeredWithin = [&](milliseconds time) {
        return state_->answered.wait_for(lock, time, [&] { return state_->decodeGeneration >= order; });
    };
    const Clock::time_point begin = Clock::now();
    for (;;) {
        if (answeredWithin(kLook)) return;
        const Clock::time_point now = Clock::now();
        const auto busy = now - (asked->busySince ? std::max(begin, *asked->busySince) : now);
        if (busy > kBlockPatience) asked->giveUp();
        if (busy > kGiveUpPatience || now - begin > kIdlePatience) break;
    }
    if (asked == worker_) {
        if (SideThread::leftBehind() >= SideThread::kMostLeftBehind) return;
        try {
            start();
        } catch (const std::system_error&) {
            return;  // no more threads: the one that hangs takes the order when it has come back
        }
    }
    answeredWithin(kStartPatience);
}

// Decodes until a second is there, then sleeps until half of it has gone.
bool DecodeThread::Worker::hasRoom() const { return track && !state->decodedAll && !state->queueFull; }

void DecodeThread::Worker::run() {
    std::unique_lock lock(state->mutex);
    for (;;) {
        state->decodeWork.wait(lock, [&] {
            return state->quit || left || generation != state->generation || !state->released.empty() || hasRoom();
        });
        if (state->quit || left) return;
        if (generation != state->generation)
            takeOrder(lock);
        else if (!state->released.empty())
            go(lock, track, -1);
        else
            decodeBlock(lock);
    }
}

void DecodeThread::Worker::takeOrder(std::unique_lock<std::mutex>& lock) {
    const uint64_t order = state->generation;
    go(lock, state->active ? state->current : nullptr, state->startFrame);
    if (left || *stream.givenUp) return;  // once more
    generation = order;
    state->decodeGeneration = std::max(state->decodeGeneration, order);
    state->answered.notify_all();
}

// Leaves the track for the wanted one, at `frame` unless that is negative, and closes what has been released.
void DecodeThread::Worker::go(std::unique_lock<std::mutex>& lock, const TrackPtr& wanted, int64_t frame) {
    std::vector<Stream> streams;
    std::vector<std::shared_ptr<const ByteSource>> files;
    if (*stream.givenUp) streams.push_back(std::exchange(stream, {}));
    if (track != wanted) {
        if (track) track->stream = std::exchange(stream, {});
        track = wanted;
        if (track && track->stream.source) stream = std::exchange(track->stream, {});
    }
    for (const TrackPtr& released : state->released) {
        streams.push_back(std::exchange(released->stream, {}));
        files.push_back(std::move(released->file));
    }
    state->released.clear();
    const auto file = track ? track->file : nullptr;
    busySince = Clock::now();
    lock.unlock();
    streams.clear();
    files.clear();
    if (file && !stream.source) stream.open(file, track->info);
    if (stream.source && frame >= 0) stream.source->seek(frame);
    lock.lock();
    busySince.reset();
}

void DecodeThread::Worker::decodeBlock(std::unique_lock<std::mutex>& lock) {
    busySince = Clock::now();
    lock.unlock();
    Block block{track, std::vector<float>(2 * kBlockFrames)};
    const size_t frames = stream.source ? stream.source->read(block.samples) : 0;
    block.samples.resize(2 * frames);
    lock.lock();
    busySince.reset();
    if (left || generation != state->generation) return;
    if (frames > 0) {
        if (state->queue.empty()) state->outputWork.wake();
        state->queue.push_back(std::move(block));
        state->queuedFrames += static_cast<int64_t>(frames);
        state->queueFull = state->queuedFrames >= track->sampleRate;
        return;
    }
    if (state->next && !state->nextTaken) {
        state->nextTaken = true;
        go(lock, state->next, 0);
        return;
    }
    state->decodedAll = true;
    state->outputWork.wake();
}

}  // namespace vbmp3
