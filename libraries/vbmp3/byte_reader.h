// Reading bytes of a file, or of memory, at any place. Everything that parses a file does it through this class, so
// that the same code runs on a file, on a test's bytes and under a fuzzer. A reader belongs to one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vbmp3 {

class ByteReader {
public:
    virtual ~ByteReader() = default;
    virtual uint64_t size() const = 0;
    // Copies up to out.size() bytes from `offset`; fewer at the end of the file or when it cannot be read.
    virtual size_t readAt(uint64_t offset, std::span<uint8_t> out) = 0;

    // Up to `count` bytes from `offset` as a vector no longer than what is really there.
    std::vector<uint8_t> bytes(uint64_t offset, size_t count);
};

class MemoryReader final : public ByteReader {
public:
    explicit MemoryReader(std::span<const uint8_t> data) : data_(data) {} // does not own the bytes
    uint64_t size() const override { return data_.size(); }
    size_t readAt(uint64_t offset, std::span<uint8_t> out) override;

private:
    std::span<const uint8_t> data_;
};

// Opens the file with a UTF-8 path for reading. Others may rename, replace and delete it meanwhile; the size is that
// at the moment of opening. Null when it is missing, a folder, or cannot be read.
std::unique_ptr<ByteReader> openFile(const std::string& path);

// A reader that keeps one block, for parsers that look at few bytes in many places going forward.
class BufferedReader final : public ByteReader {
public:
    explicit BufferedReader(ByteReader& inner, size_t block = 65536) : inner_(inner), blockSize_(block) {}
    uint64_t size() const override { return inner_.size(); }
    size_t readAt(uint64_t offset, std::span<uint8_t> out) override;
    // The bytes at `offset`, at least `count` of them unless the file ends before. Valid until the next call.
    std::span<const uint8_t> view(uint64_t offset, size_t count);

private:
    ByteReader& inner_;
    size_t blockSize_;
    std::vector<uint8_t> block_;
    uint64_t blockOffset_ = 0;
};

inline uint32_t bigEndian32(const uint8_t* p)
{
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}
inline uint16_t bigEndian16(const uint8_t* p) { return uint16_t(p[0] << 8 | p[1]); }
inline uint32_t littleEndian32(const uint8_t* p)
{
    return uint32_t(p[3]) << 24 | uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
}
inline uint16_t littleEndian16(const uint8_t* p) { return uint16_t(p[1] << 8 | p[0]); }
inline uint64_t littleEndian64(const uint8_t* p)
{
    return uint64_t(littleEndian32(p + 4)) << 32 | littleEndian32(p);
}

} // namespace vbmp3
