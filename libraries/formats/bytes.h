// Numbers in tags and containers. The callers have checked that the bytes are there.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace vbmp3 {

inline uint32_t BigEndian32(const uint8_t* p) {
    return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}
inline uint32_t BigEndian24(const uint8_t* p) { return uint32_t{p[0]} << 16 | uint32_t{p[1]} << 8 | p[2]; }
inline uint32_t LittleEndian32(const uint8_t* p) {
    return uint32_t{p[3]} << 24 | uint32_t{p[2]} << 16 | uint32_t{p[1]} << 8 | p[0];
}
inline uint32_t LittleEndian16(const uint8_t* p) { return uint32_t{p[1]} << 8 | p[0]; }

// Four bytes of seven bits (ID3v2, chapter 6.2 of the 2.4 structure document).
inline bool IsSynchsafe(const uint8_t* p) { return ((p[0] | p[1] | p[2] | p[3]) & 0x80) == 0; }
inline uint32_t Synchsafe32(const uint8_t* p) {
    return uint32_t{p[0]} << 21 | uint32_t{p[1]} << 14 | uint32_t{p[2]} << 7 | p[3];
}

inline bool StartsWith(std::span<const uint8_t> bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::memcmp(bytes.data(), text.data(), text.size()) == 0;
}

}  // namespace vbmp3
