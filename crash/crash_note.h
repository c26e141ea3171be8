// The text that a crash leaves for whoever looks into it. Made into a buffer of fixed size, without memory of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace quenlox {

class ActionLog;

// Text in a buffer of somebody else; what does not fit is cut off.
class NoteText {
  public:
    explicit NoteText(std::span<char> buffer) noexcept : buffer_(buffer) {}

    NoteText& text(std::string_view text) noexcept;
    NoteText& line() noexcept { return text("\r\n"); }
    NoteText& decimal(std::int64_t number, int width = 0) noexcept;      // filled with zeros up to the width
    NoteText& hex(std::uint64_t number, int digits = 0) noexcept;        // "0x1F"
    std::string_view view() const noexcept { return {buffer_.data(), used_}; }

  private:
    std::span<char> buffer_;
    std::size_t used_ = 0;
};

// A place in the code. The module is a file name without its folder; empty when no module has the address.
struct CodePlace {
    std::string_view module;
    std::uint64_t offset = 0;  // in the module, or the address itself
};

struct CrashFacts {
    std::string_view version, commit;
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;  // local time
    std::uint32_t code = 0;                                             // of the exception
    std::string_view reason;                                            // more than the code tells; may be empty
    CodePlace place;
    bool touchesMemory = false;                                         // an access violation: the next two count
    bool writes = false;
    std::uint64_t address = 0;
    bool userInterface = false;                                         // the thread
};

void WritePlace(NoteText& note, const CodePlace& place) noexcept;
// Everything but the calls and the dump, which are written last because they are the first to fail.
void WriteCrashNote(NoteText& note, const CrashFacts& facts, const ActionLog* actions) noexcept;

}  // namespace quenlox
