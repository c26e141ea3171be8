// Where the rows of lyrics stand in the lyrics window. Each has its band; one that is too long for it gets smaller
// type, a little, and then several lines, and those below and above make room. The current row is always there as a
// whole; a neighbour that has no room left is not. On the user-interface thread, for the painter's sake.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lyrics/line_wrap.h"
#include "platform/text_painter.h"
#include "platform/vbmp3.h"

namespace quenlox {

struct LyricsBand {
    int row = 0;  // of the record
    Rect where;
    bool operator==(const LyricsBand&) const = default;
};

// The rows that a layout of 1, 3 or 5 lines shows in a picture of that size in pixels, from the top. The type takes
// half a band, so the extra row 5 finds its place in the lower half of the current line's band.
std::vector<LyricsBand> LyricsBands(int lines, Size picture);

// A row on the picture.
struct LyricsBlock {
    int row = 0;
    std::string text, stamp;   // the stamp stands in front of the first line
    bool translation = false;  // of the current line
    Font font;
    std::vector<TextPart> parts;                                       // one a line
    int left = 0, top = 0, width = 0, lineHeight = 0, stampWidth = 0;  // pixels

    int height() const { return lineHeight * static_cast<int>(parts.size()); }
    int bottom() const { return top + height(); }
};

struct LyricsPlan {
    Font font;
    int lines = 5;
    bool stamps = false;
};

std::vector<LyricsBlock> PlaceLyrics(TextPainter& painter, const LyricsLines& lines, const LyricsPlan& plan,
                                     Size picture);

// A text by itself in a box of that width: wrapped, and with smaller type only when it would be higher than `height`.
LyricsBlock PlaceText(TextPainter& painter, const std::string& text, const Font& font, Size box);

}  // namespace quenlox
