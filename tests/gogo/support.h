// What the tests of the encoder share: something to encode, a measure of what became of it, and whole runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "libraries/gogo/coder.h"
#include "tests/vbmp3/support.h"

namespace gogo::test {

using vbmp3::test::Bytes, vbmp3::test::Decoded, vbmp3::test::TempDir;
using vbmp3::test::DecodeByMpg123, vbmp3::test::ReadBytes;
using Samples = std::vector<float>;  // interleaved, -1 to 1

// Something like music: notes that decay, with the noise of a drum on every beat. The same in every run.
Samples Music(int sampleRate, int channels, int64_t frames);

// As 16-bit samples.
Bytes Wave(const Samples& samples, int sampleRate, int channels);

// Loudness of the difference of two sounds against that of the first one, in decibels, over frames [begin, end).
double DifferenceDb(const Samples& a, const Samples& b, int channels, int64_t begin, int64_t end);

// Runs to the end; the number of frames asked for, or minus the error.
int64_t Encode(const Settings& settings, int threads = 2);

}  // namespace gogo::test
