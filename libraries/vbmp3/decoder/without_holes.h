// A range of a file without its long runs of zeros, as a disk or a download that failed leaves them: a decoder looks
// for the next frame in them byte by byte, which takes minutes for a few GB. Of each run the first bytes stay, so that
// the decoder sees that something is missing. One thread at a time.
//
// Offsets count what is left. Runs are found as the range is read from front to back, so that an offset that has been
// read means the same for ever; who jumps ahead leaves out none of those that he jumps over.
#pragma once

#include <memory>
#include <vector>

#include "libraries/files/file_source.h"
#include "libraries/formats/file_layout.h"

namespace vbmp3 {

class WithoutHoles {
  public:
    // More than any frame and what it may leave empty.
    static constexpr int64_t kKept = 16384;  // bytes

    WithoutHoles(std::shared_ptr<const ByteSource> file, ByteRange range)
        : file_(std::move(file)), range_(range), reader_(*file_) {}

    // Some of `count` bytes from `offset` on, none only at the end of the range.
    size_t readAt(int64_t offset, void* to, size_t count);
    // Forgets what it knows of the range: offsets begin anew.
    void restart();

  private:
    struct Hole {
        int64_t offset;   // what follows it
        int64_t skipped;  // bytes, with all before it
    };
    int64_t skippedBefore(int64_t offset) const;
    void skipHole(int64_t at);

    std::shared_ptr<const ByteSource> file_;
    ByteRange range_;
    BlockReader reader_;
    std::vector<Hole> holes_;
    int64_t front_ = 0;  // everything before this offset has been read
    int64_t zeros_ = 0;  // so many bytes before it
};

}  // namespace vbmp3
