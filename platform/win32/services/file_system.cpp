#include "platform/file_system.h"

#include <algorithm>
#include <span>
#include <vector>

#include "libraries/files/transaction.h"
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

    WriteResult write(const std::string& path, std::string_view bytes) override {
        using Error = vbmp3::FileTransaction::Error;
        const auto file = vbmp3::FileTransaction::begin(path);
        if (!file) return WriteError::NoFolder;
        const std::span whole(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        if (!file->write(whole)) return WriteError::Disk;
        const Error error = file->commit();
        return error == Error::None ? WriteError::None : error == Error::Locked ? WriteError::InUse : WriteError::Disk;
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
            case DRIVE_NO_ROOT_DIR: return DriveType::NoRoot;
            case DRIVE_REMOVABLE: return DriveType::Removable;
            case DRIVE_FIXED: return DriveType::Fixed;
            case DRIVE_REMOTE: return DriveType::Remote;
            case DRIVE_CDROM: return DriveType::CdRom;
            case DRIVE_RAMDISK: return DriveType::RamDisk;
            default: return DriveType::Unknown;
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
    std::optional<std::string> fromCodePage(std::string_view bytes) override {
        constexpr UINT kShiftJis = 932;
        if (GetACP() == kShiftJis || GetACP() == CP_UTF8 || bytes.size() > INT_MAX) return std::nullopt;
        const int size = static_cast<int>(bytes.size());
        std::wstring text(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0)), L'\0');
        MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, text.data(), static_cast<int>(text.size()));
        return Narrow(text);
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
