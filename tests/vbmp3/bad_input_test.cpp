// Files that are none, are damaged, or were made to do harm: refused or played as far as they go.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes text(const std::string& words) { return Bytes(words.begin(), words.end()); }

Bytes noise(size_t size)
{
    std::mt19937 random(9);
    Bytes bytes(size);
    for (uint8_t& byte : bytes)
        byte = uint8_t(random());
    return bytes;
}

// Frames decoded, -1 when the file is refused.
int64_t framesOf(const Bytes& bytes)
{
    const auto source = openBytes(bytes);
    return source ? int64_t(readAll(*source).size() / 2) : -1;
}

TEST(BadInput, WhatIsNoSoundIsRefused)
{
    Bytes hugeTag = text("ID3");
    hugeTag = hugeTag + Bytes{4, 0, 0, 0x7F, 0x7F, 0x7F, 0x7F};
    Bytes riffLie = text("RIFF") + Bytes{0xFF, 0xFF, 0xFF, 0xFF} + text("WAVEfmt ") + Bytes{0xFF, 0xFF, 0xFF, 0x7F};
    std::string words;
    for (int i = 0; i < 4000; ++i)
        words += "The quick brown fox jumps over the lazy dog. ";
    const Bytes mp3 = mp3File(44100, 2, tone(44100, 2, 20000));
    const std::pair<const char*, Bytes> cases[] = {
        {"empty", {}},
        {"one byte", {0xFF}},
        {"text", text(words)},
        {"zeros", Bytes(300000)},
        {"all ones", Bytes(300000, 0xFF)},
        {"a tag that claims 256 MB", hugeTag},
        {"a RIFF head only", text("RIFF") + Bytes(8)},
        {"a format chunk that claims 2 GB", riffLie},
        {"RMP without data", text("RIFF") + Bytes{4, 0, 0, 0} + text("RMP3")},
        {"WAVE whose data is empty of a format", text("RIFF") + Bytes{40, 0, 0, 0} + text("WAVEdata") + Bytes{4, 0, 0, 0, 1, 2, 3, 4}},
        {"half a frame header", {0xFF, 0xFB, 0x90}},
        {"the tag at the end alone", text("TAG") + Bytes(125)},
        {"frame headers that repeat every four bytes", [] {
             Bytes bytes;
             for (int i = 0; i < 100000; ++i)
                 bytes = std::move(bytes) + Bytes{0xFF, 0xFB, 0x00, uint8_t(i % 2)};
             return bytes;
         }()}};
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const auto begin = std::chrono::steady_clock::now();
        const int64_t frames = framesOf(bytes);
        EXPECT_LE(frames, 0);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    }
}

TEST(BadInput, ADamagedStreamPlaysAsFarAsItGoes)
{
    const int whole = 88200;
    Mp3Options options;
    options.infoFrame = false;
    const Bytes mp3 = mp3File(44100, 2, tone(44100, 2, whole), options);
    const Bytes withInfo = mp3File(44100, 2, tone(44100, 2, whole));
    const auto part = [](const Bytes& bytes, double from, double to) {
        return Bytes(bytes.begin() + std::ptrdiff_t(double(bytes.size()) * from),
                     bytes.begin() + std::ptrdiff_t(double(bytes.size()) * to));
    };
    Bytes scratched = mp3;
    for (size_t i = 0; i < scratched.size(); i += 997)
        scratched[i] = uint8_t(scratched[i] ^ 0x5A);
    const int frame = 1152;
    struct Case {
        const char* name;
        Bytes file;
        int64_t least, most;
    };
    const Case cases[] = {
        {"the second half missing", part(mp3, 0, 0.5), whole / 2 - 3 * frame, whole / 2 + 3 * frame},
        {"the second half missing although the head tells of it", part(withInfo, 0, 0.5), whole / 2 - 4 * frame, whole / 2 + 4 * frame},
        {"begins in the middle of a frame", part(mp3, 0.3333, 1), whole * 2 / 3 - 4 * frame, whole * 2 / 3 + 4 * frame},
        {"64 KiB of zeros in front", Bytes(65536) + mp3, whole, whole + 4 * frame},
        {"noise in front", noise(50000) + mp3, whole, whole + 8 * frame},
        {"64 KiB of zeros in the middle", part(mp3, 0, 0.5) + Bytes(70000) + part(mp3, 0.5, 1), whole - 4 * frame, whole + 4 * frame},
        {"noise in the middle", part(mp3, 0, 0.5) + noise(30000) + part(mp3, 0.5, 1), whole - 4 * frame, whole + 60 * frame}, // some of it looks like frames
        {"noise behind", mp3 + noise(30000), whole, whole + 60 * frame},
        {"scratched", scratched, whole / 2, whole + 20 * frame},
        {"two files joined", withInfo + withInfo, 2 * whole - 2 * frame, 2 * whole + 6 * frame},
        {"two files of different rates joined", mp3 + mp3File(48000, 1, tone(48000, 1, 96000), options), 2 * whole - 8 * frame, 2 * whole + 8 * frame},
        {"the end of RMP cut off", part(rmpFile(mp3), 0, 0.5), whole / 2 - 3 * frame, whole / 2 + 3 * frame}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const int64_t frames = framesOf(c.file);
        EXPECT_GE(frames, c.least);
        EXPECT_LE(frames, c.most);
    }
}

TEST(BadInput, AFileOfASingleFrameIsPlayed)
{
    const Bytes layer1 = layer1File(1);
    EXPECT_EQ(framesOf(layer1), 384);
    Mp3Options options;
    options.infoFrame = false;
    const Bytes mp3 = mp3File(44100, 2, tone(44100, 2, 5000), options);
    const auto offsets = frameOffsets(mp3);
    EXPECT_EQ(framesOf(Bytes(mp3.begin(), mp3.begin() + std::ptrdiff_t(offsets[1]))), 1152);
}

TEST(BadInput, TheInterfaceRefusesNonsenseWithANumber)
{
    TempDir dir;
    writeBytes(dir.path("text.mp3"), text("no sound at all"));
    EXPECT_EQ(vbmp3_open(dir.path("text.mp3").c_str(), nullptr), 0) << "before init";
    ASSERT_EQ(vbmp3_init(), 1);
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    struct Case {
        std::string path;
        int error;
    };
    for (const Case& c : {Case{dir.path("text.mp3"), VBMP3_ERROR_FORMAT}, Case{dir.path("missing"), VBMP3_ERROR_NOT_FOUND},
                          Case{dir.path(""), VBMP3_ERROR_NOT_FOUND}, Case{"", VBMP3_ERROR_NOT_FOUND}}) {
        EXPECT_EQ(vbmp3_open(c.path.c_str(), &info), 0);
        EXPECT_EQ(vbmp3_getLastErrorNo(), c.error) << c.path;
        EXPECT_EQ(vbmp3_getFileType(c.path.c_str()), -c.error) << c.path;
    }
    EXPECT_EQ(vbmp3_open(nullptr, nullptr), 0);
    EXPECT_EQ(vbmp3_play(), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_NOT_OPEN);
    EXPECT_EQ(vbmp3_setOutput(-1, 10), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_ARGUMENT);
    vbmp3_free();
    vbmp3_free();
    EXPECT_EQ(vbmp3_getState(nullptr), 0);
}

TEST(BadInput, ARecordOfAnOlderCallerIsNotWrittenBeyondItsSize)
{
    TempDir dir;
    writeBytes(dir.path("a.wav"), waveFile(44100, 2, tone(44100, 2, 66150)));
    ASSERT_EQ(vbmp3_init(), 1);
    vbmp3_FileInfo info;
    std::fill_n(reinterpret_cast<uint8_t*>(&info), sizeof info, uint8_t(0xCD));
    info.size = 16;
    ASSERT_EQ(vbmp3_open(dir.path("a.wav").c_str(), &info), 1);
    EXPECT_EQ(info.seconds, 1);
    EXPECT_EQ(info.milliseconds, 500);
    EXPECT_EQ(info.size, 16u);
    EXPECT_EQ(uint8_t(info.frames), 0xCD);
    vbmp3_free();
}

} // namespace
} // namespace vbmp3::test
