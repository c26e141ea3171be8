#include "playback/gapless_hand_over.h"

#include <utility>

#include "platform/vbmp3.h"
#include "text/strings.h"

namespace quenlox {

void GaplessHandOver::forget() {
    handed_.reset();
    withdrawn_.reset();
    refused_.clear();
}

void GaplessHandOver::follow(std::optional<Next> next) {
    if (!next || next->path == refused_) return takeBack();
    if (!handed_ || handed_->path != next->path) {
        withdrawn_ = std::exchange(handed_, std::nullopt);
        const bool taken = vbmp3_.vbmp3_setNextFile(next->path) == LibraryError::None;
        refused_ = taken ? std::string() : next->path;
        if (!taken) return;
    }
    handed_ = std::move(next);
}

void GaplessHandOver::letGoOf(const std::string& path) {
    if (handed_ && EqualsNoCase(handed_->path, path)) takeBack();
}

void GaplessHandOver::takeBack() {
    if (!handed_) return;
    vbmp3_.vbmp3_setNextFile("");
    withdrawn_ = std::exchange(handed_, std::nullopt);
}

std::optional<GaplessHandOver::Next> GaplessHandOver::taken() {
    std::optional<Next> next = handed_ ? std::move(handed_) : std::move(withdrawn_);
    handed_.reset();
    withdrawn_.reset();
    return next;
}

}  // namespace quenlox
