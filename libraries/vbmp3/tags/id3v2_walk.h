// Walks over the frames of an ID3v2 tag: its header, extended header, unsynchronisation and the sizes that writers get
// wrong. Internal to the readers of the tag.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "libraries/formats/file_layout.h"

namespace vbmp3 {

struct FrameView {
    char id[4] = {};
    int idLength = 4;
    uint16_t flags = 0;
    int64_t offset = 0;  // of the data, within the body
    int64_t size = 0;
    std::string_view name() const { return {id, static_cast<size_t>(idLength)}; }
};

class Id3v2Walk {
  public:
    static constexpr int64_t kMostUnsynchronised = 64 << 20;  // such a tag of version 2.2 or 2.3 is read whole

    // Nothing when the range holds no tag that can be read.
    static std::optional<Id3v2Walk> open(HeadTailReader& reader, ByteRange range);

    int version() const { return version_; }
    bool next(FrameView& frame);  // false at the end
    // Bytes of a frame as stored, at most `most`; valid until the next call.
    std::span<const uint8_t> stored(const FrameView& frame, size_t most);
    // Bytes of a frame's contents: without group, length and unsynchronisation. Nothing when it is compressed,
    // encrypted or larger than `most`.
    std::optional<std::vector<uint8_t>> contents(const FrameView& frame, size_t most);
    // The flags with which `stored` means the same in a tag whose header does not say "unsynchronised".
    uint16_t flagsAlone(const FrameView& frame);

  private:
    explicit Id3v2Walk(HeadTailReader& reader) : reader_(&reader) {}
    std::span<const uint8_t> view(int64_t offset, size_t length);
    bool isFrameAt(int64_t offset);  // or padding, or the end
    void skipExtendedHeader();
    int64_t frameSize(int64_t headerAt, const uint8_t* size);
    bool isUnsynchronised(const FrameView& frame);

    HeadTailReader* reader_;
    std::vector<uint8_t> memory_;  // the body of a tag that was unsynchronised as a whole
    bool inMemory_ = false;
    ByteRange body_;
    int64_t at_ = 0;
    int version_ = 3;
    bool allUnsynchronised_ = false;  // version 2.4 says so in the tag's header
};

// Takes the zero bytes out that were put behind 0xFF.
std::vector<uint8_t> resynchronised(std::span<const uint8_t> bytes);

}  // namespace vbmp3
