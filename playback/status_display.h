// How playback is told to the user: the status word, the play mode, the time and the filled part of the seek bar.
// Reads the shared state, writes to the main window. On the user-interface thread.
#pragma once

#include <cstdint>
#include <string>

namespace quenlox {

class MainDisplay;
struct GlobalState;

std::string StatusWord(int status, int pitchMode);
std::string PlayModeWord(int playMode);  // empty for a number that is no mode

class StatusDisplay {
  public:
    StatusDisplay(const GlobalState& state, MainDisplay& display) : state_(state), display_(display) {}

    void ShowStatus(int code = 0);  // 0: PlayerStatus
    void ShowPlayMode();
    // The position or, in remaining mode, what is left; while an encode runs the label is left to it.
    void ShowTime(std::int32_t seconds);

  private:
    const GlobalState& state_;
    MainDisplay& display_;
};

}  // namespace quenlox
