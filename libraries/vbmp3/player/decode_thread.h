// The thread that owns the decoder: reads the ordered track, and the one after it, into the queue, up to one second
// ahead, and closes files that are no longer wanted. Waits for nothing but its file and room in the queue.
//
// A file that does not answer is waited for by nobody else: the thread is left behind with the decoder that hangs, and
// a new one takes the next order. When too many hang the last of them takes it once it has come back.
#pragma once

#include <memory>
#include <mutex>

#include "libraries/vbmp3/player/player_state.h"
#include "libraries/vbmp3/player/side_thread.h"

namespace vbmp3 {

class DecodeThread {
  public:
    explicit DecodeThread(std::shared_ptr<PlayerState> state);
    ~DecodeThread();  // sets state.quit

    // Both with the mutex held, right after a new order.
    // What the decoder has been at for long is given up in favour of the order.
    void hurry();
    // Waits until the order has been taken over, for a file 80 ms at most: afterwards nobody else holds one that was
    // released, save a thread that was left behind.
    void settle(std::unique_lock<std::mutex>& lock);

  private:
    struct Worker;
    void start();

    std::shared_ptr<PlayerState> state_;
    std::shared_ptr<Worker> worker_;
    std::unique_ptr<SideThread> thread_;
};

}  // namespace vbmp3
