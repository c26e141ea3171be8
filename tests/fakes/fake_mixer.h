// A mixer with four lines; a line that is not in `values` cannot be found.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/mixer.h"

namespace quenlox {

class FakeMixer : public Mixer {
  public:
    struct Line {
        std::uint32_t minimum = 0;
        std::uint32_t maximum = 65535;
        std::uint32_t value = 0;
    };
    std::map<std::uint32_t, Line> lines{{kSpeakers, {}}, {kWaveOut, {}}, {kSynthesizer, {}}, {kCompactDisc, {}}};
    bool opens = true;
    bool works = true;
    bool opened = false;

    int device = -2;  // that it was opened for last

    bool open(int of) override {
        device = of;
        return opened = opens;
    }
    void close() override { opened = false; }
    bool serves(int of) override { return opened && of == device; }
    int GetMixerVolumeControl(MixerControl& control, ComponentType component) override {
        const auto found = lines.find(component);
        if (!opened || found == lines.end()) return 1024;  // MIXERR_INVALLINE
        control = {component, found->second.minimum, found->second.maximum};
        return 0;
    }
    bool GetMixerVolume(const MixerControl& control, std::uint32_t& value) override {
        const auto found = lines.find(control.id);
        if (!works || !opened || found == lines.end()) return false;
        value = found->second.value;
        return true;
    }
    bool SetMixerVolume(const MixerControl& control, std::uint32_t value) override {
        const auto found = lines.find(control.id);
        if (!works || !opened || found == lines.end()) return false;
        found->second.value = value;
        return true;
    }
};

}  // namespace quenlox
