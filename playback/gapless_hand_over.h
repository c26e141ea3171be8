// The file that the decoding library holds as the one to go on with, so that an album plays without gaps. Knows what
// was handed over, what was taken back perhaps too late, and what the library refused. On the user-interface thread.
#pragma once

#include <optional>
#include <string>

#include "playback/track_step.h"

namespace quenlox {

class Vbmp3;

class GaplessHandOver {
  public:
    struct Next {
        int list = 0;
        TrackStep step;
        std::string path;
        bool queued = false;  // a row of the queue, no step of the list
    };

    explicit GaplessHandOver(Vbmp3& vbmp3) : vbmp3_(vbmp3) {}

    // A file has been opened or played anew: the library holds none.
    void forget();
    // What is to follow now; nothing takes back what was handed over. A file that is held already is not handed again.
    void follow(std::optional<Next> next);
    // A file of that path is about to be replaced on the disk.
    void letGoOf(const std::string& path);
    // The library has gone on: to what it held, or held until a moment ago.
    std::optional<Next> taken();

  private:
    void takeBack();

    Vbmp3& vbmp3_;
    std::optional<Next> handed_;
    std::optional<Next> withdrawn_;
    std::string refused_;
};

}  // namespace quenlox
