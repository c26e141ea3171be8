#include "libraries/vbmp3/decode_thread.h"

#include <algorithm>
#include <utility>

namespace vbmp3 {
namespace {

constexpr size_t kBlockFrames = 1152;

}  // namespace

DecodeThread::DecodeThread(PlayerState& state) : state_(state), thread_([this] { run(); }) {}

DecodeThread::~DecodeThread() { thread_.join(); }

// Decodes until a second is there, then sleeps until half of it has gone.
bool DecodeThread::hasRoom() const { return track_ && !state_.decodedAll && !state_.queueFull; }

void DecodeThread::run() {
    std::unique_lock lock(state_.mutex);
    for (;;) {
        state_.decodeWork.wait(lock, [&] { return state_.quit || generation_ != state_.generation || hasRoom(); });
        if (state_.quit) return;
        if (generation_ == state_.generation) {
            decodeBlock(lock);
            continue;
        }
        generation_ = state_.generation;
        TrackPtr old = std::exchange(track_, state_.active ? state_.current : nullptr);
        const int64_t start = state_.startFrame;
        lock.unlock();
        if (track_) track_->source->seek(start);
        old.reset();  // closes its file when nobody else has it
        lock.lock();
        state_.decodeGeneration = std::max(state_.decodeGeneration, generation_);
        state_.answered.notify_all();
    }
}

void DecodeThread::decodeBlock(std::unique_lock<std::mutex>& lock) {
    lock.unlock();
    Block block{track_, std::vector<float>(2 * kBlockFrames)};
    const size_t frames = track_->source->read(block.samples);
    block.samples.resize(2 * frames);
    lock.lock();
    if (generation_ != state_.generation) return;
    if (frames > 0) {
        if (state_.queue.empty()) state_.outputWork.wake();
        state_.queue.push_back(std::move(block));
        state_.queuedFrames += int64_t(frames);
        state_.queueFull = state_.queuedFrames >= track_->sampleRate;
        return;
    }
    if (state_.next && !state_.nextTaken) {
        state_.nextTaken = true;
        track_ = state_.next;
        lock.unlock();
        track_->source->seek(0);
        lock.lock();
        return;
    }
    state_.decodedAll = true;
    state_.outputWork.wake();
}

}  // namespace vbmp3
