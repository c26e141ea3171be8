// The samples of a WAVE file as the encoder takes them: planar floats in the range of 16-bit samples, at the output
// rate, read once from front to back. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "libraries/formats/resampler.h"
#include "libraries/formats/source.h"
#include "libraries/gogo/settings.h"

namespace gogo {

struct Pcm {
    std::vector<float> left;
    std::vector<float> right;  // empty for mono
    size_t size() const { return left.size(); }
};

class PcmReader {
  public:
    // Null when the file cannot be read or is no WAVE with samples; `error` tells which.
    static std::unique_ptr<PcmReader> open(const std::string& path, int outputRate, bool mono, Error& error);

    int channels() const { return mono_ ? 1 : 2; }
    int sourceRate() const { return source_->sampleRate(); }
    int64_t length() const { return length_; }  // samples a channel at the output rate
    // Appends the next samples, fewer than `count` only at the end. False when the file gives less than it promised.
    bool read(int64_t count, Pcm& pcm);

  private:
    PcmReader() = default;
    bool fill();

    std::unique_ptr<vbmp3::Source> source_;
    std::optional<vbmp3::Resampler> resampler_;
    bool mono_ = false;
    bool mixToMono_ = false;  // the source has more channels than are wanted
    int64_t sourceLeft_ = 0;  // frames not read yet
    int64_t length_ = 0;
    int64_t position_ = 0;
    std::vector<float> block_;  // stereo, as read
    std::vector<float> ready_;  // stereo, at the output rate
    size_t taken_ = 0;          // floats of ready_
};

}  // namespace gogo
