// What the main window would show.
#pragma once

#include <string>

#include "playback/main_display.h"

namespace quenlox {

class FakeDisplay : public MainDisplay {
  public:
    std::string kind, info, title, artist, length, status, playMode, time;
    double bar = 0;
    int refreshes = 0;

    void showKind(const std::string& name) override { kind = name; }
    void showInformation(const std::string& text) override { info = text; }
    void showTitle(const std::string& newTitle, const std::string& newArtist) override {
        title = newTitle;
        artist = newArtist;
    }
    void showLength(const std::string& text) override { length = text; }
    void showStatus(const std::string& word) override { status = word; }
    void showPlayMode(const std::string& word) override { playMode = word; }
    void showTime(const std::string& text) override { time = text; }
    void showBar(double fraction) override { bar = fraction; }
    void refreshDisplay() override { ++refreshes; }
};

}  // namespace quenlox
