#include "forms/surface.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace quenlox {
namespace {

// The pixels of one direction that a target pixel is made of, and their weights: a triangle as wide as the target pixel
// is in the source, and at least two pixels.
struct Taps {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Taps> TapsOf(int from, int length, int count) {
    const double step = static_cast<double>(length) / count, reach = std::max(1.0, step);
    std::vector<Taps> all(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Taps& taps = all[static_cast<std::size_t>(i)];
        const double centre = from + (i + 0.5) * step - 0.5;
        const int last = std::min(static_cast<int>(std::floor(centre + reach)), from + length - 1);
        taps.first = std::max(static_cast<int>(std::ceil(centre - reach)), from);
        double sum = 0;
        for (int at = taps.first; at <= last; ++at) {
            taps.weights.push_back(static_cast<float>(reach - std::abs(at - centre)));
            sum += taps.weights.back();
        }
        for (float& weight : taps.weights) weight = static_cast<float>(weight / sum);
    }
    return all;
}

}  // namespace

Surface::Surface(int width, int height, Color fill) { resize(width, height, fill); }

void Surface::resize(int width, int height, Color color) {
    width_ = std::max(width, 0);
    height_ = std::max(height, 0);
    if (width_ == 0 || height_ == 0) width_ = height_ = 0;
    pixels_.assign(static_cast<std::size_t>(width_) * height_, ToPixel(color));
}

void Surface::fill(Color color) { std::fill(pixels_.begin(), pixels_.end(), ToPixel(color)); }

void Surface::fillRect(const Rect& where, Color color) {
    const Rect r = Intersect(where, rect());
    for (int y = r.top; y < r.bottom(); ++y) std::fill_n(pixels_.begin() + index(r.left, y), r.width, ToPixel(color));
}

void Surface::copy(const Surface& source, const Rect& part, Point to) {
    const Rect inSource = Intersect(part, source.rect());
    const Rect target =
        Intersect({to.x + inSource.left - part.left, to.y + inSource.top - part.top, inSource.width, inSource.height},
                  rect());
    if (target.empty()) return;
    const int sourceLeft = part.left + target.left - to.x;
    const int sourceTop = part.top + target.top - to.y;
    // Rows go in the order that keeps a copy onto itself from reading what it has written.
    const bool upwards = &source == this && sourceTop < target.top;
    for (int i = 0; i < target.height; ++i) {
        const int row = upwards ? target.height - 1 - i : i;
        const Pixel* from = source.pixels_.data() + source.index(sourceLeft, sourceTop + row);
        Pixel* into = pixels_.data() + index(target.left, target.top + row);
        if (into <= from) {
            std::copy_n(from, target.width, into);
        } else {
            std::copy_backward(from, from + target.width, into + target.width);
        }
    }
}

void Surface::stretch(const Surface& source, const Rect& part, const Rect& where) {
    if (part.empty() || where.empty() || source.empty()) return;
    if (&source == this) {
        const Surface still = source;
        return stretch(still, part, where);
    }
    const Rect target = Intersect(where, rect());
    for (int y = target.top; y < target.bottom(); ++y) {
        const auto fromY = part.top + static_cast<int>((std::int64_t{y} - where.top) * part.height / where.height);
        if (fromY < 0 || fromY >= source.height_) continue;
        for (int x = target.left; x < target.right(); ++x) {
            const auto fromX = part.left + static_cast<int>((std::int64_t{x} - where.left) * part.width / where.width);
            if (fromX >= 0 && fromX < source.width_) pixels_[index(x, y)] = source.pixels_[source.index(fromX, fromY)];
        }
    }
}

void Surface::stretchSmoothly(const Surface& source, const Rect& part) {
    const Rect inside = Intersect(part, source.rect());
    if (empty() || inside.empty()) return;
    const std::vector<Taps> across = TapsOf(inside.left, inside.width, width_),
                            down = TapsOf(inside.top, inside.height, height_);
    // First across, for the rows of the part, then down.
    std::vector<std::array<float, 3>> rows(static_cast<std::size_t>(inside.height) * width_);
    for (int y = 0; y < inside.height; ++y) {
        for (int x = 0; x < width_; ++x) {
            const Taps& taps = across[static_cast<std::size_t>(x)];
            const Pixel* from = source.pixels_.data() + source.index(taps.first, inside.top + y);
            auto& sum = rows[static_cast<std::size_t>(y) * width_ + x];
            for (const float weight : taps.weights) {
                const Color color = ToColor(*from++);
                sum[0] += weight * color.red, sum[1] += weight * color.green, sum[2] += weight * color.blue;
            }
        }
    }
    for (int y = 0; y < height_; ++y) {
        const Taps& taps = down[static_cast<std::size_t>(y)];
        for (int x = 0; x < width_; ++x) {
            std::array<float, 3> sum{0.5f, 0.5f, 0.5f};
            std::size_t at = static_cast<std::size_t>(taps.first - inside.top) * width_ + x;
            for (const float weight : taps.weights) {
                for (std::size_t channel = 0; channel < 3; ++channel) sum[channel] += weight * rows[at][channel];
                at += width_;
            }
            const auto byte = [](float value) { return static_cast<std::uint8_t>(std::min(value, 255.0f)); };
            pixels_[index(x, y)] = ToPixel({byte(sum[0]), byte(sum[1]), byte(sum[2])});
        }
    }
}

void Surface::line(Point from, Point to, Color color) {
    // Bresenham's algorithm.
    const int dx = std::abs(to.x - from.x), dy = -std::abs(to.y - from.y);
    const int stepX = from.x < to.x ? 1 : -1, stepY = from.y < to.y ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        set(from.x, from.y, color);
        if (from == to) return;
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            from.x += stepX;
        }
        if (twice <= dx) {
            error += dx;
            from.y += stepY;
        }
    }
}

void Surface::ellipse(const Rect& box, Color color) {
    if (box.empty()) return;
    const double a = (box.width - 1) / 2.0, b = (box.height - 1) / 2.0;
    const double centreX = box.left + a, centreY = box.top + b;
    for (int x = box.left; x < box.right(); ++x) {
        const double t = a > 0 ? (x - centreX) / a : 0;
        const double h = b * std::sqrt(std::max(0.0, 1 - t * t));
        set(x, static_cast<int>(std::lround(centreY - h)), color);
        set(x, static_cast<int>(std::lround(centreY + h)), color);
    }
    for (int y = box.top; y < box.bottom(); ++y) {
        const double t = b > 0 ? (y - centreY) / b : 0;
        const double w = a * std::sqrt(std::max(0.0, 1 - t * t));
        set(static_cast<int>(std::lround(centreX - w)), y, color);
        set(static_cast<int>(std::lround(centreX + w)), y, color);
    }
}

void Surface::fillEllipse(const Rect& box, Color color) {
    const double a = (box.width - 1) / 2.0, b = (box.height - 1) / 2.0;
    for (int y = box.top; y < box.bottom(); ++y) {
        const double t = b > 0 ? (y - box.top - b) / b : 0;
        const double w = a * std::sqrt(std::max(0.0, 1 - t * t));
        const int left = static_cast<int>(std::lround(box.left + a - w));
        const int right = static_cast<int>(std::lround(box.left + a + w));
        fillRect({left, y, right - left + 1, 1}, color);
    }
}

void Surface::blend(const Rect& where, Color color, double alpha) {
    const Rect r = Intersect(where, rect());
    const int weight = RoundHalfToEven(std::clamp(alpha, 0.0, 1.0) * 256);
    const auto mix = [weight](int under, int over) {
        return static_cast<std::uint8_t>(under + ((over - under) * weight >> 8));
    };
    for (int y = r.top; y < r.bottom(); ++y) {
        for (int x = r.left; x < r.right(); ++x) {
            Pixel& pixel = pixels_[index(x, y)];
            const Color under = ToColor(pixel);
            pixel = ToPixel({mix(under.red, color.red), mix(under.green, color.green), mix(under.blue, color.blue)});
        }
    }
}

void Surface::stamp(const Surface& mask, const Rect& part, Point to, Color color) {
    const Rect inMask = Intersect(part, mask.rect());
    const Rect target =
        Intersect({to.x + inMask.left - part.left, to.y + inMask.top - part.top, inMask.width, inMask.height}, rect());
    for (int y = target.top; y < target.bottom(); ++y) {
        const Pixel* weight = mask.pixels_.data() + mask.index(part.left + target.left - to.x, part.top + y - to.y);
        Pixel* pixel = pixels_.data() + index(target.left, y);
        for (int x = 0; x < target.width; ++x) {
            const int strength = static_cast<int>(weight[x] & 0xFF);
            if (strength == 0) continue;
            const Color under = ToColor(pixel[x]);
            const auto mix = [strength](int from, int over) {
                return static_cast<std::uint8_t>(from + ((over - from) * strength) / 255);
            };
            pixel[x] = ToPixel({mix(under.red, color.red), mix(under.green, color.green), mix(under.blue, color.blue)});
        }
    }
}

}  // namespace quenlox
