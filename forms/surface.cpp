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

// Three channels apart from each other in one number, with room for sums of up to 4096 of them.
constexpr int kFullWeight = 64;  // of one direction
constexpr int kLane = 21;

constexpr std::uint64_t Spread(Surface::Pixel p) {
    return std::uint64_t{p >> 16 & 0xFF} << 2 * kLane | std::uint64_t{p >> 8 & 0xFF} << kLane | (p & 0xFF);
}

constexpr Surface::Pixel Gathered(std::uint64_t sum) {
    constexpr int kShift = 12;  // of a weight of 64 times 64
    constexpr std::uint64_t kHalf = 1u << (kShift - 1);
    const auto lane = [&](int at) { return static_cast<Surface::Pixel>(((sum >> at) + kHalf) >> kShift & 0xFF); };
    return lane(2 * kLane) << 16 | lane(kLane) << 8 | lane(0);
}

// The pixels of a source that one target pixel covers, in one direction; the weights of those that there are, and of
// what lies beside the source, make up the whole.
struct Cover {
    int first = 0, count = 0;
    std::array<std::uint8_t, 4> weights{};
    int beside = 0;
};

std::vector<Cover> CoversOf(int from, int count, int corner, int length, Surface::Ratio ratio) {
    const auto floor = [](std::int64_t value, std::int64_t by) { return value / by - (value % by < 0 ? 1 : 0); };
    std::vector<Cover> all(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Cover& cover = all[static_cast<std::size_t>(i)];
        // In parts of which a source pixel has `numerator` and a target pixel `denominator`.
        const std::int64_t begin =
            (std::int64_t{from} + i) * ratio.denominator - std::int64_t{corner} * ratio.numerator;
        const std::int64_t end = begin + ratio.denominator;
        const auto share = [&](std::int64_t at) {
            return static_cast<int>((at - begin) * kFullWeight / ratio.denominator);
        };
        cover.beside = kFullWeight;
        cover.first = static_cast<int>(std::max<std::int64_t>(floor(begin, ratio.numerator), 0));
        for (int at = cover.first; at < length && cover.count < 4; ++at) {
            const std::int64_t left = std::max(begin, std::int64_t{at} * ratio.numerator);
            const std::int64_t right = std::min(end, (std::int64_t{at} + 1) * ratio.numerator);
            if (left >= right) break;
            const int weight = share(right) - share(left);
            cover.weights[static_cast<std::size_t>(cover.count++)] = static_cast<std::uint8_t>(weight);
            cover.beside -= weight;
        }
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
    const Rect target = Intersect(
        {to.x + inSource.left - part.left, to.y + inSource.top - part.top, inSource.width, inSource.height}, rect());
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

// Whole ratios: each pixel a square of so many.
void Surface::repeat(const Surface& source, Point corner, int times, const Rect& where) {
    const Rect covered{corner.x * times, corner.y * times, source.width_ * times, source.height_ * times};
    const Rect target = Intersect(where, covered);
    if (times == 1) {
        return copy(source, {target.left - corner.x, target.top - corner.y, target.width, target.height},
                    {target.left, target.top});
    }
    for (int y = target.top; y < target.bottom(); ++y) {
        Pixel* pixel = pixels_.data() + index(target.left, y);
        if (y > target.top && y % times != 0) {
            std::copy_n(pixel - width_, target.width, pixel);
            continue;
        }
        const Pixel* from = source.pixels_.data() + source.index(target.left / times - corner.x, y / times - corner.y);
        for (int x = 0, step = target.left % times; x < target.width; ++x) {
            pixel[x] = *from;
            if (++step == times) step = 0, ++from;
        }
    }
}

void Surface::enlarge(const Surface& source, Point corner, Ratio ratio, const Rect& where) {
    const Rect target = Intersect(where, rect());
    if (target.empty() || source.empty()) return;
    if (ratio.denominator == 1) return repeat(source, corner, ratio.numerator, target);
    const std::vector<Cover> across = CoversOf(target.left, target.width, corner.x, source.width_, ratio),
                             down = CoversOf(target.top, target.height, corner.y, source.height_, ratio);
    const int first = across.front().first;
    const int needed = std::max(std::min(across.back().first + across.back().count, source.width_) - first, 0);
    std::vector<std::uint64_t> row(static_cast<std::size_t>(needed));
    for (int y = 0; y < target.height; ++y) {
        const Cover& rows = down[static_cast<std::size_t>(y)];
        if (rows.count == 0) continue;
        Pixel* pixel = pixels_.data() + index(target.left, target.top + y);
        const bool same = y > 0 && rows.beside == 0 && down[static_cast<std::size_t>(y) - 1].beside == 0 &&
                          rows.first == down[static_cast<std::size_t>(y) - 1].first &&
                          rows.weights == down[static_cast<std::size_t>(y) - 1].weights;
        if (same && across.front().beside == 0 && across.back().beside == 0) {
            std::copy_n(pixel - width_, target.width, pixel);
            continue;
        }
        std::ranges::fill(row, 0);
        for (int i = 0; i < rows.count; ++i) {
            const Pixel* from = source.pixels_.data() + source.index(first, rows.first + i);
            const std::uint64_t weight = rows.weights[static_cast<std::size_t>(i)];
            for (int x = 0; x < needed; ++x) row[static_cast<std::size_t>(x)] += weight * Spread(from[x]);
        }
        for (int x = 0; x < target.width; ++x) {
            const Cover& columns = across[static_cast<std::size_t>(x)];
            if (columns.count == 0) continue;
            std::uint64_t sum = 0;
            for (int i = 0; i < columns.count; ++i) {
                sum += columns.weights[static_cast<std::size_t>(i)] *
                       row[static_cast<std::size_t>(columns.first - first + i)];
            }
            const int inside = (kFullWeight - columns.beside) * (kFullWeight - rows.beside);
            sum += static_cast<std::uint64_t>(kFullWeight * kFullWeight - inside) * Spread(pixel[x]);
            pixel[x] = Gathered(sum);
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
