// Files as sources of bytes, and a window for parsers that walk forward through one. A source may be opened on any
// thread and is read on one at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "libraries/files/byte_source.h"

namespace vbmp3 {

// Opens the file with a UTF-8 path for reading. Others may rename, replace and delete it meanwhile; the size is that
// at the moment of opening. Null when it is missing, a folder, or cannot be read.
std::unique_ptr<ByteSource> OpenFile(const std::string& path);

// Keeps one block of a source. The first block is small, later ones grow up to `block` bytes: many files need no more
// than a look at their first frames.
class BlockReader {
  public:
    explicit BlockReader(const ByteSource& source, size_t block = 65536) : source_(source), blockSize_(block) {}
    // The bytes at `offset`, at least `count` of them unless the file ends before. Valid until the next call.
    std::span<const uint8_t> view(int64_t offset, size_t count);

  private:
    const ByteSource& source_;
    size_t blockSize_;
    size_t nextBlock_ = 4096;
    std::vector<uint8_t> block_;
    int64_t blockOffset_ = 0;
};

}  // namespace vbmp3
