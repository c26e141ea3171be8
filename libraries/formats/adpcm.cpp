#include "libraries/formats/adpcm.h"

#include <algorithm>

#include "libraries/formats/bytes.h"

namespace vbmp3 {
namespace {

constexpr int kMsAdapt[16] = {230, 230, 230, 230, 307, 409, 512, 614, 768, 614, 512, 409, 307, 230, 230, 230};
constexpr int kMsCoefficients[7][2] = {{256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}};

constexpr int kImaIndex[8] = {-1, -1, -1, -1, 2, 4, 6, 8};
constexpr int kImaStep[89] = {7,     8,     9,     10,    11,    12,    13,    14,    16,    17,    19,   21,    23,
                              25,    28,    31,    34,    37,    41,    45,    50,    55,    60,    66,   73,    80,
                              88,    97,    107,   118,   130,   143,   157,   173,   190,   209,   230,  253,   279,
                              307,   337,   371,   408,   449,   494,   544,   598,   658,   724,   796,  876,   963,
                              1060,  1166,  1282,  1411,  1552,  1707,  1878,  2066,  2272,  2499,  2749, 3024,  3327,
                              3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845,  8630,  9493, 10442, 11487,
                              12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};

int16_t ToInt16(int value) { return static_cast<int16_t>(std::clamp(value, -32768, 32767)); }
float Scaled(int value) { return static_cast<float>(value) / 32768.0f; }

void DecodeMs(const WaveFormat& format, std::span<const uint8_t> block, std::vector<float>& out) {
    const size_t channels = static_cast<size_t>(format.channels);
    if (block.size() < 7 * channels) return;
    struct State {
        int first = 0, second = 0, delta = 0, newer = 0, older = 0;
    };
    State states[2];
    const uint8_t* p = block.data();
    for (size_t c = 0; c < channels; ++c, ++p) {
        const int predictor = std::min<int>(*p, 6);
        states[c].first = kMsCoefficients[predictor][0];
        states[c].second = kMsCoefficients[predictor][1];
    }
    const auto word = [&] {
        p += 2;
        return static_cast<int>(static_cast<int16_t>(LittleEndian16(p - 2)));
    };
    for (size_t c = 0; c < channels; ++c) states[c].delta = word();
    for (size_t c = 0; c < channels; ++c) states[c].newer = word();
    for (size_t c = 0; c < channels; ++c) states[c].older = word();
    for (size_t c = 0; c < channels; ++c) out.push_back(Scaled(states[c].older));
    for (size_t c = 0; c < channels; ++c) out.push_back(Scaled(states[c].newer));
    size_t channel = 0;
    for (const uint8_t byte : block.subspan(7 * channels)) {
        for (const int nibble : {byte >> 4, byte & 15}) {
            State& s = states[channel];
            const int predicted = (s.newer * s.first + s.older * s.second) / 256;
            const int value = ToInt16(predicted + (nibble >= 8 ? nibble - 16 : nibble) * s.delta);
            s.older = s.newer;
            s.newer = value;
            s.delta = std::clamp(static_cast<int>(static_cast<int64_t>(kMsAdapt[nibble]) * s.delta / 256), 16, 1 << 20);
            out.push_back(Scaled(value));
            channel = (channel + 1) % channels;
        }
    }
}

// One channel of IMA ADPCM: the last value and the place in the table of steps.
struct ImaState {
    int value = 0, index = 0;

    int next(int nibble) {
        const int step = kImaStep[index];
        int difference = step >> 3;
        if ((nibble & 1) != 0) difference += step >> 2;
        if ((nibble & 2) != 0) difference += step >> 1;
        if ((nibble & 4) != 0) difference += step;
        index = std::clamp(index + kImaIndex[nibble & 7], 0, 88);
        return value = ToInt16(value + ((nibble & 8) != 0 ? -difference : difference));
    }
};

void DecodeIma(const WaveFormat& format, std::span<const uint8_t> block, std::vector<float>& out) {
    const size_t channels = static_cast<size_t>(format.channels);
    if (block.size() < 4 * channels) return;
    ImaState states[2];
    for (size_t c = 0; c < channels; ++c) {
        states[c] = {static_cast<int16_t>(LittleEndian16(block.data() + 4 * c)), std::min<int>(block[4 * c + 2], 88)};
        out.push_back(Scaled(states[c].value));
    }
    // Groups of eight samples of each channel in turn, low nibble first.
    size_t at = 4 * channels;
    while (block.size() - at >= 4 * channels) {
        const size_t base = out.size();
        out.resize(base + 8 * channels);
        for (size_t c = 0; c < channels; ++c) {
            for (size_t i = 0; i < 8; ++i) {
                const int nibble = block[at + i / 2] >> (i % 2 == 0 ? 0 : 4) & 15;
                out[base + i * channels + c] = Scaled(states[c].next(nibble));
            }
            at += 4;
        }
    }
}

}  // namespace

void DecodeAdpcmBlock(const WaveFormat& format, std::span<const uint8_t> block, std::vector<float>& out) {
    if (format.coding == WaveFormat::Coding::MsAdpcm)
        DecodeMs(format, block, out);
    else
        DecodeIma(format, block, out);
}

}  // namespace vbmp3
