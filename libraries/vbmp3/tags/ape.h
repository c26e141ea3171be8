// The APE tag, versions 1 and 2, as described at wiki.hydrogenaud.io: read as the last source of fields, and
// otherwise left alone.
#pragma once

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/tag_fields.h"

namespace vbmp3 {

TagFields ReadApe(HeadTailReader& reader, ByteRange range);
// Pictures and items that are none of the fields. What cannot be read counts as one item.
TagExtras ReadApeExtras(HeadTailReader& reader, ByteRange range);

}  // namespace vbmp3
