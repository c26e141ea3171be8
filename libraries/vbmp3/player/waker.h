// What the output thread sleeps on: anybody wakes it, the device too. A wake that comes before the wait is not lost.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <condition_variable>
#include <mutex>
#endif

namespace vbmp3 {

class Waker {
  public:
#ifdef _WIN32
    Waker() : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}
    ~Waker() { CloseHandle(event_); }
    Waker(const Waker&) = delete;
    Waker& operator=(const Waker&) = delete;
    void wake() { SetEvent(event_); }
    // Milliseconds, -1 for ever.
    void wait(int milliseconds) {
        WaitForSingleObject(event_, milliseconds < 0 ? INFINITE : static_cast<DWORD>(milliseconds));
    }
    HANDLE event() const { return event_; }

  private:
    HANDLE event_;
#else
    void wake() {
        {
            const std::lock_guard lock(mutex_);
            awake_ = true;
        }
        condition_.notify_one();
    }
    // Milliseconds, -1 for ever.
    void wait(int milliseconds) {
        std::unique_lock lock(mutex_);
        if (milliseconds < 0)
            condition_.wait(lock, [&] { return awake_; });
        else
            condition_.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] { return awake_; });
        awake_ = false;
    }

  private:
    std::mutex mutex_;
    std::condition_variable condition_;
    bool awake_ = false;
#endif
};

}  // namespace vbmp3
