#include "options/form_opt.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "platform/dialogs.h"
#include "platform/output_devices.h"
#include "playback/cd_drives.h"
#include "state/global_state.h"
#include "state/option_table.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr double kSamplePoints = 12;  // of the sample of a font
constexpr const char* kDefaultDeviceText = "既定のデバイス";

std::string DeviceText(int device) { return "デバイス " + std::to_string(device); }

// The device of that name, when two bear it the one with the number; without a name the one with the number. -1 none.
// Names are cut short by the system, perhaps behind a blank, which a settings file does not keep.
int FindDevice(const std::vector<std::string>& names, std::string_view name, int number) {
    const bool there = number >= 0 && number < static_cast<int>(names.size());
    const auto fits = [&](const std::string& other) { return TrimBlanks(other) == TrimBlanks(name); };
    if (there && (name.empty() || fits(names[static_cast<std::size_t>(number)]))) return number;
    const auto found = name.empty() ? names.end() : std::ranges::find_if(names, fits);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

}  // namespace

FormOpt::FormOpt(GlobalState& state, OptionStore& options)
    : Form("FormOpt", Kind::Dialog), state_(state), options_(options) {
    FftOption.fill(*this, "FftOption", 0, 2);
    QualityOption.fill(*this, "QualityOption", 0, 2);
    VolumeOption.fill(*this, "VolumeOption", 0, 1);
    LyricsOption.fill(*this, "LyricsOption", 0, 5);
    ScaleRange.fill(*this, "ScaleRange", 0, kScales - 1);
    for (const int unused : {0, 2, 4}) LyricsOption[unused].setVisible(false);
    std::vector<ComboBox::Item> zooms;
    for (const ZoomChoice& zoom : kZoomChoices) zooms.push_back({zoom.name, zoom.percent});
    ComboSkinScale.setItems(std::move(zooms));
    ComboSideFiles.setItems(
        {{"確認する", kAskSideFiles}, {"いっしょに変える", kTakeSideFiles}, {"変えない", kLeaveSideFiles}});
    ComboDevice.setItems({{kDefaultDeviceText, kDefaultDevice}});
    ComboDevice.setListIndex(0);

    setCaptions();
    bindControls();
    ComboDevice.onClick = [this] { deviceChosen(); };
    options_.listen({&Options::OutputDevice, &Options::OutputDeviceName}, [this] { followDevices(); });
    ComboCdDrive.onClick = [this] { driveChosen(); };
    options_.listen({&Options::DefaultCdDrive}, [this] { showDrive(); });
    options_.listenToAvailability([this] { showAvailable(); });
    options_.listen({&Options::TitleAnimation, &Options::SpectrumShown, &Options::IntroPlay},
                    [this] { showAvailable(); });
    showAvailable();
    CommandBmpDir.onClick = [this] { chooseFolder(TextBmpDir, "画像フォルダの選択"); };
    CommandLyricsDir.onClick = [this] { chooseFolder(TextLyricsDir, "歌詞フォルダの選択"); };
    CommandLyricsFont.onClick = [this] { chooseFont(); };
    options_.listen({&Options::LyricsFont, &Options::LyricsBold}, [this] { showFontSample(); });
    showFontSample();
    CommandDefaults.onClick = [this] { CommandDefaults_Click(); };
    CommandClose.onClick = [this] { hide(); };
    CommandClose.isDefault = true;
}

void FormOpt::connect(const Services& services) {
    services_ = services;
    followDevices();
}

// Controls and fields.

void FormOpt::follow(Control& control, const OptionField& field, const OptionStore::Listener& show) {
    bound_.emplace_back(&control, field);
    show();
    options_.listen({field}, show);
}

void FormOpt::bind(CheckBox& box, OnOff Options::*field) {
    follow(box, field, [this, &box, field] { box.setValue((options_.values().*field).number()); });
    box.onClick = [this, &box, field] { options_.set(field, OnOff::Of(box.value())); };
}

void FormOpt::bind(ScrollBar& slider, std::int32_t Options::*field, Label& figure, Figure text) {
    const OptionRow& row = RowOf(field);
    slider.setRange(row.minimum, row.maximum);
    follow(slider, field, [this, &slider, field, &figure, text] {
        slider.setValue(options_.values().*field);
        figure.setCaption(text(options_.values().*field));
    });
    slider.onChange = [this, &slider, field] { options_.set(field, slider.value()); };
}

void FormOpt::bind(ControlArray<OptionButton>& buttons, std::int32_t Options::*field) {
    for (int i = 0; buttons.has(i); ++i) {
        bound_.emplace_back(&buttons[i], field);
        buttons[i].onClick = [this, field, i] { options_.set(field, i); };
    }
    follow(buttons[0], field, [this, &buttons, field] {
        if (buttons.has(options_.values().*field)) buttons[options_.values().*field].setValue(true);
    });
}

void FormOpt::bind(ComboBox& box, std::int32_t Options::*field) {
    follow(box, field, [this, &box, field] {
        const auto item = std::ranges::find(box.items(), options_.values().*field, &ComboBox::Item::data);
        if (item != box.items().end()) box.setListIndex(static_cast<int>(item - box.items().begin()));
    });
    box.onClick = [this, &box, field] { options_.set(field, box.data()); };
}

void FormOpt::bind(TextBox& box, std::string Options::*field) {
    follow(box, field, [this, &box, field] { box.setText(options_.values().*field); });
    box.onChange = [this, &box, field] { options_.set(field, box.text()); };
}

void FormOpt::bindWhenLeft(TextBox& box, std::string Options::*field) {
    follow(box, field, [this, &box, field] { box.setText(options_.values().*field); });
    box.onLeave = [this, &box, field] { options_.set(field, box.text()); };
}

void FormOpt::settleTexts() {
    for (const auto& [control, field] : bound_) {
        const auto* box = dynamic_cast<const TextBox*>(control);
        if (box && box->onLeave) box->onLeave();
    }
}

// What belongs to something that is switched off does nothing, and its names are grey with it.
void FormOpt::showAvailable() {
    for (const auto& [control, field] : bound_) control->setEnabled(options_.available(field));
    const auto belongs = [this](OnOff Options::*owner, std::initializer_list<Control*> controls) {
        if (options_.values().*owner) return;
        for (Control* control : controls) control->setEnabled(false);
    };
    const std::initializer_list<Control*> names{&LabelAnime,     &FigureAnime,     &LabelSpeana, &FigureSpeana,
                                                &LabelIntroView, &FigureIntroView, &LabelFft,    &FigureIntro};
    for (Control* name : names) name->setEnabled(true);
    belongs(&Options::TitleAnimation, {&HScrollAnime, &LabelAnime, &FigureAnime});
    belongs(&Options::SpectrumShown, {&HScrollSpeana, &LabelSpeana, &FigureSpeana, &HScrollSpeanaIntro, &LabelIntroView,
                                      &FigureIntroView, &LabelFft, &FftOption[0], &FftOption[1], &FftOption[2]});
    belongs(&Options::IntroPlay, {&HScrollIntro, &FigureIntro});
}

void FormOpt::chooseFolder(TextBox& box, const std::string& title) {
    if (!services_.dialogs) return;
    if (const auto folder = services_.dialogs->chooseFolder(title, box.text())) box.setText(*folder);
    box.onLeave();
}

void FormOpt::chooseFont() {
    if (!services_.dialogs) return;
    if (const auto face = services_.dialogs->chooseFont(options_->LyricsFont))
        options_.set(&Options::LyricsFont, *face);
}

void FormOpt::showFontSample() { LabelFontSample.setFont({options_->LyricsFont, kSamplePoints, options_->LyricsBold}); }

void FormOpt::CommandDefaults_Click() {
    if (!services_.dialogs || !services_.dialogs->confirmLoss("すべてのオプションを初期設定に戻しますか？")) return;
    settleTexts();  // or half a text would outlive it
    options_.assign({});
}

// Devices and drives come and go, so they are listed anew with every opening of the window.
void FormOpt::Form_Shown() {
    followDevices();
    showDrive();
}

bool FormOpt::followDevices() {
    if (!services_.devices) return false;
    const std::vector<std::string> before = std::exchange(devices_, services_.devices->names());
    Options options = options_.values();
    std::string& meant = options.OutputDeviceName;
    const int device = FindDevice(devices_, meant, options.OutputDevice);
    std::vector<ComboBox::Item> items{{kDefaultDeviceText, kDefaultDevice}};
    for (int n = 0; n < std::ssize(devices_); ++n) {
        const std::string& name = devices_[static_cast<std::size_t>(n)];
        items.push_back({name.empty() ? DeviceText(n) : name, n});
    }
    const bool absent = device < 0 && !meant.empty();
    if (absent) items.push_back({meant + "（未接続）", kAbsentDevice});
    if (device >= 0) meant = devices_[static_cast<std::size_t>(device)];
    const int index = absent ? static_cast<int>(items.size()) - 1 : device + 1;
    listing_ = true;
    // Only what is another is set: the user may have the list open.
    if (items != ComboDevice.items()) ComboDevice.setItems(items);
    if (index != ComboDevice.listIndex()) ComboDevice.setListIndex(index);
    listing_ = false;
    options.OutputDevice = device;
    const bool others = devices_ != before;
    options_.assign(options);
    return others;
}

void FormOpt::deviceChosen() {
    const int device = ComboDevice.data();
    if (listing_ || device == kAbsentDevice) return;
    Options options = options_.values();
    options.OutputDevice = device;
    options.OutputDeviceName =
        device >= 0 && device < std::ssize(devices_) ? devices_[static_cast<std::size_t>(device)] : "";
    options_.assign(options);
}

void FormOpt::showDrive() {
    if (!services_.files) return;
    std::vector<ComboBox::Item> items{{"自動", 0}};
    for (const std::string& root : CdDrives(*services_.files)) items.push_back({root.substr(0, 2), 0});
    const auto fits = [&](const ComboBox::Item& item) { return EqualsNoCase(item.text, options_->DefaultCdDrive); };
    const auto found = std::ranges::find_if(items, fits);
    const int index = found == items.end() ? 0 : static_cast<int>(found - items.begin());
    listing_ = true;
    if (items != ComboCdDrive.items()) ComboCdDrive.setItems(items);
    ComboCdDrive.setListIndex(index);
    listing_ = false;
}

void FormOpt::driveChosen() {
    if (listing_) return;
    options_.set(&Options::DefaultCdDrive, ComboCdDrive.listIndex() <= 0 ? std::string() : ComboCdDrive.text());
}

void FormOpt::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    hide();
}

}  // namespace quenlox
