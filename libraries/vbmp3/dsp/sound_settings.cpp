#include "libraries/vbmp3/dsp/sound_settings.h"

#include <algorithm>

namespace vbmp3 {

void SoundSettings::setEqualizer(const std::optional<BandGains>& gains) {
    pending_ = gains;
    if (pending_)
        for (int32_t& gain : *pending_) gain = std::clamp(gain, -120, 120);
}

void SoundSettings::applyEqualizer() {
    SoundValues values = current_;
    values.gains = pending_.value_or(BandGains{});
    // A flat curve changes nothing, so it takes the bit-exact way.
    values.equalizer = values.gains != BandGains{};
    publish(values);
}

bool SoundSettings::setPitch(int percent) {
    if (percent < 50 || percent > 200) return false;
    SoundValues values = current_;
    values.pitchPercent = percent;
    publish(values);
    return true;
}

bool SoundSettings::setStepPitch(int factor, int base) {
    if (base <= 0) return false;
    const double tempo = 1.0 + (static_cast<double>(factor) - 1.0) / base;
    if (tempo < 0.25 || tempo > 4.0) return false;
    SoundValues values = current_;
    values.tempo = tempo;
    publish(values);
    return true;
}

bool SoundSettings::setQuality(int quality) {
    if (quality < static_cast<int>(Quality::Standard) || quality > static_cast<int>(Quality::Light)) return false;
    SoundValues values = current_;
    values.quality = static_cast<Quality>(quality);
    publish(values);
    return true;
}

void SoundSettings::publish(const SoundValues& values) {
    if (values == current_) return;
    current_ = values;
    version_.fetch_add(1);
    equalizer_.store(values.equalizer);
    for (int i = 0; i < kBands; ++i) gains_[i].store(values.gains[i]);
    pitchPercent_.store(values.pitchPercent);
    tempo_.store(values.tempo);
    quality_.store(values.quality);
    version_.fetch_add(1);
}

std::optional<SoundValues> SoundSettings::read() const {
    const uint32_t before = version_.load();
    if (before & 1) return std::nullopt;
    SoundValues values;
    values.equalizer = equalizer_.load();
    for (int i = 0; i < kBands; ++i) values.gains[i] = gains_[i].load();
    values.pitchPercent = pitchPercent_.load();
    values.tempo = tempo_.load();
    values.quality = quality_.load();
    if (version_.load() != before) return std::nullopt;
    return values;
}

}  // namespace vbmp3
