// The media control interface of the system: commands and replies as texts.
#pragma once

#include <string>

namespace quenlox {

class MediaControl {
  public:
    virtual ~MediaControl() = default;
    // 0, or the number of a media-control error. `reply` (may be null) receives the answer, up to its first NUL.
    virtual int sendString(const std::string& command, std::string* reply = nullptr) = 0;
};

}  // namespace quenlox
