// Lyrics in frames of an ID3v2 tag: SYLT and USLT (SLT and ULT in version 2.2), id3.org: id3v2.4.0-frames, 4.8 and 4.9.
// The contents of a frame come without unsynchronisation. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vbmp3 {

// Synchronised lyrics as the text of an lrc file, UTF-8, with stamps for lines and for syllables. Stamps that count
// MPEG frames become time through `msPerMpegFrame`; nothing when the frame is of another kind (chords, events,
// pictures), holds no text, or counts frames and their length is not known (0).
std::optional<std::string> ReadSylt(std::span<const uint8_t> contents, double msPerMpegFrame);

// The text of unsynchronised lyrics, UTF-8, which may itself carry stamps; nothing when it is empty.
std::optional<std::string> ReadUslt(std::span<const uint8_t> contents);

}  // namespace vbmp3
