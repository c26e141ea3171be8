// The sound devices that can be played on. On the user-interface thread.
#pragma once

#include <string>
#include <vector>

namespace quenlox {

class OutputDevices {
  public:
    virtual ~OutputDevices() = default;
    // In the order of the device numbers that vbmp3_setOutput takes, 0 first; the system cuts a name to 31 characters.
    // Empty when there is none, an empty name for one that does not tell it.
    virtual std::vector<std::string> names() = 0;
};

}  // namespace quenlox
