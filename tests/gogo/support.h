// What the tests of the encoder share: WAVE files of every form, a decoder to listen with, and whole runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "libraries/gogo/coder.h"
#include "tests/vbmp3/support.h"

namespace gogo::test {

using vbmp3::test::Bytes;
using Samples = std::vector<float>; // interleaved, -1 to 1

// Something like music: notes that decay, with the noise of a drum on every beat. The same in every run.
Samples music(int sampleRate, int channels, int64_t frames);

struct WaveForm {
    int bits = 16;              // of the container
    bool isFloat = false;
    bool extensible = false;
    enum class Size { Told, Zero, Open, Rf64 } size = Size::Told;
};
Bytes wave(const Samples& samples, int sampleRate, int channels, const WaveForm& form = {});

struct Decoded {
    int sampleRate = 0;
    int channels = 0;
    Samples samples;
    int64_t frames() const { return channels > 0 ? int64_t(samples.size()) / channels : 0; }
};
// By libmpg123, with delay and padding cut off as the information frame says.
Decoded decode(const std::string& path);

// Loudness of the difference of two sounds against that of the first one, in decibels, over frames [begin, end).
double differenceDb(const Samples& a, const Samples& b, int channels, int64_t begin, int64_t end);

// Runs to the end; the number of frames asked for, or minus the error.
int64_t encode(const Settings& settings, int threads = 2);

} // namespace gogo::test
