#include "tests/vbmp3/mpeg_files.h"

#include <algorithm>

#include "libraries/formats/mpeg_header.h"

namespace vbmp3::test {
std::vector<size_t> FrameOffsets(const Bytes& stream) {
    std::vector<size_t> offsets;
    size_t at = 0;
    while (at < stream.size()) {
        const auto header = ParseFrameHeader(std::span(stream).subspan(at));
        if (!header || header->frameBytes <= 0) break;
        offsets.push_back(at);
        at += static_cast<size_t>(header->frameBytes);
    }
    return offsets;
}

Bytes WithVbri(const Bytes& stream, uint32_t frames) {
    const size_t size = static_cast<size_t>(ParseFrameHeader(stream)->frameBytes);
    Bytes head(stream.begin(), stream.begin() + 4);
    head.resize(size);
    const char* text = "VBRI";
    std::copy(text, text + 4, head.begin() + 36);
    head[41] = 1;
    for (int i = 0; i < 4; ++i) {
        head[static_cast<size_t>(46 + i)] = static_cast<uint8_t>(stream.size() >> 8 * (3 - i));
        head[static_cast<size_t>(50 + i)] = static_cast<uint8_t>(frames >> 8 * (3 - i));
    }
    return head + stream;
}

Bytes RmpFile(const Bytes& stream, const Bytes& after) { return Riff("RMP3", Chunk("data", stream) + after); }

Bytes Mp3InWave(const Bytes& stream) {
    Bytes fmt = PcmFmt(0x55, 2, 44100, 16);
    fmt[12] = 1;  // block align of a stream
    fmt[13] = 0;
    fmt.resize(30);
    return WaveFile(fmt, stream);
}

}  // namespace vbmp3::test
