// Bytes that can be read at any place: a file, or a block of memory in tests. A source keeps no place of its own, so
// that several threads may read one at a time; a reader (BlockReader, HeadTailReader) keeps what it has read for one
// thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace vbmp3 {

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual int64_t size() const = 0;  // bytes
    // Reads up to `length` bytes from `offset` on; returns how many it gave, fewer only at the end or after an error.
    virtual size_t readAt(int64_t offset, void* to, size_t length) const = 0;
};

class MemorySource final : public ByteSource {
  public:
    explicit MemorySource(std::span<const uint8_t> bytes) : bytes_(bytes) {}
    int64_t size() const override { return static_cast<int64_t>(bytes_.size()); }
    size_t readAt(int64_t offset, void* to, size_t length) const override {
        if (offset < 0 || offset >= size()) return 0;
        length = std::min(length, bytes_.size() - static_cast<size_t>(offset));
        if (length > 0) std::memcpy(to, bytes_.data() + offset, length);
        return length;
    }

  private:
    std::span<const uint8_t> bytes_;
};

// A source that ends once `stopped` says so: whoever walks through all of it is then soon done.
class StoppableSource final : public ByteSource {
  public:
    StoppableSource(std::shared_ptr<const ByteSource> source, std::function<bool()> stopped)
        : source_(std::move(source)), stopped_(std::move(stopped)) {}
    int64_t size() const override { return source_->size(); }
    size_t readAt(int64_t offset, void* to, size_t length) const override {
        return stopped_() ? 0 : source_->readAt(offset, to, length);
    }

  private:
    std::shared_ptr<const ByteSource> source_;
    std::function<bool()> stopped_;
};

// How many of the bytes, from the first on, are zero.
size_t ZerosAtFront(std::span<const uint8_t> bytes);

// Keeps the first and the last kilobytes of a source, which is where tags stand, so that looking at a file costs two
// reads in the ordinary case. Other places are read when asked for.
class HeadTailReader {
  public:
    static constexpr size_t kHead = 8192, kTail = 4096, kBlock = 8192;
    // Bytes of a source beyond this one do not count: no number of frames or milliseconds can then run over.
    static constexpr int64_t kMost = int64_t{1} << 46;

    explicit HeadTailReader(const ByteSource& source);

    int64_t size() const { return size_; }
    const ByteSource& source() const { return source_; }
    // The bytes [offset, offset + length), fewer at the end of the source. They stay valid until the next call.
    std::span<const uint8_t> view(int64_t offset, size_t length);

  private:
    struct Window {
        std::unique_ptr<uint8_t[]> bytes;
        size_t capacity = 0;
        int64_t begin = 0, end = 0;
        bool holds(int64_t from, int64_t to) const { return from >= begin && to <= end; }
    };
    void fill(Window& window, int64_t from, size_t length);
    friend class CachedSource;

    const ByteSource& source_;
    int64_t size_;
    Window head_, tail_, other_;
};

// A source whose head and tail have been read already: what a reader holds is not read again.
class CachedSource final : public ByteSource {
  public:
    explicit CachedSource(const HeadTailReader& reader) : reader_(reader) {}
    int64_t size() const override { return reader_.size(); }
    size_t readAt(int64_t offset, void* to, size_t length) const override;

  private:
    const HeadTailReader& reader_;
};

}  // namespace vbmp3
