// Texts in frames of ID3v2: their four encodings, and what real writers make of them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vbmp3 {

// The parts of a text field that are separated by NUL, each decoded by `encoding` (0 Latin-1, 1 UTF-16 with byte-order
// mark, 2 UTF-16BE, 3 UTF-8). At most `most` parts, the last of which ends at its NUL.
std::vector<std::string> SplitId3v2Text(int encoding, std::span<const uint8_t> bytes, size_t most = 64);
// All parts joined with " / ".
std::string JoinId3v2Text(int encoding, std::span<const uint8_t> bytes);

// How a text is written in a version of the tag: plain ASCII as such, else UTF-16 in 2.2 and 2.3 (what old players
// understand), UTF-8 in 2.4.
int EncodingFor(std::string_view utf8, int version);
// Appends the text in that encoding, with its NUL when `terminated`.
void AppendId3v2Text(std::vector<uint8_t>& out, std::string_view utf8, int encoding, bool terminated);

}  // namespace vbmp3
