// What an author should know of a package: what the loader passed over or changed, and what it shows but nobody can use.
// On the user-interface thread.
#pragma once

#include <string>

#include "skin/skin_definition.h"
#include "skin/skin_notes.h"

namespace quenlox {

// Reads the package of that definition file with all its sets of pictures. In the order of the files and lines.
SkinNotes CheckSkin(FileSystem& files, const std::string& definitionFile);

// One line for each note and one with their numbers; `most` notes at most.
std::string ReportOf(const SkinNotes& notes, int most);

}  // namespace quenlox
