// A device on a thread of its own. Drivers hang: a call into one whose server has stopped, or whose cable was pulled at
// the wrong moment, may never return. So nobody but this thread calls the device; it holds everything it needs itself,
// and is left behind when it does not come back. For the output thread this is an output that always answers at once.
//
// Between the two lies a short queue, which the thread empties into the device each time that has played a piece. The
// frames heard are asked for then, and run on with the clock in between.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <thread>

#include "libraries/vbmp3/player/output.h"

namespace vbmp3 {

class DeviceThread final : public Output {
  public:
    DeviceThread(std::unique_ptr<Output> device, std::chrono::milliseconds patience);
    ~DeviceThread() override;  // closes the device, or leaves it behind when it hangs

    // Begins to open it and returns None; `opened` tells the result, and the waker is woken when it is there.
    OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) override;
    std::optional<OutputError> opened() const;

    size_t room() override;
    void write(std::span<const float> stereo) override;
    void start() override;
    void pause() override;
    void drain() override;
    void flush() override;
    int64_t played() override;
    // The device says so, or nothing has moved for `patience` although there is something to hear.
    bool lost() override;
    bool audible() const override { return audible_; }

    // How many devices have been left behind and still hang, in the whole process.
    static int leftBehind();

  private:
    struct Shared;
    struct Device;
    struct Round;
    static void run(std::shared_ptr<Shared> shared);
    static void takeRound(Shared& s, const Device& device, Round& round);
    static void noteRound(Shared& s, const Device& device, const Round& round);
    static int restMs(const Shared& s, const Device& device);

    std::shared_ptr<Shared> shared_;
    bool audible_;
    std::chrono::milliseconds patience_;
    std::thread thread_;
};

}  // namespace vbmp3
