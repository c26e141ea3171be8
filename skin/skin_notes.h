// What reading a skin passed over or had to change, for its author. Texts are Japanese, as everywhere in the program.
#pragma once

#include <string>
#include <vector>

namespace quenlox {

struct SkinNote {
    bool error = false;  // else it is only doubtful
    std::string file;    // its name without the folder
    int line = 0;        // from 1; 0 when it is about no line
    std::string text;
    bool operator==(const SkinNote&) const = default;
};
using SkinNotes = std::vector<SkinNote>;

}  // namespace quenlox
