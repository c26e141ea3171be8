// What one encode is asked to do, and how it can fail.
#pragma once

#include <cstdint>
#include <string>

#include "libraries/gogo/gogo.h"

namespace gogo {

enum class Error : int32_t {
    None = GOGO_OK,
    State = GOGO_ERROR_STATE,
    Argument = GOGO_ERROR_ARGUMENT,
    Source = GOGO_ERROR_SOURCE,
    Format = GOGO_ERROR_FORMAT,
    Destination = GOGO_ERROR_DESTINATION,
    SameFile = GOGO_ERROR_SAME_FILE,
    Memory = GOGO_ERROR_MEMORY,
    Encoder = GOGO_ERROR_ENCODER
};

enum class ChannelMode { Mono = 0, Stereo = 1, JointStereo = 2 };

struct Settings {
    std::string source;  // UTF-8 paths
    std::string destination;
    ChannelMode channels = ChannelMode::JointStereo;
    int bitRate = 128;      // kbit/s; the least one with VBR
    int frequency = 44100;  // Hz
    int vbrQuality = -1;    // 0 to 9, -1 constant bit rate
    int cores = 0;          // at most; 0 all
};

}  // namespace gogo
