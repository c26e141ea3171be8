#include "tests/vbmp3/mpeg_files.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "libraries/formats/mpeg_header.h"

namespace vbmp3::test {
namespace {

class Bits {
  public:
    void put(uint32_t value, int count) {
        for (int i = count - 1; i >= 0; --i) {
            if (used_ % 8 == 0) bytes.push_back(0);
            bytes.back() = uint8_t(bytes.back() | (value >> i & 1) << (7 - used_ % 8));
            ++used_;
        }
    }
    Bytes bytes;

  private:
    size_t used_ = 0;
};

}  // namespace

Bytes layer1File(int frames) {
    constexpr int kFrameBytes = 12 * 192000 / 48000 * 4;
    constexpr int kBits = 15;  // a sample of subband 0
    Bytes file;
    for (int frame = 0; frame < frames; ++frame) {
        Bits bits;
        bits.put(0xFFFF, 16);  // MPEG-1, layer 1, no checksum
        bits.put(0x64, 8);     // 192 kbit/s, 48 kHz
        bits.put(0xC0, 8);     // mono
        for (int band = 0; band < 32; ++band) bits.put(band == 0 ? kBits - 1 : 0, 4);
        bits.put(9, 6);  // scale factor 2 * 2^(-9/3) = 0.25
        for (int i = 0; i < 12; ++i) {
            const double phase = 2 * std::numbers::pi * 440 * 32 / 48000 * (frame * 12 + i);
            const double value = 0.9 * std::cos(phase);
            // Offset binary with the top bit inverted (ISO 11172-3, 2.4.3.2).
            bits.put(uint32_t(std::lround(value * 16383) + 16383) & 0x7FFF, kBits);
        }
        bits.bytes.resize(kFrameBytes);
        file = std::move(file) + bits.bytes;
    }
    return file;
}

std::vector<size_t> frameOffsets(const Bytes& stream) {
    std::vector<size_t> offsets;
    size_t at = 0;
    while (at < stream.size()) {
        const auto header = parseFrameHeader(std::span(stream).subspan(at));
        if (!header || header->frameBytes <= 0) break;
        offsets.push_back(at);
        at += size_t(header->frameBytes);
    }
    return offsets;
}

Bytes withVbri(const Bytes& stream, uint32_t frames) {
    const size_t size = size_t(parseFrameHeader(stream)->frameBytes);
    Bytes head(stream.begin(), stream.begin() + 4);
    head.resize(size);
    const char* text = "VBRI";
    std::copy(text, text + 4, head.begin() + 36);
    head[41] = 1;
    for (int i = 0; i < 4; ++i) {
        head[size_t(46 + i)] = uint8_t(stream.size() >> 8 * (3 - i));
        head[size_t(50 + i)] = uint8_t(frames >> 8 * (3 - i));
    }
    return head + stream;
}

Bytes rmpFile(const Bytes& stream, const Bytes& after) { return riff("RMP3", chunk("data", stream) + after); }

Bytes mp3InWave(const Bytes& stream) {
    Bytes fmt = pcmFmt(0x55, 2, 44100, 16);
    fmt[12] = 1;  // block align of a stream
    fmt[13] = 0;
    fmt.resize(30);
    return waveFile(fmt, stream);
}

}  // namespace vbmp3::test
