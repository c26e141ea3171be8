// The sound devices that can be played on.
#pragma once

#include <string>
#include <vector>

namespace quenlox {

class OutputDevices {
  public:
    virtual ~OutputDevices() = default;
    // In the order of the device numbers that vbmp3_setOutput takes, 0 first. Empty when there is none.
    virtual std::vector<std::string> names() = 0;
};

}  // namespace quenlox
