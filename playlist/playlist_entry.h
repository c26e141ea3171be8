// One row of a play list as its five columns show it.
#pragma once

#include <string>

namespace quenlox {

enum EntryColumn : int { kTitleColumn, kNameColumn, kAlbumColumn, kTimeColumn, kFileColumn, kEntryColumns };

struct PlaylistEntry {
    std::string Title;
    std::string Name;  // artist
    std::string Album;
    std::string Time;  // minutes ":" two-digit seconds
    std::string File;  // full path, the identity of the row
    bool operator==(const PlaylistEntry&) const = default;
};

}  // namespace quenlox
