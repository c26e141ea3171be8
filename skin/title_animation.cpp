#include "skin/title_animation.h"

#include <algorithm>
#include <cstdint>

namespace quenlox {
namespace {

constexpr std::int64_t kMostLetters = 1 << 20;  // pixels

}  // namespace

void TitleAnimation::begin(int textWidth, int placeWidth, int gap) {
    textWidth_ = textWidth;
    placeWidth_ = placeWidth;
    gap_ = gap;
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

void RunningTitle::restart(const TextStyle& style, Scale scale, bool wanted) {
    letters_ = {};
    scale_ = scale;
    const Rect place = scale_.out(title_.bounds());
    animation_.begin(painter_.measure(title_.caption(), style).width, place.width,
                     scale_.border(TitleAnimation::kGap));
    const std::int64_t pixels = std::int64_t{animation_.period()} * place.height;
    running_ = wanted && title_.visible() && animation_.moves() && pixels <= kMostLetters;
    timer_.setEnabled(running_);
}

void RunningTitle::draw(Surface& on, TextStyle style) {
    const Rect place = scale_.out(title_.bounds());
    if (!running_) {
        style.ellipsis = true;
        return painter_.draw(on, place, title_.caption(), style);
    }
    if (letters_.empty()) {
        // Letters are made once; a step of the animation only puts another part of them on the background.
        letters_.resize(animation_.period(), place.height);
        TextStyle white = style;
        white.color = {255, 255, 255};
        painter_.draw(letters_, letters_.rect(), title_.caption(), white);
    }
    const int offset = animation_.offset(), rest = animation_.period() - offset;
    on.stamp(letters_, {offset, 0, std::min(rest, place.width), place.height}, {place.left, place.top}, style.color);
    on.stamp(letters_, {0, 0, place.width - rest, place.height}, {place.left + rest, place.top}, style.color);
}

}  // namespace quenlox
