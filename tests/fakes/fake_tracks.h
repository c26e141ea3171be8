// Play lists as vectors of paths. The random order of a list is its order turned by one, so that tests know it.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "app/global_state.h"
#include "playback/track_source.h"

namespace quenlox {

class FakeTracks : public TrackSource {
  public:
    explicit FakeTracks(GlobalState& state) : state_(state) {}

    std::array<std::vector<std::string>, kListCount> lists;
    int ordersBuilt = 0;

    int trackCount(int list) const override { return static_cast<int>(lists[static_cast<std::size_t>(list)].size()); }
    std::string trackPath(int list, int index) const override {
        return lists[static_cast<std::size_t>(list)].at(static_cast<std::size_t>(index));
    }
    void BuildShuffleOrder(int list) override {
        ++ordersBuilt;
        const int count = trackCount(list);
        auto& order = state_.ShuffleOrder[static_cast<std::size_t>(list)];
        order.clear();
        for (int i = 0; i < count; ++i) order.push_back((i + ordersBuilt) % count);
        state_.ShufflePos[static_cast<std::size_t>(list)] = 0;
        state_.ShufflePos[static_cast<std::size_t>(list) + 4] = count - 1;
    }
    bool RemoveCurrentFileFromLists() override {
        bool removed = false;
        for (std::size_t list = 0; list < 2; ++list) {
            int& current = state_.CurrentIndex[list];
            for (int row = trackCount(static_cast<int>(list)) - 1; row >= 0; --row) {
                if (lists[list][static_cast<std::size_t>(row)] != state_.CurrentFile) continue;
                lists[list].erase(lists[list].begin() + row);
                if (row <= current) --current;
                removed = state_.ListDirty = true;
            }
        }
        return removed;
    }

  private:
    GlobalState& state_;
};

}  // namespace quenlox
