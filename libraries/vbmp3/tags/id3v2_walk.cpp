#include "libraries/vbmp3/tags/id3v2_walk.h"

#include <algorithm>
#include <array>

#include "libraries/formats/bytes.h"

namespace vbmp3 {
namespace {

constexpr uint8_t kUnsynchronised = 0x80, kExtended = 0x40, kFooter = 0x10;
constexpr uint8_t kCompressedTag = 0x40;  // version 2.2
constexpr int kMostTried = 100000;        // frames, for a decision on the whole tag
constexpr size_t kBlock = HeadTailReader::kBlock;
constexpr int64_t kCandidateCost = 4096;  // a look at a place costs as much as so many bytes

// Frame flags, the second byte.
constexpr uint16_t k3Compressed = 0x80, k3Encrypted = 0x40, k3Grouped = 0x20;
constexpr uint16_t k4Grouped = 0x40, k4Compressed = 0x08, k4Encrypted = 0x04, k4Unsynchronised = 0x02, k4Length = 0x01;

bool IsFrameId(std::span<const uint8_t> bytes, size_t length) {
    if (bytes.size() < length) return false;
    // Converters from 2.2 left names with a blank or NUL at the end.
    for (size_t i = 0; i < length; ++i) {
        const uint8_t c = bytes[i];
        const bool plain = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (!plain && !(i == 3 && (c == ' ' || c == 0))) return false;
    }
    return true;
}

// A name that no writer should have given: printable, but not of capitals and digits.
bool IsOddId(std::span<const uint8_t> bytes, size_t length) {
    return bytes.size() >= length && std::all_of(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length),
                                                 [](uint8_t c) { return c > ' ' && c < 0x7F; });
}

// A block at a time: the tag is not held twice.
std::vector<uint8_t> ReadResynchronised(const ByteSource& source, ByteRange range) {
    std::vector<uint8_t> out, block(1 << 16);
    out.reserve(static_cast<size_t>(range.size()));
    bool marked = false;  // the byte before was 0xFF
    for (int64_t at = range.begin; at < range.end; at += static_cast<int64_t>(block.size())) {
        const auto wanted = static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(block.size()), range.end - at));
        const size_t got = source.readAt(at, block.data(), wanted);
        for (size_t i = 0; i < got; ++i) {
            if (!marked || block[i] != 0) out.push_back(block[i]);
            marked = block[i] == 0xFF;
        }
        if (got < wanted) break;
    }
    return out;
}

}  // namespace

std::vector<uint8_t> Resynchronised(std::span<const uint8_t> bytes) {
    std::vector<uint8_t> out;
    out.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) {
        out.push_back(bytes[i]);
        if (bytes[i] == 0xFF && i + 1 < bytes.size() && bytes[i + 1] == 0) ++i;
    }
    return out;
}

std::optional<Id3v2Walk> Id3v2Walk::open(HeadTailReader& reader, ByteRange range) {
    const auto header = reader.view(range.begin, 10);
    if (range.size() < 10 || header.size() < 10 || !StartsWith(header, "ID3") || header[3] < 2 || header[3] > 4)
        return std::nullopt;
    Id3v2Walk walk(reader);
    walk.version_ = header[3];
    const uint8_t flags = header[5];
    if (walk.version_ == 2 && (flags & kCompressedTag) != 0) return std::nullopt;
    const int64_t footer = walk.version_ == 4 && (flags & kFooter) != 0 ? 10 : 0;
    walk.body_ = {range.begin + 10,
                  std::min(range.end - footer, range.begin + 10 + int64_t{Synchsafe32(header.data() + 6)})};
    if (walk.body_.empty()) walk.body_.end = walk.body_.begin;
    const bool extended = walk.version_ > 2 && (flags & kExtended) != 0;
    if ((flags & kUnsynchronised) == 0 || walk.version_ == 4) {
        walk.allUnsynchronised_ = (flags & kUnsynchronised) != 0;
        walk.start(extended);
        return walk;
    }
    Id3v2Walk undone = walk;
    undone.seesAll_ = walk.body_.size() <= kMostUnsynchronised;
    undone.memory_ = ReadResynchronised(
        reader.source(), {walk.body_.begin, std::min(walk.body_.end, walk.body_.begin + kMostUnsynchronised)});
    undone.inMemory_ = true;
    undone.body_ = {0, static_cast<int64_t>(undone.memory_.size())};
    undone.start(extended);
    if (undone.trial().clean) return undone;
    // Some writers say so and leave the bytes alone.
    walk.start(extended);
    if (walk.trial().clean) return walk;
    return undone;
}

// Version 2.4 has sizes of seven bits a byte, 2.3 plain numbers; well-known writers put the others there. Only the
// whole tag tells: with the wrong ones some frame is not followed by another, nor by padding that goes to the end. In a
// damaged tag either go wrong; then those are right with which more frames are found in it, or less of it is none.
void Id3v2Walk::start(bool extended) {
    at_ = body_.begin;
    safeSizes_ = version_ == 4;
    if (extended) skipExtendedHeader();
    if (version_ == 2) return;
    const Trial own = trial();
    if (own.clean) return;
    const auto found = wholeWalk();
    safeSizes_ = !safeSizes_;
    const Trial other = trial();
    const bool better = own.frames != other.frames ? other.frames > own.frames : other.clean || wholeWalk() < found;
    if (!better) safeSizes_ = !safeSizes_;
}

// The frames, as a number below 0, and the bytes that are none.
std::pair<int, int64_t> Id3v2Walk::wholeWalk() const {
    Id3v2Walk walk = *this;
    FrameView frame;
    int frames = 0;
    while (frames < kMostTried && walk.next(frame)) ++frames;
    return {-frames, walk.unread().size()};
}

std::span<const uint8_t> Id3v2Walk::view(int64_t offset, size_t length) {
    if (offset < body_.begin || offset >= body_.end) return {};
    length = static_cast<size_t>(std::min<uint64_t>(length, static_cast<uint64_t>(body_.end - offset)));
    if (!inMemory_) return reader_->view(offset, length);
    return std::span<const uint8_t>(memory_).subspan(static_cast<size_t>(offset), length);
}

// Version 2.3 counts its size without the four bytes of the size, 2.4 with them, and writers mix both up.
void Id3v2Walk::skipExtendedHeader() {
    const auto bytes = view(at_, 4);
    if (bytes.size() < 4) return;
    const int64_t plain = BigEndian32(bytes.data());
    const int64_t safe = IsSynchsafe(bytes.data()) ? Synchsafe32(bytes.data()) : plain;
    const std::array<int64_t, 4> guesses = version_ == 3 ? std::array<int64_t, 4>{plain + 4, plain, safe + 4, safe}
                                                         : std::array<int64_t, 4>{safe, safe + 4, plain, plain + 4};
    // A header that was announced but not written looks like a frame at once.
    if (IsFrameId(bytes, 4)) return;
    for (const bool paddingToo : {false, true}) {
        for (const int64_t size : guesses) {
            if (size < 4 || size > body_.end - at_) continue;
            const int64_t to = at_ + size;
            if (IsFrameId(view(to, 4), 4) || frameAt(to) || (paddingToo && isEndAt(to))) {
                at_ = to;
                return;
            }
        }
    }
    // One that makes no sense is passed over as any damaged part.
}

std::optional<Id3v2Walk::Header> Id3v2Walk::headerAt(int64_t at) {
    const auto bytes = view(at, static_cast<size_t>(headerSize()));
    if (static_cast<int64_t>(bytes.size()) < headerSize()) return std::nullopt;
    if (!IsFrameId(bytes, idLength()) && !IsOddId(bytes, idLength())) return std::nullopt;
    Header header;
    std::copy(bytes.begin(), bytes.end(), header.bytes.begin());
    const uint8_t* size = header.bytes.data() + idLength();
    if (version_ == 2)
        header.size = BigEndian24(size);
    else
        header.size = safeSizes_ && IsSynchsafe(size) ? Synchsafe32(size) : BigEndian32(size);
    if (header.size > body_.end - at - headerSize()) return std::nullopt;
    return header;
}

// A frame with an odd name is one when something sensible follows.
std::optional<Id3v2Walk::Header> Id3v2Walk::frameAt(int64_t at) {
    auto header = headerAt(at);
    if (header && !IsFrameId(header->bytes, idLength()) && !leadsOn(at + headerSize() + header->size)) header.reset();
    return header;
}

bool Id3v2Walk::leadsOn(int64_t at) { return headerAt(at).has_value() || isEndAt(at); }

bool Id3v2Walk::isZero(int64_t from, int64_t to) {
    while (from < to) {
        const auto bytes = view(from, static_cast<size_t>(std::min<int64_t>(to - from, kBlock)));
        if (bytes.empty() || std::any_of(bytes.begin(), bytes.end(), [](uint8_t b) { return b != 0; })) return false;
        from += static_cast<int64_t>(bytes.size());
    }
    return true;
}

// A zero byte alone is no padding: pictures are full of them.
bool Id3v2Walk::isEndAt(int64_t at) {
    if (at >= body_.end) return at == body_.end;
    for (int64_t end = body_.end; padding_ < 0;) {
        const int64_t from = std::max(end - static_cast<int64_t>(kBlock), body_.begin);
        const auto bytes = view(from, static_cast<size_t>(end - from));
        const auto last = std::find_if(bytes.rbegin(), bytes.rend(), [](uint8_t b) { return b != 0; });
        if (last != bytes.rend() || from == body_.begin) padding_ = from + (bytes.rend() - last);
        end = from;
    }
    return at >= padding_;
}

// The next place that looks like a frame and leads to another or to the end; the end of the body when there is none.
int64_t Id3v2Walk::findFrame(int64_t from) {
    while (from < body_.end && searchLeft_ > 0) {
        const auto seen = view(from, kBlock);
        const std::vector<uint8_t> bytes(seen.begin(), seen.end());
        if (bytes.size() < idLength()) break;
        for (size_t i = 0; i + idLength() <= bytes.size() && searchLeft_ > 0; ++i) {
            const bool letter = bytes[i] >= 'A' && bytes[i] <= 'Z';
            if (!letter || !IsFrameId(std::span(bytes).subspan(i), idLength())) continue;
            searchLeft_ -= kCandidateCost;
            const int64_t at = from + static_cast<int64_t>(i);
            const auto header = headerAt(at);
            if (header && header->size > 0 && leadsOn(at + headerSize() + header->size)) return at;
        }
        const auto done = static_cast<int64_t>(bytes.size() - idLength() + 1);
        searchLeft_ -= done;
        from += done;
    }
    return body_.end;
}

// How far the frames follow each other without a fault.
Id3v2Walk::Trial Id3v2Walk::trial() {
    Trial result;
    for (int64_t at = at_; result.frames < kMostTried; ++result.frames) {
        const auto header = headerAt(at);
        if (!header) {
            // A text may end with zeros of its own, three in UTF-16: half of its last character and a terminator. A
            // wrong size that leads farther into the padding proves nothing.
            result.clean = isEndAt(at) && (at == body_.end || at - padding_ <= 3);
            break;
        }
        at += headerSize() + header->size;
    }
    return result;
}

bool Id3v2Walk::next(FrameView& frame) {
    while (at_ < body_.end) {
        if (const auto header = frameAt(at_)) {
            const auto& bytes = header->bytes;
            frame.idLength = static_cast<int>(idLength());
            std::memcpy(frame.id, bytes.data(), idLength());
            frame.flags = version_ == 2 ? uint16_t{0} : static_cast<uint16_t>(bytes[8] << 8 | bytes[9]);
            frame.offset = at_ + headerSize();
            frame.size = header->size;
            at_ = frame.offset + frame.size;
            return true;
        }
        const bool padding = isEndAt(at_);
        const int64_t found = padding ? body_.end : findFrame(at_ + 1);
        if (!padding && !isZero(at_, found)) passedOver_.push_back({at_, found});
        at_ = found;
    }
    return false;
}

Recipe Id3v2Walk::unread() {
    Recipe out;
    std::vector<ByteRange> ranges = passedOver_;
    if (!isEndAt(at_)) ranges.push_back({at_, body_.end});
    for (const ByteRange& range : ranges) {
        if (inMemory_)
            out.add(view(range.begin, static_cast<size_t>(range.size())));
        else
            out.copy(range);
    }
    return out;
}

std::span<const uint8_t> Id3v2Walk::stored(const FrameView& frame, size_t most) {
    return view(frame.offset, static_cast<size_t>(std::min<int64_t>(frame.size, static_cast<int64_t>(most))));
}

// The header's word for all frames is not enough: some writers set it and leave the frames alone. An unsynchronised
// frame cannot have 0xFF before a byte of 0xE0 or more.
bool Id3v2Walk::isUnsynchronised(const FrameView& frame) {
    if (version_ != 4) return false;
    if ((frame.flags & k4Unsynchronised) != 0) return true;
    if (!allUnsynchronised_) return false;
    const auto bytes = stored(frame, 1 << 16);
    for (size_t i = 0; i + 1 < bytes.size(); ++i)
        if (bytes[i] == 0xFF && bytes[i + 1] >= 0xE0) return false;
    return true;
}

std::optional<std::vector<uint8_t>> Id3v2Walk::contents(const FrameView& frame, size_t most) {
    if (frame.size > static_cast<int64_t>(most)) return std::nullopt;
    size_t skip = 0;
    if (version_ == 3) {
        if ((frame.flags & (k3Compressed | k3Encrypted)) != 0) return std::nullopt;
        skip = (frame.flags & k3Grouped) != 0 ? 1 : 0;
    } else if (version_ == 4) {
        if ((frame.flags & (k4Compressed | k4Encrypted)) != 0) return std::nullopt;
        skip = ((frame.flags & k4Grouped) != 0 ? 1u : 0u) + ((frame.flags & k4Length) != 0 ? 4u : 0u);
    }
    const bool unsynchronised = isUnsynchronised(frame);
    const auto bytes = stored(frame, most);
    if (bytes.size() < skip) return std::nullopt;
    if (unsynchronised) return Resynchronised(bytes.subspan(skip));
    return std::vector<uint8_t>(bytes.begin() + static_cast<std::ptrdiff_t>(skip), bytes.end());
}

}  // namespace vbmp3
