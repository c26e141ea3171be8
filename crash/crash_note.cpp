#include "crash/crash_note.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "crash/action_log.h"

namespace quenlox {
namespace {

struct CodeName {
    std::uint32_t code;
    std::string_view name;
};
constexpr CodeName kCodeNames[] = {
    {0xC0000005, "access violation"},     {0xC00000FD, "stack overflow"},       {0xC0000374, "heap corruption"},
    {0xC000001D, "illegal instruction"},  {0xC0000094, "division by zero"},     {0xC0000096, "privileged instruction"},
    {0xC0000006, "error reading a page"}, {0xC0000409, "stack buffer overrun"}, {0xC0000417, "invalid parameter"},
    {0x80000003, "breakpoint"},           {0x40000015, "end requested"},        {0x20474343, "exception not caught"},
};

}  // namespace

NoteText& NoteText::text(std::string_view text) noexcept {
    const std::size_t count = std::min(text.size(), buffer_.size() - used_);
    std::copy_n(text.data(), count, buffer_.data() + used_);
    used_ += count;
    return *this;
}

NoteText& NoteText::decimal(std::int64_t number, int width) noexcept {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    for (auto count = end - digits.data(); count < width; ++count) text("0");
    return text({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

NoteText& NoteText::hex(std::uint64_t number, int digits) noexcept {
    text("0x");
    int count = std::max(digits, 1);
    while (count < 16 && number >> (4 * count)) ++count;
    while (count-- > 0) text(std::string_view("0123456789ABCDEF").substr(number >> (4 * count) & 15, 1));
    return *this;
}

void WritePlace(NoteText& note, const CodePlace& place) noexcept {
    if (!place.module.empty()) note.text(place.module).text("+");
    note.hex(place.offset);
}

void WriteCrashNote(NoteText& note, const CrashFacts& facts, const ActionLog* actions) noexcept {
    note.text("Quenlox ").text(facts.version).text(" ended unexpectedly").line();
    note.text("commit  ").text(facts.commit).line();
    note.text("time    ").decimal(facts.year, 4).text("-").decimal(facts.month, 2).text("-").decimal(facts.day, 2);
    note.text(" ").decimal(facts.hour, 2).text(":").decimal(facts.minute, 2).text(":").decimal(facts.second, 2).line();
    note.text("code    ").hex(facts.code, 8);
    for (const CodeName& known : kCodeNames) {
        if (known.code == facts.code) note.text(" ").text(known.name);
    }
    if (facts.touchesMemory) note.text(facts.writes ? ", writing " : ", reading ").hex(facts.address);
    if (!facts.reason.empty()) note.text(", ").text(facts.reason);
    note.line().text("place   ");
    WritePlace(note, facts.place);
    note.line().text("thread  ").text(facts.userInterface ? "user interface" : "another").line();
    note.text("last actions, milliseconds before the end").line();
    const std::int64_t now = ActionLog::Now();
    for (std::size_t i = 0; actions && i < actions->count(); ++i) {
        const ActionLog::Entry& entry = actions->entry(i);
        note.text("  ").decimal(now - entry.ms).text("  ").text(entry.text.data()).line();
    }
}

}  // namespace quenlox
