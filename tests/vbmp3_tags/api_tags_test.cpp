// The tag and information calls as a program makes them.
#include <gtest/gtest.h>

#include <cstring>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3/temp_dir.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace tagbytes;
using namespace std::string_literals;

namespace {

class TagCalls : public testing::Test {
  protected:
    TagCalls() { vbmp3_init(); }
    ~TagCalls() override { vbmp3_free(); }

    const vbmp3::test::TempDir folder_;
};

// A Xing frame that tells of `frames` frames.
std::string InfoFrameBytes(const char* kind, uint32_t frames) {
    return Padded("\xFF\xFB\x90\x44"s + std::string(32, '\0') + kind + Be32(1) + Be32(frames), 417);
}

}  // namespace

TEST_F(TagCalls, InformationHasLengthFormatAndTags) {
    const std::string v2 = Id3v2(3, Frame3("TIT2", "\0title"s) + Frame3("TPE1", "\0\x89\xCC\x8E\xE8"s));
    const std::string wave = Riff("WAVE", Chunk("fmt ", FmtBody()) + Chunk("data", std::string(44100 * 6, '\0')) +
                                              Chunk("LIST", "INFO" + Chunk("INAM", "w")));
    const std::string v1 = Id3v1("v1", "", "", "1999", "", 7, 17);
    struct {
        const char* name;
        std::string bytes;
        int type;
        int ms;
        const char *format, *title, *artist;
    } cases[] = {
        {"a.mp3", v2 + MpegFrames(100) + v1, 1 | 4 | 16 | 32, 2612, "MPEG1 Layer3 44100Hz 128kbit/s Joint Stereo",
         "title", "歌手"},
        {"b.mp3", InfoFrameBytes("Xing", 300) + MpegFrames(100), 1 | 32, 7836, nullptr, "", ""},
        {"c.mp3", Id3v2(4, Frame4("APIC", std::string(100000, 'p')) + Frame4("TIT2", "\0late"s)) + MpegFrames(100),
         1 | 16 | 32, 2612, nullptr, "late", ""},
        {"d.rmp",
         Riff("RMP3", Chunk("data", MpegFrames(100)) + Chunk("LIST", "INFO" + Chunk("INAM", "si") + Chunk("IID3", v1))),
         1 | 2 | 4 | 32, 2612, nullptr, "si", ""},
        {"e.wav", wave, 64, 1500, "WAVE_FORMAT_PCM", "w", ""},
        {"f.wav", Riff("WAVE", Chunk("fmt ", FmtBody(0x55)) + Chunk("data", MpegFrames(100))), 1 | 32, 2612,
         "MPEG1 Layer3 44100Hz 128kbit/s Joint Stereo", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = folder_.write(c.name, c.bytes);
        EXPECT_EQ(vbmp3_getFileType(path.c_str()), c.type);
        vbmp3_FileInfo info{}, opened{};
        info.size = opened.size = sizeof info;
        ASSERT_EQ(vbmp3_getFileInfo(path.c_str(), &info), 1);
        EXPECT_EQ(info.fileType, c.type);
        EXPECT_EQ(info.seconds * 1000 + info.milliseconds, c.ms);
        if (c.format != nullptr) {
            EXPECT_STREQ(info.format, c.format);
        }
        EXPECT_STREQ(info.title, c.title);
        EXPECT_STREQ(info.artist, c.artist);
        // Opening tells the same of the tags.
        ASSERT_EQ(vbmp3_open(path.c_str(), &opened), 1);
        EXPECT_STREQ(opened.title, c.title);
        EXPECT_EQ(opened.genreNumber, info.genreNumber);
        vbmp3_close();
    }
}

TEST_F(TagCalls, NothingIsWrittenBeyondTheSizeTheCallerKnows) {
    const std::string path = folder_.write("a.mp3", MpegFrames(10) + Id3v1("title"));
    vbmp3_FileInfo info;
    for (const auto call : {vbmp3_getFileInfo, vbmp3_open}) {
        std::memset(&info, 0x5A, sizeof info);
        info.size = offsetof(vbmp3_FileInfo, format);
        ASSERT_EQ(call(path.c_str(), &info), 1);
        EXPECT_EQ(info.size, offsetof(vbmp3_FileInfo, format));
        EXPECT_EQ(info.sampleRate, 44100);
        EXPECT_EQ(info.format[0], 0x5A);
    }
    info.size = 0;
    EXPECT_EQ(vbmp3_getFileInfo(path.c_str(), &info), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_ARGUMENT);
    EXPECT_EQ(vbmp3_getFileInfo(path.c_str(), nullptr), 0);

    vbmp3_Tag tag;
    std::memset(&tag, 0x5A, sizeof tag);
    tag.size = offsetof(vbmp3_Tag, comment);
    ASSERT_EQ(vbmp3_readTag(path.c_str(), VBMP3_TAG_ID3V1, &tag), 1);
    EXPECT_STREQ(tag.title, "title");
    EXPECT_EQ(tag.comment[0], 0x5A);
    // A shorter record is written as far as it goes: the fields beyond it are empty.
    EXPECT_EQ(vbmp3_writeTag(path.c_str(), VBMP3_TAG_ID3V1, &tag), 1);
    char small[3];
    EXPECT_EQ(vbmp3_getGenre(17, small, sizeof small), 1);
    EXPECT_STREQ(small, "Ro");
}

TEST_F(TagCalls, TextsOfAnyLengthComeBackWholeAndShortRecordsLeaveThemSo) {
    const std::string path = folder_.write("a.mp3", MpegFrames(100));
    std::string comment;
    while (comment.size() < 5000) comment += "長い注釈";
    vbmp3_TagTexts texts{};
    texts.size = sizeof texts;
    texts.genreNumber = 255;
    texts.texts[VBMP3_TEXT_TITLE] = "曲";
    texts.texts[VBMP3_TEXT_COMMENT] = comment.c_str();
    ASSERT_EQ(vbmp3_writeTagTexts(path.c_str(), VBMP3_TAG_ID3V1 | VBMP3_TAG_ID3V2, &texts), 1);

    std::string buffer;
    const auto read = [&](int kind) {
        texts.buffer = buffer.data();
        texts.bufferSize = static_cast<uint32_t>(buffer.size());
        return vbmp3_readTagTexts(path.c_str(), kind, &texts);
    };
    EXPECT_EQ(read(VBMP3_TAG_ID3V2), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_SIZE);
    buffer.resize(texts.needed - 1);
    EXPECT_EQ(read(VBMP3_TAG_ID3V2), 0);
    EXPECT_EQ(texts.texts[VBMP3_TEXT_TITLE], nullptr);
    buffer.resize(texts.needed);
    for (const int kind : {int{VBMP3_TAG_ID3V2}, 0}) {
        ASSERT_EQ(read(kind), 1);
        EXPECT_EQ(texts.texts[VBMP3_TEXT_COMMENT], comment);
        EXPECT_STREQ(texts.texts[VBMP3_TEXT_TITLE], "曲");
        EXPECT_STREQ(texts.texts[VBMP3_TEXT_ALBUM], "");
        EXPECT_EQ(texts.present, VBMP3_TAG_ID3V1 | VBMP3_TAG_ID3V2);
    }
    EXPECT_EQ(read(VBMP3_TAG_SI), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_OK);
    texts.size = offsetof(vbmp3_TagTexts, texts);
    EXPECT_EQ(read(VBMP3_TAG_ID3V2), 0);
    EXPECT_EQ(vbmp3_getLastErrorNo(), VBMP3_ERROR_ARGUMENT);

    vbmp3_Tag tag{};
    tag.size = sizeof tag;
    ASSERT_EQ(vbmp3_readTag(path.c_str(), VBMP3_TAG_ID3V2, &tag), 1);
    std::strcpy(tag.title, "別の曲");
    ASSERT_EQ(vbmp3_writeTag(path.c_str(), VBMP3_TAG_ID3V2, &tag), 1);
    texts.size = sizeof texts;
    buffer.resize(buffer.size() + 100);
    ASSERT_EQ(read(VBMP3_TAG_ID3V2), 1);
    EXPECT_STREQ(texts.texts[VBMP3_TEXT_TITLE], "別の曲");
    EXPECT_EQ(texts.texts[VBMP3_TEXT_COMMENT], comment);
}
