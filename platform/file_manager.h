// What programs and the system's file manager share of files: the clipboard, a window that shows one, how large it is.
// On the user-interface thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quenlox {

class FileManager {
  public:
    virtual ~FileManager() = default;
    // The files on the clipboard, whole paths; none when something else is there, or nobody may look.
    virtual std::vector<std::string> copiedFiles() = 0;
    // For others to copy, never to move. False: another program holds the clipboard.
    virtual bool copyFiles(const std::vector<std::string>& paths) = 0;
    // Its folder, the file selected. Returns before it is shown; false when it cannot be.
    virtual bool showInFolder(const std::string& path) = 0;
    virtual std::optional<std::uint64_t> sizeOf(const std::string& path) = 0;  // bytes; waits for the disk
};

}  // namespace quenlox
