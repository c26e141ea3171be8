// A stored piece of sound for the tests of the panel: 512 samples a channel and 85 bands, made by integer arithmetic.
#pragma once

#include <algorithm>
#include <cstdlib>

#include "speana/sound_frame.h"

namespace quenlox {

// The sound of frame `n`: two saw teeth and a triangle that beat against each other, a falling spectrum with a hump that
// wanders.
inline SoundFrame SoundOf(int n, int bands = 21) {
    SoundFrame sound;
    sound.bands = bands;
    for (int i = 0; i < SoundFrame::kSamples; ++i) {
        const int at = i + n * 37;
        const int saw = (at * 311 % 65536 - 32768) / 3, triangle = std::abs(at * 97 % 60000 - 30000) - 15000;
        const int fine = (at * 2777 % 20000 - 10000) / 2;
        sound.left[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(saw + triangle / 2 + fine);
        sound.right[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(saw - triangle / 2 + fine / 2);
    }
    for (int i = 0; i < bands; ++i) {
        const int hump = 300 - std::abs(i * 85 / bands - n * 3 % 85) * 20;
        sound.levels[static_cast<std::size_t>(i)] = std::clamp(620 - i * 300 / bands + std::max(0, hump), 0, 1000);
    }
    return sound;
}

}  // namespace quenlox
