#include "libraries/vbmp3/decoder/mpeg_sections.h"

#include <algorithm>
#include <cstring>

#include "libraries/files/file_source.h"

namespace vbmp3 {
namespace {

// These two bound the memory: samples of a section, and the places of all frames. What is longer is decoded from front
// to back.
constexpr int64_t kMostSectionFrames = 2048;
constexpr int64_t kMostFrames = 2'000'000;  // some 14 hours
constexpr int kBlankFrames = 16;
constexpr int kRealFrames = 8;
constexpr int64_t kRunUp = kBlankFrames + kRealFrames;
static_assert(kRunUp % 8 == 0, "the synthesis filter's order repeats after eight frames");

// The bytes of a section: blanked frames, then the file from `offset` on.
class SectionSource final : public ByteSource {
  public:
    SectionSource(std::shared_ptr<const ByteSource> file, std::vector<uint8_t> head, int64_t offset, int64_t end)
        : file_(std::move(file)), head_(std::move(head)), offset_(offset), end_(end) {}
    int64_t size() const override { return static_cast<int64_t>(head_.size()) + end_ - offset_; }
    size_t readAt(int64_t at, void* to, size_t length) const override {
        auto* out = static_cast<uint8_t*>(to);
        const int64_t headSize = static_cast<int64_t>(head_.size());
        size_t done = 0;
        if (at < headSize) {
            done = static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(length), headSize - at));
            std::memcpy(out, head_.data() + at, done);
        }
        const int64_t from = offset_ + std::max<int64_t>(0, at - headSize);
        const int64_t rest = std::clamp<int64_t>(end_ - from, 0, static_cast<int64_t>(length - done));
        return done + (rest > 0 ? file_->readAt(from, out + done, static_cast<size_t>(rest)) : 0);
    }

  private:
    std::shared_ptr<const ByteSource> file_;
    std::vector<uint8_t> head_;
    int64_t offset_;
    int64_t end_;
};

int MainDataBytes(const FrameHeader& header, int64_t frameBytes) {
    return static_cast<int>(frameBytes) - 4 - (header.crc ? 2 : 0) - header.sideInfoBytes();
}

}  // namespace

MpegSections::MpegSections(std::shared_ptr<const ByteSource> file, const MpegScan& scan, int64_t length)
    : file_(std::move(file)) {
    if (scan.first.layer != 3 || scan.freeFormat || !walk(scan)) return;
    const int64_t frames = static_cast<int64_t>(offsets_.size()) - 1;
    int64_t begin = 0;
    for (int64_t next = (length + 7) / 8 * 8; next < frames; next += 8) {
        if (next - begin < length || frames - next < length / 2 || !canBeginAt(next)) continue;
        sections_.push_back({begin, next - begin});
        begin = next;
    }
    sections_.push_back({begin, frames - begin});
    const bool tooLong = std::any_of(sections_.begin(), sections_.end(),
                                     [](const MpegSection& s) { return s.frames > kMostSectionFrames; });
    if (tooLong || sections_.size() < 2) sections_.clear();
}

bool MpegSections::walk(const MpegScan& scan) {
    BlockReader reader(*file_, 1 << 18);
    samplesPerFrame_ = scan.first.samplesPerFrame;
    int64_t at = scan.soundBegin;
    while (at < scan.end) {
        const auto header = ParseFrameHeader(reader.view(at, 4));
        if (!header) {
            // Up to a frame's worth of rest at the end is a frame cut short; more is junk in the middle.
            if (scan.end - at > 4) return false;
            break;
        }
        if (!SameStream(*header, scan.first) || header->frameBytes <= 0 ||
            MainDataBytes(*header, header->frameBytes) < 0 || static_cast<int64_t>(offsets_.size()) > kMostFrames)
            return false;
        if (scan.end - at < header->frameBytes) break;
        channels_ = std::max(channels_, header->channels);
        offsets_.push_back(at);
        at += header->frameBytes;
    }
    offsets_.push_back(at);
    return offsets_.size() > 1;
}

FrameHeader MpegSections::headerOf(int64_t frame) const {
    uint8_t bytes[4] = {};
    file_->readAt(offsets_[static_cast<size_t>(frame)], bytes, 4);
    return ParseFrameHeader(bytes).value_or(FrameHeader{});
}

// Whether the blanked frames hold all the reservoir that the real frames of the run-up reach back for.
bool MpegSections::canBeginAt(int64_t frame) const {
    int reservoir = 0;
    for (int64_t i = frame - kRunUp; i < frame; ++i) {
        const FrameHeader header = headerOf(i);
        if (header.layer != 3) return false;
        if (i >= frame - kRealFrames) {
            uint8_t side[2] = {};
            file_->readAt(offsets_[static_cast<size_t>(i)] + (header.crc ? 6 : 4), side, 2);
            const int back = header.version == 10 ? side[0] << 1 | side[1] >> 7 : side[0];
            if (back > reservoir) return false;
        }
        reservoir += MainDataBytes(header, offsets_[static_cast<size_t>(i + 1)] - offsets_[static_cast<size_t>(i)]);
    }
    return true;
}

bool MpegSections::decode(const MpegSection& section, std::vector<int16_t>& samples) const {
    const int64_t end = offsets_[static_cast<size_t>(section.firstFrame + section.frames)];
    // What follows the last frame serves the decoder's look ahead only.
    const int64_t sight = std::min(offsets_.back(), end + 4096);
    std::vector<uint8_t> head;
    int64_t toDrop = 0;
    int64_t begin = offsets_[static_cast<size_t>(section.firstFrame)];
    if (section.firstFrame >= kRunUp) {
        const int64_t first = section.firstFrame - kRunUp;
        toDrop = kRunUp;
        int reservoir = 0;
        begin = offsets_[static_cast<size_t>(first + kBlankFrames)];
        head.resize(static_cast<size_t>(begin - offsets_[static_cast<size_t>(first)]));
        if (file_->readAt(offsets_[static_cast<size_t>(first)], head.data(), head.size()) != head.size()) return false;
        for (int64_t i = first; i < first + kBlankFrames; ++i) {
            uint8_t* frame = head.data() + (offsets_[static_cast<size_t>(i)] - offsets_[static_cast<size_t>(first)]);
            const FrameHeader header = headerOf(i);
            frame[1] |= 1;  // no checksum
            std::memset(frame + 4, 0, static_cast<size_t>(header.sideInfoBytes()));
            // The decoder carries over only as many older bytes as a frame reaches back for: all there are.
            if (header.version == 10) {
                const int back = std::min(reservoir, 511);
                frame[4] = static_cast<uint8_t>(back >> 1);
                frame[5] = static_cast<uint8_t>(back << 7);
            } else {
                frame[4] = static_cast<uint8_t>(std::min(reservoir, 255));
            }
            reservoir += MainDataBytes(header, offsets_[static_cast<size_t>(i + 1)] - offsets_[static_cast<size_t>(i)]);
        }
    }
    const auto source = std::make_shared<SectionSource>(file_, std::move(head), begin, sight);
    const auto decoder = MpegDecoder::open(source, {0, source->size()}, MpegDecoder::Samples::Int16, channels_);
    samples.clear();
    samples.reserve(static_cast<size_t>(section.frames * samplesPerFrame_ * channels_));
    for (int64_t i = 0; decoder && i < toDrop + section.frames; ++i) {
        const auto piece = decoder->next();
        if (piece.frames != static_cast<size_t>(samplesPerFrame_)) return false;
        if (i < toDrop) continue;
        const auto* from = reinterpret_cast<const int16_t*>(piece.bytes.data());
        samples.insert(samples.end(), from, from + piece.frames * static_cast<size_t>(channels_));
    }
    return decoder != nullptr;
}

}  // namespace vbmp3
