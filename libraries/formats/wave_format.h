// The "fmt " chunk of a WAVE file and the turning of its samples into stereo floats. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace vbmp3 {

struct WaveFormat {
    enum class Coding { Integer, Float, ALaw, MuLaw, MsAdpcm, ImaAdpcm, Mpeg };
    Coding coding = Coding::Integer;
    int channels = 0;          // 1 to 64
    int sampleRate = 0;        // Hz, 8000 to 192000
    int bitsPerSample = 0;     // as told; of the integer codings 8 to 32
    int bytesPerSample = 0;    // of the container of one sample; PCM only
    int blockAlign = 0;        // bytes of one frame; ADPCM: of one block
    int samplesPerBlock = 0;   // ADPCM, a channel
    uint32_t channelMask = 0;  // of WAVE_FORMAT_EXTENSIBLE, 0 unknown

    bool plainPcm() const { return coding == Coding::Integer || coding == Coding::Float; }
    bool adpcm() const { return coding == Coding::MsAdpcm || coding == Coding::ImaAdpcm; }
    const char* name() const;  // "WAVE_FORMAT_PCM"
};

// Nothing for a coding that cannot be decoded or numbers that contradict each other.
std::optional<WaveFormat> ParseWaveFormat(std::span<const uint8_t> fmtChunk);

// Mixes frames of any number of channels down to stereo: mono goes to both sides; of more channels the centre and the
// surrounds are added at -3 dB (ITU-R BS.775) and the sum is scaled so that it cannot clip. Bass channels are left out.
class StereoMix {
  public:
    StereoMix(int channels, uint32_t channelMask);
    void mix(std::span<const float> frames, std::span<float> stereo) const;

  private:
    int channels_;
    float left_[64] = {};
    float right_[64] = {};
};

// Turns `samples` of bytesPerSample bytes each into floats from -1 to 1; 16-bit values come out as value / 32768.
void SamplesToFloat(const WaveFormat& format, const uint8_t* bytes, std::span<float> samples);
// The way back: whole number of 1/32768 nearest to the sample, within 16 bits.
int16_t ToInt16(float sample);

}  // namespace vbmp3
