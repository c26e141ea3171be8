#include "libraries/files/file_source.h"

#include <algorithm>

#ifdef _WIN32
#include <windows.h>

#include "libraries/files/wide_path.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace vbmp3 {
namespace {

#ifdef _WIN32

using Handle = HANDLE;
void CloseFile(Handle handle) { CloseHandle(handle); }

// Bytes read, 0 at an error.
size_t ReadPiece(Handle handle, int64_t offset, void* to, size_t length) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD got = 0;
    return ReadFile(handle, to, static_cast<DWORD>(std::min<size_t>(length, 1u << 20)), &got, &place) ? got : 0;
}

#else

using Handle = int;
void CloseFile(Handle handle) { close(handle); }

size_t ReadPiece(Handle handle, int64_t offset, void* to, size_t length) {
    return static_cast<size_t>(std::max<ssize_t>(0, pread(handle, to, length, static_cast<off_t>(offset))));
}

#endif

class FileSource final : public ByteSource {
  public:
    FileSource(Handle handle, int64_t size) : handle_(handle), size_(size) {}
    ~FileSource() override { CloseFile(handle_); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    int64_t size() const override { return size_; }
    size_t readAt(int64_t offset, void* to, size_t length) const override {
        if (offset < 0 || offset >= size_) return 0;
        length = static_cast<size_t>(
            std::min<int64_t>(static_cast<int64_t>(std::min<size_t>(length, INT32_MAX)), size_ - offset));
        auto* out = static_cast<uint8_t*>(to);
        size_t done = 0;
        while (done < length) {
            const size_t got = ReadPiece(handle_, offset + static_cast<int64_t>(done), out + done, length - done);
            if (got == 0) break;
            done += got;
        }
        return done;
    }

  private:
    Handle handle_;
    int64_t size_;
};

}  // namespace

std::span<const uint8_t> BlockReader::view(int64_t offset, size_t count) {
    const bool inside = offset >= blockOffset_ && offset - blockOffset_ <= static_cast<int64_t>(block_.size()) &&
                        block_.size() - static_cast<size_t>(offset - blockOffset_) >= count;
    if (!inside) {
        block_.resize(std::max(count, std::min(nextBlock_, blockSize_)));
        nextBlock_ = std::min(4 * nextBlock_, blockSize_);
        block_.resize(source_.readAt(offset, block_.data(), block_.size()));
        blockOffset_ = offset;
    }
    return std::span<const uint8_t>(block_).subspan(static_cast<size_t>(offset - blockOffset_));
}

#ifdef _WIN32

std::unique_ptr<ByteSource> OpenFile(const std::string& path) {
    const HANDLE handle =
        CreateFileW(WidePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return nullptr;
    LARGE_INTEGER size{};
    if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileSizeEx(handle, &size)) {
        CloseFile(handle);
        return nullptr;
    }
    return std::make_unique<FileSource>(handle, static_cast<int64_t>(size.QuadPart));
}

#else

std::unique_ptr<ByteSource> OpenFile(const std::string& path) {
    // Without blocking, so that a pipe given by mistake does not hang.
    const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (handle < 0) return nullptr;
    struct stat about {};
    if (fstat(handle, &about) != 0 || !S_ISREG(about.st_mode)) {
        close(handle);
        return nullptr;
    }
    return std::make_unique<FileSource>(handle, static_cast<int64_t>(about.st_size));
}

#endif

}  // namespace vbmp3
