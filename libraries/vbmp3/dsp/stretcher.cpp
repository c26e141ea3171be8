#include "libraries/vbmp3/dsp/stretcher.h"

#include <soundtouch/SoundTouch.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "libraries/formats/resampler.h"

namespace vbmp3 {
namespace {

// SoundTouch slows down a good deal when it is given long blocks.
constexpr size_t kBlockFrames = 1152;
constexpr double kFadeSeconds = 0.02;
// How far beyond a place SoundTouch looks to find the best continuation, at the most; a run that fades out needs that
// much of the real sound behind its last frame.
constexpr double kSeekSeconds = 0.05;
// How closely it is looked at where the pieces come from that SoundTouch puts together.
constexpr double kLookSeconds = 0.001;
// SoundTouch takes sound through as many channels as are wanted, and does the same to all of them: a third one carries
// the number of the source frame, so weak (2^-50 a frame) that it does not weigh when the sound is compared with
// itself.
constexpr unsigned kChannels = 3;
constexpr float kFrameLevel = 0x1p-50f;

// Of each Quality: the filter that keeps what a higher pitch moves beyond half the sample rate from coming back as
// another tone, and whether the best continuation is looked for at every place or at some.
struct Care {
    int filterTaps;
    int quickSeek;
};
constexpr Care kCare[] = {{32, 0}, {96, 0}, {16, 1}};

}  // namespace

// One stretch of sound with fixed pitch and tempo: SoundTouch makes it longer or shorter, then it is played that much
// faster or slower.
class Stretcher::Run {
  public:
    Run(int sampleRate, const Values& values, Start start)
        : tempo_(values.tempo),
          pitch_(values.pitchPercent / 100.0),
          start_(start),
          lookFrames_(static_cast<int64_t>(kLookSeconds * sampleRate)) {
        touch_.setSampleRate(static_cast<unsigned>(sampleRate));
        touch_.setChannels(kChannels);
        touch_.setSetting(SETTING_USE_AA_FILTER, 0);  // it would filter although the rate stays
        const Care& care = kCare[static_cast<size_t>(values.quality)];
        touch_.setSetting(SETTING_USE_QUICKSEEK, care.quickSeek);
        touch_.setTempo(tempo_ / pitch_);
        if (values.pitchPercent != 100) resampler_.emplace(values.pitchPercent, 100, care.filterTaps);
    }

    void process(std::span<const float> stereo, std::vector<float>& out, std::vector<Place>& places) {
        in_ += static_cast<int64_t>(stereo.size() / 2);
        while (!stereo.empty()) {
            const size_t samples = std::min(stereo.size(), 2 * kBlockFrames);
            put(stereo.first(samples), places);
            stereo = stereo.subspan(samples);
        }
        give(expected(in_), out);
    }

    // Silence pushes the rest out; what would be more than the due length is left in.
    void finish(std::vector<float>& out, std::vector<Place>& places) {
        const int64_t due = expected(in_);
        const std::array<float, 2 * kBlockFrames> silence{};
        for (int i = 0; given_ < due && i < 100; ++i) {
            put(silence, places);
            give(due, out);
        }
        out.insert(out.end(), static_cast<size_t>(2 * (due - given_)), 0.0f);
        given_ = due;
    }

    // Frames that belong to what was put in and have not been given.
    int64_t owed() const { return expected(in_) - given_; }

  private:
    int64_t expected(int64_t in) const { return std::llround(static_cast<double>(in) / tempo_); }

    void put(std::span<const float> stereo, std::vector<Place>& places) {
        block_.clear();
        for (size_t i = 0; i < stereo.size(); i += 2)
            block_.insert(block_.end(), {stereo[i], stereo[i + 1], static_cast<float>(put_++) * kFrameLevel});
        touch_.putSamples(block_.data(), static_cast<unsigned>(stereo.size() / 2));
        const size_t frames = touch_.numSamples();
        block_.resize(kChannels * frames);
        touch_.receiveSamples(block_.data(), static_cast<unsigned>(frames));
        stretched_.clear();
        for (size_t i = 0; i < block_.size(); i += kChannels, ++taken_) {
            stretched_.insert(stretched_.end(), {block_[i], block_[i + 1]});
            if (taken_ % lookFrames_ == 0) look(block_[i + 2] / kFrameLevel, places);
        }
        if (resampler_)
            resampler_->process(stretched_, ready_);
        else
            ready_.insert(ready_.end(), stretched_.begin(), stretched_.end());
    }

    // Within a piece the numbers rise frame by frame. Where one piece fades into the next they do not; half way the
    // second one is the louder.
    void look(double number, std::vector<Place>& places) {
        const double resolution = number * 0x1p-22;
        const auto step = static_cast<double>(lookFrames_);
        const bool steady = std::abs(number - lookedIn_ - step) < 0.25 * step + resolution;
        if (steady && !steady_) {
            const double from = static_cast<double>(unsteadyFrom_ + taken_ - lookFrames_) / 2.0;
            const double in = std::clamp(number - (static_cast<double>(taken_) - from), 0.0, static_cast<double>(in_));
            places.push_back({static_cast<double>(start_.in) + in, start_.out + std::llround(from / pitch_), pitch_});
        } else if (!steady && steady_) {
            unsteadyFrom_ = taken_ - lookFrames_;
        }
        steady_ = steady;
        lookedIn_ = number;
    }

    void give(int64_t limit, std::vector<float>& out) {
        const int64_t frames = std::min<int64_t>(static_cast<int64_t>(ready_.size() / 2), limit - given_);
        if (frames <= 0) return;
        out.insert(out.end(), ready_.begin(), ready_.begin() + static_cast<ptrdiff_t>(2 * frames));
        ready_.erase(ready_.begin(), ready_.begin() + static_cast<ptrdiff_t>(2 * frames));
        given_ += frames;
    }

    soundtouch::SoundTouch touch_;
    std::optional<Resampler> resampler_;
    double tempo_, pitch_;
    Start start_;
    int64_t lookFrames_;
    double lookedIn_ = 0;
    bool steady_ = false;
    int64_t unsteadyFrom_ = 0;
    int64_t in_ = 0;     // frames taken
    int64_t put_ = 0;    // into SoundTouch, the silence at the end too
    int64_t taken_ = 0;  // from it
    int64_t given_ = 0;
    std::vector<float> block_, stretched_, ready_;
};

Stretcher::Stretcher(int sampleRate) : sampleRate_(sampleRate) {}
Stretcher::~Stretcher() = default;

void Stretcher::set(int pitchPercent, double tempo, Quality quality) {
    const Values values{pitchPercent, tempo, quality};
    if (values == wanted_) return;
    if (values.normal() && wanted_.normal()) {
        wanted_ = values;
        return;
    }
    if (!changing_) {
        // A run that has not begun yet is simply replaced.
        start_ = {in_, outputFrameOf(in_)};
        changing_ = true;
    }
    wanted_ = values;
}

int64_t Stretcher::outputFrameOf(int64_t in) const {
    return start_.out + std::llround(static_cast<double>(in - start_.in) / wanted_.tempo);
}

void Stretcher::reset() {
    held_.clear();
    fading_.clear();
    places_.clear();
    faded_ = 0;
    changing_ = false;
    present_ = wanted_;
    start_ = {};
    in_ = 0;
    run_ = present_.normal() ? nullptr : std::make_unique<Run>(sampleRate_, present_, start_);
}

void Stretcher::process(std::span<const float> stereo, std::vector<float>& out) {
    in_ += static_cast<int64_t>(stereo.size() / 2);
    if (!changing_) {
        feed(stereo, out);
        return;
    }
    held_.insert(held_.end(), stereo.begin(), stereo.end());
    const double tempo = std::max(present_.tempo, wanted_.tempo);
    const auto needed = static_cast<size_t>((kFadeSeconds * tempo + kSeekSeconds) * sampleRate_);
    if (held_.size() / 2 >= needed) change(out);
}

void Stretcher::finish(std::vector<float>& out) {
    if (changing_) change(out);
    if (run_) {
        work_.clear();
        run_->finish(work_, places_);
        give(work_, out);
    }
    start_ = {in_, outputFrameOf(in_)};
    if (run_) {
        // Whatever was heard last, here the track is over.
        while (!places_.empty() && places_.back().out >= start_.out) places_.pop_back();
        places_.push_back({static_cast<double>(start_.in), start_.out, present_.tempo});
        run_ = std::make_unique<Run>(sampleRate_, present_, start_);
    }
    fading_.clear();
    faded_ = 0;
}

void Stretcher::feed(std::span<const float> stereo, std::vector<float>& out) {
    if (!run_) {
        give(stereo, out);
        return;
    }
    work_.clear();
    run_->process(stereo, work_, places_);
    give(work_, out);
}

void Stretcher::change(std::vector<float>& out) {
    changing_ = false;
    // The old run goes on over the held frames; its output beyond the start of the new run fades out.
    std::vector<float> tail;
    if (run_) {
        work_.clear();
        const auto own = 2 * static_cast<size_t>(run_->owed());
        run_->process(held_, work_, places_);
        run_->finish(work_, places_);
        while (!places_.empty() && places_.back().out >= start_.out) places_.pop_back();
        tail.assign(work_.begin() + static_cast<ptrdiff_t>(own), work_.end());
        work_.resize(own);
        give(work_, out);
    } else {
        tail = held_;
    }
    const auto fade = 2 * static_cast<size_t>(kFadeSeconds * sampleRate_);
    if (tail.size() > fade) tail.resize(fade);
    fading_ = std::move(tail);
    faded_ = 0;
    present_ = wanted_;
    run_ = present_.normal() ? nullptr : std::make_unique<Run>(sampleRate_, present_, start_);
    std::vector<float> held;
    held.swap(held_);
    feed(held, out);
}

// Appends samples of the present run, mixed with the end of the one before while it fades.
void Stretcher::give(std::span<const float> stereo, std::vector<float>& out) {
    const size_t mixed = std::min(stereo.size(), fading_.size() - faded_);
    for (size_t i = 0; i < mixed; ++i, ++faded_) {
        const float part = (static_cast<float>(faded_ / 2) + 0.5f) / static_cast<float>(fading_.size() / 2);
        out.push_back(fading_[faded_] + (stereo[i] - fading_[faded_]) * part);
    }
    if (!fading_.empty() && faded_ == fading_.size()) {
        fading_.clear();
        faded_ = 0;
    }
    out.insert(out.end(), stereo.begin() + static_cast<ptrdiff_t>(mixed), stereo.end());
}

}  // namespace vbmp3
