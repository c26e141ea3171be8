#include "libraries/gogo/pcm_reader.h"

#include <algorithm>

#include "libraries/files/file_source.h"
#include "libraries/formats/wave_source.h"

namespace gogo {
namespace {

constexpr size_t kBlock = 4096;  // frames read at once
constexpr float kFullScale = 32768.0f;

}  // namespace

std::unique_ptr<PcmReader> PcmReader::open(const std::string& path, int outputRate, bool mono, Error& error) {
    std::shared_ptr<const vbmp3::ByteSource> file = vbmp3::OpenFile(path);
    if (!file) {
        error = Error::Source;
        return nullptr;
    }
    error = Error::Format;
    const auto layout = vbmp3::ScanFileLayout(*file);
    if (layout.container != vbmp3::Container::Wave) return nullptr;
    const auto info = vbmp3::Probe(*file, layout);
    if (!info || !info->wave || info->mpeg || info->frames <= 0) return nullptr;
    std::unique_ptr<PcmReader> self(new PcmReader);
    self->source_ = vbmp3::OpenWaveSource(file, *info);
    self->mono_ = mono || info->channels == 1;
    self->mixToMono_ = mono && info->channels > 1;
    self->sourceLeft_ = info->frames;
    self->length_ = info->frames;
    if (info->sampleRate != outputRate) {
        self->resampler_.emplace(info->sampleRate, outputRate);
        // Every output sample whose time lies within the source; split so that no product runs over.
        const int64_t rate = info->sampleRate;
        self->length_ = info->frames / rate * outputRate + (info->frames % rate * outputRate + rate - 1) / rate;
    }
    error = Error::None;
    return self;
}

bool PcmReader::fill() {
    ready_.clear();
    taken_ = 0;
    block_.resize(2 * static_cast<size_t>(std::min<int64_t>(kBlock, sourceLeft_)));
    if (block_.empty()) {
        // The resampler's last samples, which are never more than it holds back.
        if (resampler_) resampler_->finish(ready_);
        return !ready_.empty();
    }
    const size_t got = source_->read(block_);
    if (got == 0) return false;
    block_.resize(2 * got);
    sourceLeft_ -= static_cast<int64_t>(got);
    if (resampler_)
        resampler_->process(block_, ready_);
    else
        ready_.swap(block_);
    return true;
}

bool PcmReader::read(int64_t count, Pcm& pcm) {
    count = std::min(count, length_ - position_);
    pcm.left.reserve(pcm.left.size() + static_cast<size_t>(count));
    if (!mono_) pcm.right.reserve(pcm.right.size() + static_cast<size_t>(count));
    while (count > 0) {
        if (taken_ == ready_.size()) {
            if (!fill()) return false;
            continue;
        }
        const size_t frames = std::min(static_cast<size_t>(count), (ready_.size() - taken_) / 2);
        const float* from = ready_.data() + taken_;
        for (size_t i = 0; i < frames; ++i) {
            const float left = from[2 * i] * kFullScale, right = from[2 * i + 1] * kFullScale;
            if (!mono_) pcm.right.push_back(right);
            pcm.left.push_back(mixToMono_ ? (left + right) / 2 : left);
        }
        taken_ += 2 * frames;
        position_ += static_cast<int64_t>(frames);
        count -= static_cast<int64_t>(frames);
    }
    return true;
}

}  // namespace gogo
