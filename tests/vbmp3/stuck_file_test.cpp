// Files that stop answering, as those of a share that has gone do: nobody waits for them but the thread that reads, and
// what comes back late changes nothing.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include "libraries/vbmp3/interface/library.h"
#include "tests/vbmp3/support.h"

namespace vbmp3::test {
namespace {

class StuckFile : public testing::Test {
  protected:
    void SetUp() override { StartLibrary(share_->opener()); }
    void TearDown() override {
        share_->hangs = false;
        vbmp3_free();
        EXPECT_TRUE(Eventually([&] { return SideThread::leftBehind() == 0 && share_->held == 0; }));
    }
    static void inTime(const char* what, const std::function<void()>& call) {
        const auto begin = std::chrono::steady_clock::now();
        call();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4))
            << what;  // not the file's own time
    }
    bool plays() {
        const int64_t from = vbmp3_getPositionMs();
        return Eventually([&] { return vbmp3_getState(nullptr) == 1 && vbmp3_getPositionMs() > from + 50; });
    }

    TempDir dir_;
    const std::shared_ptr<Share> share_ = std::make_shared<Share>();
    const std::string near_ = dir_.write("near.wav", WaveFile(44100, 2, ToneOf(44100, 2, 10 * 44100)));
    const std::string far_ = dir_.write("far.wav", WaveFile(44100, 2, ToneOf(44100, 2, 60 * 44100)));
};

TEST_F(StuckFile, IsWaitedForByNoCall) {
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(vbmp3_open(far_.c_str(), nullptr), 1);
        ASSERT_EQ(vbmp3_play(), 1);
        ASSERT_TRUE(plays());
        share_->hangs = true;
        ASSERT_EQ(vbmp3_seek(40), 1);
        ASSERT_TRUE(Eventually([&] { return share_->inside == round + 1; }));
        inTime("seek", [] { EXPECT_EQ(vbmp3_seek(20), 1); });
        inTime("play", [] { EXPECT_EQ(vbmp3_play(), 1); });
        inTime("next file", [&] { EXPECT_EQ(vbmp3_setNextFile(near_.c_str()), 1); });
        inTime("stop", [] { EXPECT_EQ(vbmp3_stop(), 1); });
        inTime("close", [] { vbmp3_close(); });
        inTime("open", [&] { EXPECT_EQ(vbmp3_open(near_.c_str(), nullptr), 1); });
        inTime("play", [] { EXPECT_EQ(vbmp3_play(), 1); });
        EXPECT_TRUE(plays()) << "another thread has taken over";
        inTime("next file", [&] { EXPECT_EQ(vbmp3_setNextFile(far_.c_str()), 1); });
        EXPECT_TRUE(Eventually([&] { return vbmp3_setNextFile(dir_.path("missing").c_str()) == 0; }));
        if (round == 2) inTime("free", vbmp3_free);
        share_->hangs = false;
        ASSERT_TRUE(Eventually([&] { return SideThread::leftBehind() == 0; }));
        share_->inside = round + 1;
    }
}

TEST_F(StuckFile, ThatComesBackAfterANewerOrderChangesNothing) {
    const std::pair<const char*, std::function<void()>> orders[] = {
        {"another open",
         [&] {
             EXPECT_EQ(vbmp3_open(near_.c_str(), nullptr), 1);
             EXPECT_EQ(vbmp3_play(), 1);
         }},
        {"close", vbmp3_close},
        {"free", vbmp3_free},
        {"a library begun anew", [&] { vbmp3_free(), StartLibrary(share_->opener()), vbmp3_close(); }}};
    for (const auto& [name, order] : orders) {
        SCOPED_TRACE(name);
        StartLibrary(share_->opener());
        share_->hangs = true;
        int result = -1, error = -1;
        vbmp3_FileInfo info{};
        info.size = sizeof info;
        std::thread opener([&] {
            result = vbmp3_open(far_.c_str(), &info);
            error = vbmp3_getLastErrorNo();
        });
        EXPECT_TRUE(Eventually([&] { return share_->inside > 0; }));
        inTime(name, order);
        const int state = vbmp3_getState(nullptr);
        vbmp3_getFileType(dir_.path("missing").c_str());
        share_->hangs = false;
        opener.join();
        share_->inside = 0;
        EXPECT_EQ(result, 0);
        EXPECT_EQ(error, VBMP3_ERROR_SUPERSEDED);
        EXPECT_EQ(info.sampleRate, 0);
        EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_NOT_FOUND) << "every thread has its own";
        EXPECT_EQ(vbmp3_getState(nullptr), state);
        vbmp3_close();
    }
    EXPECT_EQ(vbmp3_init(), 1);
    std::thread([&] { EXPECT_EQ(vbmp3_open(near_.c_str(), nullptr), 1); }).join();
    EXPECT_EQ(vbmp3_play(), 1) << "what another thread has opened is the caller's";
}

TEST_F(StuckFile, IsLeftBehindByAJobToo) {
    std::atomic<int> told = 0;
    std::atomic<bool> ended = false;
    Jobs jobs([&] { ++told; });
    share_->hangs = true;
    const auto work = [&](JobControl&) {
        share_->wait();
        ended = true;
        return VBMP3_OK;
    };
    ASSERT_TRUE(jobs.start(work));
    jobs.cancel();
    EXPECT_EQ(jobs.state(), Jobs::State::None);
    EXPECT_EQ(SideThread::leftBehind(), 1);
    share_->hangs = false;
    ASSERT_TRUE(Eventually([&] { return ended.load(); }));
    EXPECT_TRUE(jobs.start([](JobControl&) { return VBMP3_OK; }));
    EXPECT_TRUE(Eventually([&] { return told == 1; })) << "of what was cancelled nothing is told";
}

TEST(Interface, OpensATrackOnceForItsSoundItsTagsAndItsLyrics) {
    const TempDir dir;
    const std::string tag = "LYRICSBEGIN[00:01]one\r\nLYRICSEND";
    const auto share = std::make_shared<Share>();
    StartLibrary(share->opener());
    const std::string path =
        dir.write("a.mp3", Mp3File(44100, 2, ToneOf(44100, 2, 20000)) + Text(tag + "TAGname" + std::string(121, '\0')));
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    EXPECT_EQ(vbmp3_open(dir.write("text.mp3", Text("no sound at all")).c_str(), &info), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_FORMAT);
    EXPECT_EQ(vbmp3_play(), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_NOT_OPEN);
    ASSERT_EQ(vbmp3_open(path.c_str(), &info), 1);
    std::filesystem::remove(path);
    EXPECT_STREQ(info.title, "name");
    std::vector<char> raw(VBMP3_LYRICS_TEXT), words(VBMP3_LYRICS_TEXT);
    EXPECT_EQ(vbmp3_readLyrics3Data(raw.data(), words.data()), 1);
    EXPECT_STREQ(words.data(), "[00:01]one");
    const auto lyrics = std::make_unique<vbmp3_Lyrics3Info>();
    lyrics->size = sizeof *lyrics;
    EXPECT_EQ(vbmp3_getFileLyrics3InfoVB(path.c_str(), lyrics.get()), 1);
    EXPECT_EQ(share->opens, 2);
    vbmp3_close();
    EXPECT_EQ(share->held, 0);
    vbmp3_free();
}

}  // namespace
}  // namespace vbmp3::test
