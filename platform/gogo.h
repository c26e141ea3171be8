// gogo.dll as the program sees it. Loaded at run time; without it the converter does without encoding, and every
// operation fails with NotInitialised. An encode is made on a thread of its own, from MPGE_initializeWorkVB to
// MPGE_endCoderVB, and other threads may encode at the same time; available() and version() are asked on the
// user-interface thread. Nothing throws.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/library_error.h"

namespace quenlox {

// What can be configured, by the library's own numbers.
enum class GogoItem : std::int32_t {
    Source = 1,       // text: a WAVE file
    Destination = 2,  // text
    Channels = 3,     // 0 mono, 1 stereo, 2 joint stereo
    BitRate = 4,      // kbit/s, 8 to 320; with VBR the least
    Frequency = 6,    // Hz, one of the nine of MPEG audio
    Frames = 15,      // of the whole run; only to be asked, while one is open
    VbrQuality = 18,  // 0 best to 9 smallest, -1 none
    Cores = 32        // processor cores that the encode uses at most, 0 all
};

struct GogoFrame {
    bool finished = false;  // the file is complete and in its place
    LibraryError error = LibraryError::None;
};

class Gogo {
  public:
    virtual ~Gogo() = default;
    virtual bool available() = 0;            // the library is there and answers
    virtual std::string version() = 0;       // "1.1.0", empty without the library
    virtual int MPGE_getUnitStatesVB() = 0;  // processor cores that an encode uses, 0 without the library

    // NotInitialised: out of turn, an encode is under way.
    virtual LibraryError MPGE_initializeWorkVB() = 0;
    virtual LibraryError MPGE_setConfigureVB(GogoItem item, std::int32_t value) = 0;  // Argument: out of range
    virtual LibraryError MPGE_setConfigureVB(GogoItem item, const std::string& text) = 0;
    // Opens both files: NotFound, NotWave, Write, SameFile, Settings, Memory.
    virtual LibraryError MPGE_detectConfigureVB() = 0;
    virtual std::optional<std::int32_t> MPGE_getConfigureVB(GogoItem item) = 0;
    // One frame further: neither finished nor an error means that there are more.
    virtual GogoFrame MPGE_processFrameVB() = 0;
    virtual void MPGE_closeCoderVB() = 0;  // an unfinished destination is removed; nothing open: does nothing
    virtual void MPGE_endCoderVB() = 0;
};

}  // namespace quenlox
