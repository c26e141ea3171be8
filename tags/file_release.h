// Lets go of the open file for as long as it is written or renamed, and goes on with it afterwards at the same place.
// On the user-interface thread.
#pragma once

#include <cstdint>

namespace quenlox {

class MediaEngine;
class Vbmp3;
struct GlobalState;

class FileRelease {
  public:
    FileRelease(GlobalState& state, Vbmp3& vbmp3, MediaEngine& engine)
        : state_(state), vbmp3_(vbmp3), engine_(engine) {}

    void release();      // closes it in the decoding library
    void reopen();       // opens CurrentFile, and plays it from where it was when it was playing or paused
    void leaveClosed();  // for good: the player stands

  private:
    GlobalState& state_;
    Vbmp3& vbmp3_;
    MediaEngine& engine_;
    int status_ = 0;
    std::int64_t positionMs_ = 0;
};

}  // namespace quenlox
