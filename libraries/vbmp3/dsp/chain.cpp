#include "libraries/vbmp3/dsp/chain.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <mutex>

#include "libraries/vbmp3/dsp/equalizer.h"
#include "libraries/vbmp3/dsp/limiter.h"
#include "libraries/vbmp3/dsp/stretcher.h"

namespace vbmp3 {
namespace {

// Starts of runs and places in them that are remembered; older ones have been heard long ago.
constexpr size_t kRemembered = 1024;
constexpr float kLoudest = 16.0f;

}  // namespace

class Chain::Impl {
  public:
    Impl(const SoundSettings& settings, Tap* tap, int sampleRate)
        : settings_(settings),
          tap_(tap),
          sampleRate_(sampleRate),
          equalizer_(sampleRate),
          stretcher_(sampleRate),
          limiter_(sampleRate) {
        reset(0, 0, 0);
    }

    int sampleRate() const { return sampleRate_; }
    int64_t outputFrames() const { return out_; }

    void reset(int64_t track, int64_t sourceFrame, int64_t outputFrame) {
        takeSettings();
        equalizer_.reset();
        stretcher_.reset();
        limiter_.reset();
        base_ = {in_, outputFrame};
        out_ = outputFrame;
        if (tap_) tap_->setSampleRate(sampleRate_);
        const std::lock_guard lock(mutex_);
        // What was to come after this output frame never will.
        while (!runs_.empty() && runs_.back().out >= outputFrame) runs_.pop_back();
        runs_.push_back({static_cast<double>(in_), outputFrame, stretcher_.tempo()});
        tracks_.push_back({in_, track, sourceFrame});
        trim();
    }

    int64_t beginTrack(int64_t track) {
        const std::lock_guard lock(mutex_);
        tracks_.push_back({in_, track, 0});
        trim();
        return base_.out + stretcher_.outputFrameOf(in_ - base_.in);
    }

    void process(std::span<const float> stereo, std::vector<float>& out) {
        if (takeSettings()) addRun();
        limiter_.engage(!equalizer_.idle() || !stretcher_.idle());
        in_ += static_cast<int64_t>(stereo.size() / 2);
        const size_t before = out.size();
        shaped_.clear();
        if (equalizer_.idle() && stretcher_.idle()) {
            equalizer_.process(stereo, shaped_);
        } else {
            clean(stereo);
            equalizer_.process(clean_, shaped_);
        }
        stretched_.clear();
        stretcher_.process(shaped_, stretched_);
        limiter_.process(stretched_, out);
        takePlaces();
        given(out, before);
    }

    void finish(std::vector<float>& out) {
        const size_t before = out.size();
        shaped_.clear();
        equalizer_.finish(shaped_);
        stretched_.clear();
        stretcher_.process(shaped_, stretched_);
        stretcher_.finish(stretched_);
        limiter_.process(stretched_, out);
        limiter_.finish(out);
        takePlaces();
        given(out, before);
    }

    TrackPosition position(int64_t outputFrame) const {
        const std::lock_guard lock(mutex_);
        auto run = std::upper_bound(runs_.begin(), runs_.end(), outputFrame,
                                    [](int64_t frame, const RunStart& r) { return frame < r.out; });
        if (run != runs_.begin()) --run;
        const double in = run->in + static_cast<double>(std::max<int64_t>(0, outputFrame - run->out)) * run->tempo;
        auto track = std::upper_bound(tracks_.begin(), tracks_.end(), in, [](double frame, const TrackStart& t) {
            return frame < static_cast<double>(t.in);
        });
        if (track != tracks_.begin()) --track;
        return {track->track, static_cast<double>(track->frame) + std::max(0.0, in - static_cast<double>(track->in))};
    }

  private:
    struct RunStart {
        double in;
        int64_t out;
        double tempo;
    };
    struct TrackStart {
        int64_t in, track, frame;
    };

    // A file of floating-point samples may hold anything; a transform would spread one such value over a whole block.
    void clean(std::span<const float> stereo) {
        clean_.resize(stereo.size());
        std::transform(stereo.begin(), stereo.end(), clean_.begin(), [](float sample) {
            return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0.0f;
        });
    }

    // True when the tempo is another one from now on.
    bool takeSettings() {
        const uint32_t version = settings_.version();
        if (version == version_) return false;
        const std::optional<SoundValues> values = settings_.read();
        if (!values) return false;
        version_ = version;
        equalizer_.setGains(values->equalizer ? std::optional<BandGains>(values->gains) : std::nullopt);
        const double tempo = stretcher_.tempo();
        stretcher_.set(values->pitchPercent, values->tempo, values->quality);
        return tempo != stretcher_.tempo();
    }

    void addRun() {
        const Stretcher::Start start = stretcher_.start();
        const RunStart run{static_cast<double>(base_.in + start.in), base_.out + start.out, stretcher_.tempo()};
        const std::lock_guard lock(mutex_);
        while (!runs_.empty() && runs_.back().out >= run.out) runs_.pop_back();
        runs_.push_back(run);
        trim();
    }

    // Places within a run are where it begins anew, as far as positions go.
    void takePlaces() {
        if (stretcher_.places().empty()) return;
        const std::lock_guard lock(mutex_);
        for (const Stretcher::Place& place : stretcher_.places()) {
            const int64_t out = base_.out + place.out;
            const auto at = std::upper_bound(runs_.begin(), runs_.end(), out,
                                             [](int64_t frame, const RunStart& r) { return frame < r.out; });
            runs_.insert(at, {static_cast<double>(base_.in) + place.in, out, place.slope});
        }
        stretcher_.forgetPlaces();
        trim();
    }

    void given(const std::vector<float>& out, size_t before) {
        const std::span<const float> fresh(out.data() + before, out.size() - before);
        if (tap_ && !fresh.empty()) tap_->write(out_, fresh);
        out_ += static_cast<int64_t>(fresh.size() / 2);
    }

    void trim() {
        while (runs_.size() > kRemembered) runs_.pop_front();
        while (tracks_.size() > kRemembered) tracks_.pop_front();
    }

    const SoundSettings& settings_;
    Tap* tap_;
    int sampleRate_;
    Equalizer equalizer_;
    Stretcher stretcher_;
    Limiter limiter_;
    std::vector<float> clean_, shaped_, stretched_;
    uint32_t version_ = 0;  // of the settings taken; as made, a chain is at normal and so is version 0
    int64_t in_ = 0;        // frames put in since the chain was made
    int64_t out_ = 0;       // number of the next output frame
    struct {
        int64_t in, out;
    } base_{0, 0};  // both at the last reset

    // Taken by the output thread only at a change, and by others for a few comparisons.
    mutable std::mutex mutex_;
    std::deque<RunStart> runs_;      // by rising output frame, never empty
    std::deque<TrackStart> tracks_;  // by rising input frame, never empty
};

Chain::Chain(const SoundSettings& settings, Tap* tap, int sampleRate)
    : impl_(std::make_unique<Impl>(settings, tap, sampleRate)) {}
Chain::~Chain() = default;

int Chain::sampleRate() const { return impl_->sampleRate(); }
void Chain::reset(int64_t track, int64_t sourceFrame, int64_t outputFrame) {
    impl_->reset(track, sourceFrame, outputFrame);
}
int64_t Chain::beginTrack(int64_t track) { return impl_->beginTrack(track); }
void Chain::process(std::span<const float> stereo, std::vector<float>& out) { impl_->process(stereo, out); }
void Chain::finish(std::vector<float>& out) { impl_->finish(out); }
int64_t Chain::outputFrames() const { return impl_->outputFrames(); }
TrackPosition Chain::position(int64_t outputFrame) const { return impl_->position(outputFrame); }

}  // namespace vbmp3
