#include "libraries/formats/stream_info.h"

#include <algorithm>
#include <cstdio>

namespace vbmp3 {
namespace {

constexpr int64_t kMostToWalk = int64_t{64} << 20;  // bytes whose frames are counted on opening

void TakeMpeg(StreamInfo& info) {
    static constexpr const char* kModes[] = {"Stereo", "Joint Stereo", "Dual Channel", "Mono"};
    const MpegScan& scan = *info.mpeg;
    info.sampleRate = scan.first.sampleRate;
    info.channels = scan.first.channels;
    info.bitRate = scan.bitRate;
    info.frames = scan.samples;
    info.exact = scan.exact;
    char text[128];
    std::snprintf(text, sizeof text, "MPEG%s Layer%d %dHz %dkbit/s %s",
                  scan.first.version == 10   ? "1"
                  : scan.first.version == 20 ? "2"
                                             : "2.5",
                  scan.first.layer, info.sampleRate, (info.bitRate + 500) / 1000, kModes[scan.first.mode]);
    info.format = text;
}

bool TakeWave(StreamInfo& info) {
    const WaveFormat& wave = *info.wave;
    const int64_t bytes = info.data.size();
    info.sampleRate = wave.sampleRate;
    info.channels = wave.channels;
    info.exact = true;
    info.format = wave.name();
    if (!wave.adpcm()) {
        info.frames = bytes / wave.blockAlign;
        info.bitRate = static_cast<int>(std::min<int64_t>(int64_t{wave.sampleRate} * wave.blockAlign * 8, INT32_MAX));
        return true;
    }
    const int64_t rest = bytes % wave.blockAlign;
    const int head = (wave.coding == WaveFormat::Coding::MsAdpcm ? 7 : 4) * wave.channels;
    info.frames = bytes / wave.blockAlign * wave.samplesPerBlock;
    if (rest > head)
        info.frames += wave.coding == WaveFormat::Coding::MsAdpcm ? (rest - head) * 2 / wave.channels + 2
                                                                  : (rest - head) / (4 * wave.channels) * 8 + 1;
    info.bitRate = static_cast<int>(
        std::min<int64_t>(int64_t{wave.sampleRate} * wave.blockAlign * 8 / wave.samplesPerBlock, INT32_MAX));
    return true;
}

}  // namespace

std::optional<StreamInfo> Probe(const ByteSource& file, const FileLayout& layout, int64_t mostZeros) {
    StreamInfo info;
    info.data = layout.audio;
    info.container = layout.container;
    info.id3v1 = !layout.id3v1().empty();
    info.id3v2 = layout.find(TagKind::Id3v2) != nullptr || layout.find(TagKind::Id3v2Appended) != nullptr ||
                 layout.find(TagKind::Id3v2Chunk) != nullptr;

    if (layout.container == Container::Wave) {
        const RiffChunk* chunk = layout.findChunk("fmt ");
        if (chunk == nullptr) return std::nullopt;
        uint8_t fmt[64];
        const size_t size = static_cast<size_t>(std::clamp<int64_t>(chunk->body.size(), 0, sizeof fmt));
        info.wave = ParseWaveFormat({fmt, file.readAt(chunk->body.begin, fmt, size)});
        if (!info.wave) return std::nullopt;
        if (info.wave->coding != WaveFormat::Coding::Mpeg) {
            info.data = layout.data;
            return TakeWave(info) ? std::optional(info) : std::nullopt;
        }
    }
    info.mpeg = ScanMpeg(file, info.data, mostZeros);
    if (!info.mpeg) return std::nullopt;
    TakeMpeg(info);
    return info;
}

void RefineLength(const ByteSource& file, StreamInfo& info) {
    if (!info.mpeg || info.exact || !info.mpeg->variableBitRate || info.data.size() > kMostToWalk) return;
    CountFrames(file, *info.mpeg);
    TakeMpeg(info);
}

}  // namespace vbmp3
