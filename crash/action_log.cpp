#include "crash/action_log.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace quenlox {
namespace {

constexpr std::size_t kLongestExtension = 4;

bool Plain(char c) { return c > ' ' && c <= '~'; }
bool LetterOrDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

std::int64_t ActionLog::Now() noexcept {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void ActionLog::note(std::string_view what, std::string_view detail) noexcept {
    const std::size_t written = written_.load(std::memory_order_relaxed);
    Entry& entry = entries_[written % kEntries];
    entry.ms = Now();
    std::size_t at = 0;
    const auto put = [&](std::string_view text) {
        for (const char c : text.substr(0, std::min(text.size(), kTextLength - at)))
            entry.text[at++] = c == ' ' || Plain(c) ? c : '?';
    };
    put(what);
    if (!detail.empty()) put(" ");
    put(detail);
    entry.text[at] = '\0';
    written_.store(written + 1, std::memory_order_release);
}

void ActionLog::note(std::string_view what, std::int64_t number) noexcept {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    note(what, std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
}

void ActionLog::noteFile(std::string_view what, std::string_view path) noexcept {
    const std::size_t dot = path.find_last_of(".\\/");
    std::array<char, kLongestExtension> extension{};
    std::size_t length = 0;
    if (dot != std::string_view::npos && path[dot] == '.' && path.size() - dot - 1 <= kLongestExtension) {
        for (const char c : path.substr(dot + 1)) {
            if (!LetterOrDigit(c)) return note(what, "-");  // part of a name
            extension[length++] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    note(what, length == 0 ? std::string_view("-") : std::string_view(extension.data(), length));
}

std::size_t ActionLog::count() const noexcept {
    return std::min(written_.load(std::memory_order_acquire), kEntries - 1);
}

const ActionLog::Entry& ActionLog::entry(std::size_t index) const noexcept {
    return entries_[(written_.load(std::memory_order_acquire) - count() + index) % kEntries];
}

}  // namespace quenlox
