#include "libraries/formats/mpeg_header.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "libraries/files/file_source.h"
#include "libraries/formats/bytes.h"

namespace vbmp3 {
namespace {

// kbit/s by index; rows: MPEG-1 layers 1 to 3, MPEG-2 and 2.5 layer 1, MPEG-2 and 2.5 layers 2 and 3.
constexpr int kBitRates[5][15] = {
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
};
constexpr int kSampleRates[3] = {44100, 48000, 32000};

constexpr int64_t kSearchLimit = 1 << 20;
constexpr int64_t kCountSlack = 4096;  // bytes by which the counts of a file and its size may differ
constexpr int kChainLength = 4;        // frames in a row that make a stream
constexpr int kMaxFreeFrame = 8192;    // bytes; over twice what 640 kbit/s needs
constexpr int kMaxFreeSearches = 100;  // bounds the time that junk full of such headers can take

const int* BitRatesOf(const FrameHeader& header) {
    return kBitRates[header.version == 10 ? header.layer - 1 : header.layer == 1 ? 3 : 4];
}

int FrameBytesFor(const FrameHeader& header, int bitRate) {
    if (header.layer == 1) return (12 * bitRate / header.sampleRate) * 4 + header.paddingBytes();
    const int factor = header.layer == 3 && header.version != 10 ? 72 : 144;
    return factor * bitRate / header.sampleRate + header.paddingBytes();
}

// Follows frames through a file; knows the frame length of a free-format stream once it has been found out.
class FrameWalk {
  public:
    FrameWalk(BlockReader& file, int64_t end) : file_(file), end_(end) {}

    std::optional<FrameHeader> at(int64_t offset) {
        if (offset >= end_ || end_ - offset < 4) return std::nullopt;
        auto header = ParseFrameHeader(file_.view(offset, 4));
        if (header && header->bitRate == 0 && freeBase_ > 0) header->frameBytes = freeBase_ + header->paddingBytes();
        return header;
    }

    // The length of free-format frames is the distance to the next header that is the same but for padding.
    bool findFreeLength(int64_t offset, const FrameHeader& header) {
        if (freeSearches_++ >= kMaxFreeSearches) return false;
        const auto view = file_.view(offset, 2 * kMaxFreeFrame);
        const size_t room = static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(view.size()), end_ - offset));
        for (size_t next = 24; next + 4 <= room && next <= kMaxFreeFrame; ++next) {
            if (!sameFree(view, next, header)) continue;
            const auto second = ParseFrameHeader(view.subspan(next));
            const int base = static_cast<int>(next) - header.paddingBytes();
            const size_t third = next + static_cast<size_t>(base + second->paddingBytes());
            if (third + 4 <= room ? sameFree(view, third, header) : third >= room) {
                freeBase_ = base;
                return true;
            }
        }
        return false;
    }

    void forgetFreeLength() { freeBase_ = 0; }

    // How a stream that would begin at `offset` goes on: long enough, or up to the end.
    bool isStream(int64_t offset, bool atBegin) {
        forgetFreeLength();
        auto first = at(offset);
        if (!first) return false;
        if (first->bitRate == 0) {
            if (!findFreeLength(offset, *first)) return false;
            first = at(offset);
        }
        int64_t next = offset;
        int count = 0;
        while (count < kChainLength) {
            if (next >= end_ || end_ - next < 4) return count >= (atBegin ? 1 : 2);
            const auto header = at(next);
            if (!header || !SameStream(*first, *header) || header->frameBytes <= 0) return false;
            next += static_cast<int64_t>(header->frameBytes);
            ++count;
        }
        return true;
    }

  private:
    static bool sameFree(std::span<const uint8_t> view, size_t offset, const FrameHeader& header) {
        const auto other = ParseFrameHeader(view.subspan(offset));
        return other && other->bitRate == 0 && SameStream(header, *other);
    }

    BlockReader& file_;
    int64_t end_;
    int freeBase_ = 0;
    int freeSearches_ = 0;
};

std::optional<int64_t> FindStream(BlockReader& file, FrameWalk& walk, ByteRange audio, int64_t mostZeros) {
    int64_t limit = std::min(audio.end, audio.begin + kSearchLimit);
    int64_t offset = audio.begin;
    while (offset < limit) {
        const auto view = file.view(offset, 4);
        const uint8_t* sync =
            view.empty() ? nullptr : static_cast<const uint8_t*>(std::memchr(view.data(), 0xFF, view.size()));
        if (sync == nullptr) {
            if (view.empty()) break;
            const auto size = static_cast<int64_t>(view.size());
            if (mostZeros > 0 && ZerosAtFront(view) == view.size()) {
                mostZeros -= size;
                limit = std::min(audio.end, limit + size);
            }
            offset += size;
            continue;
        }
        offset += sync - view.data();
        if (offset < limit && walk.isStream(offset, offset == audio.begin)) return offset;
        ++offset;
    }
    return std::nullopt;
}

// Whether another stream stands behind the one that the information frame tells of: files that were joined.
bool AnotherFollows(BlockReader& file, FrameWalk& walk, const MpegScan& scan) {
    if (!scan.info->bytes || scan.end - scan.begin < int64_t{*scan.info->bytes} + kCountSlack) return false;
    const int64_t behind = scan.begin + *scan.info->bytes;
    return FindStream(file, walk, {behind, std::min(scan.end, behind + 65536)}, 0).has_value();
}

// Takes back what the information frame cannot mean: so many frames must have room in the bytes that it counts, else in
// those `present`, and fill them.
void DropNonsense(MpegScan& scan, int64_t present) {
    FrameHeader header = scan.first;
    header.padding = false;
    const int* rates = BitRatesOf(header);
    const int64_t least = scan.freeFormat ? 4 + header.sideInfoBytes() : FrameBytesFor(header, rates[1] * 1000);
    const int64_t most = scan.freeFormat ? kMaxFreeFrame : FrameBytesFor(header, rates[14] * 1000) + 1;
    InfoFrame& info = *scan.info;
    const auto fill = [&](int64_t bytes) {
        return *info.frames * least <= bytes + kCountSlack && *info.frames * most >= bytes - kCountSlack;
    };
    if (!info.frames || (info.bytes && fill(*info.bytes))) return;
    info.bytes.reset();
    if (!fill(present)) info.frames.reset();
}

void TakeLengthFromInfo(MpegScan& scan, int64_t present, bool joined) {
    const InfoFrame& info = *scan.info;
    scan.frames = *info.frames;
    scan.samples = scan.frames * scan.first.samplesPerFrame;
    scan.exact = true;
    // A file cut short still carries the counts of the whole.
    if (joined || (info.bytes && *info.bytes > present && *info.bytes - present > kCountSlack)) {
        scan.frames =
            static_cast<int64_t>(static_cast<double>(scan.frames) * static_cast<double>(present) / double(*info.bytes));
        scan.samples = scan.frames * scan.first.samplesPerFrame;
        scan.exact = false;
    } else if (info.hasGapless) {
        const int begin = info.encoderDelay + kDecoderDelay;
        const int end = std::max(0, info.encoderPadding - kDecoderDelay);
        scan.samples = std::max<int64_t>(0, scan.samples - begin - end);
    }
}

void ForgetZeros(InfoFrame& info) {
    if (info.frames == 0u) info.frames.reset();
    if (info.bytes == 0u) info.bytes.reset();
}

void SetAverageBitRate(MpegScan& scan, int64_t bytes) {
    if (scan.frames > 0)
        scan.bitRate =
            static_cast<int>(std::min<double>(static_cast<double>(bytes) * 8 * scan.first.sampleRate /
                                                  (static_cast<double>(scan.frames) * scan.first.samplesPerFrame),
                                              2e9));
}

}  // namespace

int FrameHeader::sideInfoBytes() const {
    if (layer != 3) return 0;
    if (version == 10) return channels == 1 ? 17 : 32;
    return channels == 1 ? 9 : 17;
}

std::optional<FrameHeader> ParseFrameHeader(std::span<const uint8_t> bytes) {
    if (bytes.size() < 4 || bytes[0] != 0xFF || (bytes[1] & 0xE0) != 0xE0) return std::nullopt;
    const int versionBits = bytes[1] >> 3 & 3;
    const int layerBits = bytes[1] >> 1 & 3;
    const int rateIndex = bytes[2] >> 4;
    const int sampleIndex = bytes[2] >> 2 & 3;
    if (versionBits == 1 || layerBits == 0 || rateIndex == 15 || sampleIndex == 3 || (bytes[3] & 3) == 2)
        return std::nullopt;
    FrameHeader header;
    header.version = versionBits == 3 ? 10 : versionBits == 2 ? 20 : 25;
    header.layer = 4 - layerBits;
    header.crc = (bytes[1] & 1) == 0;
    header.padding = (bytes[2] & 2) != 0;
    header.mode = bytes[3] >> 6;
    header.channels = header.mode == 3 ? 1 : 2;
    header.sampleRate = kSampleRates[sampleIndex] / (header.version == 10 ? 1 : header.version == 20 ? 2 : 4);
    header.samplesPerFrame = header.layer == 1 ? 384 : header.layer == 3 && header.version != 10 ? 576 : 1152;
    header.bitRate = BitRatesOf(header)[rateIndex] * 1000;
    if (header.bitRate > 0) header.frameBytes = FrameBytesFor(header, header.bitRate);
    return header;
}

bool SameStream(const FrameHeader& a, const FrameHeader& b) {
    return a.version == b.version && a.layer == b.layer && a.sampleRate == b.sampleRate &&
           (a.bitRate == 0) == (b.bitRate == 0);
}

std::optional<InfoFrame> ParseInfoFrame(const FrameHeader& header, std::span<const uint8_t> frame) {
    if (header.layer != 3) return std::nullopt;
    const auto textAt = [&](size_t offset) {
        return frame.size() >= offset + 4 ? std::string_view(reinterpret_cast<const char*>(frame.data() + offset), 4)
                                          : std::string_view();
    };
    InfoFrame info;
    if (textAt(36) == "VBRI" && frame.size() >= 36 + 18) {
        info.kind = InfoFrame::Kind::Vbri;
        info.bytes = BigEndian32(frame.data() + 36 + 10);
        info.frames = BigEndian32(frame.data() + 36 + 14);
        ForgetZeros(info);
        return info;
    }
    size_t at = 4 + static_cast<size_t>(header.sideInfoBytes());
    // Most encoders leave out the checksum in this frame although the header announces one.
    if (header.crc && textAt(at) != "Xing" && textAt(at) != "Info") at += 2;
    if (textAt(at) != "Xing" && textAt(at) != "Info") return std::nullopt;
    info.kind = textAt(at) == "Xing" ? InfoFrame::Kind::Xing : InfoFrame::Kind::Info;
    at += 4;
    if (frame.size() < at + 4) return info;
    const uint32_t flags = BigEndian32(frame.data() + at);
    at += 4;
    const auto number = [&]() -> std::optional<uint32_t> {
        if (frame.size() < at + 4) return std::nullopt;
        at += 4;
        return BigEndian32(frame.data() + at - 4);
    };
    if ((flags & 1) != 0) info.frames = number();
    if ((flags & 2) != 0) info.bytes = number();
    if ((flags & 4) != 0) at += 100;
    if ((flags & 8) != 0) at += 4;
    ForgetZeros(info);
    if (frame.size() < at + 24) return info;
    const uint8_t* lame = frame.data() + at;
    if (lame[0] < 'A' || lame[0] > 'z') return info;
    std::memcpy(info.encoder, lame, 9);
    info.averageBitRate = lame[20];
    info.encoderDelay = lame[21] << 4 | lame[22] >> 4;
    info.encoderPadding = (lame[22] & 15) << 8 | lame[23];
    info.hasGapless = info.encoderDelay + info.encoderPadding > 0;
    return info;
}

// Where no count tells the length: the frames of the first 60 000 bytes are measured and taken for the whole of the
// `present` bytes. False where there is no frame.
static bool MeasureHead(FrameWalk& walk, MpegScan& scan, int64_t present) {
    int64_t offset = scan.soundBegin;
    int64_t frames = 0;
    while (offset - scan.soundBegin < 60000) {
        const auto header = walk.at(offset);
        if (!header || !SameStream(*header, scan.first) || header->frameBytes <= 0) break;
        if (header->bitRate != scan.first.bitRate) scan.variableBitRate = true;
        offset += static_cast<int64_t>(header->frameBytes);
        ++frames;
    }
    if (frames == 0) return false;
    if (offset >= scan.end || scan.end - offset < 4) scan.exact = true;
    const bool average = scan.variableBitRate || scan.freeFormat;
    const double bytesPerFrame =
        average ? static_cast<double>(offset - scan.soundBegin) / static_cast<double>(frames)
                : static_cast<double>(scan.first.bitRate) / 8 * scan.first.samplesPerFrame / scan.first.sampleRate;
    scan.frames = scan.exact ? frames : static_cast<int64_t>(static_cast<double>(present) / bytesPerFrame + 0.5);
    scan.samples = scan.frames * scan.first.samplesPerFrame;
    scan.bitRate = scan.first.bitRate;
    if (average) SetAverageBitRate(scan, static_cast<int64_t>(bytesPerFrame * static_cast<double>(scan.frames)));
    return true;
}

std::optional<MpegScan> ScanMpeg(const ByteSource& file, ByteRange audio, int64_t mostZeros) {
    BlockReader buffered(file);
    FrameWalk walk(buffered, audio.end);
    const auto begin = FindStream(buffered, walk, audio, mostZeros);
    if (!begin) return std::nullopt;
    MpegScan scan;
    scan.begin = scan.soundBegin = *begin;
    scan.end = audio.end;
    scan.first = *walk.at(scan.begin);
    scan.freeFormat = scan.first.bitRate == 0;

    const auto frame = buffered.view(scan.begin, static_cast<size_t>(scan.first.frameBytes));
    const size_t frameSize = static_cast<size_t>(std::min<int64_t>(
        {static_cast<int64_t>(scan.first.frameBytes), static_cast<int64_t>(frame.size()), scan.end - scan.begin}));
    scan.info = ParseInfoFrame(scan.first, frame.first(frameSize));
    if (scan.info) {
        scan.soundBegin = scan.begin + static_cast<int64_t>(frameSize);
        if (const auto second = walk.at(scan.soundBegin); second && SameStream(*second, scan.first))
            scan.first = *second;
        scan.variableBitRate = scan.info->kind != InfoFrame::Kind::Info;
    }
    const int64_t present = scan.end - scan.soundBegin;
    if (scan.info) DropNonsense(scan, present);
    if (scan.info && scan.info->frames) {
        TakeLengthFromInfo(scan, present, AnotherFollows(buffered, walk, scan));
        if (scan.variableBitRate || scan.freeFormat)
            SetAverageBitRate(scan,
                              scan.exact ? std::min<int64_t>(present, scan.info->bytes.value_or(UINT32_MAX)) : present);
        else
            scan.bitRate = scan.first.bitRate;
        return scan;
    }
    // What an information frame says stands even where no sound follows.
    return MeasureHead(walk, scan, present) || scan.info ? std::optional(scan) : std::nullopt;
}

void CountFrames(const ByteSource& file, MpegScan& scan) {
    BlockReader buffered(file, 1 << 18);
    FrameWalk walk(buffered, scan.end);
    if (scan.freeFormat) walk.findFreeLength(scan.soundBegin, scan.first);
    int64_t offset = scan.soundBegin;
    int64_t frames = 0;
    int64_t bytes = 0;
    while (offset < scan.end) {
        const auto header = walk.at(offset);
        if (header && SameStream(*header, scan.first) && header->frameBytes > 0) {
            ++frames;
            bytes += static_cast<int64_t>(header->frameBytes);
            scan.variableBitRate |= header->bitRate != scan.first.bitRate;
            offset += static_cast<int64_t>(header->frameBytes);
            continue;
        }
        const auto view = buffered.view(offset + 1, 4);
        if (view.empty()) break;
        const auto* sync = static_cast<const uint8_t*>(std::memchr(view.data(), 0xFF, view.size()));
        offset += 1 + (sync != nullptr ? sync - view.data() : static_cast<int64_t>(view.size()));
    }
    scan.frames = frames;
    scan.samples = frames * scan.first.samplesPerFrame;
    scan.exact = true;
    scan.bitRate = scan.first.bitRate;
    if (scan.variableBitRate || scan.freeFormat) SetAverageBitRate(scan, bytes);
}

}  // namespace vbmp3
