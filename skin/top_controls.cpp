#include "skin/top_controls.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quenlox {
namespace {

using Kind = TopPart::Kind;

constexpr const char* kPlaybackHints[kButtonCount] = {"再生／停止",   "一時停止",     "前の曲",  "次の曲",
                                                      "音程を下げる", "音程を上げる", "速度変更"};
constexpr const char* kCommandHints[kButtonCount] = {"プレイリスト", "オプション",       "タグ情報", "ファイル変換",
                                                     "ヘルプ",       "通知領域に入れる", "終了"};
constexpr int kReadingOrder[kLabelCount] = {kTitleLabel,    kArtistLabel, kStatusLabel,      kTimeLabel, kLengthLabel,
                                            kPlayModeLabel, kKindLabel,   kInformationLabel, kListLabel};
// The order in which a press finds what lies over what.
constexpr Kind kFromAbove[] = {Kind::Command, Kind::Playback, Kind::Label,  Kind::VolumeBar, Kind::SeekBar,
                               Kind::Column,  Kind::DisplayB, Kind::Lyrics, Kind::DisplayC};

}  // namespace

TopControls::TopControls(Form& owner) : form_(owner) {
    for (const int first : {0, kPressed}) {
        cmdPicture.fill(form_, "cmdPicture", first, first + kButtonCount - 1);
        taskPicture.fill(form_, "taskPicture", first, first + kButtonCount - 1);
    }
    mainLabel.fill(form_, "mainLabel", 0, kLabelCount - 1);
}

void TopControls::begin() {
    for (int n = 0; n < kButtonCount; ++n) {
        cmdPicture[n + kPressed].setVisible(false);
        taskPicture[n + kPressed].setVisible(false);
        cmdPicture[n].setTooltip(kPlaybackHints[n]);
        taskPicture[n].setTooltip(kCommandHints[n]);
    }
    mainLabel[kPlayModeLabel].setTooltip("クリックで再生モードを切り替え");
    mainLabel[kTimeLabel].setTooltip("クリックで経過時間／残り時間を切り替え");
    mainLabel[kLengthLabel].setTooltip("クリックで経過時間／残り時間を切り替え");
    mainLabel[kTitleLabel].setTooltip("ダブルクリックで曲名／ファイル名を切り替え");
    SeekBar.setTooltip("再生位置");
    VolumeBar.setTooltip("音量");
    DisplayB.surface().resize(kPanelDisplay.width, kPanelDisplay.height);
    for (Timer* timer : {&Timer5, &Timer7, &TimerTitle}) timer->setEnabled(false);
}

Rect TopControls::column(int index) const {
    const Rect& whole = DisplayA.bounds();
    const int left = whole.width * index / kButtonCount;
    return {whole.left + left, whole.top, whole.width * (index + 1) / kButtonCount - left, whole.height};
}

std::vector<TopPart> TopControls::parts() const {
    std::vector<TopPart> all;
    const auto add = [&](Kind kind, int index, const Control& control) {
        if (control.visible()) all.push_back({kind, index, control.bounds()});
    };
    for (const int n : kReadingOrder) add(Kind::Label, n, mainLabel[n]);
    for (int n = 0; n < kButtonCount; ++n) add(Kind::Playback, n, cmdPicture[n]);
    for (int n = 0; DisplayA.visible() && n < kButtonCount; ++n) all.push_back({Kind::Column, n, column(n)});
    add(Kind::SeekBar, 0, SeekBar);
    add(Kind::VolumeBar, 0, VolumeBar);
    add(Kind::Lyrics, 0, LyricsPicture);
    add(Kind::DisplayC, 0, DisplayC);
    add(Kind::DisplayB, 0, DisplayB);
    for (int n = 0; n < kButtonCount; ++n) add(Kind::Command, n, taskPicture[n]);
    return all;
}

TopPart TopControls::partAt(Point at) const {
    const auto rank = [](const TopPart& part) {
        const auto* place = std::find(std::begin(kFromAbove), std::end(kFromAbove), part.kind);
        return std::pair(place - std::begin(kFromAbove), part.index);
    };
    TopPart found;
    for (const TopPart& part : parts()) {
        if (part.bounds.contains(at) && (found.kind == Kind::None || rank(part) < rank(found))) found = part;
    }
    return found;
}

}  // namespace quenlox
