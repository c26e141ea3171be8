#include <algorithm>
#include <chrono>

#include "libraries/vbmp3/player/output.h"

namespace vbmp3 {
namespace {

class ClockOutput final : public Output {
  public:
    explicit ClockOutput(double speed) : speed_(speed) {}

    OutputError open(int sampleRate, const OutputSettings& settings, Waker&) override {
        rate_ = sampleRate * speed_;
        capacity_ = std::max<int64_t>(1, static_cast<int64_t>(sampleRate) * settings.bufferMs / 1000);
        return OutputError::None;
    }

    size_t room() override { return static_cast<size_t>(std::max<int64_t>(0, capacity_ - (written_ - played()))); }

    void write(std::span<const float> stereo) override {
        settle();  // a clock that ran dry does not make up for the time it stood
        written_ += static_cast<int64_t>(stereo.size() / 2);
    }

    void start() override {
        if (!running_) since_ = Clock::now();
        running_ = true;
    }

    void pause() override {
        settle();
        running_ = false;
    }

    void drain() override {}

    void flush() override {
        running_ = false;
        played_ = 0;
        written_ = 0;
    }

    int64_t played() override {
        settle();
        return static_cast<int64_t>(played_);
    }

    bool lost() override { return false; }
    bool audible() const override { return false; }

  private:
    using Clock = std::chrono::steady_clock;

    void settle() {
        if (!running_) return;
        const Clock::time_point now = Clock::now();
        played_ = std::min(static_cast<double>(written_),
                           played_ + std::chrono::duration<double>(now - since_).count() * rate_);
        since_ = now;
    }

    double speed_;
    double rate_ = 44100;
    int64_t capacity_ = 0;
    int64_t written_ = 0;
    double played_ = 0;
    bool running_ = false;
    Clock::time_point since_;
};

}  // namespace

std::unique_ptr<Output> MakeClockOutput(double speed) { return std::make_unique<ClockOutput>(speed); }

#ifndef _WIN32
std::unique_ptr<Output> MakeDeviceOutput() { return nullptr; }
int DeviceCount() { return 0; }
#endif

}  // namespace vbmp3
