#include "equalizer/form_gra.h"

#include <algorithm>
#include <cmath>

#include "platform/dialogs.h"
#include "platform/random.h"
#include "platform/vbmp3.h"
#include "state/global_state.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, FormGra::kBands> kBandCaptions{"60", "170", "310", "600", "1k",
                                                                 "3k", "6k",  "12k", "14k", "16k"};
constexpr std::array<const char*, 3> kScaleCaptions{"+12dB", "0dB", "-12dB"};
constexpr int kReach = 12;              // decibels to each side
constexpr int kKnobFromLeft = 165;      // the curve passes a slider this far from its left edge, twips
constexpr std::size_t kNameUnits = 60;  // a pattern with its ten gains must fit a line of the settings file
constexpr int kSliderWidth = 13;        // dialog units: twice the 165 twips
constexpr int kSliderGap = 8;
constexpr int kSliderHeight = 76;
constexpr int kCurveHeight = 80;
constexpr int kScaleWidth = 26;
constexpr int kNameWidth = 72;

std::string Decibels(int gain) { return gain > 0 ? "+" + std::to_string(gain) : std::to_string(gain); }

}  // namespace

FormGra::FormGra(GlobalState& state, Vbmp3& vbmp3, Dialogs& dialogs, Random& random)
    : Form("FormGra", Kind::Dialog), state_(state), vbmp3_(vbmp3), dialogs_(dialogs), random_(random) {
    setCaption("グラフィックイコライザ");
    makeArrays();
    for (int band = 0; band < kBands; ++band) {
        VScroll[band].setValue(0);
        VScroll[band].largeChange = 3;
        VScroll[band].onChange = [this, band] { VScroll_Change(band); };
        VScroll[band].onScroll = [this, band] { VScroll_Scroll(band); };
        VScroll[band].onDoubleClick = [this, band] { VScroll_DblClick(band); };
        geBand[band].setCaption(kBandCaptions[static_cast<std::size_t>(band)]);
        geBand[band].centred = geValue[band].centred = true;
        showValue(band);
    }
    for (int i = 0; i < 3; ++i) geScale[i].setCaption(kScaleCaptions[static_cast<std::size_t>(i)]);
    for (int i = 0; i < kPresets; ++i) {
        geOption[i].onClick = [this, i] { geOption_Click(i); };
        geLabel[i].onClick = [this, i] { geLabel_MouseDown(i); };
        menuPat.items.push_back(MenuCommand("", [this, i] { menuPatName_Click(i); }));
    }
    Frame1.setCaption("&Preset Pattern");
    Check4.setCaption("ｲｺﾗｲｻﾞを有効にする(&E)");
    Check4.onClick = [this] { Check4_Click(); };
    Command23.setCaption("ランダム(&R)");
    Command23.onClick = [this] { Command23_Click(); };
    Command2.setCaption("パターン登録(&S)");
    Command2.onClick = [this] { Command2_Click(); };
    Command1.setCaption("閉じる(&C)");
    Command1.isDefault = true;
    Command1.onClick = [this] { Command1_Click(); };
    geLine.onResize = [this] { drawCurve(); };
    geLine.onMouseDown = [this](int button, int, Point at) {
        if (button == 1) geLine_MouseDown(at);
    };
    geLine.onMouseMove = [this](int button, int, Point at) {
        if (button == 1) geLine_MouseMove(at);
    };
    geLine.onMouseUp = [this](int, int, Point) { draggedBand_ = -1; };
    geLine.onDoubleClick = [this] {
        if (lastBand_ >= 0) VScroll_DblClick(lastBand_);
    };
}

void FormGra::makeArrays() {
    geValue.fill(*this, "geValue", 0, kBands - 1);
    VScroll.fill(*this, "VScroll", 0, kBands - 1, ScrollBar::Direction::Vertical, -kReach, kReach);
    geBand.fill(*this, "geBand", 0, kBands - 1);
    geScale.fill(*this, "geScale", 0, 2);
    geOption.fill(*this, "geOption", 0, kPresets - 1);
    geLabel.fill(*this, "geLabel", 0, kPresets - 1);
    for (int i = 0; i < kPresets; ++i) geLabel[i].setVisible(false);
}

void FormGra::controlChangedHere(Control& control, Property property) {
    if (property != Property::Caption || control.name() != "geLabel") return;
    geOption[control.index()].setCaption(ReplaceAll(control.caption(), "&", "&&"));
}

Layout FormGra::layout() {
    // The picture begins where the sliders do, so that each knob of the curve stands above its slider.
    Layout sliders = Row({}), values = Row({}), bands = Row({});
    for (int band = 0; band < kBands; ++band) {
        sliders.items.push_back(Item(VScroll[band], kSliderWidth, kSliderHeight));
        values.items.push_back(Item(geValue[band], kSliderWidth));
        bands.items.push_back(Item(geBand[band], kSliderWidth));
    }
    for (Layout* row : {&sliders, &values, &bands}) {
        row->items.insert(row->items.begin(), Space(0, 0));
        row->items.push_back(Space(0, 0));
        row->gap = kSliderGap;
    }
    Layout scale = Column({Item(geScale[0], kScaleWidth), Space(0, 0, 1), Item(geScale[1], kScaleWidth), Space(0, 0, 1),
                           Item(geScale[2], kScaleWidth)});
    scale.height = kSliderHeight;
    Layout curve = Column({Item(geLine, 0, kCurveHeight), values, sliders, bands});
    curve.gap = 3;
    // The scale stands beside the sliders alone.
    Layout beside = Column({Space(0, kCurveHeight + 3 + 8), scale, Space(0, 8)});
    beside.gap = 3;

    Layout presets = Column({});
    for (int i = 0; i < kPresets; ++i) presets.items.push_back(Item(geOption[i], kNameWidth));
    Layout right = Column({Group(Frame1, presets), Item(Command23), Item(Command2), Space(0, 0, 1), Item(Command1)});
    Layout main = Row({beside, curve, Space(2, 0), right}, 1);
    return Column({Item(Check4), main});
}

void FormGra::apply(const std::array<std::int32_t, kBands>* gains) {
    vbmp3_.vbmp3_setEqualizer(gains);
    const int status = state_.PlayerStatus;
    const bool sounding = status == kPlay || status == kPause || status == kDecode;  // a decode may be heard
    if (sounding && (state_.MediaKind.base == kMp3 || state_.MediaKind.base == kRmp)) vbmp3_.vbmp3_reload();
}

void FormGra::Check4_Click() {
    apply(Check4.checked() ? &gains_ : nullptr);
    drawCurve();
}

void FormGra::VScroll_Change(int index) {
    gains_[static_cast<std::size_t>(index)] = VScroll[index].value() * -10;
    VScroll_Scroll(index);
    if (movingAll_) return;
    deselectPresets();
    if (Check4.checked()) apply(&gains_);
}

void FormGra::VScroll_Scroll(int index) {
    showValue(index);
    if (!movingAll_) drawCurve();
}

void FormGra::VScroll_DblClick(int index) { VScroll[index].setValue(0); }

void FormGra::showValue(int index) {
    const std::string value = Decibels(-VScroll[index].value());
    geValue[index].setCaption(value);
    const std::string all = std::string(kBandCaptions[static_cast<std::size_t>(index)]) + "Hz  " + value + "dB";
    VScroll[index].setTooltip(all);
    VScroll[index].setCaption(all);
}

FormGra::CurvePlace FormGra::curvePlace() const {
    const TwipsPerPixel twips = host() ? host()->twipsPerPixel() : TwipsPerPixel{};
    CurvePlace place;
    place.scale = ScaleOfPicture(geLine.surface().height(), 15 / twips.y);
    for (std::size_t band = 0; band < kBands; ++band) {
        const ScrollBar& slider = VScroll[static_cast<int>(band)];
        place.knobs.x[band] = slider.bounds().left - geLine.bounds().left + TwipsToPixels(kKnobFromLeft, twips.x);
        place.knobs.y[band] = place.scale.y(slider.value());
    }
    return place;
}

void FormGra::drawCurve() {
    Surface& picture = geLine.surface();
    const Rect area = geLine.bounds();
    if (picture.width() != area.width || picture.height() != area.height) picture.resize(area.width, area.height);
    if (picture.empty()) return;
    const CurvePlace place = curvePlace();
    DrawEqualizerCurve(picture, place.knobs, place.scale, Check4.checked());
    geLine.refresh();
}

// The knobs of the picture move the sliders too.
void FormGra::geLine_MouseDown(Point at) {
    if (geLine.surface().empty()) return;
    const CurvePlace place = curvePlace();
    const auto distance = [&](double x) { return std::abs(x - at.x); };
    const auto nearest = std::ranges::min_element(place.knobs.x, {}, distance);
    lastBand_ = draggedBand_ = static_cast<int>(nearest - place.knobs.x.begin());
    geLine_MouseMove(at);
}

void FormGra::geLine_MouseMove(Point at) {
    if (draggedBand_ < 0) return;
    VScroll[draggedBand_].drag(RoundHalfToEven(curvePlace().scale.position(at.y)));
}

void FormGra::setSliders(const std::function<int(int band)>& position) {
    movingAll_ = true;
    for (int band = 0; band < kBands; ++band) VScroll[band].setValue(position(band));
    movingAll_ = false;
    drawCurve();
    if (Check4.checked()) apply(&gains_);
}

void FormGra::geOption_Click(int index) {
    setSliders([&](int band) {
        return sliderOf(state_.EqPresetTable[static_cast<std::size_t>(index)][static_cast<std::size_t>(band)]);
    });
}

void FormGra::geLabel_MouseDown(int index) { geOption[index].setValue(true); }

void FormGra::Command23_Click() {
    deselectPresets();
    // The generator can give 13, one step below the slider; the slider keeps to its range.
    setSliders([&](int) { return RoundHalfToEven(static_cast<float>(random_.next()) * 25.0F - 12.0F); });
}

void FormGra::Command2_Click() {
    for (int i = 0; i < kPresets; ++i) menuPat.items[static_cast<std::size_t>(i)].caption = geOption[i].caption();
    const Rect button = Command2.bounds();
    popup(menuPat, {button.left, button.bottom()});
}

void FormGra::menuPatName_Click(int index) {
    const auto answer = dialogs_.inputText("登録するパターンの名前を入力してください", geLabel[index].caption(), caption());
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
