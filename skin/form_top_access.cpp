// What the main window tells assistive programs of: it has no child windows, so it names what it draws. Buttons and
// labels act through the handlers that a click calls.
#include <algorithm>

#include "playback/transport.h"
#include "playback/volume_control.h"
#include "skin/form_top.h"

namespace quenlox {
namespace {

constexpr int kLeft = 1;  // mouse button
constexpr int kReadingOrder[kLabelCount] = {kTitleLabel, kArtistLabel, kStatusLabel, kTimeLabel, kLengthLabel,
                                            kPlayModeLabel, kKindLabel, kInformationLabel, kListLabel};

struct LabelText {
    const char* description;
    const char* action;
};
constexpr LabelText kLabelTexts[kLabelCount] = {
    {"曲名", "曲名とファイル名を切り替える"}, {"音声の形式", ""},         {"時間", "経過と残りを切り替える"},
    {"曲の長さ", "経過と残りを切り替える"},   {"状態", ""},               {"再生モード", "次のモードにする"},
    {"種類", ""},                             {"リストと曲の位置", ""}, {"演奏者", ""}};
constexpr const char* kShortcuts[kButtonCount] = {"Alt+↑", "", "Alt+←", "Alt+→", "", "", ""};

std::string Percent(int percent) { return std::to_string(percent) + "%"; }

}  // namespace

std::vector<FormTop::Part> FormTop::partsInOrder() {
    std::vector<Part> parts;
    const auto add = [&](Control& control) {
        if (control.visible()) parts.push_back({&control});
    };
    for (const int n : kReadingOrder) add(mainLabel[n]);
    for (int n = 0; n < kButtonCount; ++n) add(cmdPicture[n]);
    for (int n = 0; DisplayA.visible() && n < kButtonCount; ++n) parts.push_back({&DisplayA, n});
    add(SeekBar);
    add(VolumeBar);
    add(LyricsPicture);
    add(DisplayC);
    add(DisplayB);
    for (int n = 0; n < kButtonCount; ++n) add(taskPicture[n]);
    return parts;
}

std::vector<AccessiblePart> FormTop::accessibleParts() {
    std::vector<AccessiblePart> told;
    for (const Part& part : partsInOrder()) told.push_back(describe(part));
    return told;
}

void FormTop::tellPart(const Control& control, PartChange change) {
    if (!host() || !control.visible()) return;
    const auto parts = partsInOrder();
    const auto found =
        std::find_if(parts.begin(), parts.end(), [&](const Part& part) { return part.control == &control; });
    if (found != parts.end()) host()->partChanged(static_cast<int>(found - parts.begin()), change);
}

AccessiblePart FormTop::describe(const Part& part) {
    Control& control = *part.control;
    const Rect& place = control.bounds();
    if (part.column >= 0) {
        Rect column = panelColumn(part.column);
        column.left += place.left;
        column.top += place.top;
        return describeButton(cmdPicture, part.column, column);
    }
    if (control.name() == "cmdPicture") return describeButton(cmdPicture, control.index(), place);
    if (control.name() == "taskPicture") return describeButton(taskPicture, control.index(), place);
    if (control.name() == "mainLabel") return describeLabel(control.index());
    AccessiblePart told;
    told.bounds = place;
    told.name = control.tooltip();
    if (&control == &SeekBar) {
        told.role = AccessiblePart::Role::Slider;
        told.value = Percent(RoundHalfToEven(barFraction_ * 100));
        told.setPercent = [this](int percent) {
            SeekBar_MouseDown(kLeft, 0, {SeekBar.bounds().width * percent / 100, 0});
        };
    } else if (&control == &VolumeBar) {
        told.role = AccessiblePart::Role::Slider;
        told.value = Percent(state_.VolumePercent);
        told.setPercent = [this](int percent) { playback_.volume->setPercent(percent); };
    } else if (&control == &DisplayC) {
        told.name = displayCText_;
    } else if (&control == &LyricsPicture) {
        told.name = LyricsPicture.caption();
        told.description = "歌詞";
    } else {
        told.role = AccessiblePart::Role::Picture;
        told.action = "表示を切り替える";
        told.act = [this] {
            if (hooks_.panelClicked) hooks_.panelClicked(kLeft);
        };
    }
    return told;
}

AccessiblePart FormTop::describeButton(ControlArray<PictureBox>& array, int index, const Rect& bounds) {
    const bool playback = &array == &cmdPicture;
    const bool heldDown = pressed_ && pressed_->array == &array && pressed_->index == index;
    const bool pitchOn = playback && ((index == kHighButton && state_.PitchMode == kHighPitch) ||
                                      (index == kLowButton && state_.PitchMode == kLowPitch) ||
                                      (index == kDoubleButton && state_.PitchMode == kStepPitch));
    AccessiblePart told;
    told.role = AccessiblePart::Role::Button;
    told.name = array[index].tooltip();
    told.shortcut = playback ? kShortcuts[index] : "";
    told.bounds = bounds;
    told.enabled = playback_.transport->mayAct();
    told.pressed = heldDown || pitchOn;
    told.action = "押す";
    told.act = [this, playback, index] {
        playback ? cmdPicture_MouseUp(index, kLeft, 0, {0, 0}) : taskPicture_MouseUp(index, kLeft, 0, {0, 0});
    };
    return told;
}

AccessiblePart FormTop::describeLabel(int index) {
    const Label& label = mainLabel[index];
    AccessiblePart told;
    told.name = label.caption();
    told.description = kLabelTexts[index].description;
    told.bounds = label.bounds();
    told.action = kLabelTexts[index].action;
    if (index == kTitleLabel) told.act = [this] { TitleLabel_DblClick(); };
    if (index == kPlayModeLabel) told.act = [this] { PlayModeLabel_Click(kLeft); };
    if (index == kTimeLabel || index == kLengthLabel) told.act = [this, index] { TimeLabel_Click(index, kLeft); };
    return told;
}

}  // namespace quenlox
