#include "lyrics/lyrics_places.h"

#include <algorithm>

#include "text/encoding.h"
#include "text/numbers.h"

namespace quenlox {
namespace {

constexpr int kCurrentRow = LyricsLines::kCurrentRow, kExtraRow = LyricsLines::kExtraRow;
constexpr int kNextRow = kCurrentRow + 1;
constexpr int kMargin = 4;        // pixels left and right
constexpr double kALittle = 0.8;  // of the type, before a line is broken
constexpr double kStep = 0.92;    // from one size to the next, when all lines are to find room
constexpr double kSmallestPoints = 4;
constexpr double kTranslation = 0.85;      // of the type
constexpr std::size_t kMostBytes = 16384;  // of a row; more than 5000 characters are no line of a song

const std::string& RowText(const LyricsLines& lines, int row) { return lines.rows[static_cast<std::size_t>(row)]; }

std::string StampText(std::int32_t ms) {
    if (ms < 0) return {};
    return "[" + TwoDigits(ms / 60000) + ":" + TwoDigits(ms / 1000 % 60) + "] ";
}

// Fills a block of a given size of type.
class Fitter {
  public:
    explicit Fitter(TextPainter& painter) : painter_(painter) {}

    // One line when smaller type is enough for it.
    void fit(LyricsBlock& block, int height) {
        const double points = block.font.points;
        if (!oneLine(block, std::max(points * kALittle, std::min(points, kSmallestPoints)))) fitLines(block, height);
    }
    void fitLines(LyricsBlock& block, int height) {
        while (wrap(block), block.height() > height && block.font.points > kSmallestPoints) {
            block.font.points = std::max(block.font.points * kStep, kSmallestPoints);
        }
    }

  private:
    Size measure(const LyricsBlock& block, std::string_view text) const {
        TextStyle style;
        style.font = block.font;
        return painter_.measure(text, style);
    }
    int room(const LyricsBlock& block, std::size_t line) const {
        return std::max(block.width - (line == 0 ? block.stampWidth : 0), 1);
    }
    bool oneLine(LyricsBlock& block, double least) {
        const std::string all = block.stamp + block.text;
        const int wide = measure(block, all).width;
        if (wide > block.width) block.font.points = std::max(block.font.points * block.width / wide, least);
        // Type comes in whole pixels, so that a line may be a little wider than reckoned.
        while (block.font.points > least && measure(block, all).width > block.width) {
            block.font.points = std::max(block.font.points - 0.5, least);
        }
        if (measure(block, all).width > block.width) return false;
        block.parts = {{0, block.text.size()}};
        measureLine(block);
        return true;
    }
    void wrap(LyricsBlock& block) {
        measureLine(block);
        block.parts = WrapText(block.text, [&](std::string_view part, std::size_t line) {
            return measure(block, part).width <= room(block, line);
        });
    }
    void measureLine(LyricsBlock& block) {
        block.lineHeight = std::max(measure(block, "あg").height, 1);
        block.stampWidth = block.stamp.empty() ? 0 : measure(block, block.stamp).width;
    }

    TextPainter& painter_;
};

class Placer {
  public:
    Placer(TextPainter& painter, const LyricsLines& lines, const LyricsPlan& plan, Size picture)
        : fitter_(painter), lines_(lines), plan_(plan), picture_(picture), bands_(LyricsBands(plan.lines, picture)) {}

    std::vector<LyricsBlock> place() {
        placeCurrent();
        int above = picture_.height, below = 0;
        for (const LyricsBlock& block : blocks_) {
            above = std::min(above, block.top);
            below = std::max(below, block.bottom());
        }
        for (int row = kCurrentRow - 1; row >= 0; --row) {
            auto block = make(row, picture_.height / 2);
            if (!block) continue;
            block->top = std::min(block->top, above - block->height());
            above = block->top;
            if (above >= 0) blocks_.push_back(std::move(*block));
        }
        for (int row = kNextRow; row < kExtraRow; ++row) {
            auto block = make(row, picture_.height / 2);
            if (!block) continue;
            const bool pushed = block->top < below;
            block->top = std::max(block->top, below);
            below = block->bottom();
            if (!pushed || below <= picture_.height) blocks_.push_back(std::move(*block));
        }
        return std::move(blocks_);
    }

  private:
    // The current row and what stands under it, as a whole on the picture.
    void placeCurrent() {
        auto current = make(kCurrentRow, picture_.height), extra = make(kExtraRow, picture_.height);
        if (current && extra && current->height() + extra->height() > picture_.height) {
            current = make(kCurrentRow, picture_.height * 2 / 3);
            extra = make(kExtraRow, picture_.height - current->height());
        }
        const int high = (current ? current->height() : 0) + (extra ? extra->height() : 0);
        if (current) {
            current->top = std::max(std::min(current->top, picture_.height - high), 0);
            if (extra)
                extra->top = std::max(std::min(extra->top, picture_.height - extra->height()), current->bottom());
            blocks_.push_back(std::move(*current));
        }
        if (extra) blocks_.push_back(std::move(*extra));
    }

    std::optional<LyricsBlock> make(int row, int height) {
        const auto band = std::ranges::find(bands_, row, &LyricsBand::row);
        if (band == bands_.end()) return std::nullopt;
        LyricsBlock block;
        block.row = row;
        block.text = CutUtf8(RowText(lines_, row), kMostBytes);
        block.font = plan_.font;
        block.left = kMargin;
        block.top = band->where.top;
        if (row == kExtraRow) {
            // Without a translation the extra row is the next line, which may be on the picture already.
            block.translation = block.text != RowText(lines_, kNextRow);
            if (!block.translation && plan_.lines > 1) return std::nullopt;
            if (block.translation) {
                block.font.points *= kTranslation;
                block.left += static_cast<int>(plan_.font.points);
            }
        } else if (plan_.stamps) {
            block.stamp = StampText(lines_.stampMs[static_cast<std::size_t>(row)]);
        }
        block.width = picture_.width - block.left - kMargin;
        if (block.text.empty() || block.width <= 0) return std::nullopt;
        fitter_.fit(block, height);
        return block;
    }

    Fitter fitter_;
    const LyricsLines& lines_;
    const LyricsPlan& plan_;
    Size picture_;
    std::vector<LyricsBand> bands_;
    std::vector<LyricsBlock> blocks_;
};

}  // namespace

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

std::vector<LyricsBlock> PlaceLyrics(TextPainter& painter, const LyricsLines& lines, const LyricsPlan& plan,
                                     Size picture) {
    return Placer(painter, lines, plan, picture).place();
}

LyricsBlock PlaceText(TextPainter& painter, const std::string& text, const Font& font, Size box) {
    LyricsBlock block;
    block.text = CutUtf8(text, kMostBytes);
    block.font = font;
    block.left = kMargin;
    block.width = std::max(box.width - 2 * kMargin, 1);
    Fitter(painter).fitLines(block, box.height);
    return block;
}

}  // namespace quenlox
