// What the tests of the decoding library share: files made on the spot, and outputs that can be looked at.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "libraries/vbmp3/output_thread.h"
#include "libraries/vbmp3/source.h"

namespace vbmp3::test {

// A folder of its own for one test, removed with everything in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    std::string path(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

using Bytes = std::vector<uint8_t>;
Bytes readBytes(const std::string& path);
void writeBytes(const std::string& path, const Bytes& bytes);

// Interleaved samples of a sine; right is at twice the frequency.
std::vector<int16_t> tone(int sampleRate, int channels, int frames, double hertz = 440, double amplitude = 8000);

// A RIFF WAVE file with 16-bit samples.
Bytes waveFile(int sampleRate, int channels, const std::vector<int16_t>& samples);
// The same with any "fmt " and "data" contents.
Bytes waveFile(const Bytes& fmt, const Bytes& data);
Bytes pcmFmt(int tag, int channels, int sampleRate, int bits);

struct Mp3Options {
    int bitRate = 128;      // kbit/s; 0: VBR quality 4
    bool infoFrame = true;  // Xing or Info frame with the LAME tag
    bool freeFormat = false;
    bool crc = false;
};
Bytes mp3File(int sampleRate, int channels, const std::vector<int16_t>& samples, const Mp3Options& options = {});

// Reads a whole source.
std::vector<float> readAll(Source& source, size_t block = 1000);
// Opens bytes the way a file is opened; null when refused. Keeps a copy of them.
std::unique_ptr<Source> openBytes(const Bytes& bytes, StreamInfo* info = nullptr);
std::vector<int16_t> toInt16(const std::vector<float>& samples);

// Hears everything at once and keeps it.
struct Heard {
    std::mutex mutex;
    std::vector<float> samples; // all opens together
    std::vector<int> opens;     // their sample rates
    std::vector<float> all()
    {
        const std::lock_guard lock(mutex);
        return samples;
    }
};
class MemoryOutput final : public Output {
public:
    explicit MemoryOutput(std::shared_ptr<Heard> heard) : heard_(std::move(heard)) {}
    OutputError open(int sampleRate, const OutputSettings&, Waker& waker) override;
    size_t room() override { return 512; }
    void write(std::span<const float> stereo) override;
    void start() override { running_ = true; }
    void pause() override { running_ = false; }
    void drain() override {}
    void flush() override;
    int64_t played() override;
    bool lost() override { return false; }

private:
    std::shared_ptr<Heard> heard_;
    int64_t written_ = 0;
    bool running_ = false;
};

OutputSystem memorySystem(std::shared_ptr<Heard> heard);
OutputSystem clockSystem(double speed);

// How long the tests of orders at random go on, and where they begin: VBMP3_RANDOM_SECONDS (2) and VBMP3_RANDOM_SEED (5)
// of the environment, so that a long run under ThreadSanitizer is one of the same tests.
int randomSeconds();
unsigned randomSeed();

// Polls until `condition` holds; false after five seconds.
bool eventually(const std::function<bool()>& condition);

} // namespace vbmp3::test
