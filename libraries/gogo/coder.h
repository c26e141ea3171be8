// One run of the encoder: the source, the threads that encode its parts, and the destination. Used on one thread, the
// caller's, which reads nothing and encodes nothing: it takes what the threads have ready and writes it. It never waits
// longer than one frame takes to encode.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "libraries/files/transaction.h"
#include "libraries/gogo/info_frame.h"
#include "libraries/gogo/part_encoder.h"

namespace gogo {

class Coder {
  public:
    static constexpr int kMostThreads = 64;
    // Null when source, destination or settings do not do; `error` tells which. `threads` 0: one for each core.
    static std::unique_ptr<Coder> open(const Settings& settings, int threads, Error& error);
    ~Coder();  // before the end: removes what was written
    Coder(const Coder&) = delete;
    Coder& operator=(const Coder&) = delete;

    int64_t frames() const { return frames_; }
    int bitRate() const { return facts_.bitRate; }  // kbit/s of the sound; with VBR the least
    // One frame further. After the last one (finished()) the destination is in its place; after an error it is as it
    // was.
    Error processFrame();
    bool finished() const { return finished_; }

  private:
    Coder() = default;
    void work() noexcept;
    Error encodeNext(bool& more);
    Error takePart(bool& taken, int64_t& index, Part& part, Pcm& pcm);
    bool read(int64_t samples, Pcm& pcm);
    Error awaitFrame();
    Error collect();
    Error write(const FrameRun& run);
    Error finish();
    void stop();

    Settings settings_;
    EncoderFacts facts_;
    int channels_ = 0;
    int64_t frames_ = 0;
    int64_t parts_ = 0;

    // The caller's.
    std::unique_ptr<vbmp3::FileTransaction> file_;
    InfoFrameFields info_;
    size_t infoBytes_ = 0;
    FrameRun held_;          // the part written last but one, until its seam is known
    int64_t collected_ = 0;  // parts
    int64_t processed_ = 0;  // frames asked for
    Error error_ = Error::None;
    bool finished_ = false;
    std::vector<std::thread> threads_;

    // One thread at a time reads the source, in the order of the parts.
    std::mutex reading_;
    std::unique_ptr<PcmReader> reader_;
    Pcm carry_;  // the end of what was read, which the next part begins with
    int64_t nextPart_ = 0;
    bool unreadable_ = false;

    // Between the threads and the caller.
    std::mutex mutex_;
    std::condition_variable progress_;  // for the caller
    std::condition_variable room_;      // for the threads
    std::map<int64_t, FrameRun> ready_;
    int64_t encoded_ = 0;      // frames of all parts together
    int64_t allowedPart_ = 0;  // parts from this one on wait until the caller has taken others
    Error workError_ = Error::None;
    std::atomic<bool> stopping_ = false;
};

}  // namespace gogo
