// Which skin packages there are, and which one is loaded when a package cannot be.
#pragma once

#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "platform/file_system.h"

namespace quenlox {

class SkinPackages {
  public:
    SkinPackages(FileSystem& files, Dialogs& dialogs) : files_(files), dialogs_(dialogs) {}

    // The folder names under "skin" that the menu offers beside the default skin, in the order of the folder.
    std::vector<std::string> ListSkins() const;
    // The definition file of the package with that folder name; empty when there is none.
    std::string definitionFileOf(const std::string& skinName) const;
    std::string defaultDefinitionFile() const;
    // The definition file to load for the one asked for: itself, or the default package's, with the message that says
    // why. Without a settings file, which is the first start, always the default package and no message.
    std::string choose(const std::string& skinFile) const;
    bool firstStart() const;  // there are no settings yet

  private:
    std::string skinFolder() const;
    std::string defaultPackage() const;  // says so when it is missing

    FileSystem& files_;
    Dialogs& dialogs_;
};

}  // namespace quenlox
