#include "skin/top_accessible.h"

#include <algorithm>

#include "skin/form_top.h"
#include "state/panel_views.h"

namespace quenlox {
namespace {

using Kind = TopPart::Kind;

constexpr int kLeft = 1;  // mouse button

struct LabelText {
    const char* description;
    const char* action;
};
constexpr LabelText kLabelTexts[kLabelCount] = {{"曲名", "曲名とファイル名を切り替える"},
                                                {"音の情報", ""},
                                                {"時間", "経過時間と残り時間を切り替える"},
                                                {"演奏時間", "経過時間と残り時間を切り替える"},
                                                {"状態", ""},
                                                {"再生モード", "次のモードにする"},
                                                {"種類", ""},
                                                {"リストと曲の位置", ""},
                                                {"アーティスト名", ""}};
constexpr const char* kShortcuts[kButtonCount] = {"Alt+↑", "", "Alt+←", "Alt+→", "", "", ""};

std::string Percent(int percent) { return std::to_string(percent) + "%"; }

bool PitchOn(int button, int pitchMode) {
    return (button == kHighButton && pitchMode == kHighPitch) || (button == kLowButton && pitchMode == kLowPitch) ||
           (button == kDoubleButton && pitchMode == kStepPitch);
}

}  // namespace

std::vector<AccessiblePart> TopAccessible::parts() const {
    std::vector<AccessiblePart> told;
    for (const TopPart& part : top_.parts()) told.push_back(describe(part));
    return told;
}

void TopAccessible::tell(Kind kind, int index, PartChange change) const {
    if (!top_.host()) return;
    const auto parts = top_.parts();
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&](const TopPart& part) { return part.kind == kind && part.index == index; });
    if (found != parts.end()) top_.host()->partChanged(static_cast<int>(found - parts.begin()), change);
}

AccessiblePart TopAccessible::describe(const TopPart& part) const {
    AccessiblePart told;
    switch (part.kind) {
        case Kind::Playback:
        case Kind::Column:
        case Kind::Command: told = describeButton(part); break;
        case Kind::Label: told = describeLabel(part); break;
        case Kind::SeekBar:
        case Kind::VolumeBar: told = describeBar(part); break;
        case Kind::Lyrics:
            told.name = top_.LyricsPicture.caption();
            told.description = "歌詞";
            break;
        case Kind::DisplayC: told.name = view_.figures(); break;
        case Kind::DisplayB:
            told.name = "オシロ・スペアナ";
            told.value = PanelViewName(state_.ViewType);
            told.role = AccessiblePart::Role::Picture;
            told.action = "表示を切り替える";
            told.act = [&top = top_] { top.DisplayB_MouseDown(kLeft); };
            break;
        case Kind::None: break;
    }
    told.bounds = part.bounds;
    return told;
}

AccessiblePart TopAccessible::describeBar(const TopPart& part) const {
    AccessiblePart told;
    told.role = AccessiblePart::Role::Slider;
    if (part.kind == Kind::SeekBar) {
        told.name = top_.SeekBar.tooltip();
        told.value = Percent(RoundHalfToEven(view_.bar() * 100));
        told.setPercent = [&top = top_](int percent) {
            top.SeekBar_MouseDown(kLeft, 0, {top.SeekBar.bounds().width * percent / 100, 0});
        };
    } else {
        told.name = top_.VolumeBar.tooltip();
        told.value = Percent(state_.VolumePercent);
        told.setPercent = [&top = top_](int percent) { top.setVolumePercent(percent); };
    }
    return told;
}

AccessiblePart TopAccessible::describeButton(const TopPart& part) const {
    const bool playback = part.kind != Kind::Command;
    const int index = part.index;
    AccessiblePart told;
    told.role = AccessiblePart::Role::Button;
    told.name = (playback ? top_.cmdPicture : top_.taskPicture)[index].tooltip();
    told.shortcut = playback ? kShortcuts[index] : "";
    told.enabled = buttons_.mayAct();
    told.pressed = buttons_.held() == HeldButton{part.kind, index} || (playback && PitchOn(index, state_.PitchMode));
    told.action = "押す";
    told.act = [&top = top_, playback, index] {
        playback ? top.cmdPicture_MouseUp(index, kLeft, 0, {0, 0}) : top.taskPicture_MouseUp(index, kLeft, 0, {0, 0});
    };
    return told;
}

AccessiblePart TopAccessible::describeLabel(const TopPart& part) const {
    const int index = part.index;
    AccessiblePart told;
    told.name = top_.mainLabel[index].caption();
    told.description = kLabelTexts[index].description;
    told.action = kLabelTexts[index].action;
    if (index == kTitleLabel) told.act = [&top = top_] { top.TitleLabel_DblClick(); };
    if (index == kPlayModeLabel) told.act = [&top = top_] { top.PlayModeLabel_Click(kLeft); };
    if (index == kTimeLabel || index == kLengthLabel) {
        told.act = [&top = top_, index] { top.TimeLabel_Click(index, kLeft); };
    }
    return told;
}

}  // namespace quenlox
