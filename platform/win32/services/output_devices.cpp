#include "platform/output_devices.h"

#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

#include <mmsystem.h>

namespace quenlox {
namespace {

class WaveOutDevices : public OutputDevices {
  public:
    std::vector<std::string> names() override {
        std::vector<std::string> names;
        const UINT count = waveOutGetNumDevs();
        for (UINT device = 0; device < count; ++device) {
            WAVEOUTCAPSW caps{};
            const bool known = waveOutGetDevCapsW(device, &caps, sizeof caps) == MMSYSERR_NOERROR;
            names.push_back(known ? win32::Narrow(caps.szPname) : std::string());
        }
        return names;
    }
};

}  // namespace

std::unique_ptr<OutputDevices> MakeOutputDevices() { return std::make_unique<WaveOutDevices>(); }

}  // namespace quenlox
