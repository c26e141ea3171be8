// Play lists as vectors of paths. The random order of a list is its order turned by one more each time, so that tests
// know it.
#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "playback/track_source.h"
#include "state/global_state.h"

namespace quenlox {

class FakeTracks : public TrackSource {
  public:
    explicit FakeTracks(GlobalState& state) : state_(state) {}

    std::array<std::vector<std::string>, kListCount> lists;
    std::set<std::string> unplayable;
    int ordersBuilt = 0;

    int trackCount(int list) const override { return static_cast<int>(lists[static_cast<std::size_t>(list)].size()); }
    std::string trackPath(int list, int index) const override {
        return lists[static_cast<std::size_t>(list)].at(static_cast<std::size_t>(index));
    }
    RandomOrder drawOrder(int list) override {
        ++ordersBuilt;
        std::vector<std::int32_t> order;
        for (int i = 0; i < trackCount(list); ++i) order.push_back((i + ordersBuilt) % trackCount(list));
        return RandomOrder(std::move(order));
    }
    void BuildShuffleOrder(int list) override { state_.ShuffleOrder[static_cast<std::size_t>(list)] = drawOrder(list); }
    bool RemoveCurrentFileFromLists() override {
        bool removed = false;
        for (std::size_t list = 0; list < 2; ++list) {
            for (int row = trackCount(static_cast<int>(list)) - 1; row >= 0; --row) {
                if (lists[list][static_cast<std::size_t>(row)] != state_.CurrentFile) continue;
                std::vector<bool> goes(lists[list].size());
                goes[static_cast<std::size_t>(row)] = true;
                state_.ShuffleOrder[list].remove(goes);
                lists[list].erase(lists[list].begin() + row);
                const int current = state_.CurrentIndex[list];
                if (row <= current) onCurrentMoved(static_cast<int>(list), current - 1);
                removed = state_.ListDirty = true;
            }
        }
        return removed;
    }
    std::vector<ListRow> queued;
    std::optional<int> behind;  // in list A
    const std::vector<ListRow>& queue() const override { return queued; }
    void takeFromQueue(const ListRow& row) override {
        std::erase(queued, row);
        if (row.list == 0 && !behind) behind = state_.CurrentIndex[0];
    }
    std::optional<int> goesOnBehind(int list) const override { return list == 0 ? behind : std::nullopt; }
    void forgetPlaces() override { behind.reset(); }
    void setPlayable(const std::string& path, bool playable) override {
        if (playable) {
            unplayable.erase(path);
        } else {
            unplayable.insert(path);
        }
    }

  private:
    GlobalState& state_;
};

}  // namespace quenlox
