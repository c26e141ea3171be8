// The multimedia mixer of the system.
#pragma once

#include <cstdint>

namespace quenlox {

// One volume control of the mixer. `id` 0: not found, and then no call touches it.
struct MixerControl {
    std::uint32_t id = 0;
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0;
};

class Mixer {
  public:
    enum ComponentType : std::uint32_t {
        kSpeakers = 4,           // destination, the master volume
        kSynthesizer = 0x1004,   // sources
        kCompactDisc = 0x1005,
        kWaveOut = 0x1008
    };

    virtual ~Mixer() = default;
    virtual bool open() = 0;
    virtual void close() = 0;
    // Finds the volume control of a line. A failure leaves `control` as it was; the result is the mixer call's code.
    virtual int GetMixerVolumeControl(MixerControl& control, ComponentType component) = 0;
    virtual bool GetMixerVolume(const MixerControl& control, std::uint32_t& value) = 0;
    virtual bool SetMixerVolume(const MixerControl& control, std::uint32_t value) = 0;
};

}  // namespace quenlox
