// What the panel animation and the lyrics see of the main window: a place to draw on and a timer, no more. On the
// user-interface thread.
#pragma once

#include "lyrics/lyrics_display.h"
#include "skin/form_top.h"
#include "speana/panel_animation.h"

namespace quenlox {

// Display B.
class PanelOfMain : public PanelScreen {
  public:
    explicit PanelOfMain(FormTop& top) : top_(top) {}
    bool seen() const override { return top_.DisplayB.visible(); }
    Color accent() const override { return top_.mainLabel[kTimeLabel].foreColor(); }
    void show(const Surface& frame) override;
    void setInterval(int milliseconds) override { top_.Timer2.setInterval(milliseconds); }

  private:
    FormTop& top_;
};

class LyricsOfMain : public LyricsScreen {
  public:
    LyricsOfMain(FormTop& top, Form& lyricsWindow) : top_(top), lyricsWindow_(lyricsWindow) {}
    bool seen() const override { return top_.visible(); }
    bool hasPanel() const override { return top_.LyricsPicture.visible(); }
    LyricsPanelLook panelLook() const override;
    Surface& panel() override { return top_.LyricsPicture.surface(); }
    void panelDrawn(const std::string& line) override;
    std::string title() const override { return top_.mainLabel[kTitleLabel].caption(); }
    void setInterval(int milliseconds) override { top_.Timer6.setInterval(milliseconds); }
    void showLyricsWindow() override { top_.showWindow(lyricsWindow_, false); }

  private:
    FormTop& top_;
    Form& lyricsWindow_;
};

}  // namespace quenlox
