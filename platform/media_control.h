// The media control interface of the system: commands and replies as texts. On the user-interface thread, which a
// driver may keep waiting.
#pragma once

#include <string>

namespace quenlox {

class MediaControl {
  public:
    virtual ~MediaControl() = default;
    // 0, or the number of a media-control error. `reply` (may be null) receives the answer, up to its first NUL and at
    // most 1022 characters; empty after an error.
    virtual int sendString(const std::string& command, std::string* reply = nullptr) = 0;
};

}  // namespace quenlox
