// A clipboard that holds files, and folders that are only said to be shown.
#pragma once

#include <string>
#include <vector>

#include "platform/file_manager.h"

namespace quenlox {

class FakeFileManager : public FileManager {
  public:
    std::vector<std::string> clipboard, shown;
    std::vector<std::string> copiedFiles() override { return clipboard; }
    bool copyFiles(const std::vector<std::string>& paths) override { return clipboard = paths, true; }
    bool showInFolder(const std::string& path) override { return shown.push_back(path), true; }
    std::optional<std::uint64_t> sizeOf(const std::string&) override { return 1234567; }
};

}  // namespace quenlox
