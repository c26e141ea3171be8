#include "equalizer/form_gra.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>

#include "libraries/vbmp3/dsp/equalizer_curve.h"
#include "state/global_state.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
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
        state.MediaKind = {kMp3, TagKind::Id3v1, true};
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
    FakeFileSystem files;
    FormGra form{state, vbmp3, dialogs, random, files};
};

struct FormGraTest : testing::Test, Equalizer {};

TEST_F(FormGraTest, ASliderSetsTheGainOfItsBandAndDeselectsThePresets) {
    form.Check4.setValue(1);
    form.geOption[1].setValue(true);
    vbmp3.calls.clear();
    form.VScroll[9].setValue(-12);
    EXPECT_EQ(vbmp3.equalizer, (Gains{20, 50, 0, -20, 30, 10, -20, 50, 30, 120}));
    EXPECT_THAT(vbmp3.calls, ElementsAre("equalizer", "reload"));
    EXPECT_FALSE(anyPreset());
}

TEST_F(FormGraTest, APresetARandomPatternAndALabelSendOneCall) {
    const struct {
        void (*act)(FormGra&);
        Gains gains;
        bool preset;
    } cases[] = {
        {[](FormGra& f) { f.geOption[1].setValue(true); }, {20, 50, 0, -20, 30, 10, -20, 50, 30, 10}, true},
        {[](FormGra& f) { f.geLabel[1].onClick(); }, {20, 50, 0, -20, 30, 10, -20, 50, 30, 10}, true},
        // 0 and just under 1, both beside the ends; 0.98 gives 12.5, which rounds to 12; 0.5 gives 0.5
        {[](FormGra& f) { f.Command23.click(); }, {120, -120, -120, 0, -10, 120, -120, -120, 0, -10}, false},
    };
    for (const auto& c : cases) {
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

TEST_F(FormGraTest, TheLibraryIsToldWhatCountsForTheTrackThatSounds) {
    struct Case {
        BaseKind kind;
        PlayStatus status;
        bool reload;
    };
    for (const Case& c : {Case{kMp3, kPlay, true},
                          {kRmp, kPause, true},
                          {kMp3, kDecode, true},
                          {kMp3, kStop, false},
                          {kWavePcm, kPlay, false},
                          {kMidi, kPlay, false},
                          {kUnknownKind, kPlay, false},
                          {kMp3, kLoad, false}}) {
        Equalizer e;
        e.state.MediaKind = {c.kind};
        e.state.PlayerStatus = c.status;
        e.form.Check4.setValue(1);
        EXPECT_EQ(e.vbmp3.count("reload"), c.reload) << c.kind << ' ' << c.status;
        EXPECT_EQ(e.vbmp3.count("equalizer"), 1);
    }
}

TEST_F(FormGraTest, APatternOfTheMenuKeepsTheSlidersUnderItsName) {
    const struct {
        std::optional<std::string> answer;
        std::string name;
        int gain;
    } cases[] = {
        {"夜, 静か ", "夜、 静か", 60},
        {"", "ROCK", 60},
        {std::nullopt, "ROCK", 20},
        {std::string(100, 'x'), std::string(60, 'x'), 60},
    };
    for (const auto& c : cases) {
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

TEST_F(FormGraTest, TenthsOfADecibelAreSetByFineStepsAndKept) {
    form.Check4.setValue(1);
    form.VScroll[2].setValue(-2);
    vbmp3.calls.clear();
    for (int i = 0; i < 3; ++i) form.VScroll[2].onFineStep(1);
    EXPECT_EQ(form.gains()[2], 23);
    EXPECT_EQ(form.VScroll[2].value(), -2);
    EXPECT_EQ(form.geValue[2].caption(), "+2.3");
    EXPECT_EQ(vbmp3.calls.size(), 6u) << "each is heard once";
    form.VScroll[9].onFineStep(-500);
    EXPECT_EQ(form.gains()[9], -120);
    form.VScroll[2].setValue(-3);
    EXPECT_EQ(form.gains()[2], 30);
    state.EqPresetTable[4] = {5, -5};
    form.geOption[4].setValue(true);
    EXPECT_EQ(form.geValue[1].caption(), "-0.5");
    form.restore({20, 50, 0, -20, 30, 10, -20, 50, 30, 10});
    vbmp3.calls.clear();
    form.markPreset();
    EXPECT_TRUE(form.geOption[1].value());
    EXPECT_TRUE(vbmp3.calls.empty());
}

TEST_F(FormGraTest, PatternsAreGivenAwayInFilesAndTheFirstOnesCanBeHadBack) {
    dialogs.fileAnswers = {"D:\\rock.qeq", "D:\\rock.qeq"};
    form.menuPatSave_Click(1);
    form.menuPatLoad_Click(0);
    EXPECT_EQ(form.geLabel[0].caption(), "ROCK");
    EXPECT_EQ(form.gains(), (Gains{20, 50, 0, -20, 30, 10, -20, 50, 30, 10}));
    dialogs.confirms = {false, true, true};
    form.menuPatFactory_Click(0);
    EXPECT_EQ(form.geLabel[0].caption(), "ROCK");
    form.menuPatFactory_Click(0);
    EXPECT_EQ(form.geLabel[0].caption(), "FLAT");
    EXPECT_EQ(state.EqPresetTable[0], Gains{});
    form.menuPatFactory_Click(FormGra::kPresets);
    EXPECT_EQ(state.EqPresetTable[4][0], -70);

    for (const char* bytes :
         {"", "[Equalizer]\nPattern=x,1,2,3", "[Equalizer]\nPattern=x,0,0,0,0,0,0,0,0,0,0,0",
          "[Equalizer]\nPattern=x,0,0,0,0,0,0,0,0,0,121", "[Equalizer]\nPattern=,0,0,0,0,0,0,0,0,0,0",
          "[Equalizer]\nPattern=x,0,0,0,0,0,0,0,0,0,1e1", "[Main]\nPattern=x,0,0,0,0,0,0,0,0,0,0"}) {
        EXPECT_FALSE(ReadPatternFile(bytes)) << bytes;
    }
    for (const std::string& name : {std::string("夜、静か"), std::string("한글")})
        EXPECT_EQ(ReadPatternFile(WritePatternFile({name, {-120, 120, 7}}))->name, name);
    files.add("D:\\big.qeq", std::string(5000, 'x'));
    dialogs.fileAnswers = {"D:\\big.qeq"};
    form.menuPatLoad_Click(2);
    EXPECT_EQ(dialogs.messages.size(), 1u);
    EXPECT_EQ(form.geLabel[2].caption(), "POPS");
}

TEST_F(FormGraTest, TheUserOnlyHidesIt) {
    form.show();
    form.Command1.click();
    EXPECT_FALSE(form.visible());
    EXPECT_FALSE(form.unloaded());
    state.ShuttingDown = true;
    EXPECT_TRUE(form.unload());
}

// Ten sliders 30 pixels apart under a picture whose scale has margins of 8 pixels.
void layOut(FormGra& form) {
    for (int band = 0; band < 10; ++band) form.VScroll[band].setBounds({10 + band * 30, 140, 22, 100});
    form.geLine.setBounds({10, 0, 300, 121});
}

TEST_F(FormGraTest, TheCurvePassesTheKnobsInTheMiddleOfTheirSliders) {
    layOut(form);
    form.VScroll[0].setValue(-12);
    form.VScroll[9].setValue(12);
    const Surface& curve = form.geLine.surface();
    const Surface::Pixel knob = Surface::ToPixel(kKnobColor);
    EXPECT_EQ(curve.at(11, 8), knob);
    EXPECT_EQ(curve.at(9 * 30 + 11, 112), knob);
    EXPECT_EQ(curve.at(4 * 30 + 11, 60), knob);
    EXPECT_NE(curve.at(4 * 30 + 11, 40), knob);
}

TEST_F(FormGraTest, AKnobOfThePictureIsDraggedAndADoubleClickBringsItBackToZero) {
    layOut(form);
    form.Check4.setValue(1);
    form.geLine.onMouseDown(1, 0, {3 * 30 + 20, 60});
    form.geLine.onMouseMove(1, 0, {3 * 30 + 60, 8});
    EXPECT_EQ(form.VScroll[3].value(), -12);
    EXPECT_EQ(vbmp3.equalizer->at(3), 120);
    form.geLine.onMouseMove(1, 0, {3 * 30 + 20, 500});
    EXPECT_EQ(form.VScroll[3].value(), 12);
    form.geLine.onMouseUp(1, 0, {0, 0});
    form.geLine.onMouseMove(1, 0, {0, 0});
    EXPECT_EQ(form.VScroll[3].value(), 12);
    form.geLine.onDoubleClick();
    EXPECT_EQ(form.VScroll[3].value(), 0);
    form.VScroll[5].setValue(7);
    form.VScroll[5].onDoubleClick();
    EXPECT_EQ(form.gains(), Gains{});
}

TEST_F(FormGraTest, EverySliderShowsItsValueWhoeverMovesIt) {
    form.geOption[1].setValue(true);
    form.VScroll[3].setValue(12);
    EXPECT_EQ(form.geValue[1].caption(), "+5");
    EXPECT_EQ(form.geValue[2].caption(), "0");
    EXPECT_EQ(form.geValue[3].caption(), "-12");
    EXPECT_EQ(form.VScroll[1].tooltip(), "170Hz  +5dB");
}

// The gain in decibels that a filter gives a frequency.
double Heard(const std::vector<float>& filter, double hz, double rate) {
    std::complex<double> sum = 0;
    for (std::size_t i = 0; i < filter.size(); ++i)
        sum += static_cast<double>(filter[i]) *
               std::polar(1.0, -2 * std::numbers::pi * hz / rate * static_cast<double>(i));
    return 20 * std::log10(std::abs(sum));
}

TEST(EqualizerCurve, WhatIsDrawnIsWhatIsHeard) {
    constexpr double kRate = 44100;
    std::vector<Gains> patterns{{20, 50, 0, -20, 30, 10, -20, 50, 30, 10},
                                {-70, -20, -30, 40, -20, 30, -30, 0, -50, -70},
                                {120, 120, 120, 120, 120, -120, -120, -120, -120, -120},
                                {120, -120, 120, -120, 120, -120, 120, -120, 120, -120}};
    std::mt19937 random(42);
    for (int i = 0; i < 8; ++i)
        for (std::int32_t& gain : patterns.emplace_back()) gain = static_cast<std::int32_t>(random() % 241) - 120;
    for (const Gains& gains : patterns) {
        const std::vector<float> filter = vbmp3::DesignEqualizer(gains, static_cast<int>(kRate));
        Knobs knobs;
        for (std::size_t i = 0; i < kEqualizerBands; ++i) {
            knobs.x[i] = 30.0 * static_cast<double>(i);
            knobs.y[i] = gains[i] / 10.0;
        }
        const EqualizerCurve curve(knobs);
        for (double x = 0; x < knobs.x.back(); x += 2) {
            const auto i = static_cast<std::size_t>(x / 30);
            const double hz =
                kEqualizerHz[i] * std::pow(kEqualizerHz[i + 1] / kEqualizerHz[i], x / 30 - static_cast<double>(i));
            EXPECT_NEAR(curve.at(x), Heard(filter, hz, kRate), 0.25)
                << testing::PrintToString(gains) << ' ' << hz << " Hz";
        }
        EXPECT_DOUBLE_EQ(curve.at(-50), knobs.y.front());
        EXPECT_DOUBLE_EQ(curve.at(500), knobs.y.back());
    }
}

}  // namespace
}  // namespace quenlox
