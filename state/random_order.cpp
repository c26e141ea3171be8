#include "state/random_order.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quenlox {

// Every step draws from the whole range: the simple shuffle that the players of this program know. It takes position
// `count`, which lies behind the last entry, along; what that brought into the order goes back behind it.
RandomOrder RandomOrder::Draw(int count, const std::function<std::size_t(std::size_t)>& draw) {
    const auto n = static_cast<std::size_t>(std::max(count, 0));
    std::vector<std::int32_t> order(n + 1);
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t i = 0; i <= n; ++i) std::swap(order[i], order[draw(n)]);
    std::iter_swap(std::find(order.begin(), order.end(), static_cast<std::int32_t>(n)), order.end() - 1);
    order.pop_back();
    return RandomOrder(std::move(order));
}

std::optional<RandomOrder::Place> RandomOrder::at(std::int32_t position, int count) const {
    if (last() != count - 1 || position < 0 || position > last()) return std::nullopt;
    const int index = order_[static_cast<std::size_t>(position)];
    if (index < 0 || index >= count) return std::nullopt;
    return Place{position, index};
}

void RandomOrder::remove(const std::vector<bool>& rows) {
    if (order_.size() != rows.size()) return;  // no order of this list as it was
    std::vector<std::int32_t> newRow(rows.size());
    std::int32_t kept = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        newRow[row] = kept;
        if (!rows[row]) ++kept;
    }
    std::vector<std::int32_t> left;
    std::int32_t position = -1;
    for (std::size_t i = 0; i < order_.size(); ++i) {
        const auto row = static_cast<std::size_t>(order_[i]);
        if (row >= rows.size() || rows[row]) continue;
        left.push_back(newRow[row]);
        if (static_cast<std::int32_t>(i) <= position_) ++position;
    }
    if (static_cast<std::int32_t>(left.size()) != kept) return;
    order_ = std::move(left);
    position_ = position;
}

}  // namespace quenlox
