// The sound of any file that this library decodes.
#pragma once

#include "libraries/formats/source.h"

namespace vbmp3 {

// Null when the decoder refuses after all. Any thread; what comes back belongs to one at a time.
std::unique_ptr<Source> OpenSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info);

}  // namespace vbmp3
