#include "libraries/vbmp3/decoder/without_holes.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace vbmp3 {

void WithoutHoles::restart() {
    holes_.clear();
    front_ = zeros_ = 0;
}

int64_t WithoutHoles::skippedBefore(int64_t offset) const {
    const auto behind = std::upper_bound(holes_.begin(), holes_.end(), offset,
                                         [](int64_t at, const Hole& hole) { return at < hole.offset; });
    return behind == holes_.begin() ? 0 : std::prev(behind)->skipped;
}

// The run of zeros that goes on at this place of the file.
void WithoutHoles::skipHole(int64_t at) {
    const int64_t begin = at;
    while (at < range_.end) {
        const auto view = reader_.view(at, 1);
        const size_t zeros = ZerosAtFront(view);
        at = std::min(range_.end, at + static_cast<int64_t>(zeros));
        if (zeros < view.size() || view.empty()) break;
    }
    if (at > begin) holes_.push_back({front_, skippedBefore(front_) + at - begin});
}

size_t WithoutHoles::readAt(int64_t offset, void* to, size_t count) {
    if (offset < 0 || count == 0) return 0;
    const bool atFront = offset == front_;
    if (atFront && zeros_ >= kKept) skipHole(range_.begin + offset + skippedBefore(offset));
    if (atFront) count = std::min<size_t>(count, kKept);
    // Up to the next hole at most.
    const auto next = std::upper_bound(holes_.begin(), holes_.end(), offset,
                                       [](int64_t place, const Hole& hole) { return place < hole.offset; });
    if (next != holes_.end()) count = static_cast<size_t>(std::min(static_cast<int64_t>(count), next->offset - offset));
    const int64_t at = range_.begin + offset + skippedBefore(offset);
    count = static_cast<size_t>(
        std::clamp<int64_t>(range_.end - at, 0, static_cast<int64_t>(std::min<size_t>(count, 1u << 30))));
    if (count == 0) return 0;
    const auto view = reader_.view(at, count);
    count = std::min(count, view.size());
    std::memcpy(to, view.data(), count);
    if (offset + static_cast<int64_t>(count) <= front_) return count;
    const auto* bytes = static_cast<const uint8_t*>(to);
    int64_t zeros = 0;
    while (zeros < static_cast<int64_t>(count) && bytes[count - 1 - static_cast<size_t>(zeros)] == 0) ++zeros;
    zeros_ = zeros == static_cast<int64_t>(count) && atFront ? zeros_ + zeros : zeros;
    front_ = offset + static_cast<int64_t>(count);
    return count;
}

}  // namespace vbmp3
