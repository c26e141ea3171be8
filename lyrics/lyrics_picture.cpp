#include "lyrics/lyrics_picture.h"

#include <algorithm>

#include "platform/text_painter.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kCurrentRow = LyricsLines::kCurrentRow, kExtraRow = LyricsLines::kExtraRow;
constexpr int kNextRow = kCurrentRow + 1;
constexpr int kMargin = 4;             // pixels left and right
constexpr double kSmallestPoints = 6;  // of a line made to fit
constexpr double kVeil = 0.65;         // of the background colour over a picture
constexpr Color kSungOnLight{0, 96, 208}, kSungOnDark{255, 192, 64};

const std::string& RowText(const LyricsLines& lines, int row) { return lines.rows[static_cast<std::size_t>(row)]; }

std::string StampText(std::int32_t ms) {
    if (ms < 0) return {};
    return "[" + TwoDigits(ms / 60000) + ":" + TwoDigits(ms / 1000 % 60) + "] ";
}

Color Mix(Color a, Color b) {
    const auto half = [](std::uint8_t x, std::uint8_t y) { return static_cast<std::uint8_t>((x + y) / 2); };
    return {half(a.red, b.red), half(a.green, b.green), half(a.blue, b.blue)};
}

Color SungColor(Color back) {
    const int brightness = (back.red * 299 + back.green * 587 + back.blue * 114) / 1000;
    return brightness >= 128 ? kSungOnLight : kSungOnDark;
}

// Pixels of the current line that have been sung.
int SungWidth(TextPainter& painter, const TextStyle& style, const std::string& line, const LyricsLines& lines) {
    const auto whole = static_cast<std::size_t>(lines.progressBytes);
    if (whole >= line.size()) return painter.measure(line, style).width;
    if (whole == 0 && lines.progress == 0) return 0;
    // The library counts in whole characters; the rest of the way is the part of the character being sung.
    std::size_t next = whole + 1;
    while (next < line.size() && (static_cast<unsigned char>(line[next]) & 0xC0) == 0x80) ++next;
    const double exact = lines.progress * static_cast<double>(line.size()) / 1000.0;
    const double part = std::clamp((exact - static_cast<double>(whole)) / static_cast<double>(next - whole), 0.0, 1.0);
    const int from = painter.measure(line.substr(0, whole), style).width;
    const int to = painter.measure(line.substr(0, next), style).width;
    return from + RoundHalfToEven((to - from) * part);
}

}  // namespace

std::string CurrentLyricsLine(const LyricsLines& lines) { return RowText(lines, kCurrentRow); }

std::vector<LyricsBand> LyricsBands(int lines, Size picture) {
    lines = std::max(lines, 1);
    const int band = picture.height / lines;
    const int first = lines == 1 ? 2 : lines == 3 ? 1 : 0;
    const int last = lines == 1 ? 2 : lines == 3 ? 3 : 4;
    std::vector<LyricsBand> bands;
    for (int row = first; row <= last; ++row) {
        const int top = (row - first) * band;
        bands.push_back({row, {0, top, picture.width, band}});
    }
    const int current = (kCurrentRow - first) * band;
    bands.push_back({kExtraRow, {0, current + band / 2, picture.width, band - band / 2}});
    return bands;
}

// Makes the type of a line smaller until it fits, down to the smallest that can be read.
static void ShrinkToFit(TextPainter& painter, TextStyle& style, const std::string& line, int width) {
    const int wide = painter.measure(line, style).width;
    if (wide <= width) return;
    const double least = std::min(kSmallestPoints, style.font.points);
    style.font.points = std::max(style.font.points * width / wide, least);
    // Type comes in whole pixels, so that a line may be a little wider than reckoned.
    while (style.font.points > least && painter.measure(line, style).width > width) {
        style.font.points = std::max(style.font.points - 0.5, least);
    }
}

// One line, its stamp in the pale colour of `style` in front.
static void DrawBand(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsLook& look,
                     const LyricsBand& band, TextStyle style) {
    const std::string text = RowText(lines, band.row);
    if (text.empty()) return;
    const bool extra = band.row == kExtraRow;
    // Without a translation the extra row is the next line, which may be on the picture already.
    if (extra && look.lines > 1 && text == RowText(lines, kNextRow)) return;
    std::string stamp;
    if (look.stamps && !extra) stamp = StampText(lines.stampMs[static_cast<std::size_t>(band.row)]);
    Rect where{band.where.left + kMargin, band.where.top, band.where.width - 2 * kMargin, band.where.height};
    if (where.empty()) return;
    ShrinkToFit(painter, style, stamp + text, where.width);
    if (!stamp.empty()) {
        painter.draw(on, where, stamp, style);
        const int width = painter.measure(stamp, style).width;
        where.left += width;
        where.width -= width;
        if (where.empty()) return;
    }
    const bool current = band.row == kCurrentRow;
    if (current) style.color = look.text;
    painter.draw(on, where, text, style);
    if (!current || lines.progressBytes < 0) return;
    where.width = std::min(where.width, SungWidth(painter, style, text, lines));
    style.color = SungColor(look.back);
    if (where.width > 0) painter.draw(on, where, text, style);
}

void DrawLyricsWindow(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsLook& look) {
    if (look.behind) {
        on.copy(*look.behind, {0, 0});
    } else {
        on.fill(look.back);
    }
    // On a picture pale is less pale, or it could not be read.
    const Color pale = look.behind ? Mix(look.text, Mix(look.text, look.back)) : Mix(look.text, look.back);
    TextStyle style;
    style.font = look.font;
    style.color = pale;
    for (const LyricsBand& band : LyricsBands(look.lines, {on.width(), on.height()})) {
        DrawBand(on, painter, lines, look, band, style);
    }
}

Surface LyricsBackground(const Surface& picture, Size size, Color back) {
    Surface background(size.width, size.height, back);
    if (picture.empty() || background.empty()) return background;
    const double scale = std::max(static_cast<double>(size.width) / picture.width(),
                                  static_cast<double>(size.height) / picture.height());
    const int width = std::clamp(RoundHalfToEven(size.width / scale), 1, picture.width());
    const int height = std::clamp(RoundHalfToEven(size.height / scale), 1, picture.height());
    background.stretchSmoothly(picture,
                               {(picture.width() - width) / 2, (picture.height() - height) / 2, width, height});
    background.blend(background.rect(), back, kVeil);
    return background;
}

void DrawLyricsPanel(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsPanelLook& look) {
    on.fill(look.back);
    const std::string text = RowText(lines, kCurrentRow);
    if (text.empty()) return;
    TextStyle style;
    style.font = look.font;
    style.dotsPerInch = look.dotsPerInch;
    style.color = look.text;
    style.wordBreak = true;
    Rect where = on.rect();
    painter.draw(on, where, text, style);
    if (lines.progressBytes < 0) return;
    TextStyle single = style;
    single.wordBreak = false;
    style.color = single.color = look.sung;
    if (painter.measure(text, single).width <= where.width) {
        where.width = SungWidth(painter, single, text, lines);
        if (where.width > 0) painter.draw(on, where, text, single);
        return;
    }
    // Wrapped, the sung words are written over the others; whole words, since half of one might still fit where the
    // whole of it has been wrapped.
    const std::size_t sung = std::min(static_cast<std::size_t>(lines.progressBytes), text.size());
    if (sung == 0) return;
    painter.draw(on, where, text.substr(0, std::min(text.find(' ', sung), text.size())), style);
}

}  // namespace quenlox
