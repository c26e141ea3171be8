// Files and folders. Paths are UTF-8 with "\" between folders; any name that the system allows.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

enum class DriveType { Unknown, NoRoot, Removable, Fixed, Remote, CdRom, RamDisk };

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    virtual bool fileExists(const std::string& path) = 0;
    virtual bool folderExists(const std::string& path) = 0;
    virtual bool isReadOnly(const std::string& path) = 0;
    // The whole file; nothing when it cannot be read or is larger than `limit` bytes.
    virtual std::optional<std::string> read(const std::string& path, std::uint64_t limit = 256u << 20) = 0;
    // As a transaction: temporary file beside the target, flush, replace. A failure leaves the old file as it was.
    virtual bool write(const std::string& path, std::string_view bytes) = 0;
    virtual bool rename(const std::string& from, const std::string& to) = 0;  // fails when `to` exists
    virtual bool remove(const std::string& path) = 0;
    // Names without the folder, in the order in which the file system returns them, "." and ".." left out.
    virtual std::vector<std::string> files(const std::string& folder) = 0;
    virtual std::vector<std::string> folders(const std::string& folder) = 0;
    // The same, one name a call until the listener says false; for folders of any size.
    virtual void eachFile(const std::string& folder, const std::function<bool(const std::string& name)>& listener) = 0;
    virtual std::vector<std::string> drives() = 0;                  // "C:\\" and so on
    virtual DriveType driveType(const std::string& root) = 0;
    virtual std::string programFolder() = 0;                        // without "\" at its end, unless it is a root
    // Where settings and lists are written (user_files.h), found out at the first call by writing: the program's folder, or
    // one of the user's own, which is made if it has to be.
    virtual std::string userFolder() = 0;
    virtual std::string currentFolder() = 0;
};

}  // namespace quenlox
