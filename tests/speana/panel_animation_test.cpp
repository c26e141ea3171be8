#include "speana/panel_animation.h"

#include <gtest/gtest.h>

#include "app/global_state.h"
#include "forms/form.h"
#include "tests/fakes/fake_options.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"
#include "tests/speana/sound.h"

namespace quenlox {
namespace {

struct Panel {
    GlobalState state;
    FakeOptions options;
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
        state.MediaKind = kMp3;
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

TEST(PanelAnimation, ItRunsWhileSoundIsHeardAndRestsSoonAfter) {
    Panel p;
    for (int n = 1; n < 10; ++n) {
        p.hear(n);
        EXPECT_EQ(p.refreshes(1), 1) << n;
    }
    for (const int view : {0, 30, 14, 44, 50}) {
        p.state.ViewType = view;
        p.state.PlayerStatus = kPlay;
        p.refreshes(5);
        p.state.PlayerStatus = kStop;
        EXPECT_GT(p.refreshes(20), 0) << view;   // what was seen dies away
        p.refreshes(80);
        EXPECT_EQ(p.refreshes(50), 0) << view;
    }
}

TEST(PanelAnimation, NothingIsAskedOrDrawnWithoutReason) {
    struct Case {
        const char* what;
        void (*set)(Panel&);
    };
    const Case cases[] = {
        {"hidden", [](Panel& p) { p.display.setVisible(false); }},
        {"an unknown view", [](Panel& p) { p.state.ViewType = 77; }},
    };
    for (const Case& c : cases) {
        Panel p;
        p.refreshes(1);
        c.set(p);
        p.refreshes(1);
        EXPECT_EQ(p.refreshes(20), 0) << c.what;
    }
    Panel midi;
    midi.state.MediaKind = kMidi;
    midi.refreshes(100);
    EXPECT_EQ(midi.refreshes(20), 0);
}

TEST(PanelAnimation, ASkinThatEmptiesTheDisplayGetsThePictureBackAtRest) {
    Panel p;
    p.state.PlayerStatus = kStop;
    p.refreshes(150);
    const Surface frame = p.display.surface();
    p.display.surface().resize(85, 30);
    EXPECT_EQ(p.refreshes(1), 1);
    EXPECT_EQ(p.display.surface(), frame);
}

TEST(PanelAnimation, ClicksAreSeenAtOnceAlsoWhileNothingPlays) {
    Panel p;
    p.refreshes(1);
    p.state.PlayerStatus = kStop;
    p.refreshes(150);
    p.state.ViewType = 7;
    p.refreshes(1);
    p.panel.clicked(1);
    EXPECT_EQ(p.state.ViewType, 8);
    const Surface rest = p.display.surface();
    p.panel.clicked(2);
    EXPECT_EQ(p.state.ViewType, 10);
    EXPECT_NE(p.display.surface(), rest);
}

TEST(PanelAnimation, TheViewChangesByItselfAfterTheChosenTimeOfSound) {
    Panel p;
    p.options.values.spectrumIntro = 3;  // six seconds
    p.refreshes(6000 / 80 - 1);
    EXPECT_EQ(p.state.ViewType, 0);
    p.refreshes(1);
    EXPECT_EQ(p.state.ViewType, 11);
    p.state.PlayerStatus = kPause;
    p.refreshes(200);
    EXPECT_EQ(p.state.ViewType, 11);
    p.options.values.spectrumIntro = 0;
    p.state.PlayerStatus = kPlay;
    p.refreshes(1000);
    EXPECT_EQ(p.state.ViewType, 11);
}

TEST(PanelAnimation, SpeedAndAnalysisFollowTheirOptions) {
    Panel p;
    for (const auto& [speed, interval] : {std::pair{0, 80}, {5, 50}, {10, 20}, {99, 20}, {-1, 80}}) {
        p.options.values.spectrumSpeed = speed;
        p.panel.followSpeed();
        EXPECT_EQ(p.timer.interval(), interval) << speed;
    }
    p.state.ViewType = 30;
    p.vbmp3.spectrum.assign(85, 700);
    p.refreshes(1);
    const Surface coarse = p.display.surface();
    p.panel.setBands(1);
    p.refreshes(1);
    EXPECT_NE(p.display.surface(), coarse);
}

}  // namespace
}  // namespace quenlox
