// One file at a time played through the sound chain: open, play, pause, seek, position, and the file that follows. All
// methods are the caller's, on one thread, save the three that open, which may be called on another at the same time.
// The decode thread and the output thread are inside. No method but open waits for a file that does not answer.
#pragma once

#include <mutex>
#include <string>

#include "libraries/files/file_source.h"
#include "libraries/vbmp3/player/decode_thread.h"
#include "libraries/vbmp3/player/output_thread.h"
#include "libraries/vbmp3/player/player_state.h"
#include "libraries/vbmp3/player/recorder.h"

namespace vbmp3 {

class Player {
  public:
    explicit Player(const SoundSettings& sound, OutputSystem system = {}, FileOpener openFile = vbmp3::OpenFile);
    ~Player();

    // These return a VBMP3_ERROR_* number, VBMP3_OK for success.
    int open(const std::string& path);
    void close();  // afterwards nobody holds the file, unless it does not answer
    int play();
    int stop();
    int pause();
    int restart();
    int seek(double seconds);
    // Empty: none. A file that takes long to open is taken as it comes, and not at all when it then cannot be opened.
    int setNext(const std::string& path);

    // Opening in two steps, between which the file is opened with `OpenTrack`, without the player. beginOpen closes
    // what is open and gives a ticket, which a later one or a close makes invalid: VBMP3_ERROR_SUPERSEDED.
    Ticket beginOpen();
    int finishOpen(const Ticket& ticket, TrackPtr& track);  // takes the track, unless it is null
    const FileOpener& fileOpener() const { return openFile_; }

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
    // Waits until what was played is silent and, when its file answers, nobody reads it.
    void waitForSilence(std::unique_lock<std::mutex>& lock);

    OutputSystem withRecorder(OutputSystem system);

    const std::shared_ptr<PlayerState> shared_ = std::make_shared<PlayerState>();
    PlayerState& state_ = *shared_;
    const FileOpener openFile_;
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
