#include "playback/volume_control.h"

#include <algorithm>

#include "forms/geometry.h"
#include "state/global_state.h"
#include "state/options.h"

namespace quenlox {

VolumeControl::VolumeControl(GlobalState& state, Mixer& mixer, const Options& options)
    : state_(state), mixer_(mixer), options_(options) {}

void VolumeControl::open() {
    master_ = wave_ = synthesizer_ = disc_ = {};
    if (!mixer_.open(options_.OutputDevice)) return;
    // Few devices are no speakers, but then have the one volume that there is.
    for (const auto master : {Mixer::kSpeakers, Mixer::kHeadphones, Mixer::kDigital, Mixer::kLine}) {
        if (mixer_.GetMixerVolumeControl(master_, master) == 0) break;
    }
    mixer_.GetMixerVolumeControl(wave_, Mixer::kWaveOut);
    mixer_.GetMixerVolumeControl(synthesizer_, Mixer::kSynthesizer);
    mixer_.GetMixerVolumeControl(disc_, Mixer::kCompactDisc);
    read();
}

void VolumeControl::close() { mixer_.close(); }

void VolumeControl::refresh() {
    if (!mixer_.serves(options_.OutputDevice)) return open();
    read();
}

void VolumeControl::read() {
    std::uint32_t value = 0;
    if (master_.maximum <= master_.minimum || !mixer_.GetMixerVolume(master_, value)) return;
    const double share = (static_cast<double>(value) - master_.minimum) / (master_.maximum - master_.minimum);
    const int percent = std::clamp(RoundHalfToEven(share * 100), 0, 100);
    if (percent == state_.VolumePercent) return;
    state_.VolumePercent = percent;
    if (onChange) onChange();
}

void VolumeControl::setFromBar(int y, int height) {
    if (height <= 0) return;
    if (y >= height - 1 && y > 0) y = height;  // the lowest row that a pointer reaches is the bottom
    setPercent(RoundHalfToEven((1 - static_cast<double>(std::clamp(y, 0, height)) / height) * 100));
}

bool VolumeControl::muted() const { return state_.VolumePercent == 0 && mutedFrom_ > 0; }

void VolumeControl::mute() {
    if (muted()) return setPercent(mutedFrom_);
    const int before = state_.VolumePercent;
    setPercent(0);
    mutedFrom_ = before;
}

void VolumeControl::sourcesChosen() {
    if (options_.VolumeDrives == kSourcesToo) setPercent(state_.VolumePercent);
}

void VolumeControl::setPercent(int percent) {
    state_.VolumePercent = std::clamp(percent, 0, 100);
    mutedFrom_ = 0;
    if (master_.id != 0 && master_.maximum > master_.minimum) {
        // The minimum is not added back: mixers report 0.
        const double range = static_cast<double>(master_.maximum - master_.minimum);
        const auto value = static_cast<std::uint32_t>(std::nearbyint(range * state_.VolumePercent / 100));
        mixer_.SetMixerVolume(master_, value);
        if (options_.VolumeDrives == kSourcesToo) {
            for (const MixerControl& source : {wave_, synthesizer_, disc_}) {
                if (source.id != 0) mixer_.SetMixerVolume(source, value);
            }
        }
    }
    if (onChange) onChange();
}

}  // namespace quenlox
