#include "equalizer/form_gra.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/global_state.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {
namespace {

using testing::ElementsAre;
using Gains = std::array<std::int32_t, 10>;

struct Equalizer {
    explicit Equalizer(std::vector<double> chances = {0.5}) : random(std::move(chances)) {
        state.EqPresetTable[1] = {20, 50, 0, -20, 30, 10, -20, 50, 30, 10};
        state.PlayerStatus = kPlay;
        state.MediaKind = 1203;
        const char* names[] = {"FLAT", "ROCK", "POPS", "LIGHT", "BGM"};
        for (int i = 0; i < 5; ++i) form.geLabel[i].setCaption(names[i]);
    }
    bool anyPreset() const {
        for (int i = 0; i < 5; ++i) {
            if (form.geOption[i].value()) return true;
        }
        return false;
    }

    GlobalState state;
    FakeVbmp3 vbmp3;
    FakeDialogs dialogs;
    FakeRandom random;
    FakeWindowSystem windows;
    FormGra form{state, vbmp3, dialogs, random};
};

TEST(FormGra, ASliderSetsTheGainOfItsBandAndDeselectsThePresets) {
    Equalizer e;
    e.form.Check4.setValue(1);
    e.form.geOption[1].setValue(true);
    e.vbmp3.calls.clear();
    e.form.VScroll[9].setValue(-12);
    EXPECT_EQ(e.vbmp3.equalizer, (Gains{20, 50, 0, -20, 30, 10, -20, 50, 30, 120}));
    EXPECT_THAT(e.vbmp3.calls, ElementsAre("equalizer", "reload"));
    EXPECT_FALSE(e.anyPreset());
}

TEST(FormGra, APresetARandomPatternAndALabelSendOneCall) {
    struct Case {
        void (*act)(FormGra&);
        Gains gains;
        bool preset;
    };
    const Case cases[] = {
        {[](FormGra& f) { f.geOption[1].setValue(true); }, {20, 50, 0, -20, 30, 10, -20, 50, 30, 10}, true},
        {[](FormGra& f) { f.geLabel[1].onClick(); }, {20, 50, 0, -20, 30, 10, -20, 50, 30, 10}, true},
        // 0 and just under 1, both beside the ends; 0.98 gives 12.5, which rounds to 12; 0.5 gives 0.5
        {[](FormGra& f) { f.Command23.click(); }, {120, -120, -120, 0, -10, 120, -120, -120, 0, -10}, false},
    };
    for (const Case& c : cases) {
        Equalizer e({0.0, 0.9999, 0.98, 0.5, 0.52});
        e.form.Check4.setValue(1);
        e.vbmp3.calls.clear();
        c.act(e.form);
        EXPECT_EQ(e.form.gains(), c.gains);
        EXPECT_EQ(e.vbmp3.equalizer, c.gains);
        EXPECT_THAT(e.vbmp3.calls, ElementsAre("equalizer", "reload"));
        EXPECT_EQ(e.anyPreset(), c.preset);
    }
}

TEST(FormGra, TheLibraryIsToldWhatCountsForTheTrackThatSounds) {
    struct Case {
        int kind, status;
        bool reload;
    };
    for (const Case& c : {Case{3, kPlay, true}, {1104, kPause, true}, {3, kStop, false}, {1, kPlay, false},
                          {10, kPlay, false}, {0, kPlay, false}, {3, kLoad, false}}) {
        Equalizer e;
        e.state.MediaKind = c.kind;
        e.state.PlayerStatus = c.status;
        e.form.Check4.setValue(1);
        EXPECT_EQ(e.vbmp3.count("reload"), c.reload) << c.kind << ' ' << c.status;
        EXPECT_EQ(e.vbmp3.count("equalizer"), 1);
    }
}

TEST(FormGra, SwitchedOffItKeepsTheGainsAndSendsNothing) {
    Equalizer e;
    e.form.VScroll[0].setValue(3);
    e.form.Command23.click();
    EXPECT_TRUE(e.vbmp3.calls.empty());
    e.form.Check4.setValue(1);
    e.form.Check4.setValue(0);
    EXPECT_EQ(e.vbmp3.equalizer, std::nullopt);
    EXPECT_THAT(e.vbmp3.calls, ElementsAre("equalizer", "reload", "equalizer off", "reload"));
}

TEST(FormGra, APatternOfTheMenuKeepsTheSlidersUnderItsName) {
    struct Case {
        std::optional<std::string> answer;
        std::string name;
        int gain;
    };
    const Case cases[] = {
        {"夜, 静か ", "夜、 静か", 60},
        {"", "ROCK", 60},
        {std::nullopt, "ROCK", 20},
        {std::string(100, 'x'), std::string(60, 'x'), 60},
    };
    for (const Case& c : cases) {
        Equalizer e;
        e.form.realise(e.windows);
        e.windows.hostOf(e.form)->onPopup = [](const Menu& menu) { menu.items[1].click(); };
        e.form.VScroll[0].setValue(-6);
        e.dialogs.textAnswers.push_back(c.answer);
        e.form.Command2.click();
        EXPECT_EQ(e.form.menuPat.items[2].caption, "POPS");
        EXPECT_EQ(e.form.geLabel[1].caption(), c.name);
        EXPECT_EQ(e.state.EqPresetTable[1][0], c.gain);
    }
}

TEST(FormGra, TheUserOnlyHidesIt) {
    Equalizer e;
    e.form.show();
    e.form.Command1.click();
    EXPECT_FALSE(e.form.visible());
    EXPECT_FALSE(e.form.unloaded());
    e.state.ShuttingDown = true;
    EXPECT_TRUE(e.form.unload());
}

TEST(FormGra, TheCurvePassesTheKnobs) {
    Equalizer e;
    for (int band = 0; band < 10; ++band) e.form.VScroll[band].setBounds({band * 30, 20, 20, 100});
    e.form.geLine.setBounds({0, 0, 300, 25});
    e.form.VScroll[0].setValue(-12);
    e.form.VScroll[9].setValue(12);
    const Surface& curve = e.form.geLine.surface();
    const Surface::Pixel ink = curve.at(11, 0);
    EXPECT_NE(ink, Surface::ToPixel(e.form.geLine.backColor()));
    EXPECT_EQ(curve.at(9 * 30 + 11, 24), ink);
    EXPECT_EQ(curve.at(4 * 30 + 11, 12), ink);
}

}  // namespace
}  // namespace quenlox
