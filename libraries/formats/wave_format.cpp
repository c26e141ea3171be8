#include "libraries/formats/wave_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "libraries/formats/bytes.h"

namespace vbmp3 {
namespace {

// What the sound chain works at. Files of other rates are refused, so that a player gives them to another decoder.
constexpr uint32_t kLowestRate = 8000, kHighestRate = 192000;  // Hz

// Speaker positions of a channel mask, in the order of its bits.
enum Side { Left, Right, Centre, Bass, LeftSurround, RightSurround, MiddleSurround };
constexpr std::array<Side, 18> kSpeakers = {Left, Right,  Centre,         Bass,         LeftSurround,   RightSurround,
                                            Left, Right,  MiddleSurround, LeftSurround, RightSurround,  Centre,
                                            Left, Centre, Right,          LeftSurround, MiddleSurround, RightSurround};

// What the number of channels means when no mask tells: 3 L R C, 4 quadraphonic, 5 without bass, 6 5.1, 7 6.1, 8 7.1.
constexpr std::array<uint32_t, 9> kUsualMasks = {0, 0x4, 0x3, 0x7, 0x33, 0x37, 0x3F, 0x13F, 0x63F};

int16_t ExpandALaw(uint8_t code) {
    code ^= 0x55;
    int value = (code & 0x0F) << 4;
    const int segment = (code & 0x70) >> 4;
    value += segment == 0 ? 8 : 0x108;
    if (segment > 1) value <<= segment - 1;
    return static_cast<int16_t>((code & 0x80) != 0 ? value : -value);
}

int16_t ExpandMuLaw(uint8_t code) {
    code = static_cast<uint8_t>(~code);
    const int value = ((((code & 0x0F) << 3) + 0x84) << ((code & 0x70) >> 4)) - 0x84;
    return static_cast<int16_t>((code & 0x80) != 0 ? -value : value);
}

}  // namespace

const char* WaveFormat::name() const {
    switch (coding) {
        case Coding::Integer: return "WAVE_FORMAT_PCM";
        case Coding::Float: return "WAVE_FORMAT_IEEE_FLOAT";
        case Coding::ALaw: return "WAVE_FORMAT_ALAW";
        case Coding::MuLaw: return "WAVE_FORMAT_MULAW";
        case Coding::MsAdpcm: return "WAVE_FORMAT_ADPCM";
        case Coding::ImaAdpcm: return "WAVE_FORMAT_DVI_ADPCM";
        case Coding::Mpeg: return "WAVE_FORMAT_MPEGLAYER3";
    }
    return "";
}

// The number of samples of a block follows from its size; what the file tells is not needed.
static bool TakeAdpcm(WaveFormat& format, bool microsoft) {
    format.coding = microsoft ? WaveFormat::Coding::MsAdpcm : WaveFormat::Coding::ImaAdpcm;
    if (format.channels > 2 || format.bitsPerSample != 4) return false;
    const int body = format.blockAlign - (microsoft ? 7 : 4) * format.channels;
    if (body <= 0) return false;
    format.samplesPerBlock = microsoft ? body * 2 / format.channels + 2 : body / (4 * format.channels) * 8 + 1;
    return true;
}

// Fills in what the tag says of the samples; false where the sizes do not go with it.
static bool TakeCoding(WaveFormat& format, uint32_t tag) {
    const bool whole = format.blockAlign % format.channels == 0;
    const int bytes = format.bytesPerSample = format.blockAlign / format.channels;
    switch (tag) {
        case 1:
            format.coding = WaveFormat::Coding::Integer;
            return whole && bytes >= 1 && bytes <= 4 && format.bitsPerSample >= 1 && format.bitsPerSample <= bytes * 8;
        case 3: format.coding = WaveFormat::Coding::Float; return whole && (bytes == 4 || bytes == 8);
        case 6: format.coding = WaveFormat::Coding::ALaw; return whole && bytes == 1;
        case 7: format.coding = WaveFormat::Coding::MuLaw; return whole && bytes == 1;
        case 2:
        case 0x11: return TakeAdpcm(format, tag == 2);
        default: return false;
    }
}

std::optional<WaveFormat> ParseWaveFormat(std::span<const uint8_t> fmt) {
    if (fmt.size() < 14) return std::nullopt;
    uint32_t tag = LittleEndian16(fmt.data());
    WaveFormat format;
    format.channels = static_cast<int>(LittleEndian16(fmt.data() + 2));
    const uint32_t rate = LittleEndian32(fmt.data() + 4);
    format.blockAlign = static_cast<int>(LittleEndian16(fmt.data() + 12));
    format.bitsPerSample = fmt.size() >= 16 ? static_cast<int>(LittleEndian16(fmt.data() + 14)) : 0;
    if (tag == 0xFFFE) {
        if (fmt.size() < 40) return std::nullopt;
        format.channelMask = LittleEndian32(fmt.data() + 20);
        tag = LittleEndian16(fmt.data() + 24);  // the sub-format's GUID begins with the tag it stands for
    }
    if (tag == 0x55 || tag == 0x50) {
        format.coding = WaveFormat::Coding::Mpeg;
        format.sampleRate = static_cast<int>(std::min<uint32_t>(rate, 1u << 30));
        return format;
    }
    if (format.channels < 1 || format.channels > 64 || rate < kLowestRate || rate > kHighestRate ||
        format.blockAlign < 1)
        return std::nullopt;
    format.sampleRate = static_cast<int>(rate);
    return TakeCoding(format, tag) ? std::optional(format) : std::nullopt;
}

StereoMix::StereoMix(int channels, uint32_t mask) : channels_(std::clamp(channels, 1, 64)) {
    if (std::popcount(mask) < channels_)
        mask = static_cast<size_t>(channels_) < kUsualMasks.size() ? kUsualMasks[static_cast<size_t>(channels_)] : 0;
    constexpr float kHalfPower = 0.70710678f;
    for (int channel = 0; channel < channels_; ++channel) {
        const int bit = mask != 0 ? std::countr_zero(mask) : 32;
        mask &= mask - 1;
        // Channels beyond the known speakers alternate between the sides.
        const Side side = bit < static_cast<int>(kSpeakers.size()) ? kSpeakers[static_cast<size_t>(bit)]
                          : channel % 2 == 0                       ? Left
                                                                   : Right;
        float& left = left_[channel];
        float& right = right_[channel];
        switch (side) {
            case Left: left = 1; break;
            case Right: right = 1; break;
            case Centre: left = right = kHalfPower; break;
            case Bass: break;
            case LeftSurround: left = kHalfPower; break;
            case RightSurround: right = kHalfPower; break;
            case MiddleSurround: left = right = 0.5f; break;
        }
    }
    if (channels_ == 1) left_[0] = right_[0] = 1;
    float sumLeft = 0, sumRight = 0;
    for (int channel = 0; channel < channels_; ++channel) {
        sumLeft += left_[channel];
        sumRight += right_[channel];
    }
    if (const float most = std::max(sumLeft, sumRight); most > 1) {
        for (int channel = 0; channel < channels_; ++channel) {
            left_[channel] /= most;
            right_[channel] /= most;
        }
    }
}

void StereoMix::mix(std::span<const float> frames, std::span<float> stereo) const {
    const size_t count = std::min(frames.size() / static_cast<size_t>(channels_), stereo.size() / 2);
    if (channels_ <= 2) {
        const size_t second = static_cast<size_t>(channels_) - 1;
        for (size_t i = 0; i < count; ++i) {
            stereo[2 * i] = frames[i * static_cast<size_t>(channels_)];
            stereo[2 * i + 1] = frames[i * static_cast<size_t>(channels_) + second];
        }
        return;
    }
    for (size_t i = 0; i < count; ++i) {
        float left = 0, right = 0;
        for (int channel = 0; channel < channels_; ++channel) {
            const float sample = frames[i * static_cast<size_t>(channels_) + static_cast<size_t>(channel)];
            left += left_[channel] * sample;
            right += right_[channel] * sample;
        }
        stereo[2 * i] = left;
        stereo[2 * i + 1] = right;
    }
}

void SamplesToFloat(const WaveFormat& format, const uint8_t* bytes, std::span<float> samples) {
    const auto each = [&](auto convert) {
        for (float& sample : samples) {
            sample = convert(bytes);
            bytes += format.bytesPerSample;
        }
    };
    switch (format.coding) {
        case WaveFormat::Coding::ALaw:
            return each([](const uint8_t* p) { return static_cast<float>(ExpandALaw(*p)) / 32768.0f; });
        case WaveFormat::Coding::MuLaw:
            return each([](const uint8_t* p) { return static_cast<float>(ExpandMuLaw(*p)) / 32768.0f; });
        case WaveFormat::Coding::Float:
            if (format.bytesPerSample == 8)
                return each([](const uint8_t* p) {
                    double value;
                    std::memcpy(&value, p, 8);
                    return std::isfinite(value) ? static_cast<float>(std::clamp(value, -8.0, 8.0)) : 0.0f;
                });
            return each([](const uint8_t* p) {
                float value;
                std::memcpy(&value, p, 4);
                return std::isfinite(value) ? std::clamp(value, -8.0f, 8.0f) : 0.0f;
            });
        default: break;
    }
    switch (format.bytesPerSample) {
        case 1: return each([](const uint8_t* p) { return static_cast<float>(int(*p) - 128) / 128.0f; });
        case 2:
            return each([](const uint8_t* p) {
                return static_cast<float>(static_cast<int16_t>(LittleEndian16(p))) / 32768.0f;
            });
        case 3:
            return each([](const uint8_t* p) {
                return static_cast<float>(static_cast<int32_t>(static_cast<uint32_t>(p[0]) << 8 |
                                                               static_cast<uint32_t>(p[1]) << 16 |
                                                               static_cast<uint32_t>(p[2]) << 24) >>
                                          8) /
                       8388608.0f;
            });
        default:
            return each([](const uint8_t* p) {
                return static_cast<float>(static_cast<double>(static_cast<int32_t>(LittleEndian32(p))) / 2147483648.0);
            });
    }
}

int16_t ToInt16(float sample) {
    const float scaled = sample * 32768.0f;
    return scaled >= 32767.0f      ? static_cast<int16_t>(32767)
           : !(scaled > -32768.0f) ? static_cast<int16_t>(-32768)
                                   : static_cast<int16_t>(std::lrintf(scaled));
}

}  // namespace vbmp3
