// Everything that a caller can do to the library, in any order, with a device and a share that get into trouble:
// nothing may hang, race or leave a half-written file.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "libraries/vbmp3/interface/library.h"
#include "tests/vbmp3/mpeg_files.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

TEST(WholeInterface, AnyOrderOfCallsIsAnswered) {
    TempDir dir;
    const std::vector<std::pair<std::string, Bytes>> files = {
        {"a.mp3", mp3File(44100, 2, tone(44100, 2, 60000))},
        {"b.mp3", mp3File(22050, 1, tone(22050, 1, 30000), {.bitRate = 0})},
        {"c.wav", waveFile(44100, 2, tone(44100, 2, 70000))},
        {"d.wav", waveFile(48000, 1, tone(48000, 1, 50000))},
        {"junk.mp3", Bytes(3000, 'x')}};
    std::vector<std::string> paths;
    for (const auto& [name, bytes] : files) paths.push_back(dir.write(name, bytes));
    const std::string lyrics = dir.write("a.lrc", text("[00:00.10]one\n[00:00.60]two\n[00:01.20]three\n"));
    const std::string target = dir.path("out.wav"), encoded = dir.path("out.mp3");

    const unsigned seed = randomSeed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto below = [&](int limit) { return int(random() % unsigned(limit)); };
    const auto file = [&] { return paths[size_t(below(int(paths.size())))].c_str(); };
    std::atomic<int> events = 0;
    const std::string distant = dir.write("far.mp3", files[1].second);
    const auto share = std::make_shared<Share>();
    const auto plug = std::make_shared<Plug>();
    std::thread opener;
    const auto answer = [&] {
        share->hangs = false;
        if (opener.joinable()) opener.join();
    };
    const auto begin = [&] {
        startLibrary(share->opener(), plugSystem(plug));
        vbmp3_setListener([](int32_t, void* count) { ++*static_cast<std::atomic<int>*>(count); }, &events);
    };
    begin();
    vbmp3_LyricsLines lines{};
    lines.size = sizeof lines;
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(randomSeconds());
    int calls = 0;
    auto slowest = std::chrono::steady_clock::duration::zero();
    for (; std::chrono::steady_clock::now() < end; ++calls) {
        const int what = below(38);
        const auto from = std::chrono::steady_clock::now();
        switch (what) {
            case 0:
            case 1: vbmp3_open(file(), &info); break;
            case 2: vbmp3_close(); break;
            case 3:
            case 4:
            case 5: vbmp3_play(); break;
            case 6: vbmp3_stop(); break;
            case 7: vbmp3_pause(); break;
            case 8: vbmp3_restart(); break;
            case 9:
            case 10: vbmp3_seek(below(2000) / 1000.0); break;
            case 11: vbmp3_setNextFile(below(4) == 0 ? nullptr : file()); break;
            case 12:
            case 13: {
                int32_t gains[10];
                for (int32_t& gain : gains) gain = below(241) - 120;
                vbmp3_setEqualizer(below(3) == 0 ? nullptr : gains);
                break;
            }
            case 14: vbmp3_reload(); break;
            case 15: vbmp3_setPitch(below(2) == 0 ? 100 : 50 + below(151)); break;
            case 16: vbmp3_setStepPitch(below(2) == 0 ? 1 : below(8) - 1, 5); break;
            case 17: vbmp3_setOutput(below(2) - 1, 50 + 50 * below(3)); break;
            case 18: vbmp3_getFileInfo(file(), &info); break;
            case 19: vbmp3_setLyricsFile(lyrics.c_str()); break;
            case 20: vbmp3_clearLyrics(); break;
            case 21: vbmp3_decodeWave(file(), target.c_str()); break;
            case 22: vbmp3_playDecodeWave(file(), target.c_str()); break;
            case 23: vbmp3_encodeStop(); break;
            case 24:
                if (vbmp3_encodeOpen(file()) != 0) vbmp3_encodeStart(encoded.c_str());
                break;
            case 25:
                if (below(20) == 0) {  // all anew
                    vbmp3_free();
                    begin();
                }
                break;
            case 26: plug->trouble = below(2) == 0 ? Trouble(below(4)) : Trouble::None; break;
            case 27: share->hangs = below(4) == 0; break;
            case 28: vbmp3_setNextFile(distant.c_str()); break;
            case 29:
                answer();
                opener = std::thread([&, path = below(2) == 0 ? distant : std::string(file())] {
                    vbmp3_FileInfo other{};
                    other.size = sizeof other;
                    vbmp3_open(path.c_str(), &other);
                });
                break;
            default: std::this_thread::sleep_for(std::chrono::milliseconds(below(30))); break;
        }
        if (what <= 28) slowest = std::max(slowest, std::chrono::steady_clock::now() - from);
        int16_t left[256], right[256];
        int32_t levels[32], permille = 0, seconds = 0;
        vbmp3_getWave(left, right, 256);
        vbmp3_getSpectrum(levels, 32);
        vbmp3_getLyrics2(&lines);
        const int state = vbmp3_getState(&seconds);
        ASSERT_TRUE(state >= 0 && state <= 2);
        ASSERT_TRUE(seconds >= 0 && seconds <= 2) << seconds;
        ASSERT_TRUE(vbmp3_getPositionMs() >= 0);
        const int job = vbmp3_getEncodeState(&permille);
        ASSERT_TRUE(job >= 0 && job <= 3);
        ASSERT_TRUE(permille >= 0 && permille <= 1000);
    }
    vbmp3_free();
    answer();
    plug->trouble = Trouble::None;
    EXPECT_TRUE(eventually([&] { return DeviceThread::leftBehind() + SideThread::leftBehind() + share->held == 0; }));
    EXPECT_GT(calls, 20);
    EXPECT_LT(slowest, std::chrono::seconds(4));
    // The sources are as they were, and of files that were begun nothing is left.
    for (const auto& [name, bytes] : files) EXPECT_TRUE(readBytes(dir.path(name)) == bytes) << name;
    std::set<std::string> left = dir.names();
    for (const char* name : {"a.mp3", "b.mp3", "c.wav", "d.wav", "junk.mp3", "far.mp3", "a.lrc", "out.wav", "out.mp3"})
        left.erase(name);
    EXPECT_TRUE(left.empty()) << testing::PrintToString(left);
}

}  // namespace
}  // namespace vbmp3::test
