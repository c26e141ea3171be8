#include "playback/track_step.h"

namespace quenlox {
namespace {

ShuffleStep At(const ShufflePlace& place, int count, std::int32_t position) {
    const bool valid = place.last == count - 1 && position >= 0 && position <= place.last &&
                       static_cast<std::size_t>(position) < place.order.size();
    if (!valid) return {true, 0, 0};
    const int index = place.order[static_cast<std::size_t>(position)];
    if (index < 0 || index >= count) return {true, 0, 0};
    return {false, position, index};
}

}  // namespace

int NextIndex(int current, int count) { return current < 0 || current >= count - 1 ? 0 : current + 1; }

int PreviousIndex(int current, int count) { return current >= 1 && current < count ? current - 1 : count - 1; }

ShuffleStep NextInShuffle(const ShufflePlace& place, int count) { return At(place, count, place.position + 1); }

ShuffleStep PreviousInShuffle(const ShufflePlace& place, int count) {
    return At(place, count, place.position <= 0 ? place.last : place.position - 1);
}

}  // namespace quenlox
