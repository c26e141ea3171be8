// A skin that is ready to be shown: everything is read and decoded, so that putting it in place of another takes no
// memory and cannot fail. What is drawn has its memory already (SkinView). Knows no window.
#pragma once

#include <array>
#include <string>

#include "forms/control.h"
#include "skin/skin_definition.h"

namespace quenlox {

struct PreparedSkin {
    SkinDefinition definition;  // with the outline of a box too
    double twips = 15;          // of a pixel, which the type is made for
    Scale scale;
    Surface opacity;  // of the window on the screen; empty: all of it
    std::array<Font, kLabelCount> labelFonts;
    Font lyricsFont;
};

// Reads the package of that definition file for a monitor with so many twips to a pixel, to be shown at the scale
// `wanted` or as near to it as the skin allows. Throws std::bad_alloc.
PreparedSkin PrepareSkin(FileSystem& files, const std::string& definitionFile, SplitValues& values,
                         const TwipsPerPixel& twips, Scale wanted);

// From a picture with so many pixels for one of the skin to the screen.
Surface::Ratio RatioTo(Scale scale, int fineness);
// How opaque the pixels of a window of that size are at a scale, from the opacity of its background with so many pixels
// for one of the window; empty for an empty one. Throws std::bad_alloc.
Surface OpacityOnScreen(const Surface& background, int fineness, Size window, Scale scale);

}  // namespace quenlox
