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
    std::array<Font, kLabelCount> labelFonts;
    Font lyricsFont;
};

// Reads the package of that definition file for a monitor with so many twips to a pixel, to be shown at the scale
// `wanted` or as near to it as the skin allows. Throws std::bad_alloc.
PreparedSkin PrepareSkin(FileSystem& files, const std::string& definitionFile, SplitValues& values,
                         const TwipsPerPixel& twips, Scale wanted);

}  // namespace quenlox
