#include "speana/panel_animation.h"

#include <gtest/gtest.h>

#include "state/global_state.h"
#include "state/options.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/speana/sound.h"

namespace quenlox {
namespace {

struct FakeScreen : PanelScreen {
    bool seen() const override { return visible; }
    Color accent() const override { return {}; }
    void show(const Surface& frame) override {
        changes += shown != frame;
        shown = frame;
    }
    void setInterval(int milliseconds) override { interval = milliseconds; }

    bool visible = true;
    Surface shown;
    int changes = 0, interval = 80;
};

struct PanelAnimationTest : testing::Test {
    GlobalState state;
    Options options;
    FakeVbmp3 vbmp3;
    FakeScreen screen;
    PanelAnimation panel{state, options, vbmp3, screen};

    PanelAnimationTest() {
        state.PlayerStatus = kPlay;
        state.MediaKind = {kMp3};
        hear(1);
    }
    void hear(int n) {
        const SoundFrame sound = SoundOf(n);
        vbmp3.waveLeft.assign(sound.left.begin(), sound.left.end());
        vbmp3.waveRight.assign(sound.right.begin(), sound.right.end());
        vbmp3.spectrum.assign(sound.levels.begin(), sound.levels.begin() + sound.bands);
    }
    // How often the picture becomes another one in so many frames.
    int changes(int frames) {
        const int before = screen.changes;
        for (int n = 0; n < frames; ++n) panel.drawFrame();
        return screen.changes - before;
    }
};

TEST_F(PanelAnimationTest, ItRunsWhileSoundIsHeardAndRestsSoonAfter) {
    for (int n = 1; n < 10; ++n) {
        hear(n);
        EXPECT_EQ(changes(1), 1) << n;
    }
    for (const int view : {0, 30, 14, 44, 50}) {
        state.ViewType = view;
        state.PlayerStatus = kPlay;
        changes(5);
        state.PlayerStatus = kStop;
        EXPECT_GT(changes(20), 0) << view;   // what was seen dies away
        changes(80);
        EXPECT_EQ(changes(50), 0) << view;
    }
    state.MediaKind = {kMidi};
    state.PlayerStatus = kPlay;
    EXPECT_EQ(changes(20), 0) << "the library does not play it";
    screen.shown = {};
    EXPECT_EQ(changes(1), 1) << "a new skin gets the picture back at rest";
}

TEST_F(PanelAnimationTest, NothingIsAskedForWhileNobodySees) {
    changes(1);
    screen.visible = false;
    hear(2);
    EXPECT_EQ(changes(20), 0);
}

TEST_F(PanelAnimationTest, ClicksAreSeenAtOnceAlsoWhileNothingPlays) {
    changes(1);
    state.PlayerStatus = kStop;
    changes(150);
    state.ViewType = 7;
    changes(1);
    panel.clicked(1);
    EXPECT_EQ(state.ViewType, 8);
    const Surface rest = screen.shown;
    panel.clicked(2);
    EXPECT_EQ(state.ViewType, 10);
    EXPECT_NE(screen.shown, rest);
}

TEST_F(PanelAnimationTest, TheViewChangesByItselfAfterTheChosenTimeOfSound) {
    options.SpectrumIntro = 3;  // six seconds
    changes(6000 / 80 - 1);
    EXPECT_EQ(state.ViewType, 0);
    changes(1);
    EXPECT_EQ(state.ViewType, 11);
    state.PlayerStatus = kPause;
    changes(200);
    EXPECT_EQ(state.ViewType, 11);
    options.SpectrumIntro = 0;
    state.PlayerStatus = kPlay;
    changes(1000);
    EXPECT_EQ(state.ViewType, 11);
}

TEST_F(PanelAnimationTest, SpeedAndAnalysisFollowTheirOptions) {
    for (const auto& [speed, interval] : {std::pair{0, 80}, {5, 50}, {10, 20}, {99, 20}, {-1, 80}}) {
        options.SpectrumSpeed = speed;
        panel.followSpeed();
        EXPECT_EQ(screen.interval, interval) << speed;
    }
    state.ViewType = 30;
    vbmp3.spectrum.assign(85, 700);
    changes(1);
    const Surface coarse = screen.shown;
    panel.setBands(1);
    changes(1);
    EXPECT_NE(screen.shown, coarse);
}

}  // namespace
}  // namespace quenlox
