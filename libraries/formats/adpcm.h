// Blocks of Microsoft and IMA ADPCM in WAVE files (Multimedia Data Standards Update, 1994). Pure.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "libraries/formats/wave_format.h"

namespace vbmp3 {

// Appends the interleaved samples of one block, from -1 to 1. A block cut short gives the samples that it holds.
void DecodeAdpcmBlock(const WaveFormat& format, std::span<const uint8_t> block, std::vector<float>& out);

}  // namespace vbmp3
