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

Bytes noise(size_t size) {
    std::mt19937 random(9);
    Bytes bytes(size);
    for (uint8_t& byte : bytes) byte = uint8_t(random());
    return bytes;
}

// From one share of the whole to another.
Bytes part(const Bytes& bytes, double from, double to) {
    const double size = double(bytes.size());
    return Bytes(bytes.begin() + std::ptrdiff_t(size * from), bytes.begin() + std::ptrdiff_t(size * to));
}

// Frames decoded, -1 when the file is refused.
int64_t framesOf(const Bytes& bytes) {
    const auto source = openBytes(bytes);
    return source ? int64_t(readAll(*source).size() / 2) : -1;
}

TEST(BadInput, WhatIsNoSoundIsRefused) {
    std::string words;
    for (int i = 0; i < 4000; ++i) words += "The quick brown fox jumps over the lazy dog. ";
    Bytes headers;
    for (int i = 0; i < 100000; ++i) headers.insert(headers.end(), {0xFF, 0xFB, 0x00, uint8_t(i % 2)});
    const std::pair<const char*, Bytes> cases[] = {
        {"empty", {}},
        {"one byte", {0xFF}},
        {"text", text(words)},
        {"zeros", Bytes(300000)},
        {"all ones", Bytes(300000, 0xFF)},
        {"a tag that claims 256 MB", text("ID3") + Bytes{4, 0, 0, 0x7F, 0x7F, 0x7F, 0x7F}},
        {"a RIFF head only", text("RIFF") + Bytes(8)},
        {"a format chunk that claims 2 GB", text("RIFF\xFF\xFF\xFF\xFFWAVEfmt \xFF\xFF\xFF\x7F")},
        {"RMP without data", riff("RMP3", {})},
        {"WAVE without a format", riff("WAVE", chunk("data", {1, 2, 3, 4}))},
        {"half a frame header", {0xFF, 0xFB, 0x90}},
        {"the tag at the end alone", text("TAG") + Bytes(125)},
        {"frame headers that repeat every four bytes", headers}};
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const auto begin = std::chrono::steady_clock::now();
        const int64_t frames = framesOf(bytes);
        EXPECT_LE(frames, 0);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    }
}

TEST(BadInput, ADamagedStreamPlaysAsFarAsItGoes) {
    const int whole = 88200;
    const Mp3Options options{.infoFrame = false};
    const Bytes mp3 = mp3File(44100, 2, tone(44100, 2, whole), options);
    const Bytes withInfo = mp3File(44100, 2, tone(44100, 2, whole));
    Bytes scratched = mp3;
    for (size_t i = 0; i < scratched.size(); i += 997) scratched[i] = uint8_t(scratched[i] ^ 0x5A);
    const int frame = 1152;
    const Bytes oneFrame(mp3.begin(), mp3.begin() + std::ptrdiff_t(frameOffsets(mp3)[1]));
    struct Case {
        const char* name;
        Bytes file;
        int64_t least, most;
    };
    const Case cases[] = {
        {"the second half missing", part(mp3, 0, 0.5), whole / 2 - 3 * frame, whole / 2 + 3 * frame},
        {"the second half missing although the head tells of it", part(withInfo, 0, 0.5), whole / 2 - 4 * frame,
         whole / 2 + 4 * frame},
        {"begins in the middle of a frame", part(mp3, 0.3333, 1), whole * 2 / 3 - 4 * frame, whole * 2 / 3 + 4 * frame},
        {"64 KiB of zeros in front", Bytes(65536) + mp3, whole, whole + 4 * frame},
        {"noise in front", noise(50000) + mp3, whole, whole + 8 * frame},
        {"64 KiB of zeros in the middle", part(mp3, 0, 0.5) + Bytes(70000) + part(mp3, 0.5, 1), whole - 4 * frame,
         whole + 4 * frame},
        {"noise in the middle", part(mp3, 0, 0.5) + noise(30000) + part(mp3, 0.5, 1), whole - 4 * frame,
         whole + 60 * frame},  // some of it looks like frames
        {"noise behind", mp3 + noise(30000), whole, whole + 60 * frame},
        {"scratched", scratched, whole / 2, whole + 20 * frame},
        {"two files joined", withInfo + withInfo, 2 * whole - 2 * frame, 2 * whole + 6 * frame},
        {"two files of different rates joined", mp3 + mp3File(48000, 1, tone(48000, 1, 96000), options),
         2 * whole - 8 * frame, 2 * whole + 8 * frame},
        {"the end of RMP cut off", part(rmpFile(mp3), 0, 0.5), whole / 2 - 3 * frame, whole / 2 + 3 * frame},
        {"a single frame", oneFrame, frame, frame},
        {"a single frame of layer 1", layer1File(1), 384, 384}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const int64_t frames = framesOf(c.file);
        EXPECT_GE(frames, c.least);
        EXPECT_LE(frames, c.most);
    }
}

TEST(BadInput, TheInterfaceRefusesNonsenseWithANumber) {
    TempDir dir;
    const std::string noSound = dir.write("text.mp3", text("no sound at all"));
    EXPECT_EQ(vbmp3_open(noSound.c_str(), nullptr), 0) << "before init";
    ASSERT_EQ(vbmp3_init(), 1);
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    struct Case {
        std::string path;
        int error;
    };
    for (const Case& c : {Case{noSound, VBMP3_ERROR_FORMAT}, Case{dir.path("missing"), VBMP3_ERROR_NOT_FOUND},
                          Case{dir.path(), VBMP3_ERROR_NOT_FOUND}, Case{"", VBMP3_ERROR_NOT_FOUND}}) {
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

}  // namespace
}  // namespace vbmp3::test
