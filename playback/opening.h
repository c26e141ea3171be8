// What came of opening a file, and of playing it: values that tell the caller how to go on.
#pragma once

namespace quenlox {

enum class OpenResult {
    Opened,
    Nothing,     // no file is named
    Missing,     // it is not there
    Refused,     // it is there, and nothing here can open it
    Superseded,  // while messages were handled something else was asked for: that counts
    Busy         // a conversion runs and may not be ended
};

enum class PlayResult {
    Nothing,  // no file
    Playing,
    Waiting,  // the device is in use: PlayerStatus is 5 and the play is to be tried again
    Failed
};

struct Opening {
    OpenResult result = OpenResult::Opened;
    // The file itself is what cannot be opened, not the drive it lies on, the driver, the device or the moment.
    bool fileAtFault = false;

    explicit operator bool() const { return result == OpenResult::Opened; }
    bool operator==(const Opening&) const = default;
};

}  // namespace quenlox
