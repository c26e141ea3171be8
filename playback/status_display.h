// How playback is told to the user: the status word, the play mode, the time, the filled part of the seek bar, and the
// line that tells of the track. Reads the shared state, writes to the main window. On the user-interface thread.
#pragma once

#include <cstdint>
#include <string>

namespace quenlox {

class MainDisplay;
struct GlobalState;

std::string StatusWord(int status, int pitchMode);
std::string PlayModeWord(int playMode);  // empty for a number that is no mode

// What the information label says of the track that is open.
struct Information {
    std::string format;          // "MPEG1 Layer3 44.1kHz 128kbps VBR", or why the track cannot be played
    std::string lyrics;          // where its lyrics come from: "+L", "+W"
    bool withoutDevice = false;  // it plays, and there is no sound device
    std::string notice;          // something of the program, in place of all this for a while

    std::string text() const;
    bool operator==(const Information&) const = default;
};

class StatusDisplay {
  public:
    StatusDisplay(const GlobalState& state, MainDisplay& display) : state_(state), display_(display) {}

    void ShowStatus(int code = 0);  // 0: PlayerStatus
    void ShowPlayMode();
    // The position or, in remaining mode, what is left; while an encode runs the label is left to it.
    void ShowTime(std::int32_t seconds);

    // The parts of the information label. Another format is another track: no lyrics yet, and a device.
    void showFormat(const std::string& format) { showInformation({format, {}, false, {}}); }
    void showLyricsMarker(const std::string& marker);
    void showDevice(bool there);
    // Shown instead, until there is something else to tell; an empty one ends it.
    void showNotice(const std::string& text);

  private:
    void showInformation(Information information);

    const GlobalState& state_;
    MainDisplay& display_;
    Information information_;
};

}  // namespace quenlox
