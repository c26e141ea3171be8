// The sound device of Windows through waveOut: a ring of small buffers, floats where the device takes them and 16 bits
// where not.
#include <algorithm>
#include <cstring>
#include <vector>

#include "libraries/formats/wave_format.h"
#include "libraries/vbmp3/player/output.h"

#include <mmreg.h>
#include <mmsystem.h>

namespace vbmp3 {
namespace {

class WaveOutput final : public Output {
  public:
    ~WaveOutput() override { close(); }

    OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) override {
        if (waveOutGetNumDevs() == 0) return OutputError::NoDevice;
        const UINT device = settings.device < 0 ? WAVE_MAPPER : static_cast<UINT>(settings.device);
        float_ = true;
        MMRESULT result = tryOpen(device, sampleRate, waker);
        if (result == WAVERR_BADFORMAT) {
            float_ = false;
            result = tryOpen(device, sampleRate, waker);
        }
        if (result == MMSYSERR_BADDEVICEID && device != WAVE_MAPPER)  // the chosen one has been unplugged
            result = tryOpen(WAVE_MAPPER, sampleRate, waker);
        if (result == MMSYSERR_ALLOCATED) return OutputError::Busy;
        if (result != MMSYSERR_NOERROR) return OutputError::NoDevice;

        frameBytes_ = float_ ? 8 : 4;
        const int bufferMs = std::clamp(settings.bufferMs / 4, 10, 50);  // each one wakes when it has been played
        bufferFrames_ = std::max<size_t>(64, static_cast<size_t>(sampleRate) * static_cast<size_t>(bufferMs) / 1000);
        const size_t count = std::max<size_t>(3, static_cast<size_t>(settings.bufferMs / bufferMs));
        memory_.resize(count * bufferFrames_ * frameBytes_);
        headers_.resize(count);
        for (size_t i = 0; i < count; ++i) {
            WAVEHDR& header = headers_[i];
            header = {};
            header.lpData = reinterpret_cast<LPSTR>(memory_.data() + i * bufferFrames_ * frameBytes_);
            header.dwBufferLength = static_cast<DWORD>(bufferFrames_ * frameBytes_);
            if (waveOutPrepareHeader(device_, &header, sizeof header) != MMSYSERR_NOERROR) return OutputError::NoDevice;
        }
        waveOutPause(device_);
        return OutputError::None;
    }

    size_t room() override {
        reclaim();
        return (headers_.size() - queued_) * bufferFrames_ - filled_;
    }

    void write(std::span<const float> stereo) override {
        size_t frames = stereo.size() / 2;
        const float* from = stereo.data();
        while (frames > 0 && queued_ < headers_.size()) {
            const size_t count = std::min(frames, bufferFrames_ - filled_);
            char* to = headers_[next_].lpData + filled_ * frameBytes_;
            if (float_) {
                auto* out = reinterpret_cast<float*>(to);
                for (size_t i = 0; i < 2 * count; ++i) out[i] = std::clamp(from[i], -1.0f, 1.0f);
            } else {
                auto* out = reinterpret_cast<int16_t*>(to);
                for (size_t i = 0; i < 2 * count; ++i) out[i] = ToInt16(from[i]);
            }
            filled_ += count;
            from += 2 * count;
            frames -= count;
            written_ += static_cast<int64_t>(count);
            if (filled_ == bufferFrames_) submit();
        }
    }

    void start() override { waveOutRestart(device_); }

    void pause() override { waveOutPause(device_); }

    void drain() override {
        if (filled_ > 0) submit();
    }

    void flush() override {
        waveOutReset(device_);
        waveOutPause(device_);
        queued_ = filled_ = next_ = oldest_ = 0;
        written_ = played_ = submitted_ = 0;
        lastRaw_ = rawPosition();
    }

    int64_t played() override {
        reclaim();
        // The counter has 32 bits and may be in bytes; only its differences count.
        const DWORD raw = rawPosition();
        const DWORD step = raw - lastRaw_;
        if (step < 0x80000000u) {
            lastRaw_ = raw;
            carry_ += step;
            const int64_t unit = inBytes_ ? static_cast<int64_t>(frameBytes_) : 1;
            played_ += carry_ / unit;
            carry_ %= unit;
        }
        // Some drivers stop counting a little before, or count silence behind, the last sample.
        played_ = queued_ == 0 && filled_ == 0 ? written_ : std::min(played_, submitted_);
        return played_;
    }

    bool lost() override { return failed_; }

  private:
    MMRESULT tryOpen(UINT device, int sampleRate, Waker& waker) {
        WAVEFORMATEX format{};
        format.wFormatTag = float_ ? WAVE_FORMAT_IEEE_FLOAT : WAVE_FORMAT_PCM;
        format.nChannels = 2;
        format.nSamplesPerSec = static_cast<DWORD>(sampleRate);
        format.wBitsPerSample = float_ ? 32 : 16;
        format.nBlockAlign = static_cast<WORD>(format.nChannels * format.wBitsPerSample / 8);
        format.nAvgBytesPerSec = format.nSamplesPerSec * format.nBlockAlign;
        return waveOutOpen(&device_, device, &format, DWORD_PTR(waker.event()), 0, CALLBACK_EVENT);
    }

    void close() {
        if (device_ == nullptr) return;
        waveOutReset(device_);
        for (WAVEHDR& header : headers_) waveOutUnprepareHeader(device_, &header, sizeof header);
        waveOutClose(device_);
        device_ = nullptr;
    }

    void submit() {
        WAVEHDR& header = headers_[next_];
        header.dwBufferLength = static_cast<DWORD>(filled_ * frameBytes_);
        header.dwFlags &= ~static_cast<DWORD>(WHDR_DONE);
        if (waveOutWrite(device_, &header, sizeof header) != MMSYSERR_NOERROR) failed_ = true;
        submitted_ += static_cast<int64_t>(filled_);
        filled_ = 0;
        ++queued_;
        next_ = (next_ + 1) % headers_.size();
    }

    void reclaim() {
        while (queued_ > 0 && (*static_cast<volatile DWORD*>(&headers_[oldest_].dwFlags) & WHDR_DONE) != 0) {
            oldest_ = (oldest_ + 1) % headers_.size();
            --queued_;
        }
    }

    DWORD rawPosition() {
        MMTIME time{};
        time.wType = TIME_SAMPLES;
        if (waveOutGetPosition(device_, &time, sizeof time) != MMSYSERR_NOERROR) {
            failed_ = true;
            return lastRaw_;
        }
        inBytes_ = time.wType == TIME_BYTES;
        return inBytes_ ? time.u.cb : time.u.sample;
    }

    HWAVEOUT device_ = nullptr;
    bool float_ = true;
    bool inBytes_ = false;
    bool failed_ = false;
    size_t frameBytes_ = 8;
    size_t bufferFrames_ = 0;
    std::vector<char> memory_;
    std::vector<WAVEHDR> headers_;
    size_t next_ = 0;      // being filled
    size_t oldest_ = 0;    // of those with the device
    size_t queued_ = 0;    // with the device
    size_t filled_ = 0;    // frames in the one being filled
    int64_t written_ = 0;  // frames
    int64_t submitted_ = 0;
    int64_t played_ = 0;
    int64_t carry_ = 0;
    DWORD lastRaw_ = 0;
};

}  // namespace

std::unique_ptr<Output> MakeDeviceOutput() { return std::make_unique<WaveOutput>(); }
int DeviceCount() { return static_cast<int>(waveOutGetNumDevs()); }

}  // namespace vbmp3
