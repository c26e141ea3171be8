#include "equalizer/form_gra.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "platform/random.h"
#include "platform/vbmp3.h"
#include "state/global_state.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, FormGra::kBands> kBandCaptions{"60", "170", "310", "600", "1k",
                                                                 "3k", "6k",  "12k", "14k", "16k"};
constexpr std::array<const char*, 3> kScaleCaptions{"+12dB", "0dB", "-12dB"};
constexpr std::array<const char*, 2> kUnitCaptions{"dB", "Hz"};
constexpr int kReach = 12;                    // decibels to each side
constexpr int kKnobFromLeft = 165;            // the curve passes a slider this far from its left edge, twips
constexpr std::uint64_t kLargestFile = 4096;  // bytes of a pattern's file
constexpr int kSliderWidth = 13;              // dialog units: twice the 165 twips
constexpr int kSliderGap = 8;
constexpr int kSliderHeight = 76;
constexpr int kCurveHeight = 80;
constexpr int kScaleWidth = 26;
constexpr int kNameWidth = 72;

// Of tenths of a decibel, the tenth only where there is one.
std::string Decibels(int gain) {
    const std::string sign = gain > 0 ? "+" : gain < 0 ? "-" : "", whole = std::to_string(std::abs(gain) / 10);
    return sign + whole + (gain % 10 == 0 ? "" : "." + std::to_string(std::abs(gain) % 10));
}

// As a caption, where "&" means an access key.
std::string Plain(std::string_view name) { return ReplaceAll(name, "&", "&&"); }

FileDialog PatternDialog(std::string title, const std::string& name = {}) {
    FileDialog dialog;
    dialog.title = std::move(title);
    dialog.filterName = "イコライザのパターン";
    dialog.filter = "*.qeq";
    std::string file = name;
    for (char& c : file)
        if (std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos) c = '_';
    if (!file.empty()) dialog.fileName = file + ".qeq";
    return dialog;
}

}  // namespace

FormGra::FormGra(GlobalState& state, Vbmp3& vbmp3, Dialogs& dialogs, Random& random, FileSystem& files)
    : Form("FormGra", Kind::Dialog), state_(state), vbmp3_(vbmp3), dialogs_(dialogs), random_(random), files_(files) {
    setCaption("グラフィックイコライザ");
    makeArrays();
    for (int band = 0; band < kBands; ++band) {
        VScroll[band].setValue(0);
        VScroll[band].largeChange = 3;
        VScroll[band].mark = 0;
        VScroll[band].onFineStep = [this, band](int step) { VScroll_FineStep(band, step); };
        VScroll[band].onChange = [this, band] { VScroll_Change(band); };
        VScroll[band].onScroll = [this, band] { VScroll_Scroll(band); };
        VScroll[band].onDoubleClick = [this, band] { VScroll_DblClick(band); };
        geBand[band].setCaption(kBandCaptions[static_cast<std::size_t>(band)]);
        geBand[band].centred = geValue[band].centred = true;
        showValue(band);
    }
    for (int i = 0; i < 3; ++i) geScale[i].setCaption(kScaleCaptions[static_cast<std::size_t>(i)]);
    for (int i = 0; i < 2; ++i) geUnit[i].setCaption(kUnitCaptions[static_cast<std::size_t>(i)]);
    for (int i = 0; i < kPresets; ++i) {
        geOption[i].onClick = [this, i] { geOption_Click(i); };
        geLabel[i].onClick = [this, i] { geLabel_MouseDown(i); };
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
    geUnit.fill(*this, "geUnit", 0, 1);
    geOption.fill(*this, "geOption", 0, kPresets - 1);
    geLabel.fill(*this, "geLabel", 0, kPresets - 1);
    for (int i = 0; i < kPresets; ++i) geLabel[i].setVisible(false);
}

void FormGra::controlChangedHere(Control& control, Property property) {
    if (property != Property::Caption || control.name() != "geLabel") return;
    geOption[control.index()].setCaption(Plain(control.caption()));
}

Layout FormGra::layout() {
    // The picture begins where the sliders do, so that each knob of the curve stands above its slider.
    Layout sliders = Row({}), values = Row({}), bands = Row({});
    for (int band = 0; band < kBands; ++band) {
        sliders.items.push_back(Item(VScroll[band], kSliderWidth, kSliderHeight));
        values.items.push_back(Item(geValue[band], kSliderWidth + kSliderGap));  // "+11.9" is wider than a slider
        bands.items.push_back(Item(geBand[band], kSliderWidth));
    }
    values.items.insert(values.items.begin(), Space(kSliderGap / 2, 0));
    values.items.push_back(Space(kSliderGap / 2, 0));
    values.gap = 0;
    for (Layout* row : {&sliders, &bands}) {
        row->items.insert(row->items.begin(), Space(0, 0));
        row->items.push_back(Space(0, 0));
        row->gap = kSliderGap;
    }
    Layout scale = Column({Item(geScale[0], kScaleWidth), Space(0, 0, 1), Item(geScale[1], kScaleWidth), Space(0, 0, 1),
                           Item(geScale[2], kScaleWidth)});
    scale.height = kSliderHeight;
    Layout curve = Column({Item(geLine, 0, kCurveHeight), values, sliders, bands});
    curve.gap = 3;
    // The scale stands beside the sliders, the units beside the figures above and below them.
    Layout beside = Column({Space(0, kCurveHeight), Item(geUnit[0], kScaleWidth), scale, Item(geUnit[1], kScaleWidth)});
    beside.gap = 3;

    Layout presets = Column({});
    for (int i = 0; i < kPresets; ++i) presets.items.push_back(Item(geOption[i], kNameWidth));
    Layout right = Column({Group(Frame1, presets), Item(Command23), Item(Command2), Space(0, 0, 1), Item(Command1)});
    Layout main = Row({beside, curve, Space(2, 0), right}, 1);
    return Column({Item(Check4), main});
}

void FormGra::apply(const EqualizerGains* gains) {
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
    if (movingAll_) return;
    gains_[static_cast<std::size_t>(index)] = VScroll[index].value() * -10;
    VScroll_Scroll(index);
    deselectPresets();
    if (Check4.checked()) apply(&gains_);
}

void FormGra::VScroll_Scroll(int index) {
    showValue(index);
    drawCurve();
}

void FormGra::VScroll_DblClick(int index) { VScroll_FineStep(index, -gains_[static_cast<std::size_t>(index)]); }

void FormGra::VScroll_FineStep(int index, int tenths) {
    EqualizerGains gains = gains_;
    std::int32_t& gain = gains[static_cast<std::size_t>(index)];
    gain = std::clamp(gain + tenths, -kMostGain, kMostGain);
    if (gains == gains_) return;
    deselectPresets();
    setGains(gains);
}

void FormGra::showValue(int index) {
    const std::string value = Decibels(gains_[static_cast<std::size_t>(index)]);
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
        place.knobs.y[band] = place.scale.y(gains_[band] / -10.0);
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

EqualizerGains FormGra::sliderGains() const {
    EqualizerGains gains;
    for (int band = 0; band < kBands; ++band) gains[static_cast<std::size_t>(band)] = VScroll[band].value() * -10;
    return gains;
}

void FormGra::restore(const EqualizerGains& gains) {
    movingAll_ = true;
    for (int band = 0; band < kBands; ++band) {
        std::int32_t& gain = gains_[static_cast<std::size_t>(band)];
        gain = std::clamp(gains[static_cast<std::size_t>(band)], -kMostGain, kMostGain);
        VScroll[band].setValue(sliderOf(gain));
        showValue(band);
    }
    movingAll_ = false;
    drawCurve();
}

void FormGra::markPreset() {
    marking_ = true;
    for (int i = kPresets - 1; i >= 0; --i) {
        if (pattern(i).gains == gains_) geOption[i].setValue(true);
    }
    marking_ = false;
}

void FormGra::setGains(const EqualizerGains& gains) {
    restore(gains);
    if (Check4.checked()) apply(&gains_);
}

void FormGra::geOption_Click(int index) {
    if (!marking_) setGains(pattern(index).gains);
}

void FormGra::geLabel_MouseDown(int index) { geOption[index].setValue(true); }

void FormGra::Command23_Click() {
    deselectPresets();
    // The generator can give 13, one step below the slider; the slider keeps to its range.
    EqualizerGains gains;
    for (std::int32_t& gain : gains) {
        gain = RoundHalfToEven(static_cast<float>(random_.next()) * 25.0F - 12.0F) * -10;
    }
    setGains(gains);
}

// Patterns.

EqualizerPattern FormGra::pattern(int index) const {
    EqualizerPattern pattern{geLabel[index].caption(), {}};
    std::ranges::copy(state_.EqPresetTable[static_cast<std::size_t>(index)], pattern.gains.begin());
    return pattern;
}

void FormGra::setPattern(int index, const EqualizerPattern& pattern) {
    if (!pattern.name.empty()) geLabel[index].setCaption(pattern.name);
    std::ranges::copy(pattern.gains, state_.EqPresetTable[static_cast<std::size_t>(index)].begin());
}

MenuItem FormGra::patternMenu(std::string caption, void (FormGra::*act)(int)) const {
    auto* const form = const_cast<FormGra*>(this);
    std::vector<MenuItem> items;
    for (int i = 0; i < kPresets; ++i) {
        items.push_back(MenuCommand(geOption[i].caption() + "(&" + std::to_string(i + 1) + ")",
                                    [form, act, i] { (form->*act)(i); }));
    }
    return SubMenu(std::move(caption), std::move(items));
}

void FormGra::Command2_Click() {
    menuPat.items.clear();
    for (int i = 0; i < kPresets; ++i)
        menuPat.items.push_back(MenuCommand(geOption[i].caption(), [this, i] { menuPatName_Click(i); }));
    menuPat.items.push_back(MenuSeparator());
    menuPat.items.push_back(patternMenu("ファイルに保存(&S)", &FormGra::menuPatSave_Click));
    menuPat.items.push_back(patternMenu("ファイルから読み込み(&L)", &FormGra::menuPatLoad_Click));
    MenuItem factory = SubMenu("初期設定に戻す(&R)", {});
    for (int i = 0; i < kPresets; ++i) {
        const EqualizerPattern& first = FactoryPatterns()[static_cast<std::size_t>(i)];
        const EqualizerPattern now = pattern(i);
        factory.items.push_back(MenuCommand(
            first.name + "(&" + std::to_string(i + 1) + ")", [this, i] { menuPatFactory_Click(i); },
            now.name != first.name || now.gains != first.gains));
    }
    factory.items.push_back(MenuSeparator());
    factory.items.push_back(MenuCommand("すべて(&A)", [this] { menuPatFactory_Click(kPresets); }));
    menuPat.items.push_back(std::move(factory));
    const Rect button = Command2.bounds();
    popup(menuPat, {button.left, button.bottom()});
}

void FormGra::menuPatName_Click(int index) {
    const auto answer =
        dialogs_.inputText("登録するパターンの名前を入力してください", geLabel[index].caption(), caption());
    if (!answer) return;
    setPattern(index, {PatternName(*answer), gains_});
    markPreset();
}

void FormGra::menuPatSave_Click(int index) {
    const EqualizerPattern kept = pattern(index);
    const auto path = dialogs_.saveFile(PatternDialog("パターンの保存", kept.name));
    if (path && !files_.write(*path, WritePatternFile(kept)))
        dialogs_.message("パターンを保存できませんでした。\r保存先に書き込めるかを確かめてください",
                         MessageIcon::Warning, caption());
}

void FormGra::menuPatLoad_Click(int index) {
    const auto path = dialogs_.openFile(PatternDialog("パターンの読み込み"));
    if (!path) return;
    const auto bytes = files_.read(*path, kLargestFile);
    const auto read = bytes ? ReadPatternFile(*bytes) : std::nullopt;
    if (!read) return dialogs_.message("イコライザのパターンのファイルではありません", MessageIcon::Warning, caption());
    setPattern(index, *read);
    deselectPresets();
    geOption[index].setValue(true);
}

void FormGra::menuPatFactory_Click(int index) {
    const auto factory = FactoryPatterns();
    const bool all = index == kPresets;
    const std::string question = all ? "5つのパターンをすべて初期設定に戻しますか？"
                                     : "「" + geLabel[index].caption() + "」を初期設定の「" +
                                           factory[static_cast<std::size_t>(index)].name + "」に戻しますか？";
    if (!dialogs_.confirmLoss(question, caption())) return;
    for (int i = all ? 0 : index; i <= (all ? kPresets - 1 : index); ++i)
        setPattern(i, factory[static_cast<std::size_t>(i)]);
    deselectPresets();
    markPreset();
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
