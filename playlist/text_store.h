// Memory for very many short texts that are kept until all of them go: they lie one behind the other in large blocks
// and never move, so that a row needs only a pointer to each of its texts.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace quenlox {

class TextStore {
  public:
    // `size` bytes, not aligned, valid until clear().
    char* allocate(std::size_t size);
    void clear();
    std::size_t allocated() const { return allocated_; }  // bytes handed out
    std::size_t reserved() const { return reserved_; }    // bytes taken from the system

  private:
    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
    std::size_t allocated_ = 0;
    std::size_t reserved_ = 0;
};

}  // namespace quenlox
