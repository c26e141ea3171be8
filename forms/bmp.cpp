#include "forms/bmp.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace quenlox {
namespace {

constexpr std::size_t kFileHeader = 14;

enum Compression : std::uint32_t { kRgb = 0, kRle8 = 1, kRle4 = 2, kBitFields = 3, kAlphaBitFields = 6 };

// Little-endian numbers at any place of a text; 0 beyond its end.
class Bytes {
  public:
    explicit Bytes(std::string_view bytes) : bytes_(bytes) {}
    std::size_t size() const { return bytes_.size(); }
    std::uint32_t u8(std::size_t at) const { return at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : 0u; }
    std::uint32_t u16(std::size_t at) const { return u8(at) | u8(at + 1) << 8; }
    std::uint32_t u32(std::size_t at) const { return u16(at) | u16(at + 2) << 16; }
    std::int32_t s32(std::size_t at) const { return static_cast<std::int32_t>(u32(at)); }

  private:
    std::string_view bytes_;
};

// One colour component of a pixel with bit fields.
class Component {
  public:
    explicit Component(std::uint32_t mask)
        : mask_(mask), shift_(mask ? std::countr_zero(mask) : 0), largest_(mask >> shift_) {}
    std::uint8_t of(std::uint32_t pixel) const {
        return largest_ == 0 ? std::uint8_t{0}
                             : static_cast<std::uint8_t>(std::uint64_t{(pixel & mask_) >> shift_} * 255 / largest_);
    }

  private:
    std::uint32_t mask_;
    int shift_;
    std::uint32_t largest_;
};

struct Header {
    int width = 0;
    int height = 0;
    bool topDown = false;
    int step = 1;  // of so many columns and rows one is taken
    std::uint32_t bits = 0;
    std::uint32_t compression = kRgb;
    std::array<std::uint32_t, 3> masks{};
    std::array<Color, 256> palette{};
    std::size_t pixels = 0;  // where they begin
};

// The three colour masks of 16 and 32 bits; those that are not in the file are the usual ones. Gives the bytes that
// masks take behind a header of version 1; in the later ones they lie inside, at the same place of the file.
std::size_t ReadMasks(const Bytes& in, Header& h, std::uint32_t headerSize) {
    if (h.compression != kBitFields && h.compression != kAlphaBitFields) {
        if (h.bits == 16) {
            h.masks = {0x7C00, 0x03E0, 0x001F};
        } else {
            h.masks = {0xFF0000, 0xFF00, 0xFF};
        }
        return 0;
    }
    for (std::size_t i = 0; i < 3; ++i) h.masks[i] = in.u32(kFileHeader + 40 + 4 * i);
    if (headerSize != 40) return 0;
    return h.compression == kAlphaBitFields ? 16 : 12;
}

// `colors` is how many the file says it has, 0 for all; `entry` the bytes of each.
void ReadPalette(const Bytes& in, Header& h, std::uint32_t colors, std::size_t at, std::size_t entry) {
    const std::uint32_t possible = 1u << h.bits;
    const std::uint32_t count = colors == 0 || colors > possible ? possible : colors;
    for (std::uint32_t i = 0; i < count; ++i, at += entry) {
        h.palette[i] = {static_cast<std::uint8_t>(in.u8(at + 2)), static_cast<std::uint8_t>(in.u8(at + 1)),
                        static_cast<std::uint8_t>(in.u8(at))};
    }
}

std::optional<Header> ReadHeader(const Bytes& in) {
    if (in.size() < kFileHeader + 12 || in.u16(0) != 0x4D42) return std::nullopt;
    Header h;
    const std::uint32_t headerSize = in.u32(kFileHeader);
    const bool core = headerSize == 12;
    std::int64_t width = 0, height = 0;
    std::uint32_t colors = 0;
    if (core) {
        width = in.u16(18);
        height = in.u16(20);
        h.bits = in.u16(24);
    } else if (headerSize >= 40 && headerSize <= 124) {
        width = in.s32(18);
        height = in.s32(22);
        h.bits = in.u16(28);
        h.compression = in.u32(30);
        colors = in.u32(46);
    } else {
        return std::nullopt;
    }
    h.topDown = height < 0;
    height = std::abs(height);
    if (width <= 0 || height == 0 || width > kLongestBmpSide || height > kLongestBmpSide) return std::nullopt;
    h.width = static_cast<int>(width);
    h.height = static_cast<int>(height);
    const bool fields = h.compression == kBitFields || h.compression == kAlphaBitFields;
    if (fields && h.bits != 16 && h.bits != 32) return std::nullopt;
    const std::size_t after = kFileHeader + headerSize + ReadMasks(in, h, headerSize);
    if (h.bits <= 8) ReadPalette(in, h, colors, after, core ? 3 : 4);
    h.pixels = in.u32(10);
    return h;
}

Surface Empty(const Header& h) {
    return {(h.width + h.step - 1) / h.step, (h.height + h.step - 1) / h.step, h.palette[0]};
}

// Plain rows, each padded to four bytes.
std::optional<Surface> ReadRows(const Bytes& in, const Header& h) {
    const std::size_t stride = (static_cast<std::size_t>(h.width) * h.bits + 31) / 32 * 4;
    // The padding of the last row is often left out.
    const std::size_t needed =
        stride * (static_cast<std::size_t>(h.height) - 1) + (static_cast<std::size_t>(h.width) * h.bits + 7) / 8;
    if (h.pixels > in.size() || in.size() - h.pixels < needed) return std::nullopt;
    Surface out = Empty(h);
    const Component red(h.masks[0]), green(h.masks[1]), blue(h.masks[2]);
    for (int y = 0; y < h.height; y += h.step) {
        const std::size_t row = h.pixels + stride * static_cast<std::size_t>(h.topDown ? y : h.height - 1 - y);
        for (int x = 0; x < h.width; x += h.step) {
            const auto column = static_cast<std::size_t>(x);
            Color color;
            switch (h.bits) {
                case 16:
                case 32: {
                    const std::uint32_t pixel = h.bits == 16 ? in.u16(row + 2 * column) : in.u32(row + 4 * column);
                    color = {red.of(pixel), green.of(pixel), blue.of(pixel)};
                    break;
                }
                case 24: color = Surface::ToColor(in.u16(row + 3 * column) | in.u8(row + 3 * column + 2) << 16); break;
                default: {
                    const std::size_t bit = column * h.bits;
                    const std::uint32_t shift = 8 - h.bits - static_cast<std::uint32_t>(bit % 8);
                    color = h.palette[in.u8(row + bit / 8) >> shift & ((1u << h.bits) - 1)];
                }
            }
            out.set(x / h.step, y / h.step, color);
        }
    }
    return out;
}

// Where the pixels of run-length coded rows go, from the bottom row upwards; what lies outside is passed over.
class RunPainter {
  public:
    explicit RunPainter(const Header& h) : header_(h), out_(Empty(h)) {}
    bool full() const { return y_ >= header_.height; }
    bool inLastRow() const { return y_ >= header_.height - 1; }
    // `count` pixels, whose indices are told by their number in the run.
    void put(std::uint32_t count, const auto& indexOf) {
        const int row = header_.height - 1 - y_, step = header_.step;
        for (std::uint32_t i = 0; i < count && x_ < header_.width; ++i, ++x_) {
            if (x_ % step == 0 && row % step == 0) out_.set(x_ / step, row / step, header_.palette[indexOf(i)]);
        }
    }
    void endRow() { move(-x_, 1); }
    void move(int right, int up) {
        x_ = std::min(x_ + right, header_.width);
        y_ += up;
    }
    Surface take() { return std::move(out_); }

  private:
    const Header& header_;
    Surface out_;
    int x_ = 0, y_ = 0;
};

// Run-length coded rows, always bottom-up. What the runs do not cover has colour 0 of the palette.
std::optional<Surface> ReadRuns(const Bytes& in, const Header& h) {
    const bool four = h.compression == kRle4;
    // Two pixels of four bits lie in a byte, the upper half first.
    const auto half = [](std::uint32_t byte, std::uint32_t i) { return i % 2 ? byte & 15 : byte >> 4; };
    RunPainter painter(h);
    std::size_t at = h.pixels;
    while (at + 1 < in.size() && !painter.full()) {
        const std::uint32_t count = in.u8(at), value = in.u8(at + 1);
        at += 2;
        if (count > 0) {
            painter.put(count, [&](std::uint32_t i) { return four ? half(value, i) : value; });
        } else if (value == 0) {
            painter.endRow();
        } else if (value == 1) {
            return painter.take();
        } else if (value == 2) {
            painter.move(static_cast<int>(in.u8(at)), static_cast<int>(in.u8(at + 1)));
            at += 2;
        } else {
            painter.put(value, [&](std::uint32_t i) { return four ? half(in.u8(at + i / 2), i) : in.u8(at + i); });
            const std::size_t length = four ? (value + 1) / 2 : value;
            at += (length + 1) / 2 * 2;
        }
    }
    // A file that ends early is damaged; one that only lacks the end mark is whole.
    if (!painter.inLastRow()) return std::nullopt;
    return painter.take();
}

std::optional<Surface> ReadPixels(const Bytes& in, const Header& h) {
    const bool bitsKnown = h.bits == 1 || h.bits == 4 || h.bits == 8 || h.bits == 16 || h.bits == 24 || h.bits == 32;
    if (!bitsKnown) return std::nullopt;
    switch (h.compression) {
        case kRgb:
        case kBitFields:
        case kAlphaBitFields: return ReadRows(in, h);
        case kRle8: return h.bits == 8 && !h.topDown ? ReadRuns(in, h) : std::nullopt;
        case kRle4: return h.bits == 4 && !h.topDown ? ReadRuns(in, h) : std::nullopt;
        default: return std::nullopt;
    }
}

}  // namespace

std::optional<Surface> ReadBmp(std::string_view bytes, std::int64_t mostPixels) {
    const Bytes in(bytes);
    const std::optional<Header> header = ReadHeader(in);
    if (!header || std::int64_t{header->width} * header->height > mostPixels) return std::nullopt;
    return ReadPixels(in, *header);
}

std::optional<Surface> ReadBmpOpacity(std::string_view bytes, std::int64_t mostPixels) {
    const Bytes in(bytes);
    std::optional<Header> header = ReadHeader(in);
    if (!header || header->bits != 32 || std::int64_t{header->width} * header->height > mostPixels) return std::nullopt;
    header->masks.fill(0xFF000000);
    return ReadPixels(in, *header);
}

std::optional<Surface> ReadBmpThinned(std::string_view bytes, std::int64_t mostPixels) {
    const Bytes in(bytes);
    std::optional<Header> header = ReadHeader(in);
    if (!header) return std::nullopt;
    const std::int64_t pixels = std::int64_t{header->width} * header->height;
    while (pixels > mostPixels * header->step * header->step) ++header->step;
    return ReadPixels(in, *header);
}

}  // namespace quenlox
