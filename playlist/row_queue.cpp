#include "playlist/row_queue.h"

#include <algorithm>

namespace quenlox {

std::optional<int> RowQueue::positionOf(int list, int row) const {
    const auto found = std::find(rows_.begin(), rows_.end(), ListRow{list, row});
    if (found == rows_.end()) return std::nullopt;
    return static_cast<int>(found - rows_.begin());
}

void RowQueue::add(int list, int row) {
    if (!positionOf(list, row)) rows_.push_back({list, row});
}

void RowQueue::remove(int list, int row) { std::erase(rows_, ListRow{list, row}); }

void RowQueue::take(const ListRow& row, int current) {
    remove(row.list, row.row);
    std::optional<int>& behind = behind_[static_cast<std::size_t>(row.list)];
    if (!behind && current >= 0) behind = current;
}

bool RowQueue::touches(int list) const {
    return goesOnBehind(list) || std::ranges::any_of(rows_, [list](const ListRow& row) { return row.list == list; });
}

void RowQueue::moved(int list, const std::vector<std::int32_t>& order) {
    if (!touches(list)) return;
    std::vector<std::int32_t> place(order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        place[static_cast<std::size_t>(order[i])] = static_cast<std::int32_t>(i);
    for (ListRow& row : rows_) {
        if (row.list == list) row.row = place[static_cast<std::size_t>(row.row)];
    }
    std::optional<int>& behind = behind_[static_cast<std::size_t>(list)];
    if (behind && *behind >= 0 && *behind < static_cast<int>(place.size()))
        behind = place[static_cast<std::size_t>(*behind)];
}

std::vector<GoneFromQueue> RowQueue::removed(int list, const std::vector<bool>& which) {
    std::vector<GoneFromQueue> gone;
    if (!touches(list)) return gone;
    // How many rows go before each, and behind the last.
    std::vector<std::int32_t> before{0};
    for (const bool goes : which) before.push_back(before.back() + goes);
    std::vector<ListRow> kept;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        ListRow row = rows_[i];
        const auto at = static_cast<std::size_t>(row.row);
        if (row.list == list && which[at]) {
            gone.push_back({row.row, static_cast<std::int32_t>(i)});
            continue;
        }
        if (row.list == list) row.row -= before[at];
        kept.push_back(row);
    }
    rows_ = std::move(kept);
    // When the row itself goes, the one before it takes its place.
    std::optional<int>& behind = behind_[static_cast<std::size_t>(list)];
    if (behind && *behind >= 0 && *behind < static_cast<int>(which.size()))
        behind = *behind - before[static_cast<std::size_t>(*behind) + 1];
    return gone;
}

void RowQueue::cameBack(int list, const std::vector<GoneFromQueue>& gone) {
    for (const GoneFromQueue& one : gone) {
        if (positionOf(list, one.row)) continue;
        const auto position = std::min(static_cast<std::size_t>(one.position), rows_.size());
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(position), {list, one.row});
    }
}

}  // namespace quenlox
