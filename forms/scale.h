// How large a skin is shown: pixels of the screen for one pixel of the skin. Places of the skin stay whole numbers; a
// border between two pixels goes to the nearest border of the screen, so that neighbours stay neighbours.
#pragma once

#include <algorithm>

#include "forms/geometry.h"

namespace quenlox {

class Scale {
  public:
    static constexpr int kLeast = 100, kMost = 400;  // percent

    constexpr Scale() = default;
    // Brought into the range.
    constexpr explicit Scale(int percent) : percent_(std::clamp(percent, kLeast, kMost)) {}
    // What the resolution of a monitor asks for: 100 at 96 dots per inch.
    static Scale Of(TwipsPerPixel twips) { return Scale(RoundHalfToEven(1500.0 / twips.x)); }

    constexpr int percent() const { return percent_; }
    double factor() const { return percent_ / 100.0; }
    bool operator==(const Scale&) const = default;

    // To the screen.
    int border(int at) const { return Floor(at * percent_ + 50, 100); }
    Point out(Point at) const { return {border(at.x), border(at.y)}; }
    Rect out(const Rect& r) const {
        const Point from = out(Point{r.left, r.top});
        return {from.x, from.y, border(r.right()) - from.x, border(r.bottom()) - from.y};
    }
    Size out(Size size) const { return {border(size.width), border(size.height)}; }
    // All pixels that a part of `r` falls on.
    Rect covering(const Rect& r) const {
        const int left = Floor(r.left * percent_, 100), top = Floor(r.top * percent_, 100);
        return {left, top, Floor(r.right() * percent_ + 99, 100) - left, Floor(r.bottom() * percent_ + 99, 100) - top};
    }

    // From the screen.
    int in(int pixel) const { return Floor(pixel * 200 + 100, 2 * percent_); }  // the one that its middle lies in
    Point in(Point pixel) const { return {in(pixel.x), in(pixel.y)}; }
    Size in(Size size) const {
        return {Floor(size.width * 200 + percent_, 2 * percent_), Floor(size.height * 200 + percent_, 2 * percent_)};
    }
    // All of the skin that `r` shows a part of.
    Rect behind(const Rect& r) const {
        const int left = Floor(r.left * 100, percent_), top = Floor(r.top * 100, percent_);
        return {left, top, Floor(r.right() * 100 + percent_ - 1, percent_) - left,
                Floor(r.bottom() * 100 + percent_ - 1, percent_) - top};
    }

  private:
    static constexpr int Floor(int value, int by) { return value / by - (value % by < 0 ? 1 : 0); }

    int percent_ = 100;
};

}  // namespace quenlox
