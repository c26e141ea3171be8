// Jobs of the decoding library: to WAVE, to WAVE while playing, and to MP3 with the system's codec.
#include "tests/convert/convert_fixture.h"

namespace quenlox {
namespace {

TEST_F(ConvertTest, ADecodeRunsInTheBackgroundUntilTheTimerFindsItDone) {
    vbmp3.addFile("C:\\a.mp3");
    choose(0, {"C:\\a.mp3"}, "C:\\b.wav");
    form.Command4.click();
    EXPECT_EQ(vbmp3.count("decode C:\\a.mp3 > C:\\b.wav"), 1);
    EXPECT_EQ(state.PlayerStatus, kDecode);
    EXPECT_TRUE(polling);
    EXPECT_TRUE(form.decodesUnheard());
    EXPECT_EQ(form.Command4.caption(), "中止");
    vbmp3.encodeState = 1;
    vbmp3.encodePermille = 420;
    form.Timer7_Timer();
    EXPECT_EQ(form.Progress.value(), 420);
    EXPECT_EQ(form.LabelProgress.caption(), "a.mp3");
    vbmp3.encodeState = 2;
    form.Timer7_Timer();
    EXPECT_EQ(state.PlayerStatus, kStop);
    EXPECT_EQ(state.CurrentFile, "C:\\b.wav");
    EXPECT_TRUE(noted("refresh"));
    EXPECT_FALSE(form.Command4.enabled());
    expectIdle();
    form.Timer7_Timer();
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ConvertTest, WhilePlayingTheRunEndsWithTheSound) {
    vbmp3.addFile("C:\\a.mp3");
    vbmp3.addFile("C:\\b.rmp", VBMP3_TYPE_RMP);
    choose(1, {"C:\\a.mp3", "C:\\b.rmp"});
    form.Command4.click();
    EXPECT_EQ(vbmp3.count("playDecode C:\\a.mp3 > C:\\a.wav"), 1);
    EXPECT_TRUE(noted("open C:\\a.mp3"));
    EXPECT_EQ(state.PlayerStatus, kDecode);
    EXPECT_FALSE(form.decodesUnheard());
    vbmp3.encodeState = 2;
    form.Timer7_Timer();  // everything is decoded, not everything heard
    EXPECT_TRUE(form.running());
    EXPECT_EQ(vbmp3.count("playDecode C:\\b.rmp > C:\\b.wav"), 0);
    state.PlayerStatus = kStop;  // as the end of a track leaves it
    form.decodeEnded();
    EXPECT_EQ(vbmp3.count("playDecode C:\\b.rmp > C:\\b.wav"), 1);
    EXPECT_EQ(state.PlayerStatus, kDecode);
    state.PlayerStatus = kStop;
    form.decodeEnded();
    EXPECT_EQ(state.PlayerStatus, kStop);
    EXPECT_EQ(state.CurrentFile, "C:\\b.wav");
    expectIdle();
}

TEST_F(ConvertTest, WithoutGogoTheSystemsCodecEncodes) {
    gogo.there = false;
    form.Form_Load();
    choose(2, {"C:\\a.wav"});
    form.Command4.click();
    EXPECT_EQ(vbmp3.count("encodeOpen C:\\a.wav"), 1);
    EXPECT_EQ(vbmp3.count("encodeStart C:\\a.mp3"), 1);
    EXPECT_EQ(state.PlayerStatus, kEncode);
    EXPECT_TRUE(gogo.configuration.empty());
    vbmp3.encodeState = 2;
    form.Timer7_Timer();
    EXPECT_EQ(state.CurrentFile, "C:\\a.mp3");
    expectIdle();
}

TEST_F(ConvertTest, AJobThatDoesNotStartShowsWhy) {
    vbmp3.addFile("C:\\a.mp3");
    vbmp3.addFile("C:\\w.mp3", VBMP3_TYPE_WAVE);
    const struct {
        int option;
        const char* source;
        int error;
        const char* message;
    } cases[] = {{0, "C:\\none.mp3", VBMP3_ERROR_WRITE, "デコードファイルが不正です"},
                 {0, "C:\\w.mp3", VBMP3_OK, "デコードファイルが不正です"},
                 {1, "C:\\a.mp3", VBMP3_ERROR_FORMAT, "デコードファイルが不正です"},
                 {1, "C:\\a.mp3", VBMP3_ERROR_NOT_FOUND, "デコードファイルが不正です"},
                 {0, "C:\\a.mp3", VBMP3_ERROR_WRITE, "変換エラー"},
                 {1, "C:\\a.mp3", VBMP3_ERROR_DEVICE_BUSY, "変換エラー"},
                 {2, "C:\\s.wav", VBMP3_ERROR_FORMAT, "エンコードファイルが不正です"},
                 {2, "C:\\s.wav", VBMP3_ERROR_NO_CODEC, "コーデックがありません"},
                 {2, "C:\\s.wav", VBMP3_ERROR_SAME_FILE, "変換エラー"}};
    gogo.there = false;
    vbmp3.jobsWork = false;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.option << " " << c.source << " " << c.error);
        dialogs.messages.clear();
        vbmp3.error = c.error;
        choose(c.option, {c.source});
        form.Command4.click();
        expectMessage(c.message);
    }
}

TEST_F(ConvertTest, AJobThatFailsOnTheWayShowsWhy) {
    vbmp3.addFile("C:\\a.mp3");
    for (const int option : {0, 1}) {
        dialogs.messages.clear();
        choose(option, {"C:\\a.mp3"});
        form.Command4.click();
        vbmp3.encodeState = 3;
        vbmp3.error = VBMP3_ERROR_WRITE;
        form.Timer7_Timer();
        expectMessage("変換エラー");
        EXPECT_EQ(form.LabelProgress.caption(), "a.mp3: 保存先に書き込めません");
    }
}

TEST_F(ConvertTest, CancellingStopsTheJob) {
    vbmp3.addFile("C:\\a.mp3");
    for (const int option : {0, 1}) {
        vbmp3.calls.clear();
        vbmp3.encodeState = 1;
        choose(option, {"C:\\a.mp3"});
        form.Command4.click();
        form.Command4.click();
        EXPECT_EQ(vbmp3.count("encodeStop"), 1);
        EXPECT_EQ(state.PlayerStatus, kStop);
        EXPECT_EQ(notes.back(), "status 0");
        EXPECT_TRUE(form.Command4.enabled());
        expectIdle();
    }
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ConvertTest, StoppingFromTheMainWindowEndsTheJobToo) {
    vbmp3.addFile("C:\\a.mp3");
    vbmp3.encodeState = 1;
    choose(0, {"C:\\a.mp3"});
    form.Command4.click();
    state.PlayerStatus = kPlay;
    notes.clear();
    form.Timer7_Timer();
    EXPECT_EQ(vbmp3.count("encodeStop"), 1);
    EXPECT_EQ(state.PlayerStatus, kPlay);
    EXPECT_TRUE(notes.empty());
    expectIdle();
}

}  // namespace
}  // namespace quenlox
