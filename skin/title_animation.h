// The running title: a text that is wider than its place moves to the left, with a rest before each round, and comes
// back in from the right behind a gap. Pure arithmetic, driven by a timer.
#pragma once

namespace quenlox {

class TitleAnimation {
  public:
    static constexpr int kGap = 40;        // pixels between the end of the text and its next beginning
    static constexpr int kRestTicks = 25;  // ticks that the beginning stays before it moves

    // A new text or another place: begins with the rest.
    void begin(int textWidth, int placeWidth);
    bool moves() const { return textWidth_ > placeWidth_; }
    // One tick; true when the picture has changed. `pixels` is the way of one tick, 1 or more.
    bool tick(int pixels);
    int offset() const { return offset_; }             // how far the text has moved to the left
    int period() const { return textWidth_ + kGap; }   // after this way the second copy stands where the first began

  private:
    int textWidth_ = 0;
    int placeWidth_ = 0;
    int offset_ = 0;
    int rest_ = 0;
};

}  // namespace quenlox
