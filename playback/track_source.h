// Where playback takes its tracks from: what the play lists are to the step from track to track. The list model
// implements it. Lists 0 to 2 are A, B and C, list 3 (kFolderList) is the folder shown in the browser.
#pragma once

#include <string>

namespace quenlox {

class TrackSource {
  public:
    virtual ~TrackSource() = default;
    virtual int trackCount(int list) const = 0;
    virtual std::string trackPath(int list, int index) const = 0;  // index 0 to trackCount - 1
    // Draws a new random order: ShuffleOrder[list] holds at its positions 0 to count - 1 every index once;
    // ShufflePos[list] becomes 0 and ShufflePos[list + 4] the last position (-1 for an empty list).
    virtual void BuildShuffleOrder(int list) = 0;
    // Removes every row of lists A and B that holds CurrentFile. True when one was removed. The current indexes of the
    // lists are kept on what they denoted; an index whose row went becomes the row before it, so that the next step
    // takes what stood behind it.
    virtual bool RemoveCurrentFileFromLists() = 0;
};

}  // namespace quenlox
