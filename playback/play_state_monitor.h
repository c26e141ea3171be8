// Watches the back end that plays: keeps the position current, notices the end of a track, and hears what the decoding
// library tells of itself. What comes next is decided by Transport. On the user-interface thread.
#pragma once

#include <functional>

namespace quenlox {

class MediaControl;
class MediaEngine;
struct Options;
class Transport;
class Vbmp3;
enum class LibraryEvent;
struct GlobalState;

class PlayStateMonitor {
  public:
    PlayStateMonitor(GlobalState& state, MediaEngine& engine, Transport& transport, Vbmp3& vbmp3,
                     MediaControl& mediaControl, const Options& options);

    std::function<bool()> decodesUnheard;  // a decode runs without sound: no track of it can end

    void poll();  // the poll
    void retry();  // tries a waiting play again

  private:
    bool watches() const;
    void libraryEvent(LibraryEvent event);
    void pollMediaControl();
    void pollLibrary();
    bool introIsOver() const;

    GlobalState& state_;
    MediaEngine& engine_;
    Transport& transport_;
    Vbmp3& vbmp3_;
    MediaControl& mediaControl_;
    const Options& options_;
};

}  // namespace quenlox
