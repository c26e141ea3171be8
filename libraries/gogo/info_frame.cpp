#include "libraries/gogo/info_frame.h"

#include <algorithm>
#include <cstring>
#include <string>

#include <lame/lame.h>

#include "libraries/formats/mpeg_header.h"

namespace gogo {
namespace {

constexpr int kTagBytes = 156;  // Xing's part 120, LAME's 36

class Writer {
  public:
    explicit Writer(uint8_t* at) : at_(at) {}
    void put(uint64_t value, int bytes) {
        for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) *at_++ = static_cast<uint8_t>(value >> shift);
    }
    void put(const char* text, size_t size) {
        std::memcpy(at_, text, size);
        at_ += size;
    }

  private:
    uint8_t* at_;
};

// Position in 256ths of the file at each hundredth of its frames.
std::array<uint8_t, 100> SeekTable(const InfoFrameFields& fields, uint64_t infoBytes) {
    std::array<uint8_t, 100> table{};
    const uint64_t frames = fields.frameSizes.size(), total = infoBytes + fields.soundBytes;
    uint64_t at = infoBytes, frame = 0;
    for (size_t i = 0; i < table.size() && total > 0; ++i) {
        for (; frame < frames * i / 100; ++frame) at += fields.frameSizes[frame];
        table[i] = static_cast<uint8_t>(std::min<uint64_t>(255, i == 0 ? 0 : at * 256 / total));
    }
    return table;
}

uint32_t Clamped(uint64_t value) { return static_cast<uint32_t>(std::min<uint64_t>(value, UINT32_MAX)); }

// Takes the sound's own bit rate when there is room, else the lowest that has it.
std::vector<uint8_t> EmptyFrame(const std::array<uint8_t, 4>& first, bool variableBitRate) {
    std::array<uint8_t, 4> header = first;
    header[1] |= 0x01;                                   // no CRC
    header[2] = static_cast<uint8_t>(header[2] & 0xFD);  // no padding
    header[3] = static_cast<uint8_t>(header[3] & 0xCF);  // no mode extension
    for (int index = variableBitRate ? 1 : header[2] >> 4; index < 15; ++index) {
        header[2] = static_cast<uint8_t>((header[2] & 0x0F) | index << 4);
        const auto parsed = vbmp3::ParseFrameHeader(header);
        if (!parsed || parsed->layer != 3 || parsed->frameBytes < 4 + parsed->sideInfoBytes() + kTagBytes) continue;
        std::vector<uint8_t> frame(static_cast<size_t>(parsed->frameBytes));
        std::copy(header.begin(), header.end(), frame.begin());
        return frame;
    }
    return {};
}

}  // namespace

uint16_t Crc16(uint16_t crc, std::span<const uint8_t> bytes) {
    static const auto table = [] {
        std::array<uint16_t, 256> built{};
        for (unsigned i = 0; i < built.size(); ++i) {
            unsigned value = i;
            for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? value >> 1 ^ 0xA001 : value >> 1;
            built[i] = static_cast<uint16_t>(value);
        }
        return built;
    }();
    for (const uint8_t byte : bytes) crc = static_cast<uint16_t>(crc >> 8 ^ table[(crc ^ byte) & 0xFF]);
    return crc;
}

std::vector<uint8_t> MakeInfoFrame(const InfoFrameFields& fields) {
    std::vector<uint8_t> frame = EmptyFrame(fields.firstHeader, fields.variableBitRate);
    if (frame.empty()) return frame;
    const auto header = *vbmp3::ParseFrameHeader(frame);
    const size_t start = static_cast<size_t>(4 + header.sideInfoBytes());
    Writer out(frame.data() + start);
    out.put(fields.variableBitRate ? "Xing" : "Info", 4);
    out.put(0x0F, 4);  // frames, bytes, table and quality are there
    out.put(Clamped(fields.frameSizes.size()), 4);
    out.put(Clamped(fields.soundBytes + frame.size()), 4);
    for (const uint8_t entry : SeekTable(fields, frame.size())) out.put(entry, 1);
    out.put(static_cast<uint64_t>(fields.variableBitRate ? 100 - 10 * fields.vbrQuality : 0), 4);

    const std::string encoder = (std::string("LAME") + get_lame_short_version() + std::string(9, ' ')).substr(0, 9);
    out.put(encoder.data(), encoder.size());
    out.put(fields.variableBitRate ? 4 : 1, 1);  // revision 0; constant, or VBR of the newer kind
    out.put(static_cast<uint64_t>(std::clamp((fields.lowpass + 50) / 100, 0, 255)), 1);
    out.put(0, 8);     // peak and loudness are not measured
    out.put(0x14, 1);  // psychoacoustic model nspsytune, hearing threshold of type 4
    out.put(static_cast<uint64_t>(std::min(fields.bitRate, 255)), 1);
    out.put(static_cast<uint64_t>(std::clamp(fields.encoderDelay, 0, 4095)) << 12 |
                static_cast<uint64_t>(std::clamp(fields.encoderPadding, 0, 4095)),
            3);
    const int mode = header.mode == 3 ? 0 : header.mode == 1 ? 3 : 1;
    const int rate = fields.sourceRate <= 32000   ? 0
                     : fields.sourceRate <= 44100 ? 1
                     : fields.sourceRate <= 48000 ? 2
                                                  : 3;
    out.put(static_cast<uint64_t>(rate << 6 | mode << 2 | 1), 1);
    out.put(0, 3);  // gain change, surround and preset
    out.put(Clamped(fields.soundBytes + frame.size()), 4);
    out.put(fields.soundCrc, 2);
    out.put(Crc16(0, std::span(frame).first(start + kTagBytes - 2)), 2);
    return frame;
}

}  // namespace gogo
