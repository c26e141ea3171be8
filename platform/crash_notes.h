// What a crash leaves behind, for whoever looks into it: a short text and a memory dump in the user's folder. Made,
// told and destroyed on the user-interface thread; watches all of them. What cannot be written is left out and told
// nobody.
#pragma once

namespace quenlox {

class ActionLog;

class CrashNotes {
  public:
    virtual ~CrashNotes() = default;  // ends the watch
    // The actions that a note is to tell; null for none. They must live until they are taken back.
    virtual void follow(const ActionLog* actions) noexcept = 0;
};

}  // namespace quenlox
