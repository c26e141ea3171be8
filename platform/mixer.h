// The multimedia mixer of the system. On the user-interface thread. While none is open, no call does anything but fail.
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
        kDigital = 1,  // destinations: the master volume of a device is one of them
        kLine = 2,
        kSpeakers = 4,
        kHeadphones = 5,
        kSynthesizer = 0x1004,  // sources
        kCompactDisc = 0x1005,
        kWaveOut = 0x1008
    };

    virtual ~Mixer() = default;
    // Opens the mixer that a sound device belongs to, by the number that vbmp3_setOutput takes; -1 is the system's
    // default. False when there is none, and then none is open.
    virtual bool open(int device) = 0;
    virtual void close() = 0;  // a second time does nothing
    // The open mixer is still that of the device: the default device may have become another one.
    virtual bool serves(int device) = 0;
    // Finds the volume control of a line. A failure leaves `control` as it was; the result is the mixer call's code, 0
    // for success.
    virtual int GetMixerVolumeControl(MixerControl& control, ComponentType component) = 0;
    // Between the control's minimum and maximum, one value for all channels. False leaves `value`, and the volume, as
    // they were.
    virtual bool GetMixerVolume(const MixerControl& control, std::uint32_t& value) = 0;
    virtual bool SetMixerVolume(const MixerControl& control, std::uint32_t value) = 0;
};

}  // namespace quenlox
