// Points, rectangles and the units of the form layer. Windows are placed in twips (1/1440 inch), everything inside a
// window in pixels.
#pragma once

#include <cmath>
#include <cstdint>

namespace quenlox {

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    int right() const { return left + width; }
    int bottom() const { return top + height; }
    bool empty() const { return width <= 0 || height <= 0; }
    bool contains(Point p) const { return p.x >= left && p.x < right() && p.y >= top && p.y < bottom(); }
    bool operator==(const Rect&) const = default;
};

Rect Intersect(const Rect& a, const Rect& b);  // empty (all zero) when they do not meet
Rect Unite(const Rect& a, const Rect& b);      // an empty one does not count

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const Color&) const = default;
};

// Twips for one pixel: 15 at 96 dots per inch, 12 at 120, 10 at 144.
struct TwipsPerPixel {
    double x = 15;
    double y = 15;
};

// Rounds to the nearest integer, halves to the even one; the rounding of every conversion of a fraction here. Values
// beyond the range of int are brought to its ends, NaN gives 0.
int RoundHalfToEven(double value);

inline int TwipsToPixels(int twips, double perPixel) { return RoundHalfToEven(twips / perPixel); }
inline int PixelsToTwips(int pixels, double perPixel) { return RoundHalfToEven(pixels * perPixel); }

}  // namespace quenlox
