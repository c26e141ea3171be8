#include "libraries/vbmp3/decoder/open_source.h"

#include "libraries/formats/wave_source.h"
#include "libraries/vbmp3/decoder/mpeg_source.h"

namespace vbmp3 {

std::unique_ptr<Source> openSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info) {
    return info.mpeg ? openMpegSource(std::move(file), info) : openWaveSource(std::move(file), info);
}

}  // namespace vbmp3
