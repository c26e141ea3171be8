#include "libraries/vbmp3/decoder/open_source.h"

#include "libraries/formats/wave_source.h"
#include "libraries/vbmp3/decoder/mpeg_source.h"

namespace vbmp3 {

std::unique_ptr<Source> OpenSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info) {
    return info.mpeg ? OpenMpegSource(std::move(file), info) : OpenWaveSource(std::move(file), info);
}

}  // namespace vbmp3
