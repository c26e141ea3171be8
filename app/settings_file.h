// The settings file "Quenlox.ini" in the program folder, or in the user's when that cannot be written: read once at
// start into the options, the shared state and the windows, written once at the end. Failures are absorbed: what is
// missing takes its default. On the user-interface thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "text/ini_document.h"
#include "text/numbers.h"

namespace quenlox {

class ConversionRun;
class FormGra;
class FormList;
class FormLyrics;
class FormOpt;
class FormTag;
class MainWindowHandlers;
class OptionStore;
struct GlobalState;

inline constexpr std::string_view kSettingsFileName = "Quenlox.ini";

// Everything that the settings fill and are read back from.
struct SettingsWindows {
    GlobalState& state;
    OptionStore& options;
    SplitValues& splitValues;  // shared with the skins: what a short list there leaves open keeps the numbers of here
    FileSystem& files;
    std::function<void(const std::string& file)> remember;  // the file of the last time
    MainWindowHandlers& top;
    FormList& list;
    FormOpt& opt;
    FormGra& gra;
    FormLyrics& lyrics;
    FormTag& tag;
    ConversionRun& conversion;
};

class SettingsFile {
  public:
    explicit SettingsFile(const SettingsWindows& windows) : windows_(windows) {}

    std::string path() const;  // of the file that is written
    bool exists() const;       // there is one to read
    // A mode is stored one step back and stepped forward by the handler that the user's click calls, which shows it.
    void LoadSettings();
    // Every key, in the order of the table; unknown keys and comments of the file stay. A file that says so already is
    // not written. A failure leaves the file as it was. A file that was there and could not be read is not touched.
    WriteResult SaveSettings();

  private:
    SettingsWindows windows_;
    IniDocument loaded_;
    bool unreadable_ = false;
};

}  // namespace quenlox
