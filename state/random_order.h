// The order in which RANDOM plays the entries of one list, and the position reached in it. A plain value: what a look
// ahead draws touches nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace quenlox {

class RandomOrder {
  public:
    struct Place {
        std::int32_t position = 0;
        int index = 0;  // in the list
    };

    RandomOrder() = default;
    RandomOrder(std::vector<std::int32_t> order, std::int32_t position = 0)
        : order_(std::move(order)), position_(position) {}
    // An order of `count` entries; `draw` gives a number from 0 to `count` - 1 (0 for an empty list). Position 0 counts
    // as taken.
    static RandomOrder Draw(int count, const std::function<std::size_t(std::size_t count)>& draw);

    const std::vector<std::int32_t>& order() const { return order_; }
    std::int32_t position() const { return position_; }                                 // -1: before the first
    std::int32_t last() const { return static_cast<std::int32_t>(order_.size()) - 1; }  // -1: of an empty list
    void moveTo(std::int32_t position) { position_ = position; }

    // The entry behind the one taken last; nothing when the pass is through, or the order is none of a list of `count`.
    std::optional<Place> next(int count) const { return at(position_ + 1, count); }
    // The entry before it. In front of the first stands the last: going back draws no new order.
    std::optional<Place> previous(int count) const { return at(position_ <= 0 ? last() : position_ - 1, count); }
    // Rows leave the list (one flag for each): the pass goes on with those that are left.
    void remove(const std::vector<bool>& rows);

  private:
    std::optional<Place> at(std::int32_t position, int count) const;

    std::vector<std::int32_t> order_;
    std::int32_t position_ = 0;
};

}  // namespace quenlox
