// The kind of a file by what the decoding library says of it. A pure function.
#pragma once

#include "state/media_kind.h"

namespace quenlox {

struct FileType;

// The kind of a file by what the decoding library says of it.
MediaKind KindOfFileType(const FileType& type);

}  // namespace quenlox
