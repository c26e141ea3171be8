#include "app/settings_file.h"

#include "app/settings_table.h"
#include "platform/user_files.h"
#include "playlist/form_list.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::uint64_t kLargestFile = 4u << 20;  // bytes

}  // namespace

std::string SettingsFile::path() const { return UserFileToWrite(windows_.files, kSettingsFileName); }

bool SettingsFile::exists() const {
    return windows_.files.fileExists(UserFileToRead(windows_.files, kSettingsFileName));
}

void SettingsFile::LoadSettings() {
    FileSystem& files = windows_.files;
    const auto bytes = files.read(UserFileToRead(files, kSettingsFileName), kLargestFile);
    unreadable_ = !bytes && files.fileExists(path());
    loaded_ = IniDocument::Parse(bytes.value_or(""));
    windows_.options.assign(ReadOptions(loaded_));
    windows_.state.ListType = windows_.options->TagLists.number();
    for (const SettingsGroup& group : SettingsGroups()) {
        for (const SettingsKey& key : group.keys) key.read(windows_, {loaded_, key.section, key.key});
    }
    FormList& list = windows_.list;
    list.showColumns();
    list.showSortItems(windows_.state.ListType != 0);
    list.showCurrentList();
    const std::string folder = windows_.state.CurrentFolder;
    if (folder.empty()) return;
    list.openFolder(folder);
    windows_.state.CurrentFolder = folder;  // one that has gone for now is remembered until another is chosen
}

WriteResult SettingsFile::SaveSettings() {
    if (unreadable_) return WriteError::Unread;
    FileSystem& files = windows_.files;
    // What somebody has put into the file meanwhile stays as well.
    const auto bytes = files.read(path(), kLargestFile);
    IniDocument file = bytes ? IniDocument::Parse(*bytes) : loaded_;
    for (const SettingsGroup& group : SettingsGroups()) {
        for (const SettingsKey& key : group.keys) {
            if (const auto value = key.write(windows_)) WriteIniString(file, key.section, key.key, *value);
        }
        for (const OptionRow& row : group.options) WriteOption(row, windows_.options, file);
    }
    const std::string text = file.serialise();
    if (bytes == text) return {};
    return files.write(path(), text);
}

}  // namespace quenlox
