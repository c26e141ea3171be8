// MPEG streams put together frame by frame, for what encoders do not write.
#pragma once

#include "tests/vbmp3/support.h"

namespace vbmp3::test {

// Offsets of every frame header in a stream that begins with one.
std::vector<size_t> FrameOffsets(const Bytes& stream);

// Puts a frame with a Fraunhofer header in front of a constant-bit-rate layer 3 stream.
Bytes WithVbri(const Bytes& stream, uint32_t frames);

// RIFF around MPEG frames: form "RMP3", or "WAVE" with an MP3 format chunk; `after` follows the data chunk.
Bytes RmpFile(const Bytes& stream, const Bytes& after = {});
Bytes Mp3InWave(const Bytes& stream);

}  // namespace vbmp3::test
