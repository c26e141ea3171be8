#include "speana/panel_animation.h"

#include <gtest/gtest.h>

#include "state/global_state.h"
#include "forms/form.h"
#include "state/options.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"
#include "tests/speana/sound.h"

namespace quenlox {
namespace {

struct Panel {
    GlobalState state;
    Options options;
    FakeVbmp3 vbmp3;
    FakeWindowSystem windows;
    Form form{"FormTop", Form::Kind::Dialog};
    PictureBox display{form, "DisplayB"};
    Timer timer{form, "Timer2", 80};
    Label label{form, "mainLabel"};
    PanelAnimation panel{state, options, vbmp3, display, timer, label};

    Panel() {
        form.realise(windows);
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
    // How often the display is brought to the screen by so many frames.
    int refreshes(int frames) {
        auto& changes = windows.hostOf(form)->controlChanges;
        changes.clear();
        for (int n = 0; n < frames; ++n) panel.Timer2_Timer();
        return static_cast<int>(std::ranges::count(changes, std::pair{std::string("DisplayB"), Property::Picture}));
    }
};

struct PanelAnimationTest : testing::Test, Panel {};

TEST_F(PanelAnimationTest, ItRunsWhileSoundIsHeardAndRestsSoonAfter) {
    for (int n = 1; n < 10; ++n) {
        hear(n);
        EXPECT_EQ(refreshes(1), 1) << n;
    }
    for (const int view : {0, 30, 14, 44, 50}) {
        state.ViewType = view;
        state.PlayerStatus = kPlay;
        refreshes(5);
        state.PlayerStatus = kStop;
        EXPECT_GT(refreshes(20), 0) << view;   // what was seen dies away
        refreshes(80);
        EXPECT_EQ(refreshes(50), 0) << view;
    }
}

TEST_F(PanelAnimationTest, NothingIsAskedOrDrawnWithoutReason) {
    const struct {
        const char* what;
        void (*set)(Panel&);
    } cases[] = {
        {"hidden", [](Panel& p) { p.display.setVisible(false); }},
        {"an unknown view", [](Panel& p) { p.state.ViewType = 77; }},
    };
    for (const auto& c : cases) {
        Panel p;
        p.refreshes(1);
        c.set(p);
        p.refreshes(1);
        EXPECT_EQ(p.refreshes(20), 0) << c.what;
    }
    Panel midi;
    midi.state.MediaKind = {kMidi};
    midi.refreshes(100);
    EXPECT_EQ(midi.refreshes(20), 0);
}

TEST_F(PanelAnimationTest, ASkinThatEmptiesTheDisplayGetsThePictureBackAtRest) {
    state.PlayerStatus = kStop;
    refreshes(150);
    const Surface frame = display.surface();
    display.surface().resize(85, 30);
    EXPECT_EQ(refreshes(1), 1);
    EXPECT_EQ(display.surface(), frame);
}

TEST_F(PanelAnimationTest, ClicksAreSeenAtOnceAlsoWhileNothingPlays) {
    refreshes(1);
    state.PlayerStatus = kStop;
    refreshes(150);
    state.ViewType = 7;
    refreshes(1);
    panel.clicked(1);
    EXPECT_EQ(state.ViewType, 8);
    const Surface rest = display.surface();
    panel.clicked(2);
    EXPECT_EQ(state.ViewType, 10);
    EXPECT_NE(display.surface(), rest);
}

TEST_F(PanelAnimationTest, TheViewChangesByItselfAfterTheChosenTimeOfSound) {
    options.SpectrumIntro = 3;  // six seconds
    refreshes(6000 / 80 - 1);
    EXPECT_EQ(state.ViewType, 0);
    refreshes(1);
    EXPECT_EQ(state.ViewType, 11);
    state.PlayerStatus = kPause;
    refreshes(200);
    EXPECT_EQ(state.ViewType, 11);
    options.SpectrumIntro = 0;
    state.PlayerStatus = kPlay;
    refreshes(1000);
    EXPECT_EQ(state.ViewType, 11);
}

TEST_F(PanelAnimationTest, SpeedAndAnalysisFollowTheirOptions) {
    for (const auto& [speed, interval] : {std::pair{0, 80}, {5, 50}, {10, 20}, {99, 20}, {-1, 80}}) {
        options.SpectrumSpeed = speed;
        panel.followSpeed();
        EXPECT_EQ(timer.interval(), interval) << speed;
    }
    state.ViewType = 30;
    vbmp3.spectrum.assign(85, 700);
    refreshes(1);
    const Surface coarse = display.surface();
    panel.setBands(1);
    refreshes(1);
    EXPECT_NE(display.surface(), coarse);
}

}  // namespace
}  // namespace quenlox
