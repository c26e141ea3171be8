#include "app/settings_file.h"

#include <algorithm>

#include "state/global_state.h"
#include "app/settings_table.h"
#include "equalizer/form_gra.h"
#include "platform/user_files.h"
#include "playlist/form_list.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::uint64_t kLargestFile = 4u << 20;  // bytes

}  // namespace

std::string SettingsFile::path() const { return UserFileToWrite(files_, kSettingsFileName); }

bool SettingsFile::exists() const { return files_.fileExists(UserFileToRead(files_, kSettingsFileName)); }

void SettingsFile::LoadSettings() {
    const auto bytes = files_.read(UserFileToRead(files_, kSettingsFileName), kLargestFile);
    unreadable_ = !bytes && files_.fileExists(path());
    loaded_ = IniDocument::Parse(bytes.value_or(""));
    for (int step = 0; step < kLoadSteps; ++step) {
        for (const SettingsKey& key : SettingsKeys()) {
            if (static_cast<int>(key.step) != step) continue;
            // The presets and sliders stand in the table before the switch, which comes last.
            if (!key.readNumber && !key.readText && std::string_view(key.key) == "0Eq") loadEqualizer(loaded_);
            if (key.readNumber) key.readNumber(windows_, ReadIniInt(loaded_, key.section, key.key, key.number));
            if (key.readText) {
                const std::string whenMissing = key.text ? key.text : files_.programFolder();
                key.readText(windows_, ReadIniString(loaded_, key.section, key.key, whenMissing));
            }
        }
        if (step == static_cast<int>(LoadStep::Columns)) afterColumns();
        if (step == static_cast<int>(LoadStep::Lists)) openCurrentFolder();
    }
}

void SettingsFile::afterColumns() {
    windows_.list.showSortItems(windows_.state.ListType != 0);
}

void SettingsFile::openCurrentFolder() {
    windows_.list.showCurrentList();
    const std::string& folder = windows_.state.CurrentFolder;
    if (!folder.empty()) windows_.list.openFolder(folder);
}

void SettingsFile::loadEqualizer(const IniDocument& file) {
    for (int entry = 0; entry < kEqualizerEntries; ++entry) {
        const std::string text =
            ReadIniString(file, "Equalizer", std::to_string(entry) + "Eq", DefaultEqualizerEntry(entry));
        const std::size_t comma = text.find(',');
        SplitNumbers(comma == std::string::npos ? std::string_view{} : std::string_view(text).substr(comma + 1),
                     splitValues_);
        if (entry < FormGra::kPresets) {
            windows_.gra.geLabel[entry].setCaption(std::string(TrimBlanks(std::string_view(text).substr(0, comma))));
        }
        for (int band = 0; band < FormGra::kBands; ++band) {
            const std::int32_t gain = splitValues_(band + 1);
            if (entry < FormGra::kPresets) {
                windows_.state.EqPresetTable[static_cast<std::size_t>(entry)][static_cast<std::size_t>(band)] = gain;
            } else {
                windows_.gra.VScroll[band].setValue(FormGra::sliderOf(gain));
            }
        }
    }
}

void SettingsFile::resetOptions() {
    for (const SettingsKey& key : SettingsKeys()) {
        const std::string_view name = key.key;
        const bool option = key.step == LoadStep::Options || key.step == LoadStep::ListType;
        if (!option || name == "X" || name == "Y" || name == "ListType") continue;
        if (key.readNumber) key.readNumber(windows_, key.number);
        if (key.readText) key.readText(windows_, key.text);
    }
}

bool SettingsFile::SaveSettings() {
    if (unreadable_) return false;
    // What somebody has put into the file meanwhile stays as well.
    const auto bytes = files_.read(path(), kLargestFile);
    IniDocument file = bytes ? IniDocument::Parse(*bytes) : loaded_;
    for (const SettingsKey& key : SettingsKeys()) {
        if (const auto value = key.write(windows_)) WriteIniString(file, key.section, key.key, *value);
    }
    const std::string text = file.serialise();
    return bytes == text || files_.write(path(), text);
}

}  // namespace quenlox
