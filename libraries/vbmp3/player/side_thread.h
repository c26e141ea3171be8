// A thread for work that may never return, because it is inside a file or a driver that does not answer. The work owns
// whatever it touches. Nobody waits for it longer than he wants to: then it is left behind and goes on alone.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace vbmp3 {

// The code must stay in memory as long as a thread that was left behind is inside it.
void KeepLibraryLoaded();

class SideThread {
  public:
    // `work` must not throw. `patience`: how long the destructor waits for its end.
    SideThread(std::function<void()> work, std::chrono::milliseconds patience);
    ~SideThread();  // afterwards the work has ended and all that it owned is gone, or it has been left behind

    // Waits; false when the work goes on after that time.
    bool endsWithin(std::chrono::milliseconds time) const;
    void leaveBehind();

    // How many have been left behind and still hang, in the whole process. Beyond kMostLeftBehind nobody should add to
    // them.
    static int leftBehind();
    static constexpr int kMostLeftBehind = 8;

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_;
    std::chrono::milliseconds patience_;
    std::thread thread_;
};

}  // namespace vbmp3
