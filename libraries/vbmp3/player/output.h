// Where the sound goes: a device, a clock that swallows it in time, or the memory of a test. Every method is called on
// one thread. For a device that is a thread of its own (device_thread.h), since its calls may take long or never
// return.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "libraries/vbmp3/player/waker.h"

namespace vbmp3 {

enum class OutputError { None, Busy, NoDevice };

struct OutputSettings {
    int device = -1;     // -1: the default of the system
    int bufferMs = 250;  // 50 to 2000
    friend bool operator==(const OutputSettings&, const OutputSettings&) = default;
};

class Output {
  public:
    virtual ~Output() = default;  // closes
    // Opens at `sampleRate` with stereo, stopped: nothing is heard before start. `waker` is woken when there is room
    // anew.
    virtual OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) = 0;
    // Frames that write takes now.
    virtual size_t room() = 0;
    // At most room() frames of interleaved floats; values beyond -1 to 1 are clipped.
    virtual void write(std::span<const float> stereo) = 0;
    virtual void start() = 0;  // begins, and goes on after pause
    virtual void pause() = 0;
    // Nothing follows for now: what was written is to be heard to its end.
    virtual void drain() = 0;
    // What is written from frame `frame` on (as `played` counts) belongs to another track.
    virtual void trackEndsAt([[maybe_unused]] int64_t frame) {}
    // Drops what has not been heard; counting begins anew, stopped.
    virtual void flush() = 0;
    // Frames heard since open or flush. Never goes back; is the number written once all is heard.
    virtual int64_t played() = 0;
    // The device has gone.
    virtual bool lost() = 0;
    // Whether a real device makes it audible.
    virtual bool audible() const { return true; }
};

using OutputFactory = std::function<std::unique_ptr<Output>()>;

// Time passes as if a device played, without one; `speed` times as fast. Serves when the machine has no sound device.
std::unique_ptr<Output> MakeClockOutput(double speed = 1.0);
// The sound device of the system (Windows); natively there is none, and this is null.
std::unique_ptr<Output> MakeDeviceOutput();
// How many devices there are.
int DeviceCount();

}  // namespace vbmp3
