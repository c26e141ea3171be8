// Decoding a layer 3 stream in sections that do not know of each other, so that several processors share the work, with
// the same samples to the last bit as a decode from the beginning.
//
// A frame depends on those before it in three ways: on the overlap of its filter bank (one frame), on bytes of the bit
// reservoir (up to 511 bytes back), and on how often the synthesis filter has run, which decides the order in which it
// adds. So a section is decoded from 24 frames before its first: the first 16 of these are handed to the decoder with
// their side information blanked, which makes them silent but keeps their bytes as reservoir, and 24 is a whole number
// of the filter's cycles.
#pragma once

#include <memory>
#include <vector>

#include "libraries/formats/mpeg_header.h"
#include "libraries/vbmp3/decoder/mpeg_decoder.h"

namespace vbmp3 {

struct MpegSection {
    int64_t firstFrame = 0;
    int64_t frames = 0;
};

class MpegSections {
  public:
    // Walks the frame headers and divides the stream. No sections when it cannot be divided safely (another layer, free
    // format, junk between frames, rates that change) or is too short to be worth it. `length`:
    // frames of a section, at least.
    MpegSections(std::shared_ptr<const ByteSource> file, const MpegScan& scan, int64_t length);

    const std::vector<MpegSection>& sections() const { return sections_; }
    int channels() const { return channels_; }  // 2 when any frame is stereo
    // Samples of one section, 16 bits interleaved; any thread. False when the decoder did not give every frame.
    bool decode(const MpegSection& section, std::vector<int16_t>& samples) const;

  private:
    bool walk(const MpegScan& scan);
    bool canBeginAt(int64_t frame) const;
    FrameHeader headerOf(int64_t frame) const;

    std::shared_ptr<const ByteSource> file_;
    std::vector<int64_t> offsets_;  // of every frame, and the end of the last
    std::vector<MpegSection> sections_;
    int samplesPerFrame_ = 0;
    int channels_ = 1;
};

}  // namespace vbmp3
