// Headers of MPEG audio frames and of the information frames that encoders put in front (Xing, Info with the LAME
// extension, VBRI), read from bytes without decoding. Sources: ISO 11172-3 and 13818-3 section 2.4.2.3; MPEG 2.5 as
// commonly extended; Xing's and Fraunhofer's header descriptions; the LAME tag, revision 1.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "libraries/formats/file_layout.h"

namespace vbmp3 {

// What the decoder itself delays the sound by, in samples (layer 3 filter banks).
constexpr int kDecoderDelay = 529;

struct FrameHeader {
    int version = 0;          // 10 MPEG-1, 20 MPEG-2, 25 MPEG-2.5
    int layer = 0;            // 1 to 3
    int bitRate = 0;          // bit/s; 0: free format
    int sampleRate = 0;       // Hz
    int channels = 0;         // 1 or 2
    int mode = 0;             // 0 stereo, 1 joint stereo, 2 dual channel, 3 mono
    int samplesPerFrame = 0;  // a channel
    int frameBytes = 0;       // with the header; 0 for free format
    bool padding = false;
    bool crc = false;

    int paddingBytes() const { return padding ? (layer == 1 ? 4 : 1) : 0; }
    int sideInfoBytes() const;  // of layer 3
};

// Reads the four bytes of a header; nothing when they are none or use a reserved value.
std::optional<FrameHeader> ParseFrameHeader(std::span<const uint8_t> bytes);
// Whether both can stand in one stream: same version, layer and sample rate. Bit rate and mode may change.
bool SameStream(const FrameHeader& a, const FrameHeader& b);

// The frame that encoders put in front of the sound to tell about it.
struct InfoFrame {
    enum class Kind { Xing, Info, Vbri };
    Kind kind = Kind::Xing;
    std::optional<uint32_t> frames;  // of sound, without this frame
    std::optional<uint32_t> bytes;
    bool hasGapless = false;  // encoder delay and padding are told
    int encoderDelay = 0;     // samples
    int encoderPadding = 0;   // samples
    int averageBitRate = 0;   // kbit/s as the encoder was told, 0 unknown
    char encoder[10] = {};    // "LAME3.100"
};

// `frame` holds one whole frame, from its header on.
std::optional<InfoFrame> ParseInfoFrame(const FrameHeader& header, std::span<const uint8_t> frame);

// A stream of frames, as far as head and tail tell.
struct MpegScan {
    FrameHeader first;       // of the first frame of sound; its frameBytes is filled for free format too
    int64_t begin = 0;       // of the first frame, the information frame included
    int64_t soundBegin = 0;  // of the first frame of sound
    int64_t end = 0;
    std::optional<InfoFrame> info;
    bool freeFormat = false;
    bool variableBitRate = false;
    bool exact = false;  // `frames` and `samples` are told by the file or counted, not estimated
    int64_t frames = 0;
    int64_t samples = 0;  // length of the sound a channel, delay and padding taken off
    int bitRate = 0;      // bit/s; for variable bit rate the average
};

// How many bytes of zeros in front of the first frame are passed over by whoever only asks what a file is, perhaps for
// a row of a list, whose window waits for it: what a disk gives in some 50 ms. Who opens it to hear it passes over all.
constexpr int64_t kZerosAtAGlance = int64_t{4} << 20;

// Finds the first frame at or after audio.begin and works out the length. Looks at the head only: `mostZeros` bytes of
// zeros and one MiB of other junk. Nothing when there are no frames: a frame counts when others of its stream follow it
// up to the end or for a while. What an information frame counts is believed when the bytes can hold it.
std::optional<MpegScan> ScanMpeg(const ByteSource& file, ByteRange audio, int64_t mostZeros = kZerosAtAGlance);
// Walks every frame header of the stream, to make length and bit rate of a stream without an information frame exact.
void CountFrames(const ByteSource& file, MpegScan& scan);

}  // namespace vbmp3
