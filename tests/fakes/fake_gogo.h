// An encoder of a given number of frames that remembers what it was asked. One encode at a time, on whatever thread;
// what it remembers may be read while it is held in a frame or has ended.
#pragma once

#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "platform/gogo.h"

namespace quenlox {

class FakeGogo : public Gogo {
  public:
    std::vector<std::string> calls;
    std::vector<std::tuple<int, int, std::string>> configuration;  // item, value, text
    std::set<std::thread::id> threads;
    bool there = true;
    int initialiseResult = 0;
    int detectResult = 0;
    int frames = 3;        // processFrame gives 1 with the last
    int failingFrame = 0;  // this one, counted from 1, gives 2
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
    int MPGE_getUnitStatesVB(std::int32_t& state) override {
        state = 0;
        return there ? 0 : 1;
    }
    int MPGE_initializeWorkVB() override {
        done_ = 0;
        return note("initialise", initialiseResult);
    }
    int MPGE_setConfigureVB(std::int32_t item, std::int32_t value, const std::string& text) override {
        configuration.emplace_back(item, value, text);
        return 0;
    }
    int MPGE_detectConfigureVB() override { return note("detect", detectResult); }
    int MPGE_getConfigureVB(std::int32_t item, std::int32_t& value) override {
        if (item != 15) return 1;
        value = frames;
        return 0;
    }
    int MPGE_processFrameVB() override {
        std::unique_lock lock(mutex_);
        held_ = ++done_ == heldFrame;
        changed_.notify_all();
        changed_.wait(lock, [this] { return done_ != heldFrame; });
        if (done_ == failingFrame) return note("frame", 2);
        return note("frame", done_ >= frames ? 1 : 0);
    }
    int MPGE_closeCoderVB() override { return note("close", 0); }
    int MPGE_endCoderVB() override {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_all();
        return note("end", 0);
    }
    std::string version() override { return "1.0.0"; }

  private:
    int note(const char* call, int result) {
        calls.emplace_back(call);
        threads.insert(std::this_thread::get_id());
        return result;
    }
    bool await(const bool& reached) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(10), [&] { return reached; });
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    int done_ = 0;
    bool held_ = false, ended_ = false;
};

}  // namespace quenlox
