#include "libraries/formats/wave_source.h"

#include <algorithm>
#include <vector>

#include "libraries/files/file_source.h"
#include "libraries/formats/adpcm.h"

namespace vbmp3 {
namespace {

class PcmSource final : public Source {
  public:
    PcmSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info)
        : file_(std::move(file)),
          reader_(*file_),
          format_(*info.wave),
          begin_(info.data.begin),
          frames_(info.frames),
          mix_(format_.channels, format_.channelMask) {}

    int sampleRate() const override { return format_.sampleRate; }

    size_t read(std::span<float> stereo) override {
        const int64_t wanted =
            std::min<int64_t>({static_cast<int64_t>(stereo.size() / 2), frames_ - position_, kMostFrames});
        if (wanted <= 0) return 0;
        const size_t align = static_cast<size_t>(format_.blockAlign);
        const auto bytes = reader_.view(begin_ + position_ * format_.blockAlign, static_cast<size_t>(wanted) * align);
        const size_t count = std::min(static_cast<size_t>(wanted), bytes.size() / align);
        samples_.resize(count * static_cast<size_t>(format_.channels));
        SamplesToFloat(format_, bytes.data(), samples_);
        mix_.mix(samples_, stereo.first(count * 2));
        position_ += static_cast<int64_t>(count);
        return count;
    }

    void seek(int64_t frame) override { position_ = std::clamp<int64_t>(frame, 0, frames_); }

  private:
    static constexpr int64_t kMostFrames = 4096;

    std::shared_ptr<const ByteSource> file_;
    BlockReader reader_;
    WaveFormat format_;
    int64_t begin_;
    int64_t frames_;
    StereoMix mix_;
    std::vector<float> samples_;
    int64_t position_ = 0;
};

class AdpcmSource final : public Source {
  public:
    AdpcmSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info)
        : file_(std::move(file)),
          reader_(*file_),
          format_(*info.wave),
          data_(info.data),
          frames_(info.frames),
          mix_(format_.channels, 0) {}

    int sampleRate() const override { return format_.sampleRate; }

    size_t read(std::span<float> stereo) override {
        if (position_ >= frames_) return 0;
        const int64_t block = position_ / format_.samplesPerBlock;
        if (block != block_) {
            const int64_t offset = block * format_.blockAlign;
            const size_t size = static_cast<size_t>(std::clamp<int64_t>(data_.size() - offset, 0, format_.blockAlign));
            const auto bytes = reader_.view(data_.begin + offset, size);
            samples_.clear();
            DecodeAdpcmBlock(format_, bytes.first(std::min(size, bytes.size())), samples_);
            block_ = block;
        }
        const size_t channels = static_cast<size_t>(format_.channels);
        const size_t at = static_cast<size_t>(position_ - block * format_.samplesPerBlock);
        const size_t there = samples_.size() / channels;
        if (at >= there) return 0;
        const size_t count = std::min(stereo.size() / 2, there - at);
        mix_.mix(std::span(samples_).subspan(at * channels, count * channels), stereo.first(count * 2));
        position_ += static_cast<int64_t>(count);
        return count;
    }

    void seek(int64_t frame) override { position_ = std::clamp<int64_t>(frame, 0, frames_); }

  private:
    std::shared_ptr<const ByteSource> file_;
    BlockReader reader_;
    WaveFormat format_;
    ByteRange data_;
    int64_t frames_;
    StereoMix mix_;
    std::vector<float> samples_;
    int64_t block_ = -1;
    int64_t position_ = 0;
};

}  // namespace

std::unique_ptr<Source> OpenWaveSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info) {
    if (info.wave->adpcm()) return std::make_unique<AdpcmSource>(std::move(file), info);
    return std::make_unique<PcmSource>(std::move(file), info);
}

}  // namespace vbmp3
