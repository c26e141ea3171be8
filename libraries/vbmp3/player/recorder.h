// Keeps what is played of one track: an output that passes everything on and hands what has been heard, up to the frame
// with which another track begins, to a recorder, from which a job writes it to a file. The output thread never waits
// for that file.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "libraries/vbmp3/player/output.h"

namespace vbmp3 {

class Recorder {
  public:
    void add(std::span<const int16_t> stereo);  // output thread
    void end();                                 // everything has been heard
    // Playing was given up before the end, or nobody takes what is kept any more; nothing after end.
    void abort();

    enum class State { More, Ended, Aborted };
    // Job: waits up to 100 ms and moves what there is into `samples` (cleared before).
    State take(std::vector<int16_t>& samples);

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int16_t> samples_;
    State state_ = State::More;
};

std::unique_ptr<Output> MakeRecordingOutput(std::unique_ptr<Output> inner, std::shared_ptr<Recorder> recorder);

}  // namespace vbmp3
