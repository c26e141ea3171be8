// What the caller, the decode thread and the output thread of a player share. Every member is guarded by the mutex,
// which nobody holds while decoding, reading a file or touching the device.
//
// The caller writes an order (what to play, from where, paused or not) and raises its generation; both threads drop
// what belongs to an older one. Sound goes from decoder to output as blocks in a queue. It lives as long as the last
// thread that knows it, which may have been left behind.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "libraries/vbmp3/player/output.h"
#include "libraries/vbmp3/player/running_count.h"
#include "libraries/vbmp3/player/track.h"

namespace vbmp3 {

struct Block {
    TrackPtr track;
    std::vector<float> samples;  // interleaved stereo
};

struct PlayerState {
    std::mutex mutex;
    std::condition_variable decodeWork;  // wakes the decode thread
    std::condition_variable answered;    // wakes the caller
    Waker outputWork;                    // wakes the output thread

    // The order.
    uint64_t generation = 0;
    bool quit = false;
    bool active = false;  // playing or paused
    bool paused = false;
    TrackPtr current;  // the one being heard, or open and stopped
    int64_t startFrame = 0;
    TrackPtr next;
    bool nextTaken = false;  // the decoder has gone on to it
    OutputSettings output;

    // Which openings under way count: files are opened without the mutex, and something newer may have been ordered
    // meanwhile. Null: none.
    Ticket openTicket;
    Ticket nextTicket;
    // No longer wanted. The decode thread closes their files, because that may take as long as reading them.
    std::vector<TrackPtr> released;

    // Decoded and not yet taken by the output.
    std::deque<Block> queue;
    int64_t queuedFrames = 0;
    bool queueFull = false;  // has been, and is not half empty yet
    bool decodedAll = false;

    // Answers: the generation that each thread has taken over.
    uint64_t decodeGeneration = 0;
    uint64_t outputGeneration = 0;
    OutputError outputError = OutputError::None;
    uint64_t awaited = 0;  // the generation whose error somebody waits for

    // What is heard.
    RunningCount heard;        // frames of `current`
    int64_t shown = 0;         // of them; goes back only by order
    RunningCount heardOutput;  // frames as the sound chain numbers them
    bool deviceLost = false;

    // The following with the mutex held.
    // What was being opened is of no use any more.
    static Ticket newTicket(Ticket& last) {
        if (last) *last = true;
        return last = std::make_shared<std::atomic<bool>>(false);
    }
    // True when that opening counts; it is over, and its file stays readable.
    static bool redeem(Ticket& last, const Ticket& ticket) {
        if (ticket != last) return false;
        last = nullptr;
        return true;
    }
    int64_t heardFrame() { return shown = std::max(shown, heard.now()); }
    void setHeard(int64_t frame) {
        heard = {frame};
        shown = frame;
    }
    // From now on nothing moves.
    void stopHearing() {
        setHeard(heardFrame());
        heardOutput = {heardOutput.now()};
    }

    void release(TrackPtr track) {
        if (!track) return;
        released.push_back(std::move(track));
        decodeWork.notify_all();
    }
    void setNext(TrackPtr track) {
        release(std::exchange(next, std::move(track)));
        if (!next || !active) return;
        decodedAll = false;
        decodeWork.notify_all();
    }
    // Both threads begin anew with the order as it stands.
    void newGeneration() {
        ++generation;
        queue.clear();
        queuedFrames = 0;
        queueFull = false;
        decodedAll = false;
        nextTaken = false;
        decodeWork.notify_all();
        outputWork.wake();
    }
};

}  // namespace vbmp3
