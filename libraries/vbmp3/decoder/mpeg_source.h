// MPEG audio (a plain stream, RMP, MP3 in WAVE) as a source: the decoder's frames without encoder delay and padding.
#pragma once

#include "libraries/formats/source.h"
#include "libraries/vbmp3/decoder/mpeg_decoder.h"

namespace vbmp3 {

// Which of the decoder's samples are the sound.
struct MpegTrim {
    int64_t skip = 0;    // samples before the sound
    int64_t length = 0;  // of the sound, INT64_MAX when only the end of the stream tells
};
MpegTrim TrimOf(const MpegScan& scan);

std::unique_ptr<Source> OpenMpegSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info);

}  // namespace vbmp3
