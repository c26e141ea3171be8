#include "libraries/gogo/part_encoder.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include <lame/lame.h>

namespace gogo {
namespace {

struct Closer {
    void operator()(lame_global_flags* flags) const { lame_close(flags); }
};
using Lame = std::unique_ptr<lame_global_flags, Closer>;

void Quiet(const char*, va_list) {}

Lame MakeLame(const Settings& settings, int channels) {
    // LAME fills tables that all its encoders share each time one is made, with the same numbers: harmless to the
    // encoders that run, but two at once would be asking for trouble.
    static std::mutex making;
    const std::lock_guard lock(making);
    Lame lame(lame_init());
    if (!lame) return nullptr;
    lame_set_errorf(lame.get(), Quiet);
    lame_set_msgf(lame.get(), Quiet);
    lame_set_debugf(lame.get(), Quiet);
    lame_set_in_samplerate(lame.get(), settings.frequency);
    lame_set_out_samplerate(lame.get(), settings.frequency);
    lame_set_num_channels(lame.get(), channels);
    lame_set_mode(lame.get(), channels == 1 ? MONO : settings.channels == ChannelMode::Stereo ? STEREO : JOINT_STEREO);
    if (settings.vbrQuality >= 0) {
        lame_set_VBR(lame.get(), vbr_default);
        lame_set_VBR_q(lame.get(), settings.vbrQuality);
        lame_set_VBR_min_bitrate_kbps(lame.get(), settings.bitRate);
        lame_set_VBR_hard_min(lame.get(), 1);  // in silence too
    } else {
        lame_set_brate(lame.get(), settings.bitRate);
    }
    lame_set_bWriteVbrTag(lame.get(), 0);
    lame_set_write_id3tag_automatic(lame.get(), 0);
    return lame_init_params(lame.get()) < 0 ? nullptr : std::move(lame);
}

}  // namespace

int64_t PartCount(int64_t frames) {
    // A short rest belongs to the part before it, which leaves room for its overlap.
    return std::max<int64_t>(1, (frames + kPartFrames / 2) / kPartFrames);
}

Part PartAt(int64_t index, int64_t frames) {
    Part part;
    part.first = index * kPartFrames;
    part.last = index + 1 == PartCount(frames);
    part.frames = part.last ? frames - part.first : kPartFrames;
    return part;
}

bool AskEncoder(const Settings& settings, int channels, EncoderFacts& facts) {
    const Lame lame = MakeLame(settings, channels);
    if (!lame) return false;
    facts.samplesPerFrame = lame_get_framesize(lame.get());
    facts.delay = lame_get_encoder_delay(lame.get());
    facts.lowpass = lame_get_lowpassfreq(lame.get());
    facts.bitRate = settings.vbrQuality >= 0 ? lame_get_VBR_min_bitrate_kbps(lame.get()) : lame_get_brate(lame.get());
    return facts.samplesPerFrame > 0;
}

int64_t FrameCount(int64_t samples, const EncoderFacts& facts) {
    // LAME fills the last frame up and adds another one when less than half an MPEG-1 frame was to fill.
    const int64_t size = facts.samplesPerFrame;
    int64_t padding = size - (samples + facts.delay) % size;
    if (padding < 576) padding += size;
    return (samples + facts.delay + padding) / size;
}

Error EncodePart(const Settings& settings, int channels, const Part& part, const Pcm& pcm,
                 const std::function<bool()>& frameDone, FrameRun& result) {
    const Lame lame = MakeLame(settings, channels);
    if (!lame) return Error::Memory;
    const size_t frame = static_cast<size_t>(lame_get_framesize(lame.get()));
    const int64_t wanted = part.lead() + part.frames + part.overlap();
    std::vector<uint8_t> bytes(part.frames * 480), piece(2 * frame + 7200 + 65536);
    bytes.clear();
    const auto append = [&](int count) { bytes.insert(bytes.end(), piece.begin(), piece.begin() + count); };
    int done = 0;
    // One frame of samples gives one frame of sound at most.
    for (size_t at = 0; at < pcm.size() && done < wanted; at += frame) {
        const int count = static_cast<int>(std::min(frame, pcm.size() - at));
        const float* left = pcm.left.data() + at;
        const float* right = channels == 1 ? left : pcm.right.data() + at;
        const int got =
            lame_encode_buffer_float(lame.get(), left, right, count, piece.data(), static_cast<int>(piece.size()));
        if (got < 0) return got == -2 ? Error::Memory : Error::Encoder;
        append(got);
        const int before = done;
        done = lame_get_frameNum(lame.get());
        if (done == before) continue;
        if (done == part.lead()) {
            // Ends the lead-in's bit reservoir, so that nothing of the part stands in the frames to be dropped.
            if (lame_encode_flush_nogap(lame.get(), piece.data(), static_cast<int>(piece.size())) < 0)
                return Error::Encoder;
            bytes.clear();
        } else if (done > part.lead() && done <= part.lead() + part.frames && !frameDone()) {
            result = FrameRun();
            return Error::None;
        }
    }
    const int rest = part.last ? lame_encode_flush(lame.get(), piece.data(), static_cast<int>(piece.size()))
                               : lame_encode_flush_nogap(lame.get(), piece.data(), static_cast<int>(piece.size()));
    if (rest < 0) return Error::Encoder;
    append(rest);
    if (!result.assign(std::move(bytes), part.first) || result.end() != part.first + part.frames + part.overlap())
        return Error::Encoder;
    while (done < part.lead() + part.frames && frameDone()) ++done;
    return Error::None;
}

}  // namespace gogo
