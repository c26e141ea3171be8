#include "equalizer/form_gra.h"

#include <algorithm>

#include "app/global_state.h"
#include "platform/dialogs.h"
#include "platform/random.h"
#include "platform/vbmp3.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, FormGra::kBands> kBandCaptions{"60", "170", "310", "600", "1k", "3k", "6k", "12k", "14k", "16k"};
constexpr std::array<const char*, 3> kScaleCaptions{"+12dB", "0dB", "-12dB"};
constexpr int kReach = 12;                // decibels to each side
constexpr int kKnobFromLeft = 165 / 15;   // the curve passes a slider this far from its left edge
constexpr std::size_t kNameUnits = 60;    // a pattern with its ten gains must fit a line of the settings file
constexpr Color kCurve{0, 96, 192};
constexpr Color kZeroLine{208, 208, 208};

}  // namespace

FormGra::FormGra(GlobalState& state, Vbmp3& vbmp3, Dialogs& dialogs, Random& random)
    : Form("FormGra", Kind::Dialog), state_(state), vbmp3_(vbmp3), dialogs_(dialogs), random_(random) {
    setCaption("グラフィックイコライザ");
    VScroll.fill(*this, "VScroll", 0, kBands - 1, ScrollBar::Direction::Vertical, -kReach, kReach);
    geBand.fill(*this, "geBand", 0, kBands - 1);
    geScale.fill(*this, "geScale", 0, 2);
    geOption.fill(*this, "geOption", 0, kPresets - 1);
    geLabel.fill(*this, "geLabel", 0, kPresets - 1);
    for (int band = 0; band < kBands; ++band) {
        VScroll[band].setValue(0);
        VScroll[band].largeChange = 3;
        VScroll[band].onChange = [this, band] { VScroll_Change(band); };
        VScroll[band].onScroll = [this, band] { VScroll_Scroll(band); };
        geBand[band].setCaption(kBandCaptions[static_cast<std::size_t>(band)]);
    }
    for (int i = 0; i < 3; ++i) geScale[i].setCaption(kScaleCaptions[static_cast<std::size_t>(i)]);
    for (int i = 0; i < kPresets; ++i) {
        geOption[i].onClick = [this, i] { geOption_Click(i); };
        geLabel[i].onClick = [this, i] { geLabel_MouseDown(i); };
        MenuItem item;
        item.onClick = [this, i] { menuPatName_Click(i); };
        menuPat.items.push_back(std::move(item));
    }
    Frame1.setCaption("Preset Pattern");
    Check4.setCaption("ｲｺﾗｲｻﾞを有効にする");
    Check4.onClick = [this] { Check4_Click(); };
    Command23.setCaption("ランダム");
    Command23.onClick = [this] { Command23_Click(); };
    Command2.setCaption("パターン登録");
    Command2.onClick = [this] { Command2_Click(); };
    Command1.setCaption("閉じる");
    Command1.onClick = [this] { Command1_Click(); };
    geLine.onResize = [this] { VScroll_Scroll(0); };
}

void FormGra::apply(const std::array<std::int32_t, kBands>* gains) {
    vbmp3_.vbmp3_setEqualizer(gains);
    const bool sounding = state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause;
    if (sounding && (state_.baseKind() == kMp3 || state_.baseKind() == kRmp)) vbmp3_.vbmp3_reload();
}

void FormGra::Check4_Click() { apply(Check4.checked() ? &gains_ : nullptr); }

void FormGra::VScroll_Change(int index) {
    gains_[static_cast<std::size_t>(index)] = VScroll[index].value() * -10;
    VScroll_Scroll(index);
    if (movingAll_) return;
    deselectPresets();
    if (Check4.checked()) apply(&gains_);
}

void FormGra::VScroll_Scroll(int) {
    if (movingAll_) return;
    Surface& picture = geLine.surface();
    const Rect area = geLine.bounds();
    if (picture.width() != area.width || picture.height() != area.height) picture.resize(area.width, area.height);
    if (picture.empty()) return;
    picture.fill(geLine.backColor());
    const int bottom = picture.height() - 1;
    picture.line({0, bottom / 2}, {picture.width() - 1, bottom / 2}, kZeroLine);
    Point last;
    for (int band = 0; band < kBands; ++band) {
        const int place = VScroll[band].value() + kReach;
        const Point knob{VScroll[band].bounds().left - area.left + kKnobFromLeft,
                         RoundHalfToEven(static_cast<double>(bottom) * place / (2 * kReach))};
        if (band > 0) picture.line(last, knob, kCurve);
        last = knob;
    }
    geLine.refresh();
}

void FormGra::setSliders(const std::function<int(int band)>& position) {
    movingAll_ = true;
    for (int band = 0; band < kBands; ++band) VScroll[band].setValue(position(band));
    movingAll_ = false;
    VScroll_Scroll(0);
    if (Check4.checked()) apply(&gains_);
}

void FormGra::geOption_Click(int index) {
    setSliders([&](int band) {
        return -(state_.EqPresetTable[static_cast<std::size_t>(index)][static_cast<std::size_t>(band)] / 10);
    });
}

void FormGra::geLabel_MouseDown(int index) { geOption[index].setValue(true); }

void FormGra::Command23_Click() {
    deselectPresets();
    // The generator can give 13, one step below the slider; the slider keeps to its range.
    setSliders([&](int) { return RoundHalfToEven(static_cast<float>(random_.next()) * 25.0F - 12.0F); });
}

void FormGra::Command2_Click() {
    for (int i = 0; i < kPresets; ++i) menuPat.items[static_cast<std::size_t>(i)].caption = ReplaceAll(geLabel[i].caption(), "&", "&&");
    const Rect button = Command2.bounds();
    popup(menuPat, {button.left, button.bottom()});
}

void FormGra::menuPatName_Click(int index) {
    const auto answer = dialogs_.inputText("このパターンの名前", geLabel[index].caption(), caption());
    if (!answer) return;
    // In the settings file a comma ends the name.
    const std::string name(TrimBlanks(CutUtf16Units(TrimAtNull(ReplaceAll(*answer, ",", "、")), kNameUnits)));
    if (!name.empty()) geLabel[index].setCaption(name);
    std::ranges::copy(gains_, state_.EqPresetTable[static_cast<std::size_t>(index)].begin());
}

void FormGra::deselectPresets() {
    for (int i = 0; i < kPresets; ++i) geOption[i].setValue(false);
}

void FormGra::Command1_Click() { unload(); }

void FormGra::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    hide();
}

void FormGra::Form_KeyDown(int key, int shift) {
    if (onKeyDown) onKeyDown(key, shift);
}

void FormGra::Form_KeyUp(int key, int shift) {
    if (onKeyUp) onKeyUp(key, shift);
}

}  // namespace quenlox
