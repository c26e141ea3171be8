#include "libraries/gogo/frames.h"

#include <algorithm>
#include <span>

#include "libraries/formats/mpeg_header.h"

namespace gogo {
namespace {

unsigned BitsAt(const uint8_t* bytes, int at, int count) {
    unsigned value = 0;
    for (int i = at; i < at + count; ++i) value = value << 1 | (bytes[i / 8] >> (7 - i % 8) & 1);
    return value;
}

// Block type and mixed flag of every granule and channel, from the side information (2.4.1.7).
uint16_t WindowShapes(const vbmp3::FrameHeader& header, const uint8_t* info) {
    const bool full = header.version == 10;
    const int granule = full ? 59 : 63, flag = full ? 33 : 38;
    int at = full ? (header.channels == 1 ? 18 : 20) : (header.channels == 1 ? 9 : 10);
    unsigned shapes = 0;
    for (int i = 0; i < header.channels * (full ? 2 : 1); ++i, at += granule)
        shapes = shapes << 3 | (BitsAt(info, at + flag, 1) != 0 ? BitsAt(info, at + flag + 1, 3) : 0);
    return static_cast<uint16_t>(shapes);
}

}  // namespace

bool FrameRun::assign(std::vector<uint8_t> bytes, int64_t first) {
    bytes_ = std::move(bytes);
    frames_.clear();
    first_ = first;
    for (size_t at = 0; at < bytes_.size();) {
        const std::span<const uint8_t> rest = std::span(bytes_).subspan(at);
        const auto header = vbmp3::ParseFrameHeader(rest);
        if (!header || header->layer != 3 || header->frameBytes <= 0 ||
            static_cast<size_t>(header->frameBytes) > rest.size())
            return false;
        const int side = header->crc ? 6 : 4;
        const int head = side + header->sideInfoBytes();
        if (head > header->frameBytes) return false;
        const uint8_t* info = rest.data() + side;
        const int begin = header->version == 10 ? info[0] << 1 | info[1] >> 7 : info[0];
        frames_.push_back({at, static_cast<uint16_t>(head), static_cast<uint16_t>(begin), WindowShapes(*header, info)});
        at += static_cast<size_t>(header->frameBytes);
    }
    return true;
}

int FrameRun::frameBytes(int64_t frame) const {
    const size_t index = static_cast<size_t>(frame - first_);
    return static_cast<int>(endOf(index) - frames_[index].offset);
}

int FrameRun::mainDataBegin(int64_t frame) const { return at(frame).begin; }

void FrameRun::cut(int64_t frame) {
    if (frame >= end()) return;
    bytes_.resize(at(frame).offset);
    frames_.resize(static_cast<size_t>(frame - first_));
}

void FrameRun::dropBefore(int64_t frame) {
    const size_t count =
        static_cast<size_t>(std::clamp<int64_t>(frame - first_, 0, static_cast<int64_t>(frames_.size())));
    const size_t offset = count < frames_.size() ? frames_[count].offset : bytes_.size();
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<long>(offset));
    frames_.erase(frames_.begin(), frames_.begin() + static_cast<long>(count));
    for (Frame& left : frames_) left.offset -= offset;
    first_ += static_cast<int64_t>(count);
}

bool FrameRun::fits(const FrameRun& next, int64_t seam) const {
    return at(seam).shapes == next.at(seam).shapes &&
           (seam == next.first() || at(seam - 1).shapes == next.at(seam - 1).shapes);
}

bool FrameRun::join(FrameRun& next, int64_t latest) {
    const int64_t earliest = std::max(next.first(), first_ + 1);
    latest = std::min({latest, end() - 1, next.end() - 1});
    int64_t seam = -1;
    for (int64_t frame = latest; frame >= earliest && seam < 0; --frame) {
        if (mainDataBegin(frame) >= next.mainDataBegin(frame) && fits(next, frame)) seam = frame;
    }
    // Encoders of the same sound choose the same windows; should they not, a moment of aliasing is the lesser evil.
    for (int64_t frame = latest; frame >= earliest && seam < 0; --frame) {
        if (mainDataBegin(frame) >= next.mainDataBegin(frame)) seam = frame;
    }
    if (seam < 0) return false;
    int needed = next.mainDataBegin(seam);
    cut(seam);
    size_t mine = frames_.size(), theirs = static_cast<size_t>(seam - next.first_);
    size_t to = bytes_.size(), from = theirs < next.frames_.size() ? next.frames_[theirs].offset : next.bytes_.size();
    // Backwards through the main data of both, stepping over headers and side information.
    while (needed > 0) {
        while (mine > 0 && to == frames_[mine - 1].offset + frames_[mine - 1].head) to = frames_[--mine].offset;
        while (theirs > 0 && from == next.frames_[theirs - 1].offset + next.frames_[theirs - 1].head)
            from = next.frames_[--theirs].offset;
        if (mine == 0 || theirs == 0) return false;
        bytes_[--to] = next.bytes_[--from];
        --needed;
    }
    next.dropBefore(seam);
    return true;
}

}  // namespace gogo
