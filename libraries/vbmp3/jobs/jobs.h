// Work in the background of the caller: decoding a file to WAVE, encoding one with the codec of the operating system.
// One job at a time, on a thread of its own. Methods are the caller's; `finished` is called on the job's thread. A job
// that hangs in a file is left behind.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "libraries/vbmp3/player/side_thread.h"

namespace vbmp3 {

// What a running job sees of the world.
class JobControl {
  public:
    JobControl() = default;
    // `told` is called on the thread of the work; false cancels it.
    explicit JobControl(std::function<bool(int permille)> told) : told_(std::move(told)) {}

    bool cancelled() const { return cancelled_; }
    void progress(double part) {
        permille_ = static_cast<int>(part < 0 ? 0 : part > 1 ? 1000 : part * 1000);
        if (told_ && !told_(permille_)) cancelled_ = true;
    }

  private:
    friend class Jobs;
    std::atomic<bool> cancelled_ = false;
    std::atomic<int> permille_ = 0;
    std::function<bool(int permille)> told_;
};

class Jobs {
  public:
    enum class State { None, Running, Done, Failed };

    explicit Jobs(std::function<void()> finished) : finished_(std::move(finished)) {}
    ~Jobs() { cancel(); }

    // `work` returns a VBMP3_ERROR_* number and leaves no destination behind when it is cancelled.
    // False when a job is running. Throws when there is no thread for it.
    bool start(std::function<int(JobControl&)> work);
    void cancel();  // waits until the job has stopped, two seconds at most; afterwards there is none
    State state() const { return job_ ? job_->state.load() : State::None; }
    int permille() const { return job_ ? job_->control.permille_.load() : 0; }
    int error() const { return job_ ? job_->error.load() : 0; }

  private:
    struct Job {
        JobControl control;
        std::atomic<State> state = State::Running;
        std::atomic<int> error = 0;
        std::mutex mutex;
        std::function<void()> finished;  // null once nobody wants to hear of it
    };
    static void run(Job& job, const std::function<int(JobControl&)>& work);

    std::function<void()> finished_;
    std::shared_ptr<Job> job_;
    std::unique_ptr<SideThread> thread_;
};

// Decodes `source` to a 16-bit WAVE file with the rate and (up to two) channels of the source.
// Uses up to `threads` processors; the result is the same for any number of them.
// `sectionFrames`: MPEG frames that a processor decodes in one go.
int DecodeToWave(const std::string& source, const std::string& destination, int threads, JobControl& control,
                 int64_t sectionFrames = 1024);

// The same on the calling thread, without a job: of a source with MPEG audio, VBMP3_ERROR_FORMAT else. `progress` is
// called on this thread with 0 to 1000; when it gives false, the result is VBMP3_ERROR_CANCELLED.
int DecodeHere(const std::string& source, const std::string& destination, int threads,
               const std::function<bool(int permille)>& progress);

// Encodes a WAVE file with the MP3 codec of the operating system, at the best rate it offers up to 320 kbit/s.
// VBMP3_ERROR_NO_CODEC where there is none.
int EncodeWithSystemCodec(const std::string& source, const std::string& destination, JobControl& control);
bool HasSystemCodec();

}  // namespace vbmp3
