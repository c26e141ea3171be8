// The chunks of a RIFF file (WAVE, RMP) and of its lists. Lengths in the file are never trusted: every range that is
// returned lies inside the file.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "libraries/vbmp3/byte_reader.h"

namespace vbmp3 {

struct FourCc {
    std::array<char, 4> text{};
    bool operator==(std::string_view other) const { return std::string_view(text.data(), 4) == other; }
};

struct Chunk {
    FourCc id;
    uint64_t offset = 0; // of the contents, from the beginning of the file
    uint64_t size = 0;   // of the contents, cut at the end of its container
    bool cut = false;    // the file claims more than there is
};

struct Riff {
    bool large = false; // RF64: lengths over 4 GB stand in the chunk "ds64"
    FourCc form;        // "WAVE", "RMP3"
    uint64_t begin = 0; // of "RIFF"
    std::vector<Chunk> chunks;

    const Chunk* find(std::string_view id) const; // the first one, or null
};

// The chunks that stand one after the other in [begin, end). Chunks have an even length; a writer that forgot the
// padding byte is forgiven. Stops at the first thing that cannot be a chunk, and after 4096.
std::vector<Chunk> readChunks(ByteReader& file, uint64_t begin, uint64_t end);

// Reads the chunk list of a RIFF or RF64 file that begins at `begin`; nothing when it is none. The length in the head
// is ignored, as interrupted and streaming writers leave it wrong. A "data" chunk of length 0 or 0xFFFFFFFF which
// nothing plausible follows reaches to the end of the file.
std::optional<Riff> readRiff(ByteReader& file, uint64_t begin = 0);

} // namespace vbmp3
