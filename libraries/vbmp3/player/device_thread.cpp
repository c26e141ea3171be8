#include "libraries/vbmp3/player/device_thread.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "libraries/vbmp3/player/running_count.h"
#include "libraries/vbmp3/player/side_thread.h"

namespace vbmp3 {
namespace {

using Clock = RunningCount::Clock;
using std::chrono::milliseconds;

constexpr milliseconds kClosePatience{300};  // so that the next one can open a device that only one may have
constexpr int kLongestPieceMs = 50;

std::atomic<int> leftBehindCount = 0;

}  // namespace

struct DeviceThread::Shared {
    explicit Shared(std::unique_ptr<Output> output) : device(std::move(output)) {}

    std::unique_ptr<Output> device;  // the thread's alone
    Waker wake;                      // wakes the thread; the device does so too

    std::mutex mutex;  // of all below; never held during a call of the device
    std::condition_variable ended;

    // The owner's orders.
    Waker* owner = nullptr;  // null once it has gone
    int sampleRate = 0;
    OutputSettings settings;
    int pieceMs = kLongestPieceMs;
    size_t capacity = 0;       // frames of the queue
    std::vector<float> queue;  // on its way to the device
    uint64_t flushes = 0;
    bool running = false;
    bool drain = false;
    bool close = false;
    bool leftBehind = false;

    // The thread's answers.
    std::optional<OutputError> opened;
    bool closed = false;
    uint64_t flushed = 0;  // the flush after which all the following was found
    RunningCount heard;
    int64_t shown = 0;  // of it; never goes back
    int64_t taken = 0;  // given to the device
    bool hungry = true;
    bool lost = false;
    std::optional<Clock::time_point> calling;  // since then the thread has been inside the device
    Clock::time_point movedAt{};               // or there was nothing to move

    void wakeOwner() {
        if (owner != nullptr) owner->wake();
    }
    int64_t show() {
        if (flushed == flushes) shown = std::max(shown, heard.now());
        return shown;
    }
};

DeviceThread::DeviceThread(std::unique_ptr<Output> device, milliseconds patience)
    : shared_(std::make_shared<Shared>(std::move(device))), audible_(shared_->device->audible()), patience_(patience) {}

DeviceThread::~DeviceThread() {
    if (!thread_.joinable()) return;
    Shared& s = *shared_;
    std::unique_lock lock(s.mutex);
    s.owner = nullptr;
    s.close = true;
    s.wake.wake();
    const auto patience = s.calling ? *s.calling + kClosePatience : Clock::now() + kClosePatience;
    if (s.ended.wait_until(lock, patience, [&] { return s.closed; })) {
        lock.unlock();
        thread_.join();
        return;
    }
    s.leftBehind = true;
    ++leftBehindCount;
    keepLibraryLoaded();
    thread_.detach();
}

OutputError DeviceThread::open(int sampleRate, const OutputSettings& settings, Waker& waker) {
    Shared& s = *shared_;
    s.owner = &waker;
    s.sampleRate = sampleRate;
    // A fifth waits here, four fifths are with the device: together they are as long as was ordered.
    s.pieceMs = std::clamp(settings.bufferMs / 5, 10, kLongestPieceMs);
    s.settings = settings;
    s.settings.bufferMs = std::max(settings.bufferMs - s.pieceMs, s.pieceMs);
    s.capacity = std::max<size_t>(64, size_t(sampleRate) * size_t(s.pieceMs) / 1000);
    s.calling = Clock::now();
    try {
        thread_ = std::thread(run, shared_);
    } catch (const std::system_error&) {
        s.opened = OutputError::NoDevice;  // no more threads
    }
    return OutputError::None;
}

std::optional<OutputError> DeviceThread::opened() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->opened;
}

size_t DeviceThread::room() {
    const std::lock_guard lock(shared_->mutex);
    return shared_->capacity - shared_->queue.size() / 2;
}

void DeviceThread::write(std::span<const float> stereo) {
    const std::lock_guard lock(shared_->mutex);
    // Until now there was nothing to move, perhaps for long: a file may stall.
    if (shared_->queue.empty() && shared_->heard.frames >= shared_->taken) shared_->movedAt = Clock::now();
    shared_->queue.insert(shared_->queue.end(), stereo.begin(), stereo.end());
    shared_->drain = false;
    if (std::exchange(shared_->hungry, false)) shared_->wake.wake();
}

void DeviceThread::start() {
    const std::lock_guard lock(shared_->mutex);
    shared_->running = true;
    shared_->movedAt = Clock::now();
    shared_->wake.wake();
}

void DeviceThread::pause() {
    const std::lock_guard lock(shared_->mutex);
    shared_->heard.frames = shared_->show();
    shared_->heard.rate = 0;
    shared_->running = false;
    shared_->wake.wake();
}

void DeviceThread::drain() {
    const std::lock_guard lock(shared_->mutex);
    shared_->drain = true;
    shared_->wake.wake();
}

void DeviceThread::flush() {
    const std::lock_guard lock(shared_->mutex);
    shared_->queue.clear();
    ++shared_->flushes;
    shared_->shown = 0;
    shared_->running = false;
    shared_->drain = false;
    shared_->wake.wake();
}

int64_t DeviceThread::played() {
    const std::lock_guard lock(shared_->mutex);
    return shared_->show();
}

bool DeviceThread::lost() {
    const std::lock_guard lock(shared_->mutex);
    const Shared& s = *shared_;
    const bool due = s.running && (!s.queue.empty() || s.heard.frames < s.taken);
    return s.lost || (due && Clock::now() - s.movedAt > patience_);
}

int DeviceThread::leftBehind() { return leftBehindCount; }

void DeviceThread::run(std::shared_ptr<Shared> shared) {
    Shared& s = *shared;
    const OutputError error = s.device->open(s.sampleRate, s.settings, s.wake);
    std::unique_lock lock(s.mutex);
    s.opened = error;
    s.calling.reset();
    s.wakeOwner();
    bool running = false, drained = false;  // the device
    size_t room = 0;
    std::vector<float> piece;
    while (error == OutputError::None && !s.close) {
        const uint64_t flush = s.flushes;
        const bool afresh = flush != s.flushed;
        const size_t count = afresh ? 0 : std::min(s.queue.size(), 2 * room);
        piece.assign(s.queue.begin(), s.queue.begin() + std::ptrdiff_t(count));
        s.queue.erase(s.queue.begin(), s.queue.begin() + std::ptrdiff_t(count));
        const bool more = !s.queue.empty();
        const bool toRun = s.running, toDrain = s.drain && !more;
        // A file stalls. A device that plays whole buffers keeps the last one back, and looked dead if it did so for
        // long.
        const bool starved = running && count == 0 && !more && Clock::now() - s.movedAt > milliseconds(2 * s.pieceMs);
        s.calling = Clock::now();
        lock.unlock();

        if (afresh) {
            s.device->flush();
            running = drained = false;
        }
        if (count > 0) {
            s.device->write(piece);
            drained = false;
        }
        if ((toDrain || starved) && !std::exchange(drained, true)) s.device->drain();
        room = s.device->room();
        if (toRun && !running && !(more && room > 0)) {
            s.device->start();
            running = true;
        } else if (!toRun && running) {
            s.device->pause();
            running = false;
        }
        const int64_t played = s.device->played();
        const bool lost = s.device->lost();

        lock.lock();
        s.calling.reset();
        const Clock::time_point now = Clock::now();
        s.taken = (afresh ? 0 : s.taken) + int64_t(count / 2);
        if (afresh || played != s.heard.frames || !running || played >= s.taken) s.movedAt = now;
        s.flushed = flush;
        s.lost = lost;
        const int64_t sight = played + 2 * int64_t(s.capacity);
        s.heard = {played, now, played > 0 && running && s.running ? double(s.sampleRate) : 0.0,
                   std::min(sight, s.taken - 1)};
        s.hungry = room > 0 && s.queue.empty();
        const bool ended = drained && played >= s.taken;
        if (lost || ended || s.queue.size() / 2 <= s.capacity / 2) s.wakeOwner();
        if (room > 0 && !s.queue.empty()) continue;
        int wait = -1;
        if (running && played < s.taken) {
            // The device tells when it wants more; what it does not tell is seen soon after.
            wait = 2 * s.pieceMs;
            if (s.queue.empty()) wait = int(std::clamp<int64_t>((s.taken - played) * 1000 / s.sampleRate + 1, 5, wait));
        }
        lock.unlock();
        s.wake.wait(wait);
        lock.lock();
    }
    s.calling = Clock::now();
    lock.unlock();
    s.device.reset();
    lock.lock();
    s.calling.reset();
    s.closed = true;
    if (s.leftBehind) --leftBehindCount;
    s.ended.notify_all();
}

}  // namespace vbmp3
