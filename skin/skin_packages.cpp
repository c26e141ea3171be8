#include "skin/skin_packages.h"

#include "platform/user_files.h"
#include "skin/skin_definition.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr const char* kDefaultName = "default";

}  // namespace

std::string SkinPackages::skinFolder() const { return JoinPath(files_.programFolder(), "skin"); }

std::string SkinPackages::defaultDefinitionFile() const {
    return JoinPath(JoinPath(skinFolder(), kDefaultName), "default.tsk");
}

std::vector<std::string> SkinPackages::ListSkins() const {
    std::vector<std::string> names;
    for (std::string& name : files_.folders(skinFolder())) {
        if (!EqualsNoCase(name, kDefaultName)) names.push_back(std::move(name));
    }
    return names;
}

std::string SkinPackages::definitionFileOf(const std::string& skinName) const {
    const std::string folder = JoinPath(skinFolder(), skinName);
    for (const std::string& name : files_.files(folder)) {
        if (LastFour(name) == ".tsk") return JoinPath(folder, name);
    }
    return {};
}

std::string SkinPackages::defaultPackage() const {
    const std::string file = defaultDefinitionFile();
    if (!files_.fileExists(file))
        dialogs_.message("DefaultSkinが見つかりません\r再インストールしてください", MessageIcon::Stop);
    return file;
}

bool SkinPackages::firstStart() const { return !files_.fileExists(UserFileToRead(files_, "Quenlox.ini")); }

std::string SkinPackages::choose(const std::string& skinFile) const {
    if (!files_.fileExists(skinFile)) {
        dialogs_.message("指定のSkinが見つかりません\rDefaultSkinをロードします", MessageIcon::Stop);
        return defaultPackage();
    }
    if (firstStart()) return defaultPackage();
    const IniDocument definition = IniDocument::Parse(files_.read(skinFile, kLargestDefinition).value_or(""));
    if (definition.integer("Main", "Ver", 0) < kOldestSkinVersion) {
        dialogs_.message("Skinのバージョンが異なります\rDefaultSkinをロードします", MessageIcon::Stop);
        return defaultPackage();
    }
    return skinFile;
}

}  // namespace quenlox
