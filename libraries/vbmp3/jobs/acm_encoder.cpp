// Encoding with the MP3 codec of Windows, through the audio compression manager.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "libraries/files/file_source.h"
#include "libraries/files/transaction.h"
#include "libraries/formats/resampler.h"
#include "libraries/formats/wave_format.h"
#include "libraries/vbmp3/decoder/open_source.h"
#include "libraries/vbmp3/jobs/jobs.h"
#include "libraries/vbmp3/vbmp3.h"

#include <windows.h>

#include <mmreg.h>
#include <mmsystem.h>
#include <msacm.h>

namespace vbmp3 {
namespace {

// kbit/s in the order of trying; the codec that comes with Windows takes only the low ones.
constexpr std::array kBitRates = {192, 160, 128, 112, 96, 80, 64, 56, 48, 40, 32, 24, 16};
constexpr std::array kSampleRates = {44100, 48000, 32000, 24000, 22050};

struct StreamCloser {
    void operator()(HACMSTREAM stream) const { acmStreamClose(stream, 0); }
};
using Stream = std::unique_ptr<std::remove_pointer_t<HACMSTREAM>, StreamCloser>;

struct Encoder {
    Stream stream;
    int sampleRate = 0;
};

WAVEFORMATEX PcmFormat(int sampleRate) {
    WAVEFORMATEX format{};
    format.wFormatTag = WAVE_FORMAT_PCM;
    format.nChannels = 2;
    format.nSamplesPerSec = static_cast<DWORD>(sampleRate);
    format.wBitsPerSample = 16;
    format.nBlockAlign = 4;
    format.nAvgBytesPerSec = static_cast<DWORD>(sampleRate) * 4;
    return format;
}

MPEGLAYER3WAVEFORMAT Mp3Format(int sampleRate, int bitRate) {
    MPEGLAYER3WAVEFORMAT format{};
    format.wfx.wFormatTag = WAVE_FORMAT_MPEGLAYER3;
    format.wfx.nChannels = 2;
    format.wfx.nSamplesPerSec = static_cast<DWORD>(sampleRate);
    format.wfx.nAvgBytesPerSec = static_cast<DWORD>(bitRate * 125);
    format.wfx.nBlockAlign = 1;
    format.wfx.cbSize = MPEGLAYER3_WFX_EXTRA_BYTES;
    format.wID = MPEGLAYER3_ID_MPEG;
    format.fdwFlags = MPEGLAYER3_FLAG_PADDING_OFF;
    format.nBlockSize = static_cast<WORD>((sampleRate < 32000 ? 72000 : 144000) * bitRate / sampleRate);
    format.nFramesPerBlock = 1;
    format.nCodecDelay = 1393;
    return format;
}

std::optional<Encoder> OpenEncoder(int sourceRate) {
    std::vector<int> rates{sourceRate};
    rates.insert(rates.end(), kSampleRates.begin(), kSampleRates.end());
    for (const int rate : rates)
        for (const int bitRate : kBitRates) {
            WAVEFORMATEX from = PcmFormat(rate);
            MPEGLAYER3WAVEFORMAT to = Mp3Format(rate, bitRate);
            HACMSTREAM stream = nullptr;
            if (acmStreamOpen(&stream, nullptr, &from, &to.wfx, nullptr, 0, 0, ACM_STREAMOPENF_NONREALTIME) == 0)
                return Encoder{Stream(stream), rate};
        }
    return std::nullopt;
}

// Hands PCM to the codec in one piece after the other and writes what it gives.
class Conversion {
  public:
    Conversion(HACMSTREAM stream, FileTransaction& file) : stream_(stream), file_(file), from_(kPiece) {
        DWORD size = 0;
        good_ = acmStreamSize(stream_, static_cast<DWORD>(from_.size()), &size, ACM_STREAMSIZEF_SOURCE) == 0;
        to_.resize(std::max<DWORD>(size, 16384));
        header_.cbStruct = sizeof header_;
        header_.pbSrc = from_.data();
        header_.cbSrcLength = static_cast<DWORD>(from_.size());
        header_.pbDst = to_.data();
        header_.cbDstLength = static_cast<DWORD>(to_.size());
        good_ = good_ && acmStreamPrepareHeader(stream_, &header_, 0) == 0;
    }
    ~Conversion() {
        header_.cbSrcLength = static_cast<DWORD>(from_.size());
        header_.cbDstLength = static_cast<DWORD>(to_.size());
        acmStreamUnprepareHeader(stream_, &header_, 0);
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    bool put(std::span<const int16_t> samples) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(samples.data());
        size_t left = samples.size_bytes();
        while (left > 0 && good_) {
            const size_t count = std::min(left, from_.size() - filled_);
            std::copy_n(bytes, count, from_.begin() + static_cast<std::ptrdiff_t>(filled_));
            filled_ += count;
            bytes += count;
            left -= count;
            if (filled_ == from_.size())
                convert(started_ ? ACM_STREAMCONVERTF_BLOCKALIGN
                                 : ACM_STREAMCONVERTF_BLOCKALIGN | ACM_STREAMCONVERTF_START);
        }
        return good_;
    }

    bool finish() {
        // Once, and again while the codec leaves some of it for the next call.
        for (int i = 0; good_ && (i == 0 || filled_ > 0) && i < 64; ++i)
            convert(ACM_STREAMCONVERTF_END | (started_ ? 0 : ACM_STREAMCONVERTF_START));
        return good_ && filled_ == 0;
    }

  private:
    static constexpr size_t kPiece = 65536;

    void convert(DWORD flags) {
        started_ = true;
        header_.cbSrcLength = static_cast<DWORD>(filled_);
        header_.cbSrcLengthUsed = header_.cbDstLengthUsed = 0;
        good_ = acmStreamConvert(stream_, &header_, flags) == 0 && file_.write({to_.data(), header_.cbDstLengthUsed});
        const size_t used = std::min<size_t>(header_.cbSrcLengthUsed, filled_);
        good_ = good_ && (used > 0 || (flags & ACM_STREAMCONVERTF_END) != 0);
        std::copy(from_.begin() + static_cast<std::ptrdiff_t>(used),
                  from_.begin() + static_cast<std::ptrdiff_t>(filled_), from_.begin());
        filled_ -= used;
    }

    HACMSTREAM stream_;
    FileTransaction& file_;
    std::vector<uint8_t> from_, to_;
    ACMSTREAMHEADER header_{};
    size_t filled_ = 0;
    bool started_ = false;
    bool good_ = true;
};

}  // namespace

bool HasSystemCodec() { return OpenEncoder(44100).has_value(); }

int EncodeWithSystemCodec(const std::string& sourcePath, const std::string& destination, JobControl& control) {
    const std::shared_ptr<const ByteSource> file = OpenFile(sourcePath);
    if (!file) return VBMP3_ERROR_NOT_FOUND;
    const auto info = Probe(*file, ScanFileLayout(*file));
    const auto source = info ? OpenSource(file, *info) : nullptr;
    if (!source) return VBMP3_ERROR_FORMAT;
    const auto encoder = OpenEncoder(source->sampleRate());
    if (!encoder) return VBMP3_ERROR_NO_CODEC;
    const auto target = FileTransaction::begin(destination);
    if (!target) return VBMP3_ERROR_WRITE;
    {
        Conversion conversion(encoder->stream.get(), *target);
        Resampler resampler(source->sampleRate(), encoder->sampleRate);
        const bool resample = source->sampleRate() != encoder->sampleRate;
        std::vector<float> block(2 * 4096), converted;
        std::vector<int16_t> samples;
        int64_t done = 0;
        for (;;) {
            const size_t count = source->read(block);
            if (control.cancelled()) return VBMP3_ERROR_NOT_OPEN;
            converted.clear();
            if (!resample)
                converted.assign(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(2 * count));
            else if (count > 0)
                resampler.process(std::span(block).first(2 * count), converted);
            else
                resampler.finish(converted);
            samples.resize(converted.size());
            std::transform(converted.begin(), converted.end(), samples.begin(), ToInt16);
            if (!conversion.put(samples)) return VBMP3_ERROR_WRITE;
            if (count == 0) break;
            done += static_cast<int64_t>(count);
            control.progress(info->frames > 0 ? static_cast<double>(done) / static_cast<double>(info->frames) : 0);
        }
        if (!conversion.finish()) return VBMP3_ERROR_WRITE;
    }
    const FileTransaction::Error error = target->commit();
    return error == FileTransaction::Error::None     ? VBMP3_OK
           : error == FileTransaction::Error::Locked ? VBMP3_ERROR_LOCKED
                                                     : VBMP3_ERROR_WRITE;
}

}  // namespace vbmp3
