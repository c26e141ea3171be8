// How lyrics look: rows in bands for the lyrics window, the current line for the panel of a skin. Draws on Surfaces and
// knows no window. On the user-interface thread.
#pragma once

#include <string>
#include <vector>

#include "forms/control.h"
#include "forms/surface.h"
#include "platform/vbmp3.h"

namespace quenlox {

class TextPainter;

// The line that is sung now, empty before the first; what a picture of lyrics tells a screen reader.
std::string CurrentLyricsLine(const LyricsLines& lines);

struct LyricsBand {
    int row = 0;  // of the record
    Rect where;
    bool operator==(const LyricsBand&) const = default;
};

// The rows that a layout of 1, 3 or 5 lines shows in a picture of that size in pixels, from the top. The type takes
// half a band, so the extra row 5 finds its place in the lower half of the current line's band.
std::vector<LyricsBand> LyricsBands(int lines, Size picture);

struct LyricsLook {
    Font font;
    Color text, back;
    int lines = 5;
    bool stamps = false;  // each line begins with its time
    const Surface* behind = nullptr;  // a picture of the size of what is drawn on; none: the background colour
    bool operator==(const LyricsLook&) const = default;
};

// The whole picture of the lyrics window. Lines around the current one are paler; what of the current line has been
// sung stands out when the lyrics tell; a line that is too long gets smaller type.
void DrawLyricsWindow(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsLook& look);

// A picture made to lie behind lyrics: it fills `size`, what does not fit is cut off on both sides alike, and the
// colour `back` lies over it so thick that the type stays easy to read.
Surface LyricsBackground(const Surface& picture, Size size, Color back);

struct LyricsPanelLook {
    Font font;
    double dotsPerInch = 96;
    Color text, sung, back;
    bool operator==(const LyricsPanelLook&) const = default;
};

// The current line alone, wrapped at the right edge.
void DrawLyricsPanel(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsPanelLook& look);

}  // namespace quenlox
