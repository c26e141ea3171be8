// The keys of the settings file, each with what it fills and what it is written from, in the order in which they are
// written and read. The options are read before all others, as one value.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/settings_file.h"
#include "state/option_table.h"

namespace quenlox {

// The value of one key as the file has it.
struct StoredSetting {
    const IniDocument& file;
    const char* section;
    const char* key;

    std::int32_t number(std::int32_t whenMissing = 0) const { return ReadIniInt(file, section, key, whenMissing); }
    std::string text(std::string_view whenMissing = "") const { return ReadIniString(file, section, key, whenMissing); }
};

struct SettingsKey {
    using Read = void (*)(const SettingsWindows&, const StoredSetting&);
    // Nothing: the key is left in the file as it is.
    using Write = std::optional<std::string> (*)(const SettingsWindows&);

    const char* section;
    const char* key;
    Read read;
    Write write;
};

// Behind the keys of `keys` those of `options`.
struct SettingsGroup {
    std::span<const SettingsKey> keys;
    std::span<const OptionRow> options;
};

std::span<const SettingsGroup> SettingsGroups();

}  // namespace quenlox
