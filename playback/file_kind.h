// How the kind of a file is found out. Pure functions.
#pragma once

#include <string_view>

#include "state/media_kind.h"

namespace quenlox {

// The kind that the extension alone decides on, from the last four characters of a path in lower case: MIDI, a track of
// an audio CD, WMA. Everything else is unknown.
MediaKind KindOfExtension(std::string_view lastFour);
// The kind of a file by the flags of the decoding library (VBMP3_TYPE_*).
MediaKind KindOfFileType(int fileType);

}  // namespace quenlox
