// What only Windows does to files: attributes, sharing, names. One kind of transaction writes for the libraries and for
// the program.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "libraries/vbmp3/tags/tag_files.h"
#include "platform/file_system.h"
#include "platform/win32/platform.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;
namespace fs = std::filesystem;

namespace {

class WindowsTagFiles : public testing::Test {
  protected:
    WindowsTagFiles() : folder_(fs::temp_directory_path() / (L"タグ🎵 " + std::to_wstring(GetCurrentProcessId()))) {
        fs::create_directories(folder_);
        std::ofstream(folder_ / name_, std::ios::binary) << sound_;
    }
    ~WindowsTagFiles() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    static std::string contents(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static std::string utf8(const fs::path& path) {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    }
    int files() const { return static_cast<int>(std::distance(fs::directory_iterator(folder_), {})); }
    HANDLE openShared(DWORD share) const {
        return CreateFileW((folder_ / name_).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
    }

    const std::unique_ptr<quenlox::FileSystem> program_ = quenlox::MakeFileSystem();
    fs::path folder_;
    const std::wstring name_ = L"夜曲 Ä.mp3";
    const std::string sound_ = MpegFrames(800);
};

vbmp3_Tag TagOf(const char* title) {
    vbmp3_Tag tag{};
    tag.size = sizeof tag;
    tag.genreNumber = 255;
    strcpy(tag.title, title);
    return tag;
}

}  // namespace

TEST_F(WindowsTagFiles, AnyNameCanBeWrittenAndConverted) {
    const std::string path = utf8(folder_ / name_), rmp = utf8(folder_ / L"変換.rmp"),
                      back = utf8(folder_ / L"back.mp3");
    ASSERT_EQ(WriteTagFile(path, VBMP3_TAG_ID3V1 | VBMP3_TAG_ID3V2, TagOf("夜曲")), VBMP3_OK);
    vbmp3_Tag tag{};
    ASSERT_EQ(ReadTagFile(path, VBMP3_TAG_ID3V2, tag), VBMP3_OK);
    EXPECT_STREQ(tag.title, "夜曲");
    ASSERT_EQ(ConvertFile(path, rmp, WrapAs::Rmp), VBMP3_OK);
    ASSERT_EQ(ConvertFile(rmp, back, WrapAs::Mp3), VBMP3_OK);
    EXPECT_EQ(contents(folder_ / L"back.mp3"), contents(folder_ / name_));
    EXPECT_EQ(files(), 3);
    EXPECT_EQ(ConvertFile(path, path, WrapAs::Rmp), VBMP3_ERROR_SAME_FILE);
    EXPECT_EQ(ConvertFile(path, utf8(folder_ / L"VARIANT" / L"x.rmp"), WrapAs::Rmp), VBMP3_ERROR_WRITE);
}

TEST_F(WindowsTagFiles, ReadOnlyAndLockedFilesSaySoAndStayWhole) {
    const std::string path = utf8(folder_ / name_);
    SetFileAttributesW((folder_ / name_).c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(WriteTagFile(path, VBMP3_TAG_ID3V1, TagOf("x")), VBMP3_ERROR_LOCKED);
    SetFileAttributesW((folder_ / name_).c_str(), FILE_ATTRIBUTE_NORMAL);
    for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
        const HANDLE other = openShared(share);
        ASSERT_NE(other, INVALID_HANDLE_VALUE);
        EXPECT_EQ(WriteTagFile(path, VBMP3_TAG_ID3V1, TagOf("x")), VBMP3_ERROR_LOCKED) << share;
        EXPECT_FALSE(program_->write(path, "x")) << share;
        CloseHandle(other);
        EXPECT_EQ(contents(folder_ / name_), sound_);
        EXPECT_EQ(files(), 1) << share;
    }
    EXPECT_EQ(WriteTagFile(path, VBMP3_TAG_ID3V1, TagOf("x")), VBMP3_OK);
}

TEST_F(WindowsTagFiles, AFileThatIsHeldForAMomentIsWaitedForAndKeepsItsLook) {
    const std::string path = utf8(folder_ / name_);
    const auto look = [&] {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        EXPECT_TRUE(GetFileAttributesExW((folder_ / name_).c_str(), GetFileExInfoStandard, &data));
        return data;
    };
    const FILETIME made{0x12345680, 0x01C00000};
    const HANDLE file =
        CreateFileW((folder_ / name_).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_TRUE(SetFileTime(file, &made, nullptr, nullptr));
    CloseHandle(file);
    SetFileAttributesW((folder_ / name_).c_str(), FILE_ATTRIBUTE_HIDDEN);
    // A file system of another kind underneath may have no such date.
    const FILETIME told = look().ftCreationTime;
    const bool dated = CompareFileTime(&told, &made) == 0;
    for (const bool library : {true, false}) {
        const HANDLE other = openShared(FILE_SHARE_READ);
        ASSERT_NE(other, INVALID_HANDLE_VALUE);
        std::thread release([&] {
            Sleep(80);
            CloseHandle(other);
        });
        EXPECT_TRUE(library ? WriteTagFile(path, VBMP3_TAG_ID3V1, TagOf("x")) == VBMP3_OK
                            : static_cast<bool>(program_->write(path, "new")));
        release.join();
        const WIN32_FILE_ATTRIBUTE_DATA now = look();
        EXPECT_TRUE(!dated || CompareFileTime(&now.ftCreationTime, &made) == 0) << library;
        EXPECT_TRUE(now.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) << library;
    }
    EXPECT_EQ(contents(folder_ / name_), "new");
    EXPECT_EQ(files(), 1);
}
