// The frame in front of the sound that tells players its length, seek table, and how many samples to cut off at both
// ends so that it plays without gaps: Xing's header ("Info" for constant bit rate) with the LAME tag, revision 1.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace gogo {

// CRC-16 with the reversed polynomial 0xA001, as the tag uses it.
uint16_t Crc16(uint16_t crc, std::span<const uint8_t> bytes);

struct InfoFrameFields {
    std::array<uint8_t, 4> firstHeader{};  // of the sound
    bool variableBitRate = false;
    int vbrQuality = 0;
    int bitRate = 0;         // kbit/s; with VBR the least
    int sourceRate = 0;      // Hz
    int lowpass = 0;         // Hz
    int encoderDelay = 0;    // samples
    int encoderPadding = 0;  // samples
    uint16_t soundCrc = 0;
    uint64_t soundBytes = 0;           // without this frame
    std::vector<uint16_t> frameSizes;  // bytes of every frame of the sound
};

// Its bytes; the size depends on the header alone. Empty when the header is none.
std::vector<uint8_t> MakeInfoFrame(const InfoFrameFields& fields);

}  // namespace gogo
