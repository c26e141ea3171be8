#include "tests/vbmp3/support.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <numbers>
#include <thread>

#include <lame/lame.h>

namespace vbmp3::test {
namespace {

void put(Bytes& bytes, uint32_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.push_back(uint8_t(value >> 8 * i));
}

class OwnedBytes final : public ByteSource {
public:
    explicit OwnedBytes(Bytes bytes) : bytes_(std::move(bytes)) {}
    int64_t size() const override { return int64_t(bytes_.size()); }
    size_t readAt(int64_t offset, void* to, size_t length) const override
    {
        return MemorySource(bytes_).readAt(offset, to, length);
    }

private:
    Bytes bytes_;
};

void put(Bytes& bytes, const char* text) { bytes.insert(bytes.end(), text, text + 4); }

} // namespace

TempDir::TempDir()
{
    static std::atomic<int> counter = 0;
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path()
            / ("vbmp3-test-" + std::to_string(stamp) + "-" + std::to_string(++counter));
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

Bytes readBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void writeBytes(const std::string& path, const Bytes& bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

std::vector<int16_t> tone(int sampleRate, int channels, int frames, double hertz, double amplitude)
{
    std::vector<int16_t> samples;
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < channels; ++c)
            samples.push_back(
                int16_t(std::lround(amplitude * std::sin(2 * std::numbers::pi * hertz * (c + 1) * i / sampleRate))));
    return samples;
}

Bytes pcmFmt(int tag, int channels, int sampleRate, int bits)
{
    Bytes fmt;
    put(fmt, uint32_t(tag), 2);
    put(fmt, uint32_t(channels), 2);
    put(fmt, uint32_t(sampleRate), 4);
    put(fmt, uint32_t(sampleRate * channels * bits / 8), 4);
    put(fmt, uint32_t(channels * bits / 8), 2);
    put(fmt, uint32_t(bits), 2);
    return fmt;
}

Bytes waveFile(const Bytes& fmt, const Bytes& data)
{
    Bytes file;
    put(file, "RIFF");
    put(file, uint32_t(4 + 8 + fmt.size() + 8 + data.size() + data.size() % 2), 4);
    put(file, "WAVE");
    put(file, "fmt ");
    put(file, uint32_t(fmt.size()), 4);
    file.insert(file.end(), fmt.begin(), fmt.end());
    put(file, "data");
    put(file, uint32_t(data.size()), 4);
    file.insert(file.end(), data.begin(), data.end());
    if (data.size() % 2 != 0)
        file.push_back(0);
    return file;
}

Bytes waveFile(int sampleRate, int channels, const std::vector<int16_t>& samples)
{
    Bytes data;
    for (const int16_t sample : samples)
        put(data, uint16_t(sample), 2);
    return waveFile(pcmFmt(1, channels, sampleRate, 16), data);
}

Bytes mp3File(int sampleRate, int channels, const std::vector<int16_t>& samples, const Mp3Options& options)
{
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
    const int frames = int(samples.size()) / channels;
    Bytes out(size_t(frames) * 2 + 100000);
    int16_t* input = const_cast<int16_t*>(samples.data());
    size_t size = size_t(channels == 2
                             ? lame_encode_buffer_interleaved(lame, input, frames, out.data(), int(out.size()))
                             : lame_encode_buffer(lame, input, input, frames, out.data(), int(out.size())));
    size += size_t(lame_encode_flush(lame, out.data() + size, int(out.size() - size)));
    out.resize(size);
    if (options.infoFrame) {
        Bytes tag(8192);
        tag.resize(lame_get_lametag_frame(lame, tag.data(), tag.size()));
        std::copy(tag.begin(), tag.end(), out.begin());
    }
    lame_close(lame);
    return out;
}

std::vector<float> readAll(Source& source, size_t block)
{
    std::vector<float> samples, buffer(2 * block);
    while (const size_t frames = source.read(buffer))
        samples.insert(samples.end(), buffer.begin(), buffer.begin() + std::ptrdiff_t(2 * frames));
    return samples;
}

std::unique_ptr<Source> openBytes(const Bytes& bytes, StreamInfo* info)
{
    auto file = std::make_shared<OwnedBytes>(bytes);
    auto found = probe(*file, scanFileLayout(*file));
    if (!found)
        return nullptr;
    refineLength(*file, *found);
    if (info != nullptr)
        *info = *found;
    return openSource(file, *found);
}

std::vector<int16_t> toInt16(const std::vector<float>& samples)
{
    std::vector<int16_t> out;
    out.reserve(samples.size());
    for (const float sample : samples)
        out.push_back(vbmp3::toInt16(sample));
    return out;
}

OutputError MemoryOutput::open(int sampleRate, const OutputSettings&, Waker&)
{
    const std::lock_guard lock(heard_->mutex);
    heard_->opens.push_back(sampleRate);
    return OutputError::None;
}

void MemoryOutput::write(std::span<const float> stereo)
{
    const std::lock_guard lock(heard_->mutex);
    heard_->samples.insert(heard_->samples.end(), stereo.begin(), stereo.end());
    written_ += int64_t(stereo.size() / 2);
}

void MemoryOutput::flush()
{
    written_ = 0;
    running_ = false;
}

int64_t MemoryOutput::played() { return written_; }

OutputSystem memorySystem(std::shared_ptr<Heard> heard)
{
    return {[heard] { return std::make_unique<MemoryOutput>(heard); }, [] { return 1; }};
}

OutputSystem clockSystem(double speed)
{
    return {[speed] { return makeClockOutput(speed); }, [] { return 0; }};
}

namespace {

int fromEnvironment(const char* name, int otherwise)
{
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

} // namespace

int randomSeconds() { return fromEnvironment("VBMP3_RANDOM_SECONDS", 2); }
unsigned randomSeed() { return unsigned(fromEnvironment("VBMP3_RANDOM_SEED", 5)); }

bool eventually(const std::function<bool()>& condition)
{
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace vbmp3::test
