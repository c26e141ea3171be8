// WAVE files as a source: integer and float PCM, A-law, mu-law, Microsoft and IMA ADPCM.
#pragma once

#include "libraries/formats/source.h"

namespace vbmp3 {

std::unique_ptr<Source> OpenWaveSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info);

}  // namespace vbmp3
