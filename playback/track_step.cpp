#include "playback/track_step.h"

#include <utility>

namespace quenlox {

int NextIndex(int current, int count) { return current < 0 || current >= count - 1 ? 0 : current + 1; }

int PreviousIndex(int current, int count) { return current >= 1 && current < count ? current - 1 : count - 1; }

std::optional<TrackStep> PlanStep(Direction direction, const StepFrom& from, const std::function<RandomOrder()>& draw) {
    if (from.count <= 0) return std::nullopt;
    const bool forward = direction == Direction::Forward;
    if (!from.random) {
        return TrackStep{
            forward ? NextIndex(from.current, from.count) : PreviousIndex(from.current, from.count), {}, {}};
    }
    if (const auto place = forward ? from.order.next(from.count) : from.order.previous(from.count)) {
        return TrackStep{place->index, {}, place->position};
    }
    RandomOrder order = draw();
    const int first = order.last() == from.count - 1 ? order.order().front() : 0;
    return TrackStep{first, std::move(order), 0};
}

}  // namespace quenlox
