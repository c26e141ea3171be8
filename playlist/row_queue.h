// Rows of the play lists that the user wants to hear next, in the order in which he chose them, and where each list
// goes on afterwards. It only keeps numbers of rows; Playlists tells it of every change of a list, so that they stay on
// their rows. On the user-interface thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "playback/track_source.h"
#include "state/global_state.h"

namespace quenlox {

// A row that went with its place in the queue; a row that comes back takes it again.
struct GoneFromQueue {
    std::int32_t row = 0;       // in the list as it was with that row
    std::int32_t position = 0;  // in the queue, from 0
};

class RowQueue {
  public:
    const std::vector<ListRow>& rows() const { return rows_; }
    std::optional<int> positionOf(int list, int row) const;  // from 0
    void add(int list, int row);                             // at the end, unless it is there
    void remove(int list, int row);

    // The row leaves the queue to be played. Its list goes on behind `current`, if that is a row, or behind the row
    // that has been given here before.
    void take(const ListRow& row, int current);
    std::optional<int> goesOnBehind(int list) const { return behind_[static_cast<std::size_t>(list)]; }
    void forgetPlaces() { behind_ = {}; }

    // The row at order[i] has come to place i; numbers in it that no row had before are of new ones.
    void moved(int list, const std::vector<std::int32_t>& order);
    std::vector<GoneFromQueue> removed(int list, const std::vector<bool>& which);
    void cameBack(int list, const std::vector<GoneFromQueue>& gone);

  private:
    bool touches(int list) const;

    std::vector<ListRow> rows_;
    std::array<std::optional<int>, kListCount> behind_;
};

}  // namespace quenlox
