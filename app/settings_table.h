// The keys of the settings file, each with its default and what it fills, in the order in which they are written.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "app/settings_file.h"

namespace quenlox {

// The steps of reading: every step takes its keys in the order of the table.
enum class LoadStep {
    MainWindow, CurrentFile, Modes, ListWindow, ListType, Columns, Lists, Options, Equalizer, Lyrics, Tag
};
inline constexpr int kLoadSteps = 11;

struct SettingsKey {
    using ReadNumber = void (*)(const SettingsWindows&, std::int32_t);
    using ReadText = void (*)(const SettingsWindows&, const std::string&);
    // Nothing: the key is left in the file as it is.
    using Write = std::optional<std::string> (*)(const SettingsWindows&);

    LoadStep step;
    const char* section;
    const char* key;
    std::int32_t number;   // default of a number
    const char* text;      // default of a text; null: the program folder
    ReadNumber readNumber; // null for a text
    ReadText readText;
    Write write;
};

std::span<const SettingsKey> SettingsKeys();

inline constexpr int kEqualizerEntries = 6;  // five presets and the sliders
// Default of "0Eq" to "5Eq".
const char* DefaultEqualizerEntry(int entry);

}  // namespace quenlox
