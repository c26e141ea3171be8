#include "tags/file_release.h"

#include "app/global_state.h"
#include "platform/vbmp3.h"
#include "playback/media_engine.h"

namespace quenlox {

void FileRelease::release() {
    status_ = state_.playedByVbmp3() ? state_.PlayerStatus : int{kStop};
    positionMs_ = vbmp3_.vbmp3_getPositionMs();
    vbmp3_.vbmp3_close();
}

void FileRelease::reopen() {
    engine_.OpenMedia();
    if (status_ != kPlay && status_ != kPause) return;
    const int opened = engine_.openCount();
    if (engine_.PlayMedia() != MediaEngine::PlayResult::Playing || engine_.openCount() != opened) return;
    vbmp3_.vbmp3_seek(static_cast<double>(positionMs_) / 1000);
    state_.PositionSeconds = static_cast<int>(positionMs_ / 1000);
    if (status_ == kPause) engine_.PauseMedia();
}

// The monitor would take a track that plays no more for one that has ended.
void FileRelease::leaveClosed() { engine_.StopMedia(); }

}  // namespace quenlox
