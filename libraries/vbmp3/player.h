// One file at a time played through the sound chain: open, play, pause, seek, position, and the file that follows. All
// methods are the caller's, on one thread; the decode thread and the output thread are inside.
#pragma once

#include <mutex>
#include <string>

#include "libraries/vbmp3/decode_thread.h"
#include "libraries/vbmp3/output_thread.h"
#include "libraries/vbmp3/player_state.h"
#include "libraries/vbmp3/recorder.h"

namespace vbmp3 {

// Opens a file as far as playing needs it: null and a VBMP3_ERROR_* number when that fails.
TrackPtr openTrack(const std::string& path, int& error);

class Player {
  public:
    explicit Player(const SoundSettings& sound, OutputSystem system = {});
    ~Player();

    // These return a VBMP3_ERROR_* number, VBMP3_OK for success.
    int open(const std::string& path);
    void close();
    int play();
    int stop();
    int pause();
    int restart();
    int seek(double seconds);
    int setNext(const std::string& path);  // empty: none

    struct Snapshot {
        int state = 0;  // 0 stopped, 1 playing, 2 paused
        double seconds = 0;
        int64_t outputFrame = 0;  // being heard, as the tap numbers them
    };
    Snapshot snapshot();
    TrackPtr current();  // null when nothing is open
    void setOutput(OutputSettings settings);
    bool hasDevice();
    const Tap& tap() const { return tap_; }

    // What is played from the next play on goes to `recorder` too, until it ends or is given up; see recorder.h.
    void setRecorder(std::shared_ptr<Recorder> recorder);
    void stopRecording();

    // Called with VBMP3_EVENT_* on a thread of the library. After setListener returns, the former one is not running.
    void setListener(std::function<void(int)> listener);
    void notify(int event);

  private:
    // Waits until both threads have taken over `generation`; no longer than a device needs at worst.
    bool waitFor(std::unique_lock<std::mutex>& lock, uint64_t generation);

    OutputSystem withRecorder(OutputSystem system);

    PlayerState state_;
    std::mutex recorderMutex_;
    std::shared_ptr<Recorder> recorder_;
    Tap tap_;
    OutputSystem system_;
    std::mutex listenerMutex_;
    std::function<void(int)> listener_;
    DecodeThread decoder_;
    OutputThread output_;
};

}  // namespace vbmp3
