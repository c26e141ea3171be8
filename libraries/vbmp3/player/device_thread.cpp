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
    KeepLibraryLoaded();
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
    s.capacity = std::max<size_t>(64, static_cast<size_t>(sampleRate) * static_cast<size_t>(s.pieceMs) / 1000);
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

// What is given to the device in one go, taken under the lock.
struct DeviceThread::Round {
    uint64_t flush = 0;  // number of the flush that it belongs to
    bool afresh = false;
    bool run = false, drain = false;  // what the owner wants
    bool more = false;                // there is sound behind the piece
    bool starved = false;
    std::vector<float> piece;
};

// How the device stands, as its thread left it. Everything of it is done without the lock: any call may hang.
struct DeviceThread::Device {
    bool running = false, drained = false, lost = false;
    size_t room = 0;
    int64_t played = 0;

    void act(Output& output, const Round& round) {
        if (round.afresh) {
            output.flush();
            running = drained = false;
        }
        if (!round.piece.empty()) {
            output.write(round.piece);
            drained = false;
        }
        if ((round.drain || round.starved) && !std::exchange(drained, true)) output.drain();
        room = output.room();
        if (round.run && !running && !(round.more && room > 0)) {
            output.start();
            running = true;
        } else if (!round.run && running) {
            output.pause();
            running = false;
        }
        played = output.played();
        lost = output.lost();
    }
};

void DeviceThread::takeRound(Shared& s, const Device& device, Round& round) {
    round.flush = s.flushes;
    round.afresh = round.flush != s.flushed;
    const auto end =
        s.queue.begin() + static_cast<std::ptrdiff_t>(round.afresh ? 0 : std::min(s.queue.size(), 2 * device.room));
    round.piece.assign(s.queue.begin(), end);
    s.queue.erase(s.queue.begin(), end);
    round.more = !s.queue.empty();
    round.run = s.running;
    round.drain = s.drain && !round.more;
    // A file stalls. A device that plays whole buffers keeps the last one back, and looked dead if it did so for long.
    round.starved =
        device.running && round.piece.empty() && !round.more && Clock::now() - s.movedAt > milliseconds(2 * s.pieceMs);
}

void DeviceThread::noteRound(Shared& s, const Device& device, const Round& round) {
    const Clock::time_point now = Clock::now();
    s.taken = (round.afresh ? 0 : s.taken) + static_cast<int64_t>(round.piece.size() / 2);
    if (round.afresh || device.played != s.heard.frames || !device.running || device.played >= s.taken) s.movedAt = now;
    s.flushed = round.flush;
    s.lost = device.lost;
    const int64_t sight = device.played + 2 * static_cast<int64_t>(s.capacity);
    s.heard = {device.played, now,
               device.played > 0 && device.running && s.running ? static_cast<double>(s.sampleRate) : 0.0,
               std::min(sight, s.taken - 1)};
    s.hungry = device.room > 0 && s.queue.empty();
    const bool ended = device.drained && device.played >= s.taken;
    if (device.lost || ended || s.queue.size() / 2 <= s.capacity / 2) s.wakeOwner();
}

// Milliseconds until the next round, unless something wakes; -1 no end.
int DeviceThread::restMs(const Shared& s, const Device& device) {
    if (!device.running || device.played >= s.taken) return -1;
    // The device tells when it wants more; what it does not tell is seen soon after.
    const int longest = 2 * s.pieceMs;
    if (!s.queue.empty()) return longest;
    return static_cast<int>(std::clamp<int64_t>((s.taken - device.played) * 1000 / s.sampleRate + 1, 5, longest));
}

void DeviceThread::run(std::shared_ptr<Shared> shared) {
    Shared& s = *shared;
    const OutputError error = s.device->open(s.sampleRate, s.settings, s.wake);
    std::unique_lock lock(s.mutex);
    s.opened = error;
    s.calling.reset();
    s.wakeOwner();
    Device device;
    Round round;
    while (error == OutputError::None && !s.close) {
        takeRound(s, device, round);
        s.calling = Clock::now();
        lock.unlock();
        device.act(*s.device, round);
        lock.lock();
        s.calling.reset();
        noteRound(s, device, round);
        if (device.room > 0 && !s.queue.empty()) continue;
        const int rest = restMs(s, device);
        lock.unlock();
        s.wake.wait(rest);
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
