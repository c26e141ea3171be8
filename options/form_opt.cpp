#include "options/form_opt.h"

#include <algorithm>
#include <utility>

#include "app/global_state.h"

namespace quenlox {

FormOpt::FormOpt(GlobalState& state) : Form("FormOpt", Kind::Dialog), state_(state) {
    FftOption.fill(*this, "FftOption", 0, 2);
    QualityOption.fill(*this, "QualityOption", 0, 2);
    VolumeOption.fill(*this, "VolumeOption", 0, 1);
    LyricsOption.fill(*this, "LyricsOption", 0, 5);
    for (int i = 0; i <= 5; ++i) LyricsOption[i].onClick = [this, i] { state_.LyricsLine = i; };
    for (const int unused : {0, 2, 4}) LyricsOption[unused].setVisible(false);
    ComboSkinScale.setItems({{"等倍", 1}, {"2倍", 2}, {"3倍", 3}, {"4倍", 4}});
    ComboSkinScale.setListIndex(0);
    ComboDevice.setItems({{"既定のデバイス", -1}});
    ComboDevice.setListIndex(0);

    const auto display = [this] {
        if (onDisplayOptions) onDisplayOptions();
    };
    for (CheckBox* box : {&CheckAnime, &CheckSpeana, &CheckPanel}) box->onClick = display;
    ComboSkinScale.onClick = display;
    const auto panel = [this] {
        if (onPanelOptions) onPanelOptions();
    };
    HScrollSpeana.onChange = panel;
    for (int i = 0; i <= 2; ++i) FftOption[i].onClick = panel;
    CheckLyrics.onClick = [this] {
        if (onLyricsShown) onLyricsShown();
    };
    const auto output = [this] {
        if (onOutput) onOutput();
    };
    ComboDevice.onClick = output;
    HScrollBuffer.onChange = output;
}

void FormOpt::setOutputDevice(int device) {
    std::vector<ComboBox::Item> items = ComboDevice.items();
    auto found = std::ranges::find(items, device, &ComboBox::Item::data);
    const int index = static_cast<int>(found - items.begin());
    if (found == items.end()) {
        items.push_back({"デバイス " + std::to_string(device), device});
        ComboDevice.setItems(std::move(items));
    }
    ComboDevice.setListIndex(index);
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
