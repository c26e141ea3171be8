// What playback shows in the main window; FormTop implements it.
#pragma once

#include <string>

namespace quenlox {

class MainDisplay {
  public:
    virtual ~MainDisplay() = default;
    virtual void showKind(const std::string& name) = 0;          // "MP3"
    virtual void showInformation(const std::string& text) = 0;   // an Information, rendered
    virtual void showTitle(const std::string& title, const std::string& artist) = 0;
    virtual void showLength(const std::string& text) = 0;        // "03:45"
    virtual void showStatus(const std::string& word) = 0;        // " PLAY↑"
    virtual void showPlayMode(const std::string& word) = 0;      // "SINGLE"
    virtual void showTime(const std::string& text) = 0;          // "00:42"
    virtual void showBar(double fraction) = 0;                   // filled part of the seek bar, 0 clears it
    virtual void refreshDisplay() = 0;                           // after an open, a stop or a step
};

}  // namespace quenlox
