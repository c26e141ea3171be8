#include "libraries/vbmp3/dsp/stretcher.h"

#include <soundtouch/SoundTouch.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace vbmp3 {
namespace {

// SoundTouch slows down a good deal when it is given long blocks.
constexpr size_t kBlockFrames = 1152;
constexpr double kFadeSeconds = 0.02;
// How far beyond a place SoundTouch looks to find the best continuation, at the most; a run that fades out needs that
// much of the real sound behind its last frame.
constexpr double kSeekSeconds = 0.05;

}  // namespace

// One stretch of sound with fixed pitch and tempo.
class Stretcher::Run {
  public:
    Run(int sampleRate, const Values& values) : tempo_(values.tempo) {
        touch_.setSampleRate(static_cast<unsigned>(sampleRate));
        touch_.setChannels(2);
        touch_.setPitch(values.pitchPercent / 100.0);
        touch_.setTempo(values.tempo);
    }

    void process(std::span<const float> stereo, std::vector<float>& out) {
        in_ += static_cast<int64_t>(stereo.size() / 2);
        while (!stereo.empty()) {
            const size_t samples = std::min(stereo.size(), 2 * kBlockFrames);
            touch_.putSamples(stereo.data(), static_cast<unsigned>(samples / 2));
            stereo = stereo.subspan(samples);
            take(expected(in_), out);
        }
    }

    // Silence pushes the rest out; what would be more than the due length is left in.
    void finish(std::vector<float>& out) {
        const int64_t due = expected(in_);
        const std::array<float, 2 * kBlockFrames> silence{};
        for (int i = 0; given_ < due && i < 100; ++i) {
            touch_.putSamples(silence.data(), kBlockFrames);
            take(due, out);
        }
        out.insert(out.end(), static_cast<size_t>(2 * (due - given_)), 0.0f);
        given_ = due;
    }

    // Frames that belong to what was put in and have not been given.
    int64_t owed() const { return expected(in_) - given_; }

  private:
    int64_t expected(int64_t in) const { return std::llround(static_cast<double>(in) / tempo_); }

    void take(int64_t limit, std::vector<float>& out) {
        const int64_t frames = std::min<int64_t>(touch_.numSamples(), limit - given_);
        if (frames <= 0) return;
        const size_t old = out.size();
        out.resize(old + static_cast<size_t>(2 * frames));
        touch_.receiveSamples(out.data() + old, static_cast<unsigned>(frames));
        given_ += frames;
    }

    soundtouch::SoundTouch touch_;
    double tempo_;
    int64_t in_ = 0, given_ = 0;
};

Stretcher::Stretcher(int sampleRate) : sampleRate_(sampleRate) {}
Stretcher::~Stretcher() = default;

void Stretcher::set(int pitchPercent, double tempo) {
    const Values values{pitchPercent, tempo};
    if (values == wanted_) return;
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
    faded_ = 0;
    changing_ = false;
    present_ = wanted_;
    start_ = {};
    in_ = 0;
    run_ = present_.normal() ? nullptr : std::make_unique<Run>(sampleRate_, present_);
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
        run_->finish(work_);
        give(work_, out);
        run_ = std::make_unique<Run>(sampleRate_, present_);
    }
    start_ = {in_, outputFrameOf(in_)};
    fading_.clear();
    faded_ = 0;
}

void Stretcher::feed(std::span<const float> stereo, std::vector<float>& out) {
    if (!run_) {
        give(stereo, out);
        return;
    }
    work_.clear();
    run_->process(stereo, work_);
    give(work_, out);
}

void Stretcher::change(std::vector<float>& out) {
    changing_ = false;
    // The old run goes on over the held frames; its output beyond the start of the new run fades out.
    std::vector<float> tail;
    if (run_) {
        work_.clear();
        const auto own = 2 * static_cast<size_t>(run_->owed());
        run_->process(held_, work_);
        run_->finish(work_);
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
    run_ = present_.normal() ? nullptr : std::make_unique<Run>(sampleRate_, present_);
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
