// Which track comes next: pure functions over the position in a list or in its random order.
#pragma once

#include <cstdint>
#include <span>

namespace quenlox {

// `count` is at least 1; `current` may be -1 or beyond the end. Both wrap.
int NextIndex(int current, int count);
int PreviousIndex(int current, int count);

// The random order of one list. `last` is the last position of the order.
struct ShufflePlace {
    std::span<const std::int32_t> order;
    std::int32_t position = 0;
    std::int32_t last = -1;
};

struct ShuffleStep {
    bool needsNewOrder = false;  // the order is used up, or is not one of this list any more
    std::int32_t position = 0;
    int index = 0;               // in the list; not set with needsNewOrder
};
ShuffleStep NextInShuffle(const ShufflePlace& place, int count);
ShuffleStep PreviousInShuffle(const ShufflePlace& place, int count);

}  // namespace quenlox
