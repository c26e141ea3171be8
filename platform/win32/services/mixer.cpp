// The multimedia mixer. Windows gives each program its own view of it: since Vista the lines that a program finds are
// those of its own sound, and setting them moves the program's slider in the volume mixer of the system.
#include "platform/mixer.h"

#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

#include <mmsystem.h>
// Needs the types of the one before it.
#include <mmddk.h>

namespace quenlox::win32 {
namespace {

UINT MixerOf(int device) {
    auto wave = static_cast<DWORD>(device);
    if (device < 0) {
        DWORD status = 0;
        if (waveOutMessage(reinterpret_cast<HWAVEOUT>(static_cast<UINT_PTR>(WAVE_MAPPER)), DRVM_MAPPER_PREFERRED_GET,
                           reinterpret_cast<DWORD_PTR>(&wave),
                           reinterpret_cast<DWORD_PTR>(&status)) != MMSYSERR_NOERROR)
            wave = 0;
    }
    UINT mixer = 0;
    const auto object = reinterpret_cast<HMIXEROBJ>(static_cast<UINT_PTR>(wave));
    return mixerGetID(object, &mixer, MIXER_OBJECTF_WAVEOUT) == MMSYSERR_NOERROR ? mixer : static_cast<UINT>(-1);
}

class MixerWin32 : public Mixer {
  public:
    ~MixerWin32() override { MixerWin32::close(); }

    bool open(int device) override {
        close();
        number_ = MixerOf(device);
        if (mixerOpen(&mixer_, number_, 0, 0, MIXER_OBJECTF_MIXER) != MMSYSERR_NOERROR) mixer_ = nullptr;
        return mixer_ != nullptr;
    }
    bool serves(int device) override { return mixer_ && MixerOf(device) == number_; }
    void close() override {
        if (mixer_) mixerClose(mixer_);
        mixer_ = nullptr;
    }

    int GetMixerVolumeControl(MixerControl& control, ComponentType component) override {
        if (!mixer_) return MMSYSERR_INVALHANDLE;
        MIXERLINEW line{};
        line.cbStruct = sizeof line;
        line.dwComponentType = component;
        MMRESULT result = mixerGetLineInfoW(object(), &line, MIXER_GETLINEINFOF_COMPONENTTYPE);
        if (result != MMSYSERR_NOERROR) return static_cast<int>(result);
        MIXERCONTROLW found{};
        found.cbStruct = sizeof found;
        MIXERLINECONTROLSW controls{};
        controls.cbStruct = sizeof controls;
        controls.dwLineID = line.dwLineID;
        controls.dwControlType = MIXERCONTROL_CONTROLTYPE_VOLUME;
        controls.cControls = 1;
        controls.cbmxctrl = sizeof found;
        controls.pamxctrl = &found;
        result = mixerGetLineControlsW(object(), &controls, MIXER_GETLINECONTROLSF_ONEBYTYPE);
        if (result != MMSYSERR_NOERROR) return static_cast<int>(result);
        // A control may have the number 0, which stands for "none" outside.
        control = {static_cast<std::uint32_t>(found.dwControlID) + 1, found.Bounds.dwMinimum, found.Bounds.dwMaximum};
        return MMSYSERR_NOERROR;
    }
    bool GetMixerVolume(const MixerControl& control, std::uint32_t& value) override {
        MIXERCONTROLDETAILS_UNSIGNED volume{};
        if (!transfer(control, volume, mixerGetControlDetailsW)) return false;
        value = volume.dwValue;
        return true;
    }
    bool SetMixerVolume(const MixerControl& control, std::uint32_t value) override {
        MIXERCONTROLDETAILS_UNSIGNED volume{value};
        return transfer(control, volume, mixerSetControlDetails);
    }

  private:
    HMIXEROBJ object() const { return reinterpret_cast<HMIXEROBJ>(mixer_); }

    // One value for all channels.
    template <typename Call>
    bool transfer(const MixerControl& control, MIXERCONTROLDETAILS_UNSIGNED& volume, Call call) const {
        if (!mixer_ || control.id == 0) return false;
        MIXERCONTROLDETAILS details{};
        details.cbStruct = sizeof details;
        details.dwControlID = control.id - 1;
        details.cChannels = 1;
        details.cbDetails = sizeof volume;
        details.paDetails = &volume;
        return call(object(), &details, 0) == MMSYSERR_NOERROR;
    }

    HMIXER mixer_ = nullptr;
    UINT number_ = 0;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<Mixer> MakeMixer() { return std::make_unique<win32::MixerWin32>(); }

}  // namespace quenlox
