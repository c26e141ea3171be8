#include "app/main_screens.h"

namespace quenlox {

void PanelOfMain::show(const Surface& frame) {
    Surface& shown = top_.DisplayB.surface();
    // A skin empties the display; then the frame is put there even at rest.
    if (shown == frame) return;
    shown = frame;
    top_.DisplayB.refresh();
}

LyricsPanelLook LyricsOfMain::panelLook() const {
    LyricsPanelLook look;
    look.font = top_.LyricsPicture.font();
    if (top_.host()) look.dotsPerInch = 1440.0 / top_.host()->twipsPerPixel().x * top_.scale().factor();
    look.back = top_.LyricsPicture.backColor();
    return look;
}

void LyricsOfMain::panelDrawn(const std::string& line) {
    top_.LyricsPicture.setCaption(line);
    top_.LyricsPicture.refresh();
}

}  // namespace quenlox
