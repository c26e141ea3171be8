// Equalizer, pitch, wave and spectrum of the C interface.
#include <algorithm>

#include "libraries/vbmp3/interface/library.h"

using namespace vbmp3;

namespace {

constexpr int32_t kMostSamples = 1024, kMostBands = 256;

}  // namespace

int32_t vbmp3_setEqualizer(const int32_t* gains) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        std::optional<BandGains> wanted;
        if (gains != nullptr) {
            wanted.emplace();
            std::copy_n(gains, kBands, wanted->begin());
        }
        self.sound.setEqualizer(wanted);
        const TrackPtr track = self.player.current();
        if (track && !track->info.mpeg && self.player.snapshot().state != 0) self.sound.applyEqualizer();
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_reload(void) {
    return withLibrary<int32_t>(0, [](Library& self) {
        self.sound.applyEqualizer();
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_setPitch(int32_t percent) {
    return withLibrary<int32_t>(
        0, [&](Library& self) { return Report(self.sound.setPitch(percent) ? VBMP3_OK : VBMP3_ERROR_ARGUMENT); });
}

int32_t vbmp3_setStepPitch(int32_t factor, int32_t base) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        return Report(self.sound.setStepPitch(factor, base) ? VBMP3_OK : VBMP3_ERROR_ARGUMENT);
    });
}

int32_t vbmp3_setQuality(int32_t quality) {
    return withLibrary<int32_t>(
        0, [&](Library& self) { return Report(self.sound.setQuality(quality) ? VBMP3_OK : VBMP3_ERROR_ARGUMENT); });
}

int32_t vbmp3_getWave(int16_t* left, int16_t* right, int32_t count) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        if (left == nullptr || right == nullptr || count < 1 || count > kMostSamples)
            return Report(VBMP3_ERROR_ARGUMENT);
        const Player::Snapshot now = self.player.snapshot();
        if (now.state == 1) {
            self.player.tap().read(now.outputFrame, count, left, right);
        } else {
            std::fill_n(left, count, int16_t{0});
            std::fill_n(right, count, int16_t{0});
        }
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_getSpectrum(int32_t* levels, int32_t count) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        if (levels == nullptr || count < 1 || count > kMostBands) return Report(VBMP3_ERROR_ARGUMENT);
        const Player::Snapshot now = self.player.snapshot();
        if (now.state == 1)
            self.spectrum.read(self.player.tap(), now.outputFrame, {levels, static_cast<size_t>(count)});
        else
            std::fill_n(levels, count, 0);
        return Report(VBMP3_OK);
    });
}
