// The last things that the program did, for the note that a crash leaves. Written on the user-interface thread; read by
// whichever thread writes the note, at a moment when nothing may be relied on: it has a fixed size, takes no memory and
// no lock, and never fails. What the user calls his files stays out of it.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quenlox {

class ActionLog {
  public:
    static constexpr std::size_t kEntries = 64;
    static constexpr std::size_t kTextLength = 31;

    struct Entry {
        std::int64_t ms = 0;  // of Now()
        std::array<char, kTextLength + 1> text{};
    };

    ActionLog() = default;
    ActionLog(const ActionLog&) = delete;
    ActionLog& operator=(const ActionLog&) = delete;

    // `what` and the detail behind it, cut to kTextLength; characters that are not printable ASCII become "?".
    void note(std::string_view what, std::string_view detail = {}) noexcept;
    void note(std::string_view what, std::int64_t number) noexcept;
    // Of the file only its extension, in lower case; "-" when it has none.
    void noteFile(std::string_view what, std::string_view path) noexcept;

    // Oldest first. The oldest slot, which may be being written, is left out.
    std::size_t count() const noexcept;
    const Entry& entry(std::size_t index) const noexcept;

    static std::int64_t Now() noexcept;  // ms of a clock that never goes back

  private:
    std::array<Entry, kEntries> entries_{};
    std::atomic<std::size_t> written_{0};
};

}  // namespace quenlox
