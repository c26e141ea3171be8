#include "libraries/vbmp3/decoder/mpeg_source.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "libraries/formats/resampler.h"

namespace vbmp3 {
namespace {

class MpegSource final : public Source {
  public:
    MpegSource(std::unique_ptr<MpegDecoder> decoder, MpegTrim trim) : decoder_(std::move(decoder)), trim_(trim) {
        if (trim_.skip > 0) toSkip_ = trim_.skip;
    }

    int sampleRate() const override { return decoder_->sampleRate(); }

    size_t read(std::span<float> stereo) override {
        const size_t wanted =
            static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(stereo.size() / 2), trim_.length - position_));
        size_t done = 0;
        while (done < wanted) {
            if (at_ == ready_.size() / 2 && !fill()) break;
            const size_t count = std::min(wanted - done, ready_.size() / 2 - at_);
            std::memcpy(stereo.data() + 2 * done, ready_.data() + 2 * at_, count * 2 * sizeof(float));
            at_ += count;
            done += count;
        }
        position_ += static_cast<int64_t>(done);
        return done;
    }

    void seek(int64_t frame) override {
        frame = std::clamp<int64_t>(frame, 0, trim_.length);
        ready_ = {};
        at_ = 0;
        toSkip_ = 0;
        resampler_.reset();
        position_ = frame;
        ended_ = false;
        // Done when the samples are wanted: libmpg123 goes wrong when it is sent twice without decoding in between.
        seekTo_ = frame + trim_.skip;
    }

  private:
    // Gets the next decoded frame into ready_; false at the end.
    bool fill() {
        if (seekTo_ >= 0) ended_ = !decoder_->seek(std::exchange(seekTo_, -1));
        while (!ended_) {
            const MpegDecoder::Piece piece = decoder_->next();
            if (piece.frames == 0) {
                ended_ = true;
                break;
            }
            ready_ = {reinterpret_cast<const float*>(piece.bytes.data()), piece.frames * 2};
            if (piece.sampleRate != sampleRate()) {
                // Junk that looks like a frame, or streams that were joined: the rate stays that of the beginning.
                if (!resampler_ || resampler_->inputRate() != piece.sampleRate)
                    resampler_ = std::make_unique<Resampler>(piece.sampleRate, sampleRate());
                converted_.clear();
                resampler_->process(ready_, converted_);
                ready_ = converted_;
            }
            at_ = static_cast<size_t>(std::min<int64_t>(toSkip_, static_cast<int64_t>(ready_.size() / 2)));
            toSkip_ -= static_cast<int64_t>(at_);
            if (at_ < ready_.size() / 2) return true;
        }
        return false;
    }

    std::unique_ptr<MpegDecoder> decoder_;
    MpegTrim trim_;
    std::unique_ptr<Resampler> resampler_;
    std::vector<float> converted_;
    std::span<const float> ready_;
    size_t at_ = 0;  // frames of ready_ already given
    int64_t toSkip_ = 0;
    int64_t position_ = 0;  // of the next frame given
    int64_t seekTo_ = -1;   // in the decoder's samples; -1: it is there
    bool ended_ = false;
};

}  // namespace

MpegTrim TrimOf(const MpegScan& scan) {
    MpegTrim trim{0, INT64_MAX};
    if (scan.info && scan.info->hasGapless) {
        trim.skip = scan.info->encoderDelay + kDecoderDelay;
        if (scan.exact) trim.length = scan.samples;
    }
    return trim;
}

std::unique_ptr<Source> OpenMpegSource(std::shared_ptr<const ByteSource> file, const StreamInfo& info) {
    auto decoder =
        MpegDecoder::open(std::move(file), {info.mpeg->soundBegin, info.mpeg->end}, MpegDecoder::Samples::Float32, 2);
    return decoder ? std::make_unique<MpegSource>(std::move(decoder), TrimOf(*info.mpeg)) : nullptr;
}

}  // namespace vbmp3
