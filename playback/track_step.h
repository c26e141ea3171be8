// Which track comes next: pure functions over the position in a list or in its random order.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "state/random_order.h"

namespace quenlox {

enum class Direction { Forward, Backward };

// `count` is at least 1; `current` may be -1 or beyond the end. Both wrap.
int NextIndex(int current, int count);
int PreviousIndex(int current, int count);

// What a step looks at.
struct StepFrom {
    int count = 0;     // entries of the list
    int current = -1;  // the current one
    bool random = false;
    const RandomOrder& order;
};

struct TrackStep {
    int index = 0;                         // in the list
    std::optional<RandomOrder> newOrder;   // the pass is through: this one takes its place
    std::optional<std::int32_t> position;  // in the order; RANDOM only
};

// The step to the next or to the previous entry; nothing when there is none. `draw` gives an order for a new pass.
std::optional<TrackStep> PlanStep(Direction direction, const StepFrom& from, const std::function<RandomOrder()>& draw);

}  // namespace quenlox
