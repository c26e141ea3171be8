// The thread that owns the decoder: reads the ordered track, and the one after it, into the queue, up to one second
// ahead. Waits for nothing but its file and room in the queue.
#pragma once

#include <thread>

#include "libraries/vbmp3/player_state.h"

namespace vbmp3 {

class DecodeThread {
  public:
    explicit DecodeThread(PlayerState& state);
    ~DecodeThread();  // state.quit must be set

  private:
    void run();
    bool hasRoom() const;  // mutex held
    void decodeBlock(std::unique_lock<std::mutex>& lock);

    PlayerState& state_;
    uint64_t generation_ = 0;
    TrackPtr track_;
    std::thread thread_;
};

}  // namespace vbmp3
