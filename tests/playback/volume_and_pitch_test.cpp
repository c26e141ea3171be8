#include <gtest/gtest.h>

#include "playback/pitch_control.h"
#include "playback/status_display.h"
#include "playback/volume_control.h"
#include "state/global_state.h"
#include "tests/fakes/fake_display.h"
#include "tests/fakes/fake_mixer.h"
#include "state/options.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {
namespace {

struct Pitch {
    GlobalState state;
    FakeVbmp3 vbmp3;
    Options options;
    FakeDisplay display;
    StatusDisplay status{state, display};
    PitchControl control{state, vbmp3, options, status};
};

TEST(VolumeControl, TheBarGivesPercentAndTheMixerItsShareOfTheRange) {
    const struct {
        int y, height, percent;
        std::uint32_t value;
    } cases[] = {{0, 50, 100, 65535},  {25, 50, 50, 32768},  // 32767.5 to the even one
                 {1, 8, 88, 57671},    {3, 8, 62, 40632},   {48, 50, 4, 2621},  {49, 50, 0, 0}, {50, 50, 0, 0},
                 {-9, 50, 100, 65535}, {59, 50, 0, 0},      {0, 1, 100, 65535}, {0, 0, 10, 7}};
    for (const auto& c : cases) {
        GlobalState state;
        state.VolumePercent = 10;
        FakeMixer mixer;
        Options options;
        VolumeControl volume(state, mixer, options);
        volume.open();
        state.VolumePercent = 10;
        mixer.lines[Mixer::kSpeakers].value = 7;
        volume.setFromBar(c.y, c.height);
        EXPECT_EQ(state.VolumePercent, c.percent) << c.y << '/' << c.height;
        EXPECT_EQ(mixer.lines[Mixer::kSpeakers].value, c.value) << c.y << '/' << c.height;
        EXPECT_EQ(mixer.lines[Mixer::kWaveOut].value, 0u);
    }
}

TEST(VolumeControl, TheSourcesGetTheMastersValueWhenTheyAreDriven) {
    GlobalState state;
    FakeMixer mixer;
    mixer.lines[Mixer::kSpeakers] = {100, 1100, 0};
    mixer.lines.erase(Mixer::kSynthesizer);
    Options options;
    options.VolumeDrives = kSourcesToo;
    VolumeControl volume(state, mixer, options);
    volume.open();
    volume.setPercent(50);
    EXPECT_EQ(mixer.lines[Mixer::kSpeakers].value, 500u);  // the minimum is not added
    EXPECT_EQ(mixer.lines[Mixer::kWaveOut].value, 500u);
    EXPECT_EQ(mixer.lines[Mixer::kCompactDisc].value, 500u);
    EXPECT_FALSE(mixer.lines.contains(Mixer::kSynthesizer));
}

TEST(VolumeControl, IsReadAtStartAndAFailureLeavesItAsItWas) {
    GlobalState state;
    FakeMixer mixer;
    Options options;
    mixer.lines[Mixer::kSpeakers].value = 49152;
    VolumeControl volume(state, mixer, options);
    int changes = 0;
    volume.onChange = [&] { ++changes; };
    volume.open();
    EXPECT_EQ(state.VolumePercent, 75);
    mixer.works = false;
    mixer.lines[Mixer::kSpeakers].value = 0;
    volume.refresh();
    EXPECT_EQ(state.VolumePercent, 75);
    EXPECT_EQ(changes, 1);

    FakeMixer none;
    none.opens = false;
    VolumeControl without(state, none, options);
    without.open();
    without.setPercent(300);
    EXPECT_EQ(state.VolumePercent, 100);
}

TEST(PitchControl, TogglesExcludeEachOtherAndTheActiveOneReturnsToNormal) {
    const struct {
        const char* keys;  // h high, l low, d double, u undo, o the options' amounts move
        int mode;
        std::vector<std::string> calls;
        const char* word;
    } cases[] = {
        {"h", kHighPitch, {"pitch 130"}, " PLAY↑"},
        {"hh", kNormalPitch, {"pitch 130", "pitch 100"}, "PLAY"},
        {"hl", kLowPitch, {"pitch 130", "pitch 80"}, " PLAY↓"},
        {"ll", kNormalPitch, {"pitch 80", "pitch 100"}, "PLAY"},
        {"d", kStepPitch, {"step 6 5"}, " PLAY⇒"},
        {"dd", kNormalPitch, {"step 6 5", "step 1 5"}, "PLAY"},
        {"hd", kStepPitch, {"pitch 130", "pitch 100", "step 6 5"}, " PLAY⇒"},
        {"dh", kHighPitch, {"step 6 5", "step 1 5", "pitch 130"}, " PLAY↑"},
        {"dl", kLowPitch, {"step 6 5", "step 1 5", "pitch 80"}, " PLAY↓"},
        {"u", kNormalPitch, {}, ""},
        {"hu", kNormalPitch, {"pitch 130", "pitch 100"}, " PLAY↑"},
        {"o", kNormalPitch, {}, ""},
        {"ho", kHighPitch, {"pitch 130", "pitch 140"}, " PLAY↑"},
        {"lo", kLowPitch, {"pitch 80", "pitch 70"}, " PLAY↓"},
        {"do", kStepPitch, {"step 6 5", "step 7 5"}, " PLAY⇒"},
        {"du", kNormalPitch, {"step 6 5", "step 1 5"}, " PLAY⇒"},
    };
    for (const auto& c : cases) {
        Pitch pitch;
        pitch.state.MediaKind = {kMp3};
        pitch.state.PlayerStatus = kPlay;
        for (const char* key = c.keys; *key != 0; ++key) {
            if (*key == 'h') pitch.control.High();
            if (*key == 'l') pitch.control.Low();
            if (*key == 'd') pitch.control.Double();
            if (*key == 'u') pitch.control.Undo();
            if (*key != 'o') continue;
            pitch.options.HighPitch = 140;
            pitch.options.LowPitch = 70;
            pitch.options.StepPitch = 7;
            pitch.control.amountChanged();
        }
        EXPECT_EQ(pitch.state.PitchMode, c.mode) << c.keys;
        EXPECT_EQ(pitch.vbmp3.calls, c.calls) << c.keys;
        EXPECT_EQ(pitch.display.status, c.word) << c.keys;
    }
}

}  // namespace
}  // namespace quenlox
