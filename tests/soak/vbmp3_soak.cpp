// The decoding library: nothing may hang, race, tell too much or leave a half-written file, whatever is asked of it and
// whatever gets into trouble; and what follows without a gap loses no frame.
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

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Bytes changed, a piece zeroed, missing or twice.
Bytes Damaged(Bytes bytes, std::mt19937& random) {
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size());
    const auto end = at + std::min<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(random() % 5000), bytes.end() - at);
    switch (random() % 4) {
        case 0:
            for (int i = 0; i < 20; ++i)
                bytes[random() % (i < 5 ? 200 : bytes.size())] = static_cast<uint8_t>(random());
            break;
        case 1: std::fill(at, end, static_cast<uint8_t>(0)); break;
        case 2: bytes.erase(at, end); break;
        default: bytes.insert(at, 100000, static_cast<uint8_t>(random() % 2 == 0 ? 0 : 'x'));
    }
    return bytes;
}

class Soak : public testing::Test {
  protected:
    Soak() {
        const Mp3Options plain{.infoFrame = false};
        const Bytes good = Mp3File(44100, 2, ToneOf(44100, 2, 60000));
        write("a.mp3", good);
        write("b.mp3", Mp3File(22050, 1, ToneOf(22050, 1, 30000), {.bitRate = 0}));
        write("c.wav", WaveFile(44100, 2, ToneOf(44100, 2, 70000)));
        write("d.wav", WaveFile(48000, 1, ToneOf(48000, 1, 50000)));
        write("junk.mp3", Bytes(3000, 'x'));
        write("rates.mp3",
              Mp3File(44100, 2, ToneOf(44100, 2, 20000), plain) + Mp3File(48000, 2, ToneOf(48000, 2, 20000), plain));
        for (int i = 0; i < 6; ++i)
            write("damaged" + std::to_string(i) + (i % 3 == 0 ? ".wav" : ".mp3"),
                  Damaged(contents_[i % 3 == 0 ? "c.wav" : "a.mp3"], random));
        write("far.mp3", good);
    }
    void write(const std::string& name, const Bytes& bytes) {
        contents_[name] = bytes;
        paths_.push_back(dir_.write(name, bytes));
    }
    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    static vbmp3_FileInfo record() {
        vbmp3_FileInfo record{};
        record.size = sizeof record;
        return record;
    }
    // Not the last, which is far: whoever opens that one waits for it.
    const char* file() { return paths_[static_cast<size_t>(below(static_cast<int>(paths_.size()) - 1))].c_str(); }
    void begin() {
        StartLibrary(share_->opener(), PlugSystem(plug_));
        listen();
    }
    void listen() {
        vbmp3_setListener([](int32_t event, void* self) { ++static_cast<Soak*>(self)->events_[event]; }, this);
    }
    void answer() {
        share_->hangs = false;
        if (opener_.joinable()) opener_.join();
    }
    bool order(int what);
    void change(int what);
    void look(bool moved);

    unsigned seed_ = RandomSeed();
    std::mt19937 random{seed_};
    TempDir dir_;
    std::map<std::string, Bytes> contents_;
    std::vector<std::string> paths_;
    const std::shared_ptr<Share> share_ = std::make_shared<Share>();
    const std::shared_ptr<Plug> plug_ = std::make_shared<Plug>();
    std::thread opener_;
    std::array<std::atomic<int>, 8> events_{};
    int plays_ = 0, nexts_ = 0, jobs_ = 0;  // that were asked for
    int64_t position_ = 0;
    int told_ = 0;
    vbmp3_FileInfo info_ = record();
};

// What moves the position; false: nothing of that.
bool Soak::order(int what) {
    switch (what) {
        case 0:
        case 1: vbmp3_open(file(), &info_); return true;
        case 2: vbmp3_close(); return true;
        case 3:
        case 4:
        case 5: plays_ += vbmp3_play(); return true;
        case 6: vbmp3_stop(); return true;
        case 7:
        case 8: vbmp3_seek(below(2000) / 1000.0); return true;
        case 9: ++plays_, jobs_ += vbmp3_playDecodeWave(file(), dir_.path("out.wav").c_str()); return true;
        case 10:
            if (below(10) == 0) vbmp3_free(), begin();
            return true;
        case 11:
            answer();
            opener_ = std::thread([this, path = below(2) == 0 ? dir_.path("far.mp3") : std::string(file())] {
                vbmp3_FileInfo other = record();
                vbmp3_open(path.c_str(), &other);
            });
            return true;
        default: return false;
    }
}

void Soak::change(int what) {
    switch (what) {
        case 12: vbmp3_pause(); break;
        case 13: vbmp3_restart(); break;
        case 14:
            nexts_ += vbmp3_setNextFile(below(4) == 0 ? nullptr : below(4) == 0 ? paths_.back().c_str() : file());
            break;
        case 15: {
            int32_t gains[10];
            for (int32_t& gain : gains) gain = below(241) - 120;
            vbmp3_setEqualizer(below(3) == 0 ? nullptr : gains);
            break;
        }
        case 16: vbmp3_reload(); break;
        case 17: vbmp3_setPitch(below(2) == 0 ? 100 : 50 + below(151)); break;
        case 18: vbmp3_setStepPitch(below(2) == 0 ? 1 : below(8) - 1, 5); break;
        case 19: vbmp3_setOutput(below(2) - 1, 50 + 50 * below(3)); break;
        case 20: vbmp3_getFileInfo(file(), &info_); break;
        case 21: jobs_ += vbmp3_decodeWave(file(), dir_.path("out.wav").c_str()); break;
        case 22: vbmp3_encodeStop(); break;
        case 23: plug_->trouble = below(2) == 0 ? Trouble(below(4)) : Trouble::None; break;
        case 24: plug_->busy = below(6) == 0, plug_->openMs = below(3) == 0 ? below(200) : 0; break;
        case 25: share_->hangs = below(4) == 0; break;
        case 26: {
            vbmp3_setListener(nullptr, nullptr);
            const int before = events_[VBMP3_EVENT_END_OF_TRACK] + events_[VBMP3_EVENT_NEXT_TRACK];
            std::this_thread::sleep_for(milliseconds(below(30)));
            EXPECT_EQ(events_[VBMP3_EVENT_END_OF_TRACK] + events_[VBMP3_EVENT_NEXT_TRACK], before);
            listen();
            break;
        }
        default: std::this_thread::sleep_for(milliseconds(below(30))); break;
    }
}

void Soak::look(bool moved) {
    int16_t left[256], right[256];
    int32_t levels[32], permille = 0, seconds = 0;
    vbmp3_getWave(left, right, 256);
    vbmp3_getSpectrum(levels, 32);
    const int state = vbmp3_getState(&seconds);
    ASSERT_TRUE(state >= 0 && state <= 2);
    ASSERT_TRUE(seconds >= 0 && seconds <= 6) << seconds;
    const int64_t position = vbmp3_getPositionMs();
    const auto told = [&] { return events_[VBMP3_EVENT_END_OF_TRACK] + events_[VBMP3_EVENT_NEXT_TRACK]; };
    if (!moved && !opener_.joinable() && position < position_) {
        ASSERT_TRUE(Eventually([&] { return told() != told_; })) << position << " after " << position_;
    }
    told_ = told();
    position_ = position;
    const int job = vbmp3_getEncodeState(&permille);
    ASSERT_TRUE(job >= 0 && job <= 3);
    ASSERT_TRUE(permille >= 0 && permille <= 1000);
    ASSERT_LE(events_[VBMP3_EVENT_END_OF_TRACK], plays_);
    ASSERT_LE(events_[VBMP3_EVENT_NEXT_TRACK], nexts_);
    ASSERT_LE(events_[VBMP3_EVENT_JOB_DONE], jobs_);
}

TEST_F(Soak, AnyOrderOfCallsIsAnsweredAndTellsNoMoreThanHappened) {
    SCOPED_TRACE(seed_);
    begin();
    const auto end = Clock::now() + std::chrono::seconds(RandomSeconds());
    auto slowest = Clock::duration::zero();
    int calls = 0;
    for (; Clock::now() < end && !HasFatalFailure(); ++calls) {
        const int what = below(34);
        const auto from = Clock::now();
        const bool moved = order(what);
        if (!moved) change(what);
        if (what < 26) slowest = std::max(slowest, Clock::now() - from);
        look(moved);
    }
    vbmp3_free();
    answer();
    plug_->trouble = Trouble::None;
    EXPECT_TRUE(Eventually([&] { return DeviceThread::leftBehind() + SideThread::leftBehind() + share_->held == 0; }));
    EXPECT_GT(calls, 20);
    EXPECT_LT(slowest, std::chrono::seconds(4));
    // The sources are as they were, and of files that were begun nothing is left.
    std::set<std::string> left = dir_.names();
    left.erase("out.wav");
    for (const auto& [name, bytes] : contents_) {
        EXPECT_TRUE(ReadBytes(dir_.path(name)) == bytes) << name;
        left.erase(name);
    }
    EXPECT_TRUE(left.empty()) << testing::PrintToString(left);
}

TEST_F(Soak, FilesThatFollowEachOtherLoseNoFrame) {
    SCOPED_TRACE(seed_);
    const auto end = Clock::now() + std::chrono::seconds(RandomSeconds());
    do {
        const auto heard = std::make_shared<Heard>();
        SoundSettings sound;
        Player player(sound, MemorySystem(heard), share_->opener());
        std::vector<int16_t> whole;
        std::vector<std::string> files;
        for (int i = 2 + below(5), rate = 44100; i > 0; --i) {
            if (below(3) == 0) rate = below(2) == 0 ? 48000 : 8000;
            const auto samples = ToneOf(rate, 2, 1 + below(30000), 200 + below(2000));
            whole.insert(whole.end(), samples.begin(), samples.end());
            files.push_back(dir_.write("join" + std::to_string(i) + ".wav", WaveFile(rate, 2, samples)));
        }
        std::atomic<int> nexts = 0, ends = 0;
        player.setListener([&](int event) {
            nexts += event == VBMP3_EVENT_NEXT_TRACK;
            ends += event == VBMP3_EVENT_END_OF_TRACK;
        });
        int tookOver = 0, ended = 0;
        ASSERT_EQ(player.open(files[0]), VBMP3_OK);
        for (size_t i = 1; i < files.size(); ++i) {
            ASSERT_EQ(player.setNext(files[i]), VBMP3_OK);
            if (i == 1) player.play();
            ASSERT_TRUE(Eventually([&] { return nexts > tookOver || ends > ended; }));
            if (nexts > tookOver) {
                ++tookOver;
            } else {  // told too late
                ++ended;
                ASSERT_EQ(player.open(files[i]), VBMP3_OK);
                ASSERT_EQ(player.play(), VBMP3_OK);
            }
        }
        ASSERT_TRUE(Eventually([&] { return ends > ended; }));
        EXPECT_EQ(ToInt16(heard->all()), whole);
    } while (Clock::now() < end);
}

}  // namespace
}  // namespace vbmp3::test
