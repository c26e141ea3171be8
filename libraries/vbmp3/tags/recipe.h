// A new file put together from parts of an old one and bytes of our own, so that editing a tag never holds the sound in
// memory: it is copied in blocks when the recipe is carried out.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "libraries/formats/file_layout.h"

namespace vbmp3 {

class Recipe {
  public:
    void copy(ByteRange source);
    void add(std::span<const uint8_t> bytes);
    void add(std::string_view text);
    void append(const Recipe& other);
    void addLittleEndian32(uint32_t number);
    int64_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    // Hands the bytes to `sink` in blocks of at most 256 KiB. False when the sink says so or the source ends early.
    bool carryOut(const ByteSource& source, const std::function<bool(std::span<const uint8_t>)>& sink) const;

  private:
    struct Piece {
        ByteRange source;  // when `bytes` is empty
        std::vector<uint8_t> bytes;
    };
    std::vector<Piece> pieces_;
    int64_t size_ = 0;
};

}  // namespace vbmp3
