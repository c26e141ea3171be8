#include "libraries/vbmp3/player/recorder.h"

#include <algorithm>
#include <chrono>
#include <deque>

#include "libraries/formats/wave_format.h"

namespace vbmp3 {
namespace {

class RecordingOutput final : public Output {
  public:
    RecordingOutput(std::unique_ptr<Output> inner, std::shared_ptr<Recorder> recorder)
        : inner_(std::move(inner)), recorder_(std::move(recorder)) {}

    OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) override {
        return inner_->open(sampleRate, settings, waker);
    }
    size_t room() override { return inner_->room(); }
    void write(std::span<const float> stereo) override {
        inner_->write(stereo);
        if (kept_ >= end_) return;
        for (const float sample : stereo) unheard_.push_back(ToInt16(sample));
    }
    void start() override { inner_->start(); }
    void pause() override { inner_->pause(); }
    void drain() override { inner_->drain(); }
    void trackEndsAt(int64_t frame) override {
        end_ = std::min(end_, frame);
        inner_->trackEndsAt(frame);
    }
    void flush() override {
        played();
        inner_->flush();
        unheard_.clear();
        kept_ = 0;
        end_ = INT64_MAX;
    }
    int64_t played() override {
        const int64_t played = inner_->played();
        const int64_t heard = std::min(played, end_) - kept_;
        const size_t count = std::min(unheard_.size(), static_cast<size_t>(std::max<int64_t>(0, heard)) * 2);
        if (count > 0) {
            const std::vector<int16_t> samples(unheard_.begin(), unheard_.begin() + static_cast<std::ptrdiff_t>(count));
            unheard_.erase(unheard_.begin(), unheard_.begin() + static_cast<std::ptrdiff_t>(count));
            recorder_->add(samples);
            kept_ += static_cast<int64_t>(count / 2);
        }
        if (kept_ >= end_) {
            recorder_->end();
            unheard_.clear();
        }
        return played;
    }
    bool lost() override { return inner_->lost(); }
    bool audible() const override { return inner_->audible(); }

  private:
    std::unique_ptr<Output> inner_;
    std::shared_ptr<Recorder> recorder_;
    std::deque<int16_t> unheard_;
    int64_t kept_ = 0;  // frames
    int64_t end_ = INT64_MAX;
};

}  // namespace

void Recorder::add(std::span<const int16_t> stereo) {
    const std::lock_guard lock(mutex_);
    if (state_ == State::More) samples_.insert(samples_.end(), stereo.begin(), stereo.end());
    changed_.notify_one();
}

void Recorder::end() {
    const std::lock_guard lock(mutex_);
    if (state_ == State::More) state_ = State::Ended;
    changed_.notify_one();
}

void Recorder::abort() {
    const std::lock_guard lock(mutex_);
    if (state_ != State::More) return;
    state_ = State::Aborted;
    samples_ = {};
    changed_.notify_one();
}

Recorder::State Recorder::take(std::vector<int16_t>& samples) {
    samples.clear();
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::milliseconds(100), [&] { return !samples_.empty() || state_ != State::More; });
    samples.swap(samples_);
    return state_;
}

std::unique_ptr<Output> MakeRecordingOutput(std::unique_ptr<Output> inner, std::shared_ptr<Recorder> recorder) {
    return std::make_unique<RecordingOutput>(std::move(inner), std::move(recorder));
}

}  // namespace vbmp3
