// What passes through the C interface: records, which begin with the size that the caller knows of, and texts. Pure:
// any thread.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace vbmp3 {

// False for a record that cannot be read or filled at all.
template <class Record>
bool IsRecord(const Record* record) {
    return record != nullptr && record->size >= sizeof record->size;
}

// Fills as much of the caller's record as he knows of.
template <class Record>
void Give(Record* to, Record& from) {
    from.size = to->size;
    std::memcpy(to, &from, std::min<size_t>(to->size, sizeof from));
}

// As much of a caller's record as he has given; the rest is zeros.
template <class Record>
Record Take(const Record* from) {
    Record record{};
    std::memcpy(&record, from, std::min<size_t>(from->size, sizeof record));
    return record;
}

inline std::string TextOf(const char* text) { return text != nullptr ? text : ""; }

}  // namespace vbmp3
