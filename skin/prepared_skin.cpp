#include "skin/prepared_skin.h"

#include <numeric>

namespace quenlox {

Surface::Ratio RatioTo(Scale scale, int fineness) {
    const int divisor = std::gcd(scale.percent(), 100 * fineness);
    return {scale.percent() / divisor, 100 * fineness / divisor};
}

Surface OpacityOnScreen(const Surface& background, int fineness, Size window, Scale scale) {
    if (background.empty()) return {};
    const Size size = scale.out(window);
    Surface shown(size.width, size.height);
    shown.enlarge(background, {}, RatioTo(scale, fineness), shown.rect());
    return shown;
}

PreparedSkin PrepareSkin(FileSystem& files, const std::string& definitionFile, SplitValues& values,
                         const TwipsPerPixel& twips, Scale wanted) {
    PreparedSkin skin;
    skin.twips = twips.x;
    skin.definition = ReadSkin(files, definitionFile, values, wanted);
    skin.scale = FittingScale(wanted, skin.definition.size);
    const SkinDefinition& definition = skin.definition;
    if (definition.opacity) {
        skin.opacity = OpacityOnScreen(*definition.opacity, definition.fineness, definition.size, skin.scale);
    }
    // The fields are right on a monitor of 96 dots per inch, where a pixel has 15 twips.
    const auto points = [&](int fontField) { return fontField * twips.x / 15.0; };
    for (std::size_t n = 0; n < skin.labelFonts.size(); ++n) {
        if (definition.labels[n]) skin.labelFonts[n].points = points(definition.labels[n]->fontField);
    }
    if (definition.lyrics) skin.lyricsFont.points = points(definition.lyrics->fontField);
    if (definition.box) skin.definition.region = Region{{0, 0, definition.size.width, definition.size.height}};
    return skin;
}

}  // namespace quenlox
