// A 32-bit picture in memory with the drawing that skins, panel and lyrics need. Every operation is clipped; a block
// may be copied onto itself. Portable, so that tests compare pixels.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "forms/geometry.h"

namespace quenlox {

class Surface {
  public:
    using Pixel = std::uint32_t;  // 0x00RRGGBB

    Surface() = default;
    Surface(int width, int height, Color fill = {});  // sizes below 0 count as 0

    int width() const { return width_; }
    int height() const { return height_; }
    bool empty() const { return pixels_.empty(); }
    Rect rect() const { return {0, 0, width_, height_}; }
    std::span<const Pixel> pixels() const { return pixels_; }  // rows from the top, no padding
    std::span<Pixel> pixels() { return pixels_; }
    Pixel at(int x, int y) const { return rect().contains({x, y}) ? pixels_[index(x, y)] : 0; }
    void set(int x, int y, Color color) {
        if (rect().contains({x, y})) pixels_[index(x, y)] = ToPixel(color);
    }

    void resize(int width, int height, Color fill = {});           // the content is lost
    void reserve(std::size_t pixels) { pixels_.reserve(pixels); }  // no size up to it takes memory any more
    void fill(Color color);
    void fillRect(const Rect& where, Color color);
    // Copies `part` of `source` to `to`.
    void copy(const Surface& source, const Rect& part, Point to);
    void copy(const Surface& source, Point to) { copy(source, source.rect(), to); }
    // Copies `part` of `source` stretched to `where`, nearest neighbour.
    void stretch(const Surface& source, const Rect& part, const Rect& where);
    // Fills this picture with `part` of `source`, which lies within it; every pixel is the mean of what it covers, and
    // larger pictures have soft edges. For photographs.
    void stretchSmoothly(const Surface& source, const Rect& part);
    // Fills `where` with what `source` looks like when each of its pixels takes `ratio` pixels of this picture and its
    // corner lies at `corner`, counted in its own pixels. Whole ratios keep every pixel sharp; between them a pixel is
    // the mean of what it covers, and at the borders of `source` of what was there before. Any part of it gives what the
    // whole would.
    struct Ratio {
        int numerator = 1, denominator = 1;  // both 1 or more; together from 1/3 to 4
    };
    void enlarge(const Surface& source, Point corner, Ratio ratio, const Rect& where);
    void line(Point from, Point to, Color color);  // both ends drawn
    void ellipse(const Rect& box, Color color);    // outline
    void fillEllipse(const Rect& box, Color color);
    void blend(const Rect& where, Color color, double alpha);  // alpha 0 (nothing) to 1 (all)
    // Mixes `color` in at `to` as strongly as `part` of `mask` is light: black leaves a pixel alone, white replaces it.
    // With a text drawn white on black it is that text in any colour on any ground.
    void stamp(const Surface& mask, const Rect& part, Point to, Color color);

    static Pixel ToPixel(Color c) { return Pixel{c.red} << 16 | Pixel{c.green} << 8 | c.blue; }
    static Color ToColor(Pixel p) {
        return {static_cast<std::uint8_t>(p >> 16), static_cast<std::uint8_t>(p >> 8), static_cast<std::uint8_t>(p)};
    }
    bool operator==(const Surface&) const = default;

  private:
    void repeat(const Surface& source, Point corner, int times, const Rect& where);
    std::size_t index(int x, int y) const { return static_cast<std::size_t>(y) * width_ + x; }

    int width_ = 0;
    int height_ = 0;
    std::vector<Pixel> pixels_;
};

}  // namespace quenlox
