// The running title: a text that is wider than its place moves to the left, with a rest before each round, and comes
// back in from the right behind a gap. TitleAnimation is its arithmetic, RunningTitle the label with its timer and its
// letters. On the user-interface thread.
#pragma once

#include "forms/control.h"
#include "forms/scale.h"
#include "platform/text_painter.h"

namespace quenlox {

class TitleAnimation {
  public:
    static constexpr int kGap = 40;        // pixels of the skin between the end of the text and its next beginning
    static constexpr int kRestTicks = 25;  // ticks that the beginning stays before it moves

    // A new text or another place: begins with the rest.
    void begin(int textWidth, int placeWidth, int gap = kGap);
    bool moves() const { return textWidth_ > placeWidth_; }
    // One tick; true when the picture has changed. `pixels` is the way of one tick, 1 or more.
    bool tick(int pixels);
    int offset() const { return offset_; }            // how far the text has moved to the left
    int period() const { return textWidth_ + gap_; }  // after this way the second copy stands where the first began

  private:
    int textWidth_ = 0;
    int placeWidth_ = 0;
    int gap_ = kGap;
    int offset_ = 0;
    int rest_ = 0;
};

class RunningTitle {
  public:
    // Both must outlive it.
    RunningTitle(Label& title, Timer& timer, TextPainter& painter) : title_(title), timer_(timer), painter_(painter) {}

    // Another text, place, type, scale or option: from the beginning, as far as it is wanted and fits into memory.
    void restart(const TextStyle& style, Scale scale, bool wanted);
    // One tick of the timer; true when the picture has changed. `speed` is 0 or more.
    bool tick(int speed) { return animation_.tick(scale_.border(1 + speed)); }
    // Draws the title, running or standing, over what is there; `on` and the type are of the screen.
    void draw(Surface& on, TextStyle style);

  private:
    Label& title_;
    Timer& timer_;
    TextPainter& painter_;
    TitleAnimation animation_;
    Surface letters_;  // white on black; empty until they are needed
    Scale scale_;
    bool running_ = false;
};

}  // namespace quenlox
