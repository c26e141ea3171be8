#include "tests/vbmp3/mpeg_files.h"

#include <algorithm>

#include "libraries/formats/mpeg_header.h"

namespace vbmp3::test {
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
