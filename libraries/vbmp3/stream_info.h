// What a file is: its type flags, format and length, from its head and tail. Decodes nothing.
#pragma once

#include <optional>
#include <string>

#include "libraries/vbmp3/mpeg_header.h"
#include "libraries/vbmp3/tags/file_layout.h"
#include "libraries/vbmp3/vbmp3.h"
#include "libraries/vbmp3/wave_format.h"

namespace vbmp3 {

struct StreamInfo {
    int fileType = 0;                // VBMP3_TYPE_* flags
    std::optional<MpegScan> mpeg;    // either this
    std::optional<WaveFormat> wave;  // or this, or both for MPEG audio in a WAVE file
    ByteRange data;                  // the sound
    int sampleRate = 0;              // Hz
    int channels = 0;
    int bitRate = 0;     // bit/s
    int64_t frames = 0;  // length at sampleRate
    bool exact = false;  // the length is told by the file and not estimated
    std::string format;  // as in vbmp3_FileInfo

    int64_t milliseconds() const { return sampleRate > 0 ? frames * 1000 / sampleRate : 0; }
};

// Nothing when the file is none that this library decodes.
std::optional<StreamInfo> probe(const ByteSource& file, const FileLayout& layout);
// Makes the length of a variable-bit-rate stream that does not tell it exact by walking its frame headers.
void refineLength(const ByteSource& file, StreamInfo& info);
// Fills the fields that are not tags.
void fillFormat(const StreamInfo& info, vbmp3_FileInfo& record);

}  // namespace vbmp3
