#include "libraries/vbmp3/decoder/mpeg_decoder.h"

#include <cstdio>

#include <mpg123.h>

#include "libraries/vbmp3/decoder/without_holes.h"

namespace vbmp3 {
namespace {

// Frames decoded and thrown away after a seek, so that the bit reservoir (up to 511 bytes back, of frames that may
// carry little more than their side information) and the overlap are those of a decode from the beginning.
constexpr long kRunUpFrames = 16;

}  // namespace

struct MpegDecoder::Impl {
    ByteRange range;
    Samples samples = Samples::Float32;
    int channels = 2;
    WithoutHoles reader;
    int64_t position = 0;  // within what is left of range
    mpg123_handle* handle = nullptr;
    long rate = 0;

    Impl(std::shared_ptr<const ByteSource> file, ByteRange whole) : range(whole), reader(std::move(file), whole) {}
    ~Impl() { mpg123_delete(handle); }

    size_t frameSize() const { return static_cast<size_t>(channels) * (samples == Samples::Float32 ? 4 : 2); }

    static ssize_t onRead(void* context, void* to, size_t count) noexcept {
        try {
            auto& self = *static_cast<Impl*>(context);
            count = self.reader.readAt(self.position, to, count);
            self.position += static_cast<int64_t>(count);
            return static_cast<ssize_t>(count);
        } catch (...) {
            return -1;
        }
    }

    static off_t onSeek(void* context, off_t offset, int origin) noexcept {
        auto& self = *static_cast<Impl*>(context);
        const int64_t base = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? self.position : self.range.size();
        const int64_t target = base + offset;
        if (target < 0) return -1;
        self.position = target;
        return static_cast<off_t>(target);
    }

    Piece decode() {
        for (;;) {
            unsigned char* audio = nullptr;
            size_t bytes = 0;
            off_t number = 0;
            const int result = mpg123_decode_frame(handle, &number, &audio, &bytes);
            if (result == MPG123_NEW_FORMAT) {
                int outChannels = 0, encoding = 0;
                mpg123_getformat(handle, &rate, &outChannels, &encoding);
                continue;
            }
            if (result != MPG123_OK) return {};
            const size_t frames = bytes / frameSize();
            if (frames > 0) return {{audio, frames * frameSize()}, static_cast<int>(rate), frames};
        }
    }
};

MpegDecoder::MpegDecoder() = default;
MpegDecoder::~MpegDecoder() = default;

bool MpegDecoder::start(bool readAhead) {
    Impl& impl = *impl_;
    mpg123_delete(impl.handle);
    impl.position = 0;
    impl.rate = 0;
    impl.handle = mpg123_new(nullptr, nullptr);
    if (impl.handle == nullptr) return false;
    // Tags in mid-stream are skipped: nobody asks for them, and a build of libmpg123 for MinGW may compare texts for
    // ever.
    long flags = MPG123_QUIET | MPG123_IGNORE_INFOFRAME | MPG123_SKIP_ID3V2 |
                 (impl.channels == 2 ? MPG123_FORCE_STEREO : MPG123_MONO_MIX);
    if (!readAhead) flags |= MPG123_NO_READAHEAD;
    mpg123_param(impl.handle, MPG123_ADD_FLAGS, flags, 0);
    mpg123_param(impl.handle, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
    mpg123_param(impl.handle, MPG123_RESYNC_LIMIT, -1, 0);
    mpg123_param(impl.handle, MPG123_PREFRAMES, kRunUpFrames, 0);
    mpg123_format_none(impl.handle);
    const long* rates = nullptr;
    size_t count = 0;
    mpg123_rates(&rates, &count);
    for (size_t i = 0; i < count; ++i)
        mpg123_format(impl.handle, rates[i], impl.channels == 2 ? MPG123_STEREO : MPG123_MONO,
                      impl.samples == Samples::Float32 ? MPG123_ENC_FLOAT_32 : MPG123_ENC_SIGNED_16);
    if (mpg123_replace_reader_handle(impl.handle, Impl::onRead, Impl::onSeek, nullptr) != MPG123_OK ||
        mpg123_open_handle(impl.handle, &impl) != MPG123_OK)
        return false;
    impl.reader.restart();  // it has looked for a tag at the end
    int outChannels = 0, encoding = 0;
    return mpg123_getformat(impl.handle, &impl.rate, &outChannels, &encoding) == MPG123_OK;
}

std::unique_ptr<MpegDecoder> MpegDecoder::open(std::shared_ptr<const ByteSource> file, ByteRange range, Samples samples,
                                               int channels) {
    std::unique_ptr<MpegDecoder> self(new MpegDecoder);
    self->impl_ = std::make_unique<Impl>(std::move(file), range);
    self->impl_->samples = samples;
    self->impl_->channels = channels;
    // A stream of a single frame needs the second way, free format the first.
    if (!self->start(true) && !self->start(false)) return nullptr;
    self->sampleRate_ = static_cast<int>(self->impl_->rate);
    return self;
}

MpegDecoder::Piece MpegDecoder::next() { return impl_->decode(); }

bool MpegDecoder::seek(int64_t frame) { return mpg123_seek(impl_->handle, static_cast<off_t>(frame), SEEK_SET) >= 0; }

}  // namespace vbmp3
