#include "libraries/files/byte_source.h"

namespace vbmp3 {

size_t ZerosAtFront(std::span<const uint8_t> bytes) {
    if (bytes.empty() || bytes[0] != 0) return 0;
    // Whole blocks of zeros by the gigabyte: the library compares faster than any loop.
    if (std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0) return bytes.size();
    size_t count = 0;
    for (uint64_t word = 0; count + sizeof word <= bytes.size(); count += sizeof word) {
        std::memcpy(&word, bytes.data() + count, sizeof word);
        if (word != 0) break;
    }
    while (count < bytes.size() && bytes[count] == 0) ++count;
    return count;
}

HeadTailReader::HeadTailReader(const ByteSource& source)
    : source_(source), size_(std::clamp<int64_t>(source.size(), 0, kMost)) {
    const auto whole = static_cast<int64_t>(kHead + kTail);
    fill(head_, 0, static_cast<size_t>(size_ <= whole ? size_ : static_cast<int64_t>(kHead)));
}

void HeadTailReader::fill(Window& window, int64_t from, size_t length) {
    if (window.capacity < length) {
        window.bytes = std::make_unique_for_overwrite<uint8_t[]>(length);
        window.capacity = length;
    }
    const size_t got = length == 0 ? 0 : source_.readAt(from, window.bytes.get(), length);
    window.begin = from;
    window.end = from + static_cast<int64_t>(std::min(got, length));
}

std::span<const uint8_t> HeadTailReader::view(int64_t offset, size_t length) {
    if (offset < 0 || offset >= size_) return {};
    const int64_t end =
        offset + static_cast<int64_t>(std::min<uint64_t>(length, static_cast<uint64_t>(size_ - offset)));
    const auto within = [&](const Window& w) {
        return std::span<const uint8_t>(w.bytes.get() + (offset - w.begin), static_cast<size_t>(end - offset));
    };
    if (head_.holds(offset, end)) return within(head_);
    const int64_t tailBegin = size_ - static_cast<int64_t>(kTail);
    if (offset >= tailBegin && tailBegin > 0) {
        if (tail_.end == 0) fill(tail_, tailBegin, kTail);
        if (tail_.holds(offset, end)) return within(tail_);
    }
    if (!other_.holds(offset, end)) {
        // A block more than asked for: the next question is usually about the bytes that follow.
        const auto wanted = static_cast<size_t>(end - offset);
        fill(other_, offset,
             static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(std::max(wanted, kBlock)), size_ - offset)));
    }
    if (other_.holds(offset, end)) return within(other_);
    // The file became shorter or could not be read: give what there is.
    if (offset >= other_.begin && offset < other_.end)
        return {other_.bytes.get() + (offset - other_.begin), static_cast<size_t>(other_.end - offset)};
    return {};
}

size_t CachedSource::readAt(int64_t offset, void* to, size_t length) const {
    if (offset < 0 || offset >= size()) return 0;
    length = static_cast<size_t>(std::min<uint64_t>(length, static_cast<uint64_t>(size() - offset)));
    const int64_t end = offset + static_cast<int64_t>(length);
    for (const auto* window : {&reader_.head_, &reader_.tail_, &reader_.other_}) {
        if (!window->holds(offset, end)) continue;
        if (length > 0) std::memcpy(to, window->bytes.get() + (offset - window->begin), length);
        return length;
    }
    return reader_.source_.readAt(offset, to, length);
}

}  // namespace vbmp3
