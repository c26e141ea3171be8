#include "libraries/vbmp3/tags/id3v2_walk.h"

#include <algorithm>
#include <array>

#include "libraries/formats/bytes.h"

namespace vbmp3 {
namespace {

constexpr uint8_t kUnsynchronised = 0x80, kExtended = 0x40, kFooter = 0x10;
constexpr uint8_t kCompressedTag = 0x40;  // version 2.2
// Frame flags, the second byte.
constexpr uint16_t k3Compressed = 0x80, k3Encrypted = 0x40, k3Grouped = 0x20;
constexpr uint16_t k4Grouped = 0x40, k4Compressed = 0x08, k4Encrypted = 0x04, k4Unsynchronised = 0x02, k4Length = 0x01;

bool isFrameId(std::span<const uint8_t> bytes, size_t length) {
    if (bytes.size() < length) return false;
    // Converters from 2.2 left names with a blank or NUL at the end.
    for (size_t i = 0; i < length; ++i) {
        const uint8_t c = bytes[i];
        const bool plain = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (!plain && !(i == 3 && (c == ' ' || c == 0))) return false;
    }
    return true;
}

}  // namespace

std::vector<uint8_t> resynchronised(std::span<const uint8_t> bytes) {
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
    if (range.size() < 10 || header.size() < 10 || !startsWith(header, "ID3") || header[3] < 2 || header[3] > 4)
        return std::nullopt;
    Id3v2Walk walk(reader);
    walk.version_ = header[3];
    const uint8_t flags = header[5];
    if (walk.version_ == 2 && (flags & kCompressedTag) != 0) return std::nullopt;
    const int64_t footer = walk.version_ == 4 && (flags & kFooter) != 0 ? 10 : 0;
    walk.body_ = {range.begin + 10,
                  std::min(range.end - footer, range.begin + 10 + int64_t{synchsafe32(header.data() + 6)})};
    if (walk.body_.empty()) walk.body_.end = walk.body_.begin;
    if ((flags & kUnsynchronised) != 0 && walk.version_ == 4) walk.allUnsynchronised_ = true;
    if ((flags & kUnsynchronised) != 0 && walk.version_ < 4) {
        if (walk.body_.size() > kMostUnsynchronised) return std::nullopt;
        walk.memory_ = resynchronised(reader.view(walk.body_.begin, static_cast<size_t>(walk.body_.size())));
        walk.inMemory_ = true;
        walk.body_ = {0, static_cast<int64_t>(walk.memory_.size())};
    }
    walk.at_ = walk.body_.begin;
    if (walk.version_ > 2 && (flags & kExtended) != 0) walk.skipExtendedHeader();
    return walk;
}

std::span<const uint8_t> Id3v2Walk::view(int64_t offset, size_t length) {
    if (offset < body_.begin || offset >= body_.end) return {};
    length = static_cast<size_t>(std::min<uint64_t>(length, static_cast<uint64_t>(body_.end - offset)));
    if (!inMemory_) return reader_->view(offset, length);
    return std::span<const uint8_t>(memory_).subspan(static_cast<size_t>(offset), length);
}

bool Id3v2Walk::isFrameAt(int64_t offset) {
    if (offset == body_.end) return true;
    const auto bytes = view(offset, 4);
    return (!bytes.empty() && bytes[0] == 0) || isFrameId(bytes, version_ == 2 ? 3 : 4);
}

// Version 2.3 counts its size without the four bytes of the size, 2.4 with them, and writers mix both up.
void Id3v2Walk::skipExtendedHeader() {
    const auto bytes = view(at_, 4);
    if (bytes.size() < 4) return;
    const int64_t plain = bigEndian32(bytes.data());
    const int64_t safe = isSynchsafe(bytes.data()) ? synchsafe32(bytes.data()) : plain;
    const std::array<int64_t, 4> guesses = version_ == 3 ? std::array<int64_t, 4>{plain + 4, plain, safe + 4, safe}
                                                         : std::array<int64_t, 4>{safe, safe + 4, plain, plain + 4};
    // A header that was announced but not written looks like a frame at once.
    if (isFrameId(bytes, 4)) return;
    for (const bool paddingToo : {false, true}) {
        for (const int64_t size : guesses) {
            if (size < 4 || size > body_.end - at_) continue;
            if (isFrameId(view(at_ + size, 4), 4) || (paddingToo && isFrameAt(at_ + size))) {
                at_ += size;
                return;
            }
        }
    }
    at_ = body_.end;
}

// Version 2.4 has sizes of seven bits a byte; a well-known writer put plain numbers there. What follows decides.
int64_t Id3v2Walk::frameSize(int64_t headerAt, const uint8_t* size) {
    if (version_ == 2) return bigEndian24(size);
    const int64_t plain = bigEndian32(size);
    if (version_ == 3 || plain < 0x80) return plain;
    if (!isSynchsafe(size)) return plain;
    const int64_t safe = synchsafe32(size);
    const auto fits = [&](int64_t n) { return n <= body_.end - headerAt - 10 && isFrameAt(headerAt + 10 + n); };
    return !fits(safe) && fits(plain) ? plain : safe;
}

bool Id3v2Walk::next(FrameView& frame) {
    const int64_t headerSize = version_ == 2 ? 6 : 10;
    const auto view10 = view(at_, static_cast<size_t>(headerSize));
    frame.idLength = version_ == 2 ? 3 : 4;
    if (static_cast<int64_t>(view10.size()) < headerSize || !isFrameId(view10, static_cast<size_t>(frame.idLength)))
        return false;
    std::array<uint8_t, 10> header{};
    std::copy(view10.begin(), view10.end(), header.begin());
    std::memcpy(frame.id, header.data(), version_ == 2 ? 3 : 4);
    frame.flags = version_ == 2 ? uint16_t{0} : static_cast<uint16_t>(header[8] << 8 | header[9]);
    frame.offset = at_ + headerSize;
    frame.size = frameSize(at_, header.data() + frame.idLength);
    if (frame.size > body_.end - frame.offset) return false;
    at_ = frame.offset + frame.size;
    return true;
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

uint16_t Id3v2Walk::flagsAlone(const FrameView& frame) {
    return isUnsynchronised(frame) ? static_cast<uint16_t>(frame.flags | k4Unsynchronised) : frame.flags;
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
    if (unsynchronised) return resynchronised(bytes.subspan(skip));
    return std::vector<uint8_t>(bytes.begin() + static_cast<std::ptrdiff_t>(skip), bytes.end());
}

}  // namespace vbmp3
