// Sound devices by name.
#pragma once

#include "platform/output_devices.h"

namespace quenlox {

class FakeOutputDevices : public OutputDevices {
  public:
    std::vector<std::string> list;
    std::vector<std::string> names() override { return list; }
};

}  // namespace quenlox
