// Writes changed lists from time to time, so that a crash or a power cut costs half a minute of work and not all since
// the start. On the user-interface thread, in the ticks of a timer; at the end of the program the lists are written as
// ever. Settings are no concern of this: they are written once, at the end.
#pragma once

#include <chrono>
#include <optional>

namespace quenlox {

class Playlists;
struct GlobalState;

class QuietSave {
  public:
    using Clock = std::chrono::steady_clock;
    // A change waits so long for others that may follow it.
    static constexpr std::chrono::seconds kWait{30};
    // Where writing is slow it takes at most this part of the time.
    static constexpr int kShare = 300;

    QuietSave(GlobalState& state, Playlists& lists) : state_(state), lists_(lists) {}

    // To be called every few seconds. `occupied`: the user drags something, or rows are just being added.
    void tick(Clock::time_point now, bool occupied);

  private:
    GlobalState& state_;
    Playlists& lists_;
    std::optional<Clock::time_point> due_;  // while there is a change
    Clock::duration wait_ = kWait;
};

}  // namespace quenlox
