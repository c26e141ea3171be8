#include "platform/file_system.h"

#include <algorithm>
#include <vector>

#include "platform/user_files.h"
#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

#include <shlobj.h>

namespace quenlox::win32 {
namespace {

constexpr DWORD kMissing = INVALID_FILE_ATTRIBUTES;

struct FindCloser {
    void operator()(HANDLE find) const { FindClose(find); }
    using pointer = HANDLE;
};

OwnedHandle Open(const std::wstring& path, DWORD access, DWORD share, DWORD disposition) {
    HANDLE file = CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return OwnedHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto part = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 20));
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), part, &written, nullptr) || written == 0) return false;
        bytes.remove_prefix(written);
    }
    return FlushFileBuffers(file) != FALSE;
}

// A new file beside the target, so that it lies on the same volume and can take the target's place in one step.
std::wstring TemporaryBeside(const std::wstring& target, OwnedHandle& file) {
    const DWORD seed = GetTickCount() ^ GetCurrentProcessId() << 16;
    for (DWORD attempt = 0; attempt < 100; ++attempt) {
        std::wstring name = target + L".~" + std::to_wstring((seed + attempt) % 100000) + L".tmp";
        file = Open(name, GENERIC_WRITE, 0, CREATE_NEW);
        if (file) return name;
        if (GetLastError() != ERROR_FILE_EXISTS) break;
    }
    return {};
}

std::vector<char> RightsOf(const std::wstring& path) {
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> rights(size);
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size)) rights.clear();
    return rights;
}

// Who may do what with a file, and that it is hidden. A file that has nothing of its own inherits the same as its
// neighbour and is left alone.
void KeepLook(const std::wstring& from, DWORD attributes, const std::wstring& to) {
    std::vector<char> rights = RightsOf(from);
    if (!rights.empty() && rights != RightsOf(to))
        SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
    const DWORD kept = attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    if (kept) SetFileAttributesW(to.c_str(), kept);
}

bool PutInPlace(const std::wstring& temporary, const std::wstring& target) {
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == kMissing) return MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != FALSE;
    if (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) return false;
    // A file that another program holds is left alone before anything is tried at it.
    if (!Open(target, GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING))
        return false;
    KeepLook(target, attributes, temporary);
    // One step of the file system. ReplaceFile takes two, and between them there is no file of that name: a program
    // that is killed then would find nothing at its next start.
    return MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

// What earlier writes left that were killed. One that is being written cannot be opened by anybody else, nor removed.
void RemoveAbandoned(const std::wstring& target) {
    const std::wstring folder = target.substr(0, target.rfind(L'\\') + 1);
    WIN32_FIND_DATAW data;
    HANDLE first = FindFirstFileW((target + L".~*.tmp").c_str(), &data);
    if (first == INVALID_HANDLE_VALUE) return;
    const std::unique_ptr<HANDLE, FindCloser> find(first);
    do {
        const std::wstring_view name = data.cFileName;
        const std::size_t begin = name.rfind(L".~") + 2;
        const std::wstring_view number = name.substr(begin, name.size() - begin - 4);
        if (!number.empty() && number.find_first_not_of(L"0123456789") == std::wstring_view::npos)
            DeleteFileW((folder + data.cFileName).c_str());
    } while (FindNextFileW(find.get(), &data));
}

class FolderReaderWin32 : public FolderReader {
  public:
    explicit FolderReaderWin32(const std::string& folder) {
        if (folder.empty()) return;
        const bool ended = folder.ends_with('\\') || folder.ends_with('/');
        HANDLE first = FindFirstFileExW(WidePath(folder + (ended ? "*" : "\\*")).c_str(), FindExInfoBasic, &data_,
                                        FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
        if (first != INVALID_HANDLE_VALUE) find_.reset(first);
    }
    bool next(std::string& name, bool& isFolder) override {
        while (find_) {
            const std::wstring_view found = data_.cFileName;
            const bool counts = found != L"." && found != L".." && !(data_.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN);
            if (counts) {
                name = Narrow(found);
                isFolder = data_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
            }
            if (!FindNextFileW(find_.get(), &data_)) find_.reset();
            if (counts) return true;
        }
        return false;
    }

  private:
    std::unique_ptr<HANDLE, FindCloser> find_;
    WIN32_FIND_DATAW data_{};  // the name that comes next, while there is one
};

class FileSystemWin32 : public FileSystem {
  public:
    bool fileExists(const std::string& path) override {
        const DWORD attributes = attributesOf(path);
        return attributes != kMissing && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    }
    bool folderExists(const std::string& path) override {
        const DWORD attributes = attributesOf(path);
        return attributes != kMissing && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    }
    bool isReadOnly(const std::string& path) override {
        const DWORD attributes = attributesOf(path);
        return attributes != kMissing && (attributes & FILE_ATTRIBUTE_READONLY);
    }

    std::optional<std::string> read(const std::string& path, std::uint64_t limit) override {
        const OwnedHandle file =
            Open(WidePath(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
        LARGE_INTEGER size{};
        if (!file || GetFileType(file.get()) != FILE_TYPE_DISK || !GetFileSizeEx(file.get(), &size))
            return std::nullopt;
        if (static_cast<std::uint64_t>(size.QuadPart) > limit) return std::nullopt;
        std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
        std::size_t done = 0;
        while (done < bytes.size()) {
            const auto part = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 24));
            DWORD count = 0;
            if (!ReadFile(file.get(), bytes.data() + done, part, &count, nullptr)) return std::nullopt;
            if (count == 0) break;  // it has become shorter
            done += count;
        }
        bytes.resize(done);
        return bytes;
    }

    bool write(const std::string& path, std::string_view bytes) override {
        const std::wstring target = WidePath(path);
        OwnedHandle file;
        const std::wstring temporary = TemporaryBeside(target, file);
        if (temporary.empty()) return false;
        const bool whole = WriteAll(file.get(), bytes);
        file.reset();
        if (whole && PutInPlace(temporary, target)) {
            RemoveAbandoned(target);
            return true;
        }
        DeleteFileW(temporary.c_str());
        return false;
    }

    bool rename(const std::string& from, const std::string& to) override {
        return MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), 0) != FALSE;
    }
    bool remove(const std::string& path) override { return DeleteFileW(WidePath(path).c_str()) != FALSE; }

    std::unique_ptr<FolderReader> readFolder(const std::string& folder) override {
        return std::make_unique<FolderReaderWin32>(folder);
    }

    std::vector<std::string> drives() override {
        std::vector<std::string> roots;
        const DWORD present = GetLogicalDrives();
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            if (present & 1u << (letter - 'A')) roots.push_back(std::string(1, letter) + ":\\");
        }
        return roots;
    }
    DriveType driveType(const std::string& root) override {
        switch (GetDriveTypeW(Wide(root).c_str())) {
            case DRIVE_NO_ROOT_DIR:
                return DriveType::NoRoot;
            case DRIVE_REMOVABLE:
                return DriveType::Removable;
            case DRIVE_FIXED:
                return DriveType::Fixed;
            case DRIVE_REMOTE:
                return DriveType::Remote;
            case DRIVE_CDROM:
                return DriveType::CdRom;
            case DRIVE_RAMDISK:
                return DriveType::RamDisk;
            default:
                return DriveType::Unknown;
        }
    }

    std::string programFolder() override {
        std::wstring name(MAX_PATH, L'\0');
        DWORD length = 0;
        while ((length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()))) == name.size()) {
            name.resize(name.size() * 2);
        }
        name.resize(length);
        const std::size_t slash = name.rfind(L'\\');
        name.resize(slash == std::wstring::npos ? 0 : slash);
        if (name.ends_with(L':')) name += L'\\';
        return Narrow(name);
    }
    std::string userFolder() override {
        if (userFolder_.empty()) {
            const std::string program = programFolder();
            const bool canWrite = canWriteInto(program);
            userFolder_ = ChooseUserFolder(program, canWrite, canWrite ? std::string() : applicationData());
            if (!canWrite) CreateDirectoryW(WidePath(userFolder_).c_str(), nullptr);
        }
        return userFolder_;
    }
    std::string currentFolder() override {
        std::wstring name(GetCurrentDirectoryW(0, nullptr), L'\0');
        name.resize(GetCurrentDirectoryW(static_cast<DWORD>(name.size()), name.data()));
        return Narrow(name);
    }

  private:
    // Rights and a medium's lock show only when a file is made. It goes when it is closed.
    static bool canWriteInto(const std::string& folder) {
        const std::wstring name =
            WidePath(JoinPath(folder, "Quenlox.~" + std::to_string(GetCurrentProcessId()) + ".tmp"));
        HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        CloseHandle(file);
        return true;
    }
    static std::string applicationData() {
        PWSTR name = nullptr;
        const bool found = SUCCEEDED(SHGetKnownFolderPath(FOLDERID_RoamingAppData, KF_FLAG_CREATE, nullptr, &name));
        const std::string folder = found ? Narrow(name) : std::string();
        CoTaskMemFree(name);
        return folder;
    }

    static DWORD attributesOf(const std::string& path) {
        return path.empty() ? kMissing : GetFileAttributesW(WidePath(path).c_str());
    }

    std::string userFolder_;  // once it is known
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<FileSystem> MakeFileSystem() { return std::make_unique<win32::FileSystemWin32>(); }

}  // namespace quenlox
