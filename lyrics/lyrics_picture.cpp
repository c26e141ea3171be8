#include "lyrics/lyrics_picture.h"

#include <algorithm>

#include "lyrics/lyrics_places.h"
#include "platform/text_painter.h"
#include "text/numbers.h"

namespace quenlox {
namespace {

constexpr int kCurrentRow = LyricsLines::kCurrentRow, kExtraRow = LyricsLines::kExtraRow;
constexpr int kNextRow = kCurrentRow + 1;
constexpr double kVeil = 0.65;                         // of the background colour over a picture
constexpr double kSmallNotice = 9, kLargeNotice = 20;  // points of the title in a notice
constexpr double kNoticeText = 0.75;                   // of it, for the rest
constexpr Color kSungOnLight{0, 96, 208}, kSungOnDark{255, 192, 64};

const std::string& RowText(const LyricsLines& lines, int row) { return lines.rows[static_cast<std::size_t>(row)]; }

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

Color PaleColor(const LyricsLook& look) {
    // On a picture pale is less pale, or it could not be read.
    return look.behind ? Mix(look.text, Mix(look.text, look.back)) : Mix(look.text, look.back);
}

void DrawBackground(Surface& on, const LyricsLook& look) {
    if (look.behind) {
        on.copy(*look.behind, {0, 0});
    } else {
        on.fill(look.back);
    }
}

// What has been sung of a line is written over it; `at` is where it begins.
void DrawSung(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsBlock& block,
              const TextPart& part, Rect at, TextStyle style) {
    const std::string text = block.text.substr(part.begin, part.end - part.begin);
    LyricsLines own = lines;  // as if the part were the line
    const auto begin = static_cast<int>(part.begin), size = static_cast<int>(text.size());
    own.progressBytes = std::clamp(lines.progressBytes - begin, 0, size);
    const double bytes = lines.progress * static_cast<double>(block.text.size()) / 1000.0 - begin;
    own.progress = size == 0 ? 0 : std::clamp(RoundHalfToEven(bytes * 1000.0 / size), 0, 1000);
    at.width = std::min(at.width, SungWidth(painter, style, text, own));
    if (at.width > 0) painter.draw(on, at, text, style);
}

// One row, its stamp in the pale colour of `style` in front.
void DrawBlock(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsLook& look,
               const LyricsBlock& block, TextStyle style) {
    style.font = block.font;
    int top = block.top;
    if (!block.stamp.empty()) painter.draw(on, {block.left, top, block.width, block.lineHeight}, block.stamp, style);
    const bool current = block.row == kCurrentRow;
    if (current) style.color = look.text;
    if (block.translation) style.color = Mix(look.text, SungColor(look.back));
    for (const TextPart& part : block.parts) {
        const int indent = part.begin == 0 ? block.stampWidth : 0;
        const Rect where{block.left + indent, top, block.width - indent, block.lineHeight};
        top += block.lineHeight;
        if (where.empty()) continue;
        painter.draw(on, where, block.text.substr(part.begin, part.end - part.begin), style);
        if (!current || lines.progressBytes < 0) continue;
        TextStyle sung = style;
        sung.color = SungColor(look.back);
        DrawSung(on, painter, lines, block, part, where, sung);
    }
}

// Pixels that the rows have come up with their next one: from where the current line stood as the next.
int WayBetween(const std::vector<LyricsBlock>& from, const std::vector<LyricsBlock>& to, int otherwise) {
    const auto current = std::ranges::find(to, kCurrentRow, &LyricsBlock::row);
    const auto before = std::ranges::find_if(from, [](const LyricsBlock& block) {
        return block.row == kNextRow || (block.row == kExtraRow && !block.translation);
    });
    return current == to.end() || before == from.end() ? otherwise : before->top - current->top;
}

}  // namespace

std::string CurrentLyricsLine(const LyricsLines& lines) { return RowText(lines, kCurrentRow); }

void DrawLyricsWindow(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsLook& look,
                      const LyricsMove& move) {
    DrawBackground(on, look);
    const Size picture{on.width(), on.height()};
    const LyricsPlan plan{look.font, look.lines, look.stamps};
    TextStyle style;
    style.color = PaleColor(look);
    std::vector<LyricsBlock> blocks = PlaceLyrics(painter, lines, plan, picture);
    if (move.from && move.part < 1) {
        std::vector<LyricsBlock> before = PlaceLyrics(painter, *move.from, plan, picture);
        const int way = WayBetween(before, blocks, on.height() / std::max(look.lines, 1));
        const int left = RoundHalfToEven(way * (1 - std::max(move.part, 0.0)));
        for (LyricsBlock& block : blocks) block.top += left;
        // The row at the top goes out; the others are among the new ones.
        const auto out = std::ranges::find(before, LyricsBands(look.lines, picture).front().row, &LyricsBlock::row);
        if (out != before.end()) {
            out->top -= way - left;
            out->row = 0;  // pale, whichever it was
            DrawBlock(on, painter, {}, look, *out, style);
        }
    }
    for (const LyricsBlock& block : blocks) DrawBlock(on, painter, lines, look, block, style);
}

void DrawLyricsNotice(Surface& on, TextPainter& painter, const LyricsNotice& notice, const LyricsLook& look) {
    DrawBackground(on, look);
    const Size picture{on.width(), on.height()};
    Font font = look.font;
    font.points = std::clamp(picture.height / 14.0, kSmallNotice, kLargeNotice);
    LyricsBlock title = PlaceText(painter, notice.title, font, {picture.width, picture.height / 2});
    font.points *= kNoticeText;
    font.bold = false;
    LyricsBlock text = PlaceText(painter, notice.text, font, {picture.width, picture.height - title.height()});
    const int gap =
        notice.title.empty() ? 0 : std::min(text.lineHeight / 2, picture.height - title.height() - text.height());
    title.top = std::max((picture.height - title.height() - text.height() - gap) / 2, 0);
    text.top = title.bottom() + std::max(gap, 0);
    TextStyle style;
    style.color = look.text;
    style.centred = true;
    for (const LyricsBlock& block : {title, text}) {
        for (std::size_t line = 0; line < block.parts.size(); ++line) {
            const TextPart& part = block.parts[line];
            style.font = block.font;
            const Rect where{block.left, block.top + static_cast<int>(line) * block.lineHeight, block.width,
                             block.lineHeight};
            painter.draw(on, where, block.text.substr(part.begin, part.end - part.begin), style);
        }
        style.color = PaleColor(look);
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
