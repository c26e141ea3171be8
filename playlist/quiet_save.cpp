#include "playlist/quiet_save.h"

#include <algorithm>

#include "playlist/playlists.h"
#include "state/global_state.h"

namespace quenlox {

void QuietSave::tick(Clock::time_point now, bool occupied) {
    if (!lists_.unsavedChanges()) {
        due_.reset();
        return;
    }
    if (!due_) due_ = now + wait_;
    if (now < *due_ || occupied) return;
    const Clock::time_point start = Clock::now();
    const bool saved = lists_.saveQuietly();
    const auto took = Clock::now() - start;
    state_.Actions.note(saved ? "lists saved, ms" : "lists not saved, ms",
                        std::chrono::duration_cast<std::chrono::milliseconds>(took).count());
    wait_ = std::max<Clock::duration>(kWait, took * kShare);
    due_.reset();
}

}  // namespace quenlox
