// How lyrics look: rows in bands for the lyrics window, the current line for the panel of a skin. Draws on Surfaces and
// knows no window. On the user-interface thread.
#pragma once

#include <string>

#include "forms/control.h"
#include "forms/surface.h"
#include "platform/vbmp3.h"

namespace quenlox {

class TextPainter;

// The line that is sung now, empty before the first; what a picture of lyrics tells a screen reader.
std::string CurrentLyricsLine(const LyricsLines& lines);

struct LyricsLook {
    Font font;
    Color text, back;
    int lines = 5;
    bool stamps = false;              // each line begins with its time
    const Surface* behind = nullptr;  // a picture of the size of what is drawn on; none: the background colour
    bool operator==(const LyricsLook&) const = default;
};

// On the way from the lines of one moment to those of the next.
struct LyricsMove {
    const LyricsLines* from = nullptr;
    double part = 1;  // of the way, 0 to 1
};

// The whole picture of the lyrics window. Lines around the current one are paler, and its translation has a colour of
// its own; what of the current line has been sung stands out when the lyrics tell.
void DrawLyricsWindow(Surface& on, TextPainter& painter, const LyricsLines& lines, const LyricsLook& look,
                      const LyricsMove& move = {});

// What stands there instead while there are no lyrics: whose they would be, and what there is to know.
struct LyricsNotice {
    std::string title, text;
    bool operator==(const LyricsNotice&) const = default;
};
void DrawLyricsNotice(Surface& on, TextPainter& painter, const LyricsNotice& notice, const LyricsLook& look);

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
