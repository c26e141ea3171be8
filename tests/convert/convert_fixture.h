// A conversion over the fakes, with hooks that note what they were asked.
#pragma once

#include <condition_variable>
#include <mutex>

#include <gtest/gtest.h>

#include "convert/conversion_run.h"
#include "state/global_state.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_gogo.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {

using Notes = std::vector<std::string>;

// Tasks arrive from another thread.
class BusyWindows : public FakeWindowSystem {
  public:
    void post(std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        tasks.push_back(std::move(task));
        arrived_.notify_all();
    }
    std::size_t waiting() {
        const std::lock_guard lock(mutex_);
        return tasks.size();
    }
    bool runNext() {
        std::unique_lock lock(mutex_);
        if (!arrived_.wait_for(lock, std::chrono::seconds(10), [this] { return !tasks.empty(); })) return false;
        const auto task = std::move(tasks.front());
        tasks.pop_front();
        lock.unlock();
        return task(), true;
    }

  private:
    std::mutex mutex_;
    std::condition_variable arrived_;
};

class ConvertTest : public testing::Test {
  protected:
    ConvertTest() {
        connect(run);
        connect(side);
    }
    void connect(ConversionRun& to) {
        const auto note = [this](const std::string& what) {
            return [this, what](const auto&... of) { notes.push_back((what + ... + of)); };
        };
        const auto status = [this](PlayStatus code) {
            state.PlayerStatus = code;
            notes.push_back("status " + std::to_string(code));
        };
        const auto open = [this, note](const std::string& path) { note("open heard ")(path), whileOpening(); };
        to.connect({note("stop"), note("let go of "), status, open, note("made "), note("failed"), note("refresh"),
                    [this](bool on) { polling = on; }});
    }
    // Another run, which encodes with the system's codec.
    ConversionRun& withoutGogo() {
        gogo->there = false;
        connect(bare_.emplace(state, vbmp3, gogo, files, windows, 1));
        return *bare_;
    }
    void choose(Operation operation, const std::vector<std::string>& sources, const std::string& destination = {}) {
        run.setOperation(operation);
        run.setSources(sources);
        if (!destination.empty()) run.setDestination(destination);
        notes.clear();
    }
    void startHeld(int frame) {
        gogo->heldFrame = frame;
        run.start();
        ASSERT_TRUE(gogo->awaitHeld());
    }
    // Until a cancelled encode has come back.
    void awaitEncoder() {
        gogo->letGo();
        while (!run.canStart()) ASSERT_TRUE(windows.runNext());
    }
    void awaitRun() {
        while (run.running()) ASSERT_TRUE(windows.runNext());
    }
    void encode() {
        run.start();
        awaitRun();
    }

    GlobalState state;
    FakeVbmp3 vbmp3;
    std::shared_ptr<FakeGogo> gogo = std::make_shared<FakeGogo>();
    FakeFileSystem files;
    BusyWindows windows;
    Notes notes;
    bool polling = false;
    std::function<void()> whileOpening = [] {};
    ConversionRun run{state, vbmp3, gogo, files, windows, 1};
    ConversionRun side{state, vbmp3, gogo, files, windows, 2};  // two files side by side

  private:
    std::optional<ConversionRun> bare_;
};

}  // namespace quenlox
