// A stream of sound to be read from front to back, with seeking. Frames are interleaved stereo floats from -1 to 1,
// whatever the file holds, at one rate that never changes. A source belongs to one thread at a time; opening may happen
// on another than reading.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "libraries/formats/stream_info.h"

namespace vbmp3 {

class Source {
  public:
    virtual ~Source() = default;
    virtual int sampleRate() const = 0;
    // Fills `stereo` (twice the number of frames) as far as there are frames; returns their number, 0 at the end.
    // Damage in the file is passed over.
    virtual size_t read(std::span<float> stereo) = 0;
    // The next frame read is number `frame`; beyond the end is the end. Exact to the frame.
    virtual void seek(int64_t frame) = 0;
};

}  // namespace vbmp3
