#include "libraries/vbmp3/byte_reader.h"

#include <algorithm>

#ifdef _WIN32
#include <windows.h>

#include "libraries/vbmp3/wide_path.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace vbmp3 {
namespace {

#ifdef _WIN32

class FileReader final : public ByteReader {
public:
    FileReader(HANDLE handle, uint64_t size) : handle_(handle), size_(size) {}
    ~FileReader() override { CloseHandle(handle_); }
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;
    uint64_t size() const override { return size_; }
    size_t readAt(uint64_t offset, std::span<uint8_t> out) override
    {
        size_t done = 0;
        while (done < out.size() && offset < size_) {
            OVERLAPPED place{};
            place.Offset = DWORD(offset);
            place.OffsetHigh = DWORD(offset >> 32);
            const DWORD wanted = DWORD(std::min<size_t>(out.size() - done, 1u << 20));
            DWORD got = 0;
            if (!ReadFile(handle_, out.data() + done, wanted, &got, &place) || got == 0)
                break;
            done += got;
            offset += got;
        }
        return done;
    }

private:
    HANDLE handle_;
    uint64_t size_;
};

#else

class FileReader final : public ByteReader {
public:
    FileReader(int handle, uint64_t size) : handle_(handle), size_(size) {}
    ~FileReader() override { close(handle_); }
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;
    uint64_t size() const override { return size_; }
    size_t readAt(uint64_t offset, std::span<uint8_t> out) override
    {
        size_t done = 0;
        while (done < out.size() && offset < size_) {
            const ssize_t got = pread(handle_, out.data() + done, out.size() - done, off_t(offset));
            if (got <= 0)
                break;
            done += size_t(got);
            offset += uint64_t(got);
        }
        return done;
    }

private:
    int handle_;
    uint64_t size_;
};

#endif

} // namespace

#ifdef _WIN32

std::unique_ptr<ByteReader> openFile(const std::string& path)
{
    const HANDLE handle = CreateFileW(widePath(path).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return nullptr;
    LARGE_INTEGER size{};
    if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileSizeEx(handle, &size)) {
        CloseHandle(handle);
        return nullptr;
    }
    return std::make_unique<FileReader>(handle, uint64_t(size.QuadPart));
}

#else

std::unique_ptr<ByteReader> openFile(const std::string& path)
{
    // Without blocking, so that a pipe given by mistake does not hang.
    const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (handle < 0)
        return nullptr;
    struct stat about{};
    if (fstat(handle, &about) != 0 || !S_ISREG(about.st_mode)) {
        close(handle);
        return nullptr;
    }
    return std::make_unique<FileReader>(handle, uint64_t(about.st_size));
}

#endif

} // namespace vbmp3
