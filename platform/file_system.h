// Files and folders. Paths are UTF-8 with "\" between folders; any name that the system allows. fileExists and
// folderExists may be called on any thread, everything else on the user-interface thread. A call waits until the disk
// or the server answers. Whatever cannot be found out is told as if it were not there; nothing throws but for memory.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

// The names in a folder, in the order in which the file system returns them. Hidden files and folders are left out, as
// in the windows of the system, and so are "." and "..".
class FolderReader {
  public:
    virtual ~FolderReader() = default;
    virtual bool next(std::string& name, bool& isFolder) = 0;  // false when there are no more
};

// Why a file could not be written.
enum class WriteError {
    None,
    NoFolder,  // nothing can be made in its folder
    InUse,     // it may not be written to, or another program has it open
    Disk,      // full, or failing
    Unread,    // it was there at the start and could not be read: it is not written over
};

class WriteResult {
  public:
    WriteResult(WriteError error = WriteError::None) : error_(error) {}
    explicit operator bool() const { return error_ == WriteError::None; }
    WriteError error() const { return error_; }

  private:
    WriteError error_;
};

enum class DriveType { Unknown, NoRoot, Removable, Fixed, Remote, CdRom, RamDisk };

class FileSystem {
  public:
    virtual ~FileSystem() = default;
    virtual bool fileExists(const std::string& path) = 0;    // false for a folder
    virtual bool folderExists(const std::string& path) = 0;  // false for a file
    virtual bool isReadOnly(const std::string& path) = 0;    // false for what is not there
    // The whole file; nothing when it cannot be read or is larger than `limit` bytes.
    virtual std::optional<std::string> read(const std::string& path, std::uint64_t limit = 256u << 20) = 0;
    // As a transaction: temporary file beside the target, flush, replace. A failure leaves the old file as it was.
    virtual WriteResult write(const std::string& path, std::string_view bytes) = 0;
    virtual bool rename(const std::string& from, const std::string& to) = 0;  // fails when `to` exists
    virtual bool remove(const std::string& path) = 0;                         // a file; false too when there is none
    // A folder of any size is read name by name; one that cannot be read has none. The system may take its time for the
    // first name and reads ahead then.
    virtual std::unique_ptr<FolderReader> readFolder(const std::string& folder) = 0;
    // All at once, for folders that are known to be small.
    std::vector<std::string> files(const std::string& folder) { return names(folder, false); }
    std::vector<std::string> folders(const std::string& folder) { return names(folder, true); }
    virtual std::vector<std::string> drives() = 0;             // "C:\\" and so on
    virtual DriveType driveType(const std::string& root) = 0;  // Unknown when the system does not say
    virtual std::string programFolder() = 0;                   // without "\" at its end, unless it is a root
    // Where settings and lists are written (user_files.h), found out at the first call by writing: the program's
    // folder, or one of the user's own, which is made if it has to be.
    virtual std::string userFolder() = 0;
    virtual std::string currentFolder() = 0;  // of the process
    // A text in the code page of this machine as UTF-8; nothing where that is Shift-JIS (932) or UTF-8.
    virtual std::optional<std::string> fromCodePage(std::string_view bytes) = 0;

  private:
    std::vector<std::string> names(const std::string& folder, bool wantFolders) {
        std::vector<std::string> all;
        std::string name;
        bool isFolder = false;
        for (const auto reader = readFolder(folder); reader->next(name, isFolder);) {
            if (isFolder == wantFolders) all.push_back(std::move(name));
        }
        return all;
    }
};

}  // namespace quenlox
