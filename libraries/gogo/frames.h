// A run of layer III frames with their bit reservoir, and the joining of two runs that overlap. Pure.
//
// A frame's main data may begin up to 511 bytes before its own header, in room that the frames before it have left
// (ISO 11172-3, 2.4.2.7, main_data_begin). Two encodes of the same sound can therefore be joined before any frame at
// which the first has left at least as much room as the second one's data needs: those last bytes of room are filled
// with the second one's, and every frame keeps all of its data. As the windows of neighbouring frames overlap and their
// aliasing cancels only between fitting shapes, both must have chosen the same ones around the seam.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace gogo {

class FrameRun {
  public:
    // Frames from `first` on, numbered within the whole file. False when the bytes are not whole frames of layer III.
    bool assign(std::vector<uint8_t> bytes, int64_t first);

    int64_t first() const { return first_; }
    int64_t end() const { return first_ + static_cast<int64_t>(frames_.size()); }
    const std::vector<uint8_t>& bytes() const { return bytes_; }
    int frameBytes(int64_t frame) const;
    int mainDataBegin(int64_t frame) const;  // bytes

    // Drops the frames from `frame` on.
    void cut(int64_t frame);
    // Drops the frames before `frame`.
    void dropBefore(int64_t frame);
    // Makes this run end where `next` can go on, at the last possible frame not after `latest`, and drops what stands
    // before it in `next`. False when there is no such frame.
    bool join(FrameRun& next, int64_t latest);

  private:
    struct Frame {
        size_t offset;
        uint16_t head;    // bytes of header, CRC and side information
        uint16_t begin;   // main_data_begin
        uint16_t shapes;  // of the windows, three bits a granule and channel
    };
    const Frame& at(int64_t frame) const { return frames_[static_cast<size_t>(frame - first_)]; }
    bool fits(const FrameRun& next, int64_t seam) const;
    size_t endOf(size_t index) const { return index + 1 < frames_.size() ? frames_[index + 1].offset : bytes_.size(); }

    std::vector<uint8_t> bytes_;
    std::vector<Frame> frames_;
    int64_t first_ = 0;
};

}  // namespace gogo
