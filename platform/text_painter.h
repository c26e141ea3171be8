// Text on a Surface, the only drawing that needs the system. On the user-interface thread. What the system refuses is
// left undrawn, and measures nothing; a face that is not there is replaced by another.
#pragma once

#include <string_view>

#include "forms/control.h"
#include "forms/surface.h"

namespace quenlox {

struct TextStyle {
    Font font;
    Color color;
    double dotsPerInch = 96;
    bool wordBreak = false;   // several lines, broken at words
    bool centred = false;
    bool rightAligned = false;
    bool vertically = false;  // centred in height (one line only)
    bool ellipsis = false;    // "..." where one line does not fit
};

class TextPainter {
  public:
    virtual ~TextPainter() = default;
    // Draws over what is there, clipped to `where`; "&" is an ordinary character.
    virtual void draw(Surface& on, const Rect& where, std::string_view utf8, const TextStyle& style) = 0;
    // Pixels that it takes; `width` is where wordBreak breaks.
    virtual Size measure(std::string_view utf8, const TextStyle& style, int width = 0) = 0;
};

}  // namespace quenlox
