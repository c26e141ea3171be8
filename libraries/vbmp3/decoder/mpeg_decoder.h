// One handle of libmpg123 on a range of a file, with its input and output made ours: only the frames between the tags
// are seen, the samples come in the coding asked for, every frame decodes to a fixed number of them (delay and
// padding are not cut here). One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "libraries/files/file_source.h"
#include "libraries/formats/file_layout.h"

namespace vbmp3 {

class MpegDecoder {
  public:
    enum class Samples { Float32, Int16 };
    struct Piece {
        std::span<const uint8_t> bytes;  // interleaved, valid until the next call
        int sampleRate = 0;
        size_t frames = 0;
    };

    // `range`: from the first frame of sound to the end. `channels` is what comes out, 1 or 2: a mono stream gives both
    // sides alike, and stereo is mixed for 1. Null when no frame can be decoded.
    static std::unique_ptr<MpegDecoder> open(std::shared_ptr<const ByteSource> file, ByteRange range, Samples samples,
                                             int channels);
    ~MpegDecoder();
    MpegDecoder(const MpegDecoder&) = delete;
    MpegDecoder& operator=(const MpegDecoder&) = delete;

    int sampleRate() const { return sampleRate_; }  // of the first frame
    // The next frame decoded; no frames in it at the end of the stream.
    Piece next();
    // The next piece begins with sample `frame`. False when it cannot be reached (beyond the end). The samples are
    // those of a decode from the beginning to within the rounding of floats: the synthesis filter adds in an order that
    // depends on what was decoded before. next must be called between two seeks.
    bool seek(int64_t frame);

  private:
    struct Impl;
    MpegDecoder();
    bool start(bool readAhead);

    std::unique_ptr<Impl> impl_;
    int sampleRate_ = 0;
};

}  // namespace vbmp3
