// Encodes one part of a file by an encoder of its own, so that parts can be encoded side by side. Where a part begins
// and ends depends on the file alone and never on who encodes it: the bytes are the same on every machine.
//
// A part that does not begin the file is led in: its encoder starts some frames before, so that what it remembers
// of the past (masking, hearing threshold, filters) is what a single encoder would remember, and these frames are
// dropped. A part that does not end the file runs on for some frames, so that the seam can be laid where the bit
// reservoirs of both fit (frames.h); there the next part has had time to fill its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "libraries/gogo/frames.h"
#include "libraries/gogo/pcm_reader.h"
#include "libraries/gogo/settings.h"

namespace gogo {

constexpr int kPartFrames = 1024;  // length of a part, 27 s at 44.1 kHz
constexpr int kLeadIn = 32;        // frames encoded and dropped before a part
constexpr int kOverlap = 16;       // frames that a part goes on into the next

struct Part {
    int64_t first = 0;  // frame
    int64_t frames = 0;
    bool last = false;

    int lead() const { return first == 0 ? 0 : kLeadIn; }
    int overlap() const { return last ? 0 : kOverlap; }
};

// Number of the parts of a file of `frames` frames, and part `index` of them.
int64_t PartCount(int64_t frames);
Part PartAt(int64_t index, int64_t frames);

// What an encoder of these settings will do.
struct EncoderFacts {
    int samplesPerFrame = 0;
    int delay = 0;    // samples
    int lowpass = 0;  // Hz
    int bitRate = 0;  // kbit/s after LAME has found the nearest
};

// False when LAME refuses the settings.
bool AskEncoder(const Settings& settings, int channels, EncoderFacts& facts);

// Frames that LAME makes of so many samples, its delay and padding included.
int64_t FrameCount(int64_t samples, const EncoderFacts& facts);

// Encodes the samples of a part, which begin with its lead-in. `frameDone` is called after every frame of the part
// itself; it returns false to give up. The result is None, Memory or Encoder; after giving up None with no frames.
Error EncodePart(const Settings& settings, int channels, const Part& part, const Pcm& pcm,
                 const std::function<bool()>& frameDone, FrameRun& result);

}  // namespace gogo
