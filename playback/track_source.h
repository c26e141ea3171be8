// Where playback takes its tracks from: what the play lists are to the step from track to track. The list model
// implements it. Lists 0 to 2 are A, B and C, list 3 (kFolderList) is the folder shown in the browser.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "state/random_order.h"

namespace quenlox {

struct ListRow {
    int list = 0;
    int row = 0;
    bool operator==(const ListRow&) const = default;
};

class TrackSource {
  public:
    virtual ~TrackSource() = default;

    // Rows have moved or gone: the current entry of a list is at this index now, -1 for none.
    std::function<void(int list, int index)> onCurrentMoved;

    virtual int trackCount(int list) const = 0;
    virtual std::string trackPath(int list, int index) const = 0;  // index 0 to trackCount - 1
    // A new random order of the list's entries.
    virtual RandomOrder drawOrder(int list) = 0;
    // Makes a drawn order that of the list.
    virtual void BuildShuffleOrder(int list) = 0;
    // Removes every row of lists A and B that holds CurrentFile. True when one was removed. The current indexes of the
    // lists are kept on what they denoted; an index whose row went becomes the row before it, so that the next step
    // takes what stood behind it.
    virtual bool RemoveCurrentFileFromLists() = 0;
    // Rows that the user wants to hear before anything else, in this order. Each stays on its row, whatever is done to
    // the lists.
    virtual const std::vector<ListRow>& queue() const = 0;
    // The row is about to become the current one and leaves the queue.
    virtual void takeFromQueue(const ListRow& row) = 0;
    // The row that was the current one of the list before rows of the queue were played: the list goes on behind it.
    virtual std::optional<int> goesOnBehind(int list) const = 0;
    virtual void forgetPlaces() = 0;  // something else has been chosen: lists go on behind what is current
    // The file could not be played, or could be again: its rows say so.
    virtual void setPlayable(const std::string& path, bool playable) = 0;
};

}  // namespace quenlox
