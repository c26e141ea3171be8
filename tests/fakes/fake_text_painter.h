// Text as blocks: every character but a blank is a filled cell of half the font's height in width, in the style's
// colour. What was written is remembered.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/text_painter.h"
#include "text/strings.h"

namespace quenlox {

class FakeTextPainter : public TextPainter {
  public:
    struct Drawn {
        std::string text;
        Rect where;
        TextStyle style;
    };
    std::vector<Drawn> drawn;

    void draw(Surface& on, const Rect& where, std::string_view utf8, const TextStyle& style) override {
        drawn.push_back({std::string(utf8), where, style});
        const Size cell = cellOf(style);
        const Size whole = measure(utf8, style);
        int x = where.left;
        if (style.centred) x += (where.width - whole.width) / 2;
        if (style.rightAligned) x += where.width - whole.width;
        const int y = style.vertically ? where.top + (where.height - cell.height) / 2 : where.top;
        for (const char c : utf8) {
            if ((static_cast<unsigned char>(c) & 0xC0) == 0x80) continue;
            const Rect box = Intersect({x, y, cell.width, cell.height}, where);
            if (c != ' ' && !box.empty()) on.fillRect(box, style.color);
            x += cell.width;
        }
    }
    Size measure(std::string_view utf8, const TextStyle& style, int) override { return measure(utf8, style); }

  private:
    static Size cellOf(const TextStyle& style) {
        const int height = std::max(1, RoundHalfToEven(style.font.points * style.dotsPerInch / 72));
        return {std::max(1, height / 2), height};
    }
    static Size measure(std::string_view utf8, const TextStyle& style) {
        const Size cell = cellOf(style);
        return {static_cast<int>(CharacterCount(utf8)) * cell.width, cell.height};
    }
};

}  // namespace quenlox
