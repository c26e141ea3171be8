#include "skin/title_animation.h"

#include <algorithm>

namespace quenlox {

void TitleAnimation::begin(int textWidth, int placeWidth) {
    textWidth_ = textWidth;
    placeWidth_ = placeWidth;
    offset_ = 0;
    rest_ = kRestTicks;
}

bool TitleAnimation::tick(int pixels) {
    if (!moves()) return false;
    if (rest_ > 0) {
        --rest_;
        return false;
    }
    offset_ += std::max(pixels, 1);
    if (offset_ >= period()) {
        offset_ = 0;
        rest_ = kRestTicks;
    }
    return true;
}

}  // namespace quenlox
