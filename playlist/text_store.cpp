#include "playlist/text_store.h"

#include <algorithm>

namespace quenlox {
namespace {

// Blocks grow with the store, so that a list of three rows does not cost the block of one with a hundred thousand.
constexpr std::size_t kSmallestBlock = 1u << 10;
constexpr std::size_t kLargestBlock = 256u << 10;

}  // namespace

char* TextStore::allocate(std::size_t size) {
    allocated_ += size;
    if (size > left_) {
        const std::size_t block = std::max(size, std::clamp(reserved_ / 4, kSmallestBlock, kLargestBlock));
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(block));
        reserved_ += block;
        next_ = blocks_.back().get();
        left_ = block;
    }
    char* const place = next_;
    next_ += size;
    left_ -= size;
    return place;
}

void TextStore::clear() {
    blocks_.clear();
    next_ = nullptr;
    left_ = allocated_ = reserved_ = 0;
}

}  // namespace quenlox
