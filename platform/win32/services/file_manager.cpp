#include "platform/file_manager.h"

#include <shlobj.h>

#include <cstring>

#include "platform/win32/dropped_files.h"
#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {
namespace {

// Another program may hold the clipboard for a moment.
constexpr int kTries = 5;
constexpr DWORD kTryAgain = 20;  // milliseconds

class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) {
        for (int tries = 0; !(open_ = OpenClipboard(owner) != FALSE) && tries < kTries; ++tries) Sleep(kTryAgain);
    }
    ~OpenedClipboard() {
        if (open_) CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    explicit operator bool() const { return open_; }

  private:
    bool open_ = false;
};

bool Put(UINT format, const void* bytes, std::size_t size) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    void* place = memory ? GlobalLock(memory) : nullptr;
    if (!place) {
        if (memory) GlobalFree(memory);
        return false;
    }
    std::memcpy(place, bytes, size);
    GlobalUnlock(memory);
    if (SetClipboardData(format, memory)) return true;  // now the clipboard's
    GlobalFree(memory);
    return false;
}

class FileManagerWin32 : public FileManager {
  public:
    std::vector<std::string> copiedFiles() override {
        const OpenedClipboard clipboard(nullptr);
        HANDLE drop = clipboard ? GetClipboardData(CF_HDROP) : nullptr;
        return drop ? FilesOf(static_cast<HDROP>(drop)) : std::vector<std::string>{};
    }

    bool copyFiles(const std::vector<std::string>& paths) override {
        const std::string bytes = DropBytes(paths);
        // What is put there needs an owner, which need not be seen.
        if (!owner_)
            owner_.reset(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr));
        const OpenedClipboard clipboard(owner_.get());
        if (!clipboard || !EmptyClipboard() || !Put(CF_HDROP, bytes.data(), bytes.size())) return false;
        const DWORD copy = DROPEFFECT_COPY;
        Put(RegisterClipboardFormatW(CFSTR_PREFERREDDROPEFFECT), &copy, sizeof copy);
        return true;
    }

    // By the full path of the file manager, so that no other program of that name is started.
    bool showInFolder(const std::string& path) override {
        wchar_t folder[MAX_PATH] = L"";
        if (GetWindowsDirectoryW(folder, MAX_PATH) == 0) return false;
        const std::wstring manager = std::wstring(folder) + L"\\explorer.exe";
        const std::wstring selected = L"/select,\"" + Wide(path) + L"\"";
        const auto result = reinterpret_cast<INT_PTR>(
            ShellExecuteW(nullptr, L"open", manager.c_str(), selected.c_str(), nullptr, SW_SHOWNORMAL));
        return result > 32;
    }

    std::optional<std::uint64_t> sizeOf(const std::string& path) override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetFileAttributesExW(WidePath(path).c_str(), GetFileExInfoStandard, &data) ||
            (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            return std::nullopt;
        return std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
    }

  private:
    OwnedWindow owner_;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<FileManager> MakeFileManager() { return std::make_unique<win32::FileManagerWin32>(); }

}  // namespace quenlox
