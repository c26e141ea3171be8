#include "options/form_opt.h"

#include <algorithm>
#include <utility>

#include "state/global_state.h"
#include "platform/dialogs.h"
#include "playback/cd_drives.h"
#include "platform/output_devices.h"
#include "text/strings.h"

namespace quenlox {
namespace {

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

FormOpt::FormOpt(GlobalState& state) : Form("FormOpt", Kind::Dialog), state_(state) {
    FftOption.fill(*this, "FftOption", 0, 2);
    QualityOption.fill(*this, "QualityOption", 0, 2);
    VolumeOption.fill(*this, "VolumeOption", 0, 1);
    LyricsOption.fill(*this, "LyricsOption", 0, 5);
    for (const int unused : {0, 2, 4}) LyricsOption[unused].setVisible(false);
    ComboSkinScale.setItems({{"等倍", 1}, {"2倍", 2}, {"3倍", 3}, {"4倍", 4}});
    ComboSkinScale.setListIndex(0);
    ComboDevice.setItems({{kDefaultDeviceText, kDefaultDevice}});
    ComboDevice.setListIndex(0);

    setCaptions();
    const auto tell = [this](std::function<void()> FormOpt::*whom) {
        return [this, whom] {
            showFigures();
            if (!listing_ && this->*whom) (this->*whom)();
        };
    };
    const auto display = tell(&FormOpt::onDisplayOptions), panel = tell(&FormOpt::onPanelOptions);
    for (CheckBox* box : {&CheckAnime, &CheckSpeana, &CheckPanel}) box->onClick = display;
    ComboSkinScale.onClick = display;
    HScrollSpeana.onChange = panel;
    for (int i = 0; i <= 2; ++i) FftOption[i].onClick = panel;
    for (ScrollBar* bar : {&HScrollAnime, &HScrollSpeanaIntro, &HScrollIntro}) {
        bar->onChange = [this] { showFigures(); };
    }
    const auto lyricsLook = tell(&FormOpt::onLyricsLook);
    for (int i = 0; i <= 5; ++i) {
        LyricsOption[i].onClick = [this, i, lyricsLook] {
            state_.LyricsLine = i;
            lyricsLook();
        };
    }
    for (CheckBox* box : {&CheckTimeTag, &CheckLyricsBold, &CheckLyricsSecond, &CheckLyricsSelf})
        box->onClick = lyricsLook;
    HScrollLyricsTime.onChange = TextLyricsFont.onChange = lyricsLook;
    CheckLyrics.onClick = tell(&FormOpt::onLyricsShown);
    CheckLyricsMain.onClick = tell(&FormOpt::onLyricsSources);
    for (TextBox* box : {&TextLyricsDir, &TextBmpDir, &TextReName}) box->onLeave = [this] { settleTexts(); };
    for (int i = 0; i <= 2; ++i) QualityOption[i].onClick = tell(&FormOpt::onQuality);
    for (int i = 0; i <= 1; ++i) VolumeOption[i].onClick = tell(&FormOpt::onVolume);
    CheckReName.onClick = tell(&FormOpt::onEstimate);
    HScrollBuffer.onChange = tell(&FormOpt::onOutput);
    ComboDevice.onClick = [this, output = tell(&FormOpt::onOutput)] {
        const int device = ComboDevice.data();
        if (!listing_ && device != kAbsentDevice) {
            deviceName_ =
                device >= 0 && device < std::ssize(devices_) ? devices_[static_cast<std::size_t>(device)] : "";
        }
        output();
    };
    for (ScrollBar* bar : {&HScrollHiPitch, &HScrollLowPitch, &HScrollStepPitch})
        bar->onChange = tell(&FormOpt::onPitch);
    CheckListTime.onClick = CheckListTypeS.onClick = tell(&FormOpt::onListColumns);
    ComboCdDrive.onClick = [this] {
        if (!listing_) state_.DefaultCdDrive = ComboCdDrive.listIndex() <= 0 ? std::string() : ComboCdDrive.text();
    };
    CommandBmpDir.onClick = [this] { chooseFolder(TextBmpDir, "画像フォルダ"); };
    CommandLyricsDir.onClick = [this] { chooseFolder(TextLyricsDir, "歌詞フォルダ"); };
    CommandDefaults.onClick = [this] { CommandDefaults_Click(); };
    CommandClose.onClick = [this] { hide(); };
    showFigures();
}

void FormOpt::chooseFolder(TextBox& box, const std::string& title) {
    if (!services_.dialogs) return;
    if (const auto folder = services_.dialogs->chooseFolder(title, box.text())) box.setText(*folder);
    settleTexts();
}

void FormOpt::settleTexts() {
    const auto settle = [](const TextBox& box, std::string& settled, const std::function<void()>& tell) {
        if (box.text() == settled) return;
        settled = box.text();
        if (tell) tell();
    };
    settle(TextLyricsDir, lyricsFolder_, onLyricsSources);
    settle(TextBmpDir, pictureFolder_, onPictureFolder);
    settle(TextReName, nameFormat_, onNameFormat);
}

void FormOpt::CommandDefaults_Click() {
    if (!services_.dialogs || !services_.dialogs->confirm("すべてのオプションを初期設定に戻しますか？")) return;
    if (onDefaults) onDefaults();
    CheckListType.setValue(0);
    ComboCdDrive.setListIndex(0);
    settleTexts();
}

// Devices and drives come and go, so they are listed anew with every opening of the window.
void FormOpt::Form_Shown() {
    followDevices();
    listing_ = true;
    listCdDrives();
    listing_ = false;
}

bool FormOpt::followDevices() {
    if (!services_.devices) return false;
    const std::vector<std::string> before = std::exchange(devices_, services_.devices->names());
    const int deviceBefore = outputDevice(), device = FindDevice(devices_, deviceName_, deviceBefore);
    std::vector<ComboBox::Item> items{{kDefaultDeviceText, kDefaultDevice}};
    for (int n = 0; n < std::ssize(devices_); ++n) {
        const std::string& name = devices_[static_cast<std::size_t>(n)];
        items.push_back({name.empty() ? DeviceText(n) : name, n});
    }
    if (device < 0 && !deviceName_.empty()) items.push_back({deviceName_ + "（未接続）", kAbsentDevice});
    if (device >= 0) deviceName_ = devices_[static_cast<std::size_t>(device)];
    const bool absent = items.back().data == kAbsentDevice;
    const int index = absent ? static_cast<int>(items.size()) - 1 : device + 1;
    listing_ = true;
    // Only what is another is set: the user may have the list open.
    if (items != ComboDevice.items()) ComboDevice.setItems(items);
    if (index != ComboDevice.listIndex()) ComboDevice.setListIndex(index);
    listing_ = false;
    if (outputDevice() != deviceBefore && onOutput) onOutput();
    return devices_ != before;
}

void FormOpt::listCdDrives() {
    if (!services_.files) return;
    std::vector<ComboBox::Item> items{{"自動", 0}};
    for (const std::string& root : CdDrives(*services_.files)) items.push_back({root.substr(0, 2), 0});
    ComboCdDrive.setItems(items);
    ComboCdDrive.setListIndex(0);
    for (std::size_t i = 1; i < items.size(); ++i) {
        if (EqualsNoCase(items[i].text, state_.DefaultCdDrive)) ComboCdDrive.setListIndex(static_cast<int>(i));
    }
}

void FormOpt::Form_KeyDown(int key, int) {
    constexpr int kEscape = 27;
    if (key == kEscape) hide();
}

void FormOpt::setOutputDevice(int device) {
    std::vector<ComboBox::Item> items = ComboDevice.items();
    auto found = std::ranges::find(items, device, &ComboBox::Item::data);
    const int index = static_cast<int>(found - items.begin());
    if (found == items.end()) {
        items.push_back({DeviceText(device), device});
        ComboDevice.setItems(std::move(items));
    }
    ComboDevice.setListIndex(index);
}

void FormOpt::setOutputDeviceName(const std::string& name) {
    deviceName_ = name;
    followDevices();
}

void FormOpt::setSkinScale(int factor) { ComboSkinScale.setListIndex(std::clamp(factor, 1, 4) - 1); }

void FormOpt::choose(ControlArray<OptionButton>& options, int index) {
    if (options.has(index)) options[index].setValue(true);
}

int FormOpt::chosen(const ControlArray<OptionButton>& options) {
    for (int i = 0; options.has(i); ++i) {
        if (options[i].value()) return i;
    }
    return 0;
}

void FormOpt::allowOperationPanel(bool allowed) {
    if (!allowed) CheckPanel.setValue(0);
    CheckPanel.setEnabled(allowed);
}

void FormOpt::allowSpectrum(bool allowed) { CheckSpeana.setEnabled(allowed); }

void FormOpt::allowLyricsWindowChoices(bool allowed) {
    for (const int i : {1, 3, 5}) LyricsOption[i].setEnabled(allowed);
    CheckLyrics.setEnabled(allowed);
}

void FormOpt::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;  // its controls hold the settings
    hide();
}

}  // namespace quenlox
