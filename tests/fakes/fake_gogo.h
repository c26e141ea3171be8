// An encoder of a given number of frames that remembers what it was asked. One encode at a time, on whatever thread;
// what it remembers may be read while it is held in a frame or has ended.
#pragma once

#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/gogo.h"

namespace quenlox {

class FakeGogo : public Gogo {
  public:
    std::vector<std::string> calls;
    std::vector<std::string> configuration;  // "6 44100", "1 C:\\a.wav"
    std::set<std::thread::id> threads;
    bool there = true;
    LibraryError initialiseError = LibraryError::None, detectError = LibraryError::None;
    int frames = 3;        // the last one finishes
    int failingFrame = 0;  // this one, counted from 1
    int failingRun = 0;    // only this one fails, counted from 1; 0 each
    int heldFrame = 0;     // this one does not come back before letGo()

    bool awaitHeld() { return await(held_); }
    bool awaitEnd() { return await(ended_); }  // after letGo()
    void letGo() {
        const std::lock_guard lock(mutex_);
        heldFrame = 0;
        held_ = ended_ = false;
        changed_.notify_all();
    }

    bool available() override { return there; }
    std::string version() override { return there ? "1.0.0" : ""; }
    int MPGE_getUnitStatesVB() override { return there ? 1 : 0; }
    LibraryError MPGE_initializeWorkVB() override {
        done_ = 0;
        ++run_;
        note("initialise");
        return errorOf(initialiseError);
    }
    LibraryError MPGE_setConfigureVB(GogoItem item, std::int32_t value) override {
        return MPGE_setConfigureVB(item, std::to_string(value));
    }
    LibraryError MPGE_setConfigureVB(GogoItem item, const std::string& text) override {
        configuration.push_back(std::to_string(static_cast<int>(item)) + " " + text);
        return LibraryError::None;
    }
    LibraryError MPGE_detectConfigureVB() override {
        note("detect");
        return errorOf(detectError);
    }
    std::optional<std::int32_t> MPGE_getConfigureVB(GogoItem) override { return frames; }
    GogoFrame MPGE_processFrameVB() override {
        std::unique_lock lock(mutex_);
        held_ = ++done_ == heldFrame;
        changed_.notify_all();
        changed_.wait(lock, [this] { return done_ != heldFrame; });
        note("frame");
        if (done_ == failingFrame) return {false, errorOf(LibraryError::Write)};
        return {done_ >= frames};
    }
    void MPGE_closeCoderVB() override { note("close"); }
    void MPGE_endCoderVB() override {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_all();
        note("end");
    }

  private:
    void note(const char* call) {
        calls.emplace_back(call);
        threads.insert(std::this_thread::get_id());
    }
    LibraryError errorOf(LibraryError error) const {
        return !failingRun || run_ == failingRun ? error : LibraryError::None;
    }
    bool await(const bool& reached) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(10), [&] { return reached; });
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    int done_ = 0, run_ = 0;
    bool held_ = false, ended_ = false;
};

}  // namespace quenlox
