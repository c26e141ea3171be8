// The thread that owns the device: takes blocks from the queue through the sound chain to the output, knows which
// frame is being heard, and tells when a track has ended. Never waits for the caller, a file or the decoder; nor for
// the device, which has a thread of its own (device_thread.h).
//
// A device that goes, or whose clock stands still, is opened anew once. When that does not help the silent clock takes
// its place, so that position and end go on, and the device is tried again every now and then, and when one more is
// there.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "libraries/vbmp3/dsp/chain.h"
#include "libraries/vbmp3/player/device_thread.h"
#include "libraries/vbmp3/player/player_state.h"

namespace vbmp3 {

// How the output thread gets at devices.
struct OutputSystem {
    OutputFactory make = MakeDeviceOutput;  // may give null: there is none
    std::function<int()> count = DeviceCount;
    // Put around every output that is opened, the clock too; may be empty.
    std::function<std::unique_ptr<Output>(std::unique_ptr<Output>)> wrap = {};
    // A device may take so long to open, and then to play something: Bluetooth needs a second or two.
    std::chrono::milliseconds patience{3000};
};

class OutputThread {
  public:
    // `notify` gets VBMP3_EVENT_* on this thread.
    OutputThread(PlayerState& state, OutputSystem system, const SoundSettings& sound, Tap& tap,
                 std::function<void(int)> notify);
    ~OutputThread();  // state.quit must be set

  private:
    struct Boundary {
        int64_t outputFrame = 0;  // the track begins with it
        TrackPtr track;
    };
    struct Order {
        uint64_t generation = 0;
        bool awaited = false;  // somebody waits for its answer
        bool active = false;
        bool paused = false;
        TrackPtr track;
        int64_t startFrame = 0;
        OutputSettings settings;
    };

    // A device that is being opened. A newer order that wants the same one waits for it.
    struct Opening {
        std::unique_ptr<DeviceThread> device;
        int sampleRate = 0;
        OutputSettings settings;
        std::chrono::steady_clock::time_point since;
    };

    void run();
    bool takeOrder();
    void begin(const Order& order);
    // These give nothing when a newer order has cut them short; what is opening goes on opening.
    std::optional<OutputError> prepareOutput(int sampleRate, const OutputSettings& settings);
    std::optional<OutputError> openDevice(int sampleRate, const OutputSettings& settings);
    std::optional<OutputError> waitForDevice();
    bool beginOpening(int sampleRate, const OutputSettings& settings);
    void lookAhead(int sampleRate);
    bool noteDevice();
    std::unique_ptr<Output> wrapped(std::unique_ptr<Output> output) const;
    void retire(std::unique_ptr<Output> output);
    int waitTime();
    void startTrack(const TrackPtr& track, int64_t frame);
    void pump();
    bool fetch();
    void observe();
    void tellHeard(int64_t outputFrame);
    void crossInto(const TrackPtr& track);
    void changeRate();
    void end();
    void restartAt(int64_t outputFrame);

    PlayerState& state_;
    OutputSystem system_;
    const SoundSettings& sound_;
    Tap& tap_;
    std::function<void(int)> notify_;

    std::unique_ptr<Output> output_;
    std::optional<Opening> opening_;   // also ahead, for a track of another rate
    std::unique_ptr<Output> retired_;  // has been heard to its end, by its own account
    std::chrono::steady_clock::time_point retiredUntil_;
    std::unique_ptr<Chain> chain_;
    OutputSettings settings_;
    uint64_t generation_ = 0;
    bool active_ = false;
    bool paused_ = false;
    bool started_ = false;   // the output runs
    bool finished_ = false;  // the chain has given everything
    bool drained_ = false;
    int64_t outputBase_ = 0;  // the chain's number of the output's frame 0
    int64_t written_ = 0;     // to the output since then
    TrackPtr track_;          // that goes into the chain
    TrackPtr waiting_;        // has another rate: begins when everything has been heard
    std::vector<float> waitingSamples_;
    std::deque<Boundary> boundaries_;
    std::vector<float> pending_;  // processed and not yet written
    size_t pendingAt_ = 0;
    bool avoidDevice_ = false;  // the clock stands in for it
    int devices_ = 0;           // how many there were when last looked at while it does
    bool hadDevice_ = false;    // its loss has not been told
    bool moved_ = false;        // the device has played something since it was opened
    std::chrono::steady_clock::time_point retryAt_;
    std::chrono::seconds retryAfter_;
    std::thread thread_;
};

}  // namespace vbmp3
