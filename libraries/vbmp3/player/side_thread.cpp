#include "libraries/vbmp3/player/side_thread.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#endif

namespace vbmp3 {
namespace {

std::atomic<int> leftBehindCount = 0;

}  // namespace

void KeepLibraryLoaded() {
#ifdef _WIN32
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&KeepLibraryLoaded), &module);
#endif
}

struct SideThread::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    bool ended = false;
    bool leftBehind = false;
};

SideThread::SideThread(std::function<void()> work, std::chrono::milliseconds patience)
    : shared_(std::make_shared<Shared>()),
      patience_(patience),
      thread_([shared = shared_, work = std::move(work)]() mutable {
          work();
          work = nullptr;  // with all that it owned
          const std::lock_guard lock(shared->mutex);
          shared->ended = true;
          if (shared->leftBehind) --leftBehindCount;
          shared->changed.notify_all();
      }) {}

SideThread::~SideThread() {
    if (!thread_.joinable()) return;
    if (endsWithin(patience_))
        thread_.join();
    else
        leaveBehind();
}

bool SideThread::endsWithin(std::chrono::milliseconds time) const {
    std::unique_lock lock(shared_->mutex);
    return shared_->changed.wait_for(lock, time, [&] { return shared_->ended; });
}

void SideThread::leaveBehind() {
    {
        const std::lock_guard lock(shared_->mutex);
        if (!shared_->ended) {
            shared_->leftBehind = true;
            ++leftBehindCount;
            KeepLibraryLoaded();
            thread_.detach();
            return;
        }
    }
    thread_.join();
}

int SideThread::leftBehind() { return leftBehindCount; }

}  // namespace vbmp3
