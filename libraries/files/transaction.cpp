#include "libraries/files/transaction.h"

#include <atomic>

#ifdef _WIN32
#include <vector>

#include <windows.h>

#include "libraries/files/wide_path.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>
#endif

namespace vbmp3 {

enum class Kind { Writable, ReadOnly, Impossible };
static Kind KindOf(const std::string& target);

bool MayReplace(const std::string& target) { return KindOf(target) == Kind::Writable; }

FileTransaction::FileTransaction() = default;

#ifdef _WIN32

constexpr int kReplaceAttempts = 6;
constexpr DWORD kReplacePause = 50;  // milliseconds
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

static HANDLE OpenExisting(const std::wstring& path, DWORD access) {
    return CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

static std::vector<char> RightsOf(const std::wstring& path) {
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> rights(size);
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size)) rights.clear();
    return rights;
}

// The new file gets who may do what with the old one, when that is not what it inherits anyhow, its date of creation,
// and whether it is hidden.
static void KeepLook(const std::wstring& from, const std::wstring& to) {
    std::vector<char> rights = RightsOf(from);
    if (!rights.empty() && rights != RightsOf(to))
        SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
    WIN32_FILE_ATTRIBUTE_DATA look{};
    if (!GetFileAttributesExW(from.c_str(), GetFileExInfoStandard, &look)) return;
    const HANDLE handle = OpenExisting(to, FILE_WRITE_ATTRIBUTES);
    if (handle != INVALID_HANDLE_VALUE) {
        SetFileTime(handle, &look.ftCreationTime, nullptr, nullptr);
        CloseHandle(handle);
    }
    if (const DWORD kept = look.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM))
        SetFileAttributesW(to.c_str(), kept);
}

// Asks first, so that nothing is tried at a file that another program holds, or that may not be written: replacing it
// would get around what its owner wants.
static DWORD WhyNotReplaced(const std::wstring& path) {
    HANDLE handle = OpenExisting(path, GENERIC_WRITE | DELETE);
    // Who holds it may allow another file in its place, though not another content.
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION)
        handle = OpenExisting(path, DELETE);
    if (handle != INVALID_HANDLE_VALUE) {
        CloseHandle(handle);
        return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;  // taken away meanwhile: the way is free
}

// Virus scanners and indexers hold a file for a moment after it was written.
static bool MayPass(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

static DWORD PutInPlace(const std::wstring& temporary, const std::wstring& target) {
    const DWORD attributes = GetFileAttributesW(target.c_str());
    const bool existed = attributes != INVALID_FILE_ATTRIBUTES;
    if (existed) {
        if (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) return ERROR_WRITE_PROTECT;
        if (const DWORD error = WhyNotReplaced(target)) return error;
        KeepLook(target, temporary);
    }
    // One step of the file system. ReplaceFile takes two, and whoever is killed between them leaves the target under a
    // name that nobody looks for.
    const DWORD how = existed ? MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH : MOVEFILE_WRITE_THROUGH;
    return MoveFileExW(temporary.c_str(), target.c_str(), how) ? ERROR_SUCCESS : GetLastError();
}

// What earlier writes left that were killed. One that is being written cannot be opened by anybody else, nor removed.
static void RemoveAbandoned(const std::wstring& target) {
    const std::wstring folder = target.substr(0, target.rfind(L'\\') + 1);
    WIN32_FIND_DATAW data;
    const HANDLE find = FindFirstFileW((target + L".~*.tmp").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
        const std::wstring_view name = data.cFileName;
        const size_t begin = name.rfind(L".~") + 2;
        const std::wstring_view number = name.substr(begin, name.size() - begin - 4);
        if (!number.empty() && number.find_first_not_of(L"0123456789") == std::wstring_view::npos)
            DeleteFileW((folder + data.cFileName).c_str());
    } while (FindNextFileW(find, &data));
    FindClose(find);
}

struct FileTransaction::File {
    HANDLE handle = INVALID_HANDLE_VALUE;
    std::wstring path;

    void close() {
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
        handle = INVALID_HANDLE_VALUE;
    }
    ~File() {
        close();
        if (!path.empty()) DeleteFileW(path.c_str());
    }
};

static Kind KindOf(const std::string& target) {
    if (target.empty() || target.ends_with('/') || target.ends_with('\\')) return Kind::Impossible;
    const DWORD attributes = GetFileAttributesW(WidePath(target).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return Kind::Writable;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0  ? Kind::Impossible
           : (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? Kind::ReadOnly
                                                         : Kind::Writable;
}

std::unique_ptr<FileTransaction> FileTransaction::begin(const std::string& target) {
    if (KindOf(target) == Kind::Impossible) return nullptr;
    static std::atomic<DWORD> counter = GetTickCount() ^ GetCurrentProcessId() << 16;
    std::unique_ptr<FileTransaction> self(new FileTransaction);
    self->target_ = target;
    self->file_ = std::make_unique<File>();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::wstring path = WidePath(target + ".~" + std::to_string(++counter % 100000) + ".tmp");
        const HANDLE handle =
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            self->file_->handle = handle;
            self->file_->path = path;
            return self;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) return nullptr;
    }
    return nullptr;
}

bool FileTransaction::writeAt(uint64_t offset, std::span<const uint8_t> bytes) {
    while (!bytes.empty() && !failed_) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        const DWORD wanted = static_cast<DWORD>(bytes.size() < (1u << 20) ? bytes.size() : 1u << 20);
        DWORD done = 0;
        if (!WriteFile(file_->handle, bytes.data(), wanted, &done, &place) || done == 0) failed_ = true;
        offset += done;
        bytes = bytes.subspan(done);
    }
    return !failed_;
}

FileTransaction::Error FileTransaction::commit() {
    const bool flushed = !failed_ && FlushFileBuffers(file_->handle);
    file_->close();
    if (!flushed) {
        file_.reset();
        return Error::Write;
    }
    const std::wstring target = WidePath(target_);
    DWORD error = PutInPlace(file_->path, target);
    for (int attempt = 1; attempt < kReplaceAttempts && MayPass(error); ++attempt) {
        Sleep(kReplacePause);
        error = PutInPlace(file_->path, target);
    }
    if (error == ERROR_SUCCESS) {
        file_->path.clear();
        RemoveAbandoned(target);
    }
    file_.reset();
    return error == ERROR_SUCCESS ? Error::None : Error::Locked;
}

bool IsSameFile(const std::string& a, const std::string& b) {
    const auto identity = [](const std::string& path, BY_HANDLE_FILE_INFORMATION& info) {
        const HANDLE handle = CreateFileW(WidePath(path).c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                          FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle == INVALID_HANDLE_VALUE) return false;
        const bool known = GetFileInformationByHandle(handle, &info);
        CloseHandle(handle);
        return known;
    };
    BY_HANDLE_FILE_INFORMATION first{}, second{};
    return identity(a, first) && identity(b, second) && first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

#else

struct FileTransaction::File {
    int handle = -1;
    std::string path;

    void close() {
        if (handle >= 0) ::close(handle);
        handle = -1;
    }
    ~File() {
        close();
        if (!path.empty()) unlink(path.c_str());
    }
};

static Kind KindOf(const std::string& target) {
    if (target.empty() || target.ends_with('/')) return Kind::Impossible;
    struct stat about {};
    if (stat(target.c_str(), &about) != 0) return Kind::Writable;
    return S_ISDIR(about.st_mode) ? Kind::Impossible : (about.st_mode & 0222) == 0 ? Kind::ReadOnly : Kind::Writable;
}

std::unique_ptr<FileTransaction> FileTransaction::begin(const std::string& target) {
    if (KindOf(target) == Kind::Impossible) return nullptr;
    static std::atomic<unsigned> counter = 0;
    std::unique_ptr<FileTransaction> self(new FileTransaction);
    self->target_ = target;
    self->file_ = std::make_unique<File>();
    struct stat about {};
    const mode_t mode = stat(target.c_str(), &about) == 0 ? about.st_mode & 0777 : 0644;
    for (int attempt = 0; attempt < 16; ++attempt) {
        const std::string path = target + "." + std::to_string(getpid()) + "-" + std::to_string(++counter) + ".tmp";
        const int handle = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (handle >= 0) {
            self->file_->handle = handle;
            self->file_->path = path;
            return self;
        }
        if (errno != EEXIST) return nullptr;
    }
    return nullptr;
}

bool FileTransaction::writeAt(uint64_t offset, std::span<const uint8_t> bytes) {
    while (!bytes.empty() && !failed_) {
        const ssize_t done = pwrite(file_->handle, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (done <= 0) {
            failed_ = true;
            break;
        }
        offset += static_cast<uint64_t>(done);
        bytes = bytes.subspan(static_cast<size_t>(done));
    }
    return !failed_;
}

FileTransaction::Error FileTransaction::commit() {
    const bool flushed = !failed_ && fsync(file_->handle) == 0;
    file_->close();
    if (!flushed) {
        file_.reset();
        return Error::Write;
    }
    // Renaming would replace a read-only file too; the owner's wish counts.
    const bool done = MayReplace(target_) && rename(file_->path.c_str(), target_.c_str()) == 0;
    if (done) file_->path.clear();
    file_.reset();
    return done ? Error::None : Error::Locked;
}

bool IsSameFile(const std::string& a, const std::string& b) {
    struct stat first {
    }, second{};
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

#endif

FileTransaction::~FileTransaction() = default;

bool FileTransaction::write(std::span<const uint8_t> bytes) {
    if (failed_ || !writeAt(size_, bytes)) return false;
    size_ += bytes.size();
    return true;
}

}  // namespace vbmp3
