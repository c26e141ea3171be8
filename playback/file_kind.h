// The kind of a file by what the decoding library says of it. A pure function.
#pragma once

#include "state/media_kind.h"

namespace quenlox {

// The kind of a file by the flags of the decoding library (VBMP3_TYPE_*).
MediaKind KindOfFileType(int fileType);

}  // namespace quenlox
