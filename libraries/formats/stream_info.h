// What a file is: its container, format and length, from its head and tail. Decodes nothing. Pure: any thread.
#pragma once

#include <optional>
#include <string>

#include "libraries/formats/file_layout.h"
#include "libraries/formats/mpeg_header.h"
#include "libraries/formats/wave_format.h"

namespace vbmp3 {

struct StreamInfo {
    Container container = Container::None;
    bool id3v1 = false;              // carries such a tag
    bool id3v2 = false;              // in whatever place
    std::optional<MpegScan> mpeg;    // either this
    std::optional<WaveFormat> wave;  // or this, or both for MPEG audio in a WAVE file
    ByteRange data;                  // the sound
    int sampleRate = 0;              // Hz
    int channels = 0;
    int bitRate = 0;     // bit/s
    int64_t frames = 0;  // length at sampleRate
    bool exact = false;  // the length is told by the file and not estimated
    std::string format;  // for people: "WAVE_FORMAT_PCM", "MPEG1 Layer3 44100Hz 128kbit/s Stereo"

    int64_t milliseconds() const { return sampleRate > 0 ? frames * 1000 / sampleRate : 0; }
};

// Nothing when the file is none that this library decodes. `mostZeros` as for ScanMpeg.
std::optional<StreamInfo> Probe(const ByteSource& file, const FileLayout& layout, int64_t mostZeros = kZerosAtAGlance);
// Makes the length of a variable-bit-rate stream that does not tell it exact by walking its frame headers.
void RefineLength(const ByteSource& file, StreamInfo& info);

}  // namespace vbmp3
