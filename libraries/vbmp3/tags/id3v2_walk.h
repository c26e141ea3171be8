// Walks over the frames of an ID3v2 tag: its header, extended header, unsynchronisation and the sizes that writers get
// wrong. What is neither frame nor padding is passed over and can be asked for. Internal to the readers of the tag.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/recipe.h"

namespace vbmp3 {

struct FrameView {
    char id[4] = {};
    int idLength = 4;
    uint16_t flags = 0;
    int64_t offset = 0;  // of the data
    int64_t size = 0;
    std::string_view name() const { return {id, static_cast<size_t>(idLength)}; }
};

class Id3v2Walk {
  public:
    // Bytes of a tag of version 2.2 or 2.3 that is unsynchronised as a whole: what lies behind them is not seen.
    static constexpr int64_t kMostUnsynchronised = 8 << 20;

    // Nothing when the range holds no tag that can be read.
    static std::optional<Id3v2Walk> open(HeadTailReader& reader, ByteRange range);

    int version() const { return version_; }
    // Version 2.4 says in the tag's header that all frames are unsynchronised; they are, as stored.
    bool framesUnsynchronised() const { return allUnsynchronised_; }
    // Offsets of frames are those of the file, and not of a tag that had to be read into memory.
    bool inFile() const { return !inMemory_; }
    bool seesAll() const { return seesAll_; }
    bool next(FrameView& frame);  // false at the end
    // Bytes of a frame as stored, at most `most`; valid until the next call.
    std::span<const uint8_t> stored(const FrameView& frame, size_t most);
    // Bytes of a frame's contents: without group, length and unsynchronisation. Nothing when it is compressed,
    // encrypted or larger than `most`.
    std::optional<std::vector<uint8_t>> contents(const FrameView& frame, size_t most);
    // What no frame holds, in its order: what was passed over, and what has not been walked yet. Zero bytes to the end
    // of the tag are padding and not in it.
    Recipe unread();

  private:
    struct Header {
        std::array<uint8_t, 10> bytes{};
        int64_t size = 0;  // of the frame's data
    };
    struct Trial {
        int frames = 0;
        bool clean = false;
    };
    explicit Id3v2Walk(HeadTailReader& reader) : reader_(&reader) {}
    void start(bool extended);
    void skipExtendedHeader();
    std::span<const uint8_t> view(int64_t offset, size_t length);
    size_t idLength() const { return version_ == 2 ? 3 : 4; }
    int64_t headerSize() const { return version_ == 2 ? 6 : 10; }
    std::optional<Header> headerAt(int64_t at);
    std::optional<Header> frameAt(int64_t at);
    bool leadsOn(int64_t at);
    bool isZero(int64_t from, int64_t to);
    bool isEndAt(int64_t at);
    int64_t findFrame(int64_t from);
    Trial trial();
    std::pair<int, int64_t> wholeWalk() const;
    bool isUnsynchronised(const FrameView& frame);

    HeadTailReader* reader_;
    std::vector<uint8_t> memory_;  // the body of a tag that was unsynchronised as a whole
    bool inMemory_ = false;
    bool seesAll_ = true;
    ByteRange body_;
    int64_t at_ = 0;
    int64_t padding_ = -1;          // where the zero bytes begin that go to the end; negative: not looked for yet
    int64_t searchLeft_ = 4 << 20;  // bytes of damaged parts that are looked through for the next frame
    int version_ = 3;
    bool safeSizes_ = false;  // seven bits a byte
    bool allUnsynchronised_ = false;
    std::vector<ByteRange> passedOver_;
};

// Takes the zero bytes out that were put behind 0xFF.
std::vector<uint8_t> Resynchronised(std::span<const uint8_t> bytes);

}  // namespace vbmp3
