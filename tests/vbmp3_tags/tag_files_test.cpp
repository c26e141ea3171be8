// Tags in real files: every failure leaves the file as it was.
#include "libraries/vbmp3/tags/tag_files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "libraries/files/file_source.h"
#include "tests/vbmp3/temp_dir.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;
using vbmp3::test::ReadFile;
using namespace std::string_literals;
namespace fs = std::filesystem;

namespace {

class TagFiles : public testing::Test {
  protected:
    size_t files() const { return folder_.names().size(); }
    const vbmp3::test::TempDir folder_;
};

vbmp3_Tag TagOf(const char* title) {
    vbmp3_Tag tag{};
    tag.size = sizeof tag;
    tag.genreNumber = 255;
    std::strcpy(tag.title, title);
    return tag;
}

const std::string kSound = MpegFrames(3000);  // several blocks of copying
constexpr int kBoth = VBMP3_TAG_ID3V1 | VBMP3_TAG_ID3V2;

}  // namespace

TEST_F(TagFiles, AFieldWithoutItsNulAndWithBrokenBytesIsTakenAsFarAsItGoes) {
    const std::string path = folder_.write("a.mp3", kSound);
    vbmp3_Tag tag{};
    std::memset(tag.album, 'y', sizeof tag.album);
    std::strcpy(tag.year, "\xFF");
    ASSERT_EQ(WriteTagFile(path, VBMP3_TAG_ID3V2, tag), VBMP3_OK);
    ASSERT_EQ(ReadTagFile(path, VBMP3_TAG_ID3V2, tag), VBMP3_OK);
    EXPECT_EQ(tag.album, std::string(sizeof tag.album - 1, 'y'));
    EXPECT_STREQ(tag.year, "\xEF\xBF\xBD");
}

TEST_F(TagFiles, WhatCannotBeWrittenSaysWhyAndStaysWhole) {
    const std::string mp3 = folder_.write("a.mp3", kSound), text = folder_.write("a.txt", "not a sound file"s);
    const vbmp3_Tag tag = TagOf("x");
    EXPECT_EQ(WriteTagFile(folder_.path("missing.mp3"), kBoth, tag), VBMP3_ERROR_NOT_FOUND);
    EXPECT_EQ(WriteTagFile("", kBoth, tag), VBMP3_ERROR_NOT_FOUND);
    EXPECT_EQ(WriteTagFile(folder_.path(), kBoth, tag), VBMP3_ERROR_LOCKED);
    EXPECT_EQ(WriteTagFile(text, kBoth, tag), VBMP3_ERROR_FORMAT);
    EXPECT_EQ(WriteTagFile(mp3, VBMP3_TAG_SI, tag), VBMP3_ERROR_FORMAT);
    EXPECT_EQ(WriteTagFile(mp3, 0, tag), VBMP3_ERROR_ARGUMENT);
    EXPECT_EQ(WriteTagFile(mp3, 8, tag), VBMP3_ERROR_ARGUMENT);
    EXPECT_EQ(RemoveTagFile(mp3, 16), VBMP3_ERROR_ARGUMENT);
    vbmp3_Tag read{};
    EXPECT_EQ(ReadTagFile(mp3, kBoth, read), VBMP3_ERROR_ARGUMENT);

    EXPECT_EQ(ConvertFile(mp3, mp3, WrapAs::Rmp), VBMP3_ERROR_SAME_FILE);
    fs::create_hard_link(mp3, folder_.path("link.rmp"));
    EXPECT_EQ(ConvertFile(mp3, folder_.path("link.rmp"), WrapAs::Rmp), VBMP3_ERROR_SAME_FILE);
    EXPECT_EQ(ConvertFile(mp3, folder_.path("none/a.rmp"), WrapAs::Rmp), VBMP3_ERROR_WRITE);
    EXPECT_EQ(ConvertFile(mp3, folder_.path("b.mp3"), WrapAs::Mp3), VBMP3_ERROR_FORMAT);
    EXPECT_EQ(ConvertFile(text, folder_.path("b.rmp"), WrapAs::Rmp), VBMP3_ERROR_FORMAT);
    EXPECT_EQ(ConvertFile(mp3, "", WrapAs::Rmp), VBMP3_ERROR_ARGUMENT);

    fs::permissions(mp3, fs::perms::owner_read);
    EXPECT_EQ(WriteTagFile(mp3, kBoth, tag), VBMP3_ERROR_LOCKED);
    EXPECT_EQ(RemoveTagFile(mp3, kBoth), VBMP3_ERROR_LOCKED);
    EXPECT_EQ(ReadFile(mp3), kSound);
    EXPECT_EQ(ReadFile(text), "not a sound file");
    EXPECT_EQ(files(), 3u);  // and no temporary file remains
}

TEST_F(TagFiles, AFailureAtAnyStepLeavesTheFileWhole) {
    const std::string path = folder_.write("a.mp3", kSound);
    int steps = 0;
    for (int failing = 1; failing < 100; ++failing) {
        SCOPED_TRACE(failing);
        steps = 0;
        const int error = WriteTagFile(path, kBoth, TagOf("x"), [&](SaveStep) { return ++steps != failing; });
        if (error == VBMP3_OK) break;
        EXPECT_EQ(error, VBMP3_ERROR_WRITE);
        EXPECT_EQ(ReadFile(path), kSound);
        EXPECT_EQ(files(), 1u);
    }
    EXPECT_GE(steps, 8);  // begin, head, five blocks, tail, commit

}

TEST_F(TagFiles, ConversionKeepsEveryByteOfTheSound) {
    const std::string mp3 = folder_.write("a.mp3", Id3v2(3, Frame3("TIT2", "\1\xFF\xFE\x1C\x59\xF2\x66"s)) + kSound +
                                                       Lyrics3v1("[00:01]a") + Id3v1("\x96\xE9\x8B\xC8"));
    const std::string rmp = folder_.path("a.rmp"), back = folder_.write("back.mp3", "an older file that is replaced"s);
    ASSERT_EQ(vbmp3_convertToRmp(mp3.c_str(), rmp.c_str()), 1);
    ASSERT_EQ(vbmp3_convertToMp3(rmp.c_str(), back.c_str()), 1);
    EXPECT_EQ(ReadFile(back), ReadFile(mp3));
    vbmp3_Tag tag{};
    EXPECT_EQ(ReadTagFile(rmp, VBMP3_TAG_SI, tag), VBMP3_OK);
    EXPECT_STREQ(tag.title, "夜曲");
    EXPECT_EQ(tag.present, VBMP3_TAG_SI | kBoth);
}

TEST_F(TagFiles, ASizeThatRanOverIsTheRestOfALongFile) {
    const std::string head = "RIFF" + Le32(1036) + "WAVE" + Chunk("fmt ", FmtBody()) + "data" + Le32(1000);
    const std::string path = folder_.write("a.wav", head);
    fs::resize_file(path, head.size() + 1000 + (uintmax_t{2} << 32));
    EXPECT_EQ(ScanFileLayout(*OpenFile(path)).data.size(), 1000 + (int64_t{2} << 32));
}
