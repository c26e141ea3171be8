// How the options stand in the settings file: one row for each, in the order in which they are written. Pure functions.
#pragma once

#include <cstdint>
#include <span>

#include "state/options.h"
#include "text/ini_document.h"

namespace quenlox {

struct OptionRow {
    const char* section;
    const char* key;
    OptionField field;
    // Of a number, as the field holds it. One outside is brought into the range, or of a choice taken for missing.
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    bool choice = false;
    std::int32_t unit = 1;  // the file holds the number this many times
};

// Every option once. In the file the place of the options window follows the first row.
std::span<const OptionRow> OptionRows();
const OptionRow& RowOf(OptionField field);

// What is missing has its value of a fresh start.
Options ReadOptions(const IniDocument& file);
void WriteOption(const OptionRow& row, const Options& options, IniDocument& file);

}  // namespace quenlox
