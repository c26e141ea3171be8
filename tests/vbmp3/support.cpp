#include "tests/vbmp3/support.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <random>
#include <thread>

#include <lame/lame.h>
#include <mpg123.h>

#include "libraries/files/file_source.h"
#include "libraries/vbmp3/decoder/open_source.h"

namespace vbmp3::test {
namespace {

struct OwnedBytes {
    explicit OwnedBytes(Bytes copy) : bytes(std::move(copy)) {}
    const Bytes bytes;
    const MemorySource source{bytes};
};

class SharedFile final : public ByteSource {
  public:
    SharedFile(std::shared_ptr<Share> share, std::unique_ptr<ByteSource> file, bool distant)
        : share_(std::move(share)), file_(std::move(file)), distant_(distant) {
        ++share_->held;
    }
    ~SharedFile() override { --share_->held; }
    int64_t size() const override { return file_->size(); }
    size_t readAt(int64_t offset, void* to, size_t length) const override {
        if (distant_) share_->wait();
        return file_->readAt(offset, to, length);
    }

  private:
    std::shared_ptr<Share> share_;
    std::unique_ptr<ByteSource> file_;
    bool distant_;
};

class MemoryOutput final : public Output {
  public:
    explicit MemoryOutput(std::shared_ptr<Heard> heard) : heard_(std::move(heard)) {}
    OutputError open(int sampleRate, const OutputSettings&, Waker&) override {
        const std::lock_guard lock(heard_->mutex);
        heard_->opens.push_back(sampleRate);
        return OutputError::None;
    }
    size_t room() override { return 512; }
    void write(std::span<const float> stereo) override {
        const std::lock_guard lock(heard_->mutex);
        heard_->samples.insert(heard_->samples.end(), stereo.begin(), stereo.end());
        written_ += static_cast<int64_t>(stereo.size() / 2);
    }
    void start() override {}
    void pause() override {}
    void drain() override {}
    void flush() override { written_ = 0; }
    int64_t played() override { return written_; }
    bool lost() override { return false; }

  private:
    std::shared_ptr<Heard> heard_;
    int64_t written_ = 0;
};

class PluggedOutput final : public Output {
  public:
    explicit PluggedOutput(std::shared_ptr<Plug> plug) : plug_(std::move(plug)) {}
    ~PluggedOutput() override {
        plug_->call();
        keepHeard();
    }
    OutputError open(int sampleRate, const OutputSettings& settings, Waker& waker) override {
        plug_->call();
        if (plug_->trouble == Trouble::Gone) return OutputError::NoDevice;
        if (plug_->busy) return OutputError::Busy;
        ++plug_->opens;
        std::this_thread::sleep_for(std::chrono::milliseconds(plug_->openMs));
        return inner_->open(sampleRate, settings, waker);
    }
    size_t room() override { return plug_->call(), inner_->room(); }
    void write(std::span<const float> stereo) override {
        plug_->call();
        inner_->write(stereo);
        drained_ = false;
        unheard_.insert(unheard_.end(), stereo.begin(), stereo.end());
    }
    void start() override { plug_->call(), inner_->start(); }
    void pause() override { plug_->call(), inner_->pause(); }
    void drain() override { plug_->call(), drained_ = true; }
    void flush() override {
        plug_->call();
        keepHeard();
        inner_->flush();
        unheard_.clear();
        played_ = kept_ = 0;
    }
    int64_t played() override {
        plug_->call();
        if (plug_->trouble == Trouble::StandsStill) return played_;
        // As devices do it takes whole buffers, until it is told that nothing follows.
        const int64_t played = inner_->played();
        return played_ = std::max(played_, drained_ ? played : played / kBuffer * kBuffer);
    }
    bool lost() override { return plug_->trouble == Trouble::Gone; }

  private:
    void keepHeard() {
        const int64_t played = inner_->played(), count = 2 * (played - std::exchange(kept_, played));
        const std::lock_guard lock(plug_->heard.mutex);
        plug_->heard.samples.insert(plug_->heard.samples.end(), unheard_.begin(), unheard_.begin() + count);
        unheard_.erase(unheard_.begin(), unheard_.begin() + count);
    }

    std::shared_ptr<Plug> plug_;
    std::unique_ptr<Output> inner_ = MakeClockOutput();
    std::vector<float> unheard_;
    static constexpr int64_t kBuffer = 250;  // frames; no divisor of what is decoded in one go
    int64_t played_ = 0, kept_ = 0;
    bool drained_ = false;
};

}  // namespace

Bytes ReadBytes(const std::string& path) { return Text(ReadFile(path)); }

Bytes Text(const std::string& words) { return Bytes(words.begin(), words.end()); }

Bytes Little(uint64_t value, int count) {
    Bytes bytes;
    for (int i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
    return bytes;
}

Bytes Chunk(const std::string& id, const Bytes& body) {
    return Text(id) + Little(body.size(), 4) + body + Bytes(body.size() % 2);
}

Bytes Riff(const std::string& form, const Bytes& chunks) { return Chunk("RIFF", Text(form) + chunks); }

std::vector<int16_t> ToneOf(int sampleRate, int channels, int frames, double hertz, double amplitude) {
    std::vector<int16_t> samples;
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < channels; ++c)
            samples.push_back(static_cast<int16_t>(
                std::lround(amplitude * std::sin(2 * std::numbers::pi * hertz * (c + 1) * i / sampleRate))));
    return samples;
}

std::vector<int16_t> Music(int sampleRate, int channels, int frames) {
    std::mt19937 random(1);
    std::vector<int16_t> samples;
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < channels; ++c) {
            const double t = static_cast<double>(i) / sampleRate;
            const double value = 5000 * std::sin(2 * M_PI * (220 + 100 * t) * t) +
                                 3000 * std::sin(2 * M_PI * 1234 * t + c) +
                                 2000 * std::sin(2 * M_PI * 0.7 * t) * std::sin(2 * M_PI * 3000 * t) +
                                 static_cast<double>(random() % 400) - 200;
            samples.push_back(static_cast<int16_t>(value));
        }
    return samples;
}

Bytes PcmFmt(int tag, int channels, int sampleRate, int bits) {
    const int block = channels * bits / 8;
    return Little(static_cast<uint64_t>(tag), 2) + Little(static_cast<uint64_t>(channels), 2) +
           Little(static_cast<uint64_t>(sampleRate), 4) + Little(static_cast<uint64_t>(sampleRate * block), 4) +
           Little(static_cast<uint64_t>(block), 2) + Little(static_cast<uint64_t>(bits), 2);
}

Bytes WaveFile(const Bytes& fmt, const Bytes& data) { return Riff("WAVE", Chunk("fmt ", fmt) + Chunk("data", data)); }

Bytes WaveFile(int sampleRate, int channels, const std::vector<int16_t>& samples) {
    Bytes data(2 * samples.size());
    for (size_t i = 0; i < samples.size(); ++i) {
        data[2 * i] = static_cast<uint8_t>(samples[i]);
        data[2 * i + 1] = static_cast<uint8_t>(samples[i] >> 8);
    }
    return WaveFile(PcmFmt(1, channels, sampleRate, 16), data);
}

Bytes Mp3File(int sampleRate, int channels, const std::vector<int16_t>& samples, const Mp3Options& options) {
    lame_t lame = lame_init();
    lame_set_in_samplerate(lame, sampleRate);
    lame_set_out_samplerate(lame, sampleRate);
    lame_set_num_channels(lame, channels);
    lame_set_mode(lame, channels == 1 ? MONO : JOINT_STEREO);
    if (options.bitRate == 0) {
        lame_set_VBR(lame, vbr_default);
        lame_set_VBR_quality(lame, 4);
    } else {
        lame_set_brate(lame, options.bitRate);
    }
    lame_set_free_format(lame, options.freeFormat ? 1 : 0);
    lame_set_error_protection(lame, options.crc ? 1 : 0);
    lame_set_bWriteVbrTag(lame, options.infoFrame ? 1 : 0);
    lame_set_quality(lame, 7);
    lame_init_params(lame);
    const int frames = static_cast<int>(samples.size()) / channels;
    Bytes out(static_cast<size_t>(frames) * 2 + 100000);
    int16_t* input = const_cast<int16_t*>(samples.data());
    size_t size = static_cast<size_t>(
        channels == 2 ? lame_encode_buffer_interleaved(lame, input, frames, out.data(), static_cast<int>(out.size()))
                      : lame_encode_buffer(lame, input, input, frames, out.data(), static_cast<int>(out.size())));
    size += static_cast<size_t>(lame_encode_flush(lame, out.data() + size, static_cast<int>(out.size() - size)));
    out.resize(size);
    if (options.infoFrame) {
        Bytes tag(8192);
        tag.resize(lame_get_lametag_frame(lame, tag.data(), tag.size()));
        std::copy(tag.begin(), tag.end(), out.begin());
    }
    lame_close(lame);
    return out;
}

std::vector<float> ReadAll(Source& source) {
    std::vector<float> samples, buffer(2000);
    while (const size_t frames = source.read(buffer))
        samples.insert(samples.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(2 * frames));
    return samples;
}

std::unique_ptr<Source> OpenBytes(const Bytes& bytes, StreamInfo* info) {
    const auto owned = std::make_shared<OwnedBytes>(bytes);
    const std::shared_ptr<const ByteSource> file(owned, &owned->source);
    auto found = Probe(*file, ScanFileLayout(*file));
    if (!found) return nullptr;
    RefineLength(*file, *found);
    if (info != nullptr) *info = *found;
    return OpenSource(file, *found);
}

std::vector<int16_t> ToInt16(const std::vector<float>& samples) {
    std::vector<int16_t> out;
    out.reserve(samples.size());
    for (const float sample : samples) out.push_back(vbmp3::ToInt16(sample));
    return out;
}

Decoded DecodeByMpg123(const std::string& path, const char* decoder, bool gapless) {
    Decoded result;
    mpg123_handle* handle = mpg123_new(decoder, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT | MPG123_QUIET, 0);
    mpg123_param(handle, gapless ? MPG123_ADD_FLAGS : MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
    long rate = 0;
    int encoding = 0;
    if (mpg123_open(handle, path.c_str()) == MPG123_OK &&
        mpg123_getformat(handle, &rate, &result.channels, &encoding) == MPG123_OK) {
        result.sampleRate = static_cast<int>(rate);
        std::vector<float> block(16384);
        size_t bytes = 0;
        int state = MPG123_OK;
        while (state == MPG123_OK) {
            state = mpg123_read(handle, reinterpret_cast<unsigned char*>(block.data()), block.size() * sizeof(float),
                                &bytes);
            const auto end = block.begin() + static_cast<std::ptrdiff_t>(bytes / sizeof(float));
            result.samples.insert(result.samples.end(), block.begin(), end);
        }
    }
    mpg123_delete(handle);
    return result;
}

void Share::wait() {
    if (hangs) ++inside;
    while (hangs) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

FileOpener Share::opener() {
    return [share = shared_from_this()](const std::string& path) -> std::unique_ptr<ByteSource> {
        const bool distant = path.find("far") != std::string::npos;
        if (distant) share->wait();
        auto file = OpenFile(path);
        if (!file) return nullptr;
        ++share->opens;
        return std::make_unique<SharedFile>(share, std::move(file), distant);
    };
}

OutputSystem MemorySystem(std::shared_ptr<Heard> heard) {
    return {[heard] { return std::make_unique<MemoryOutput>(heard); }, [] { return 1; }};
}

OutputSystem ClockSystem(double speed) {
    return {[speed] { return MakeClockOutput(speed); }, [] { return 0; }};
}

void Plug::call() {
    while (trouble == Trouble::Hangs) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

OutputSystem PlugSystem(std::shared_ptr<Plug> plug) {
    return {.make = [plug] { return std::make_unique<PluggedOutput>(plug); },
            .count = [plug] { return plug->trouble == Trouble::Gone ? 0 : 1; },
            .patience = std::chrono::milliseconds(300)};
}

static int FromEnvironment(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

int RandomSeconds() { return FromEnvironment("VBMP3_RANDOM_SECONDS", 2); }
unsigned RandomSeed() { return static_cast<unsigned>(FromEnvironment("VBMP3_RANDOM_SEED", 5)); }

bool Eventually(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace vbmp3::test
