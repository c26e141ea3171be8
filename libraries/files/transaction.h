// Writing a file so that a failure, a crash or a cancel leaves the old one as it was: the bytes go to a temporary file
// beside the target, which replaces it in one step at the end. On Windows the new file has the old one's date of
// creation, its rights and whether it is hidden; a program that holds the target for a moment is waited for, a quarter
// of a second at most; what a killed write left beside the target goes with the next one. Used from one thread at a
// time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace vbmp3 {

class FileTransaction {
  public:
    enum class Error { None, Write, Locked };  // disk full or no such folder; target read-only or in use

    // Null when no temporary file can be made beside the target, and for a target that no file can be: no name, a
    // folder.
    static std::unique_ptr<FileTransaction> begin(const std::string& target);
    ~FileTransaction();  // without commit: removes the temporary file
    FileTransaction(const FileTransaction&) = delete;
    FileTransaction& operator=(const FileTransaction&) = delete;

    bool write(std::span<const uint8_t> bytes);                     // at the end
    bool writeAt(uint64_t offset, std::span<const uint8_t> bytes);  // over what is there, such as a head
    uint64_t size() const { return size_; }
    // Flushes to the disk and replaces the target. The transaction is over, whatever comes back.
    Error commit();

  private:
    struct File;
    FileTransaction();
    std::unique_ptr<File> file_;
    std::string target_;
    uint64_t size_ = 0;
    bool failed_ = false;
};

// Whether a transaction could end with this target, as far as can be told before: not without a name, for a folder, or
// a file that may only be read. Whether another program holds it shows at the end.
bool MayReplace(const std::string& target);

// Whether both paths name the same existing file, by whatever name.
bool IsSameFile(const std::string& a, const std::string& b);

}  // namespace vbmp3
