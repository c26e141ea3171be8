// What the tests of the decoding library share: files made on the spot, and outputs that can be looked at.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "libraries/formats/source.h"
#include "libraries/vbmp3/player/output_thread.h"
#include "libraries/vbmp3/player/track.h"
#include "tests/vbmp3/temp_dir.h"

namespace vbmp3::test {

template <class T>
std::vector<T> operator+(std::vector<T> a, const std::vector<T>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

using Bytes = std::vector<uint8_t>;
Bytes ReadBytes(const std::string& path);
Bytes Text(const std::string& words);
Bytes Little(uint64_t value, int count);  // the lowest `count` bytes, lowest first

// Of RIFF files; a chunk's body is padded to even length.
Bytes Chunk(const std::string& id, const Bytes& body);
Bytes Riff(const std::string& form, const Bytes& chunks);

// Interleaved samples of a sine; right is at twice the frequency.
std::vector<int16_t> ToneOf(int sampleRate, int channels, int frames, double hertz = 440, double amplitude = 8000);

// Several partials and a little noise: every frame differs from every other.
std::vector<int16_t> Music(int sampleRate, int channels, int frames);

// A RIFF WAVE file with 16-bit samples.
Bytes WaveFile(int sampleRate, int channels, const std::vector<int16_t>& samples);
// The same with any "fmt " and "data" contents.
Bytes WaveFile(const Bytes& fmt, const Bytes& data);
Bytes PcmFmt(int tag, int channels, int sampleRate, int bits);

struct Mp3Options {
    int bitRate = 128;      // kbit/s; 0: VBR quality 4
    bool infoFrame = true;  // Xing or Info frame with the LAME tag
    bool freeFormat = false;
    bool crc = false;
};
Bytes Mp3File(int sampleRate, int channels, const std::vector<int16_t>& samples, const Mp3Options& options = {});

// Reads a whole source.
std::vector<float> ReadAll(Source& source);
// Opens bytes the way a file is opened; null when refused. Keeps a copy of them.
std::unique_ptr<Source> OpenBytes(const Bytes& bytes, StreamInfo* info = nullptr);
std::vector<int16_t> ToInt16(const std::vector<float>& samples);

// A file as libmpg123 alone hears it, by its best decoder or by the one named. Gapless: without the delay and the
// padding that the information frame tells of.
struct Decoded {
    int sampleRate = 0, channels = 0;
    std::vector<float> samples;  // interleaved
    int64_t frames() const { return channels > 0 ? static_cast<int64_t>(samples.size()) / channels : 0; }
};
Decoded DecodeByMpg123(const std::string& path, const char* decoder = nullptr, bool gapless = true);

// Files of which those called "far…" may stop answering.
struct Share : std::enable_shared_from_this<Share> {
    std::atomic<bool> hangs = false;
    std::atomic<int> opens = 0, held = 0;  // files
    std::atomic<int> inside = 0;           // calls that have hung
    void wait();                           // as long as it hangs
    FileOpener opener();
};

// Hears everything at once and keeps it.
struct Heard {
    std::mutex mutex;
    std::vector<float> samples;  // all opens together
    std::vector<int> opens;      // their sample rates
    std::vector<float> all() {
        const std::lock_guard lock(mutex);
        return samples;
    }
};
OutputSystem MemorySystem(std::shared_ptr<Heard> heard);
OutputSystem ClockSystem(double speed);

// A device that others may have taken, and that may get into trouble at any moment.
enum class Trouble { None, Gone, StandsStill, Hangs };

struct Plug {
    std::atomic<bool> busy = false;
    std::atomic<Trouble> trouble = Trouble::None;
    std::atomic<int> opens = 0;
    std::atomic<int> openMs = 0;
    Heard heard;  // closed and flushed, this is all that was
    void call();  // every one passes here
};
OutputSystem PlugSystem(std::shared_ptr<Plug> plug);

// How long the test of orders at random goes on, and where it begins: VBMP3_RANDOM_SECONDS (2) and VBMP3_RANDOM_SEED
// (5) of the environment, so that a long run under ThreadSanitizer is one of the same test.
int RandomSeconds();
unsigned RandomSeed();

// Polls until `condition` holds; false after five seconds.
bool Eventually(const std::function<bool()>& condition);

}  // namespace vbmp3::test
