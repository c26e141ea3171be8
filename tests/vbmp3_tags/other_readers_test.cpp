// What this library writes is what another reader reads: ID3v2 in all versions, by TagLib.
#include <gtest/gtest.h>

#include <cstring>

#include <taglib/attachedpictureframe.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/textidentificationframe.h>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3/temp_dir.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace tagbytes;
using namespace std::string_literals;

namespace {

struct Fields {
    std::string title, artist, album, comment, year, genre, track;
    friend bool operator==(const Fields&, const Fields&) = default;
};

std::string repeated(const std::string& text, size_t length) {
    std::string all;
    while (all.size() < length) all += text;
    return all.substr(0, length);
}

vbmp3_Tag record(const Fields& fields) {
    vbmp3_Tag tag{};
    tag.size = sizeof tag;
    tag.genreNumber = 255;
    std::strcpy(tag.title, fields.title.c_str());
    std::strcpy(tag.artist, fields.artist.c_str());
    std::strcpy(tag.album, fields.album.c_str());
    std::strcpy(tag.comment, fields.comment.c_str());
    std::strcpy(tag.year, fields.year.c_str());
    std::strcpy(tag.genre, fields.genre.c_str());
    std::strcpy(tag.track, fields.track.c_str());
    return tag;
}

Fields readByTagLib(const TagLib::ID3v2::Tag& tag) {
    const auto frame = [&](const char* id) {
        const auto& list = tag.frameList(id);
        return list.isEmpty() ? "" : list.front()->toString().to8Bit(true);
    };
    return {frame("TIT2"), frame("TPE1"), frame("TALB"), frame("COMM"), frame("TDRC"), tag.genre().to8Bit(true),
            frame("TRCK")};
}

}  // namespace

TEST(OtherReaders, ReadWhatIsWrittenAndWhatWasThereBefore) {
    const Fields samples[] = {
        {"Title", "Artist", "Album", "A comment", "1999", "Rock", "5"},
        {"夜曲", "歌手 太郎", "日本語のアルバム", "説明文", "2001", "JPop", "12"},
        {"夜曲🎵", "한국", "Ä🙂", "行一\n行二", "2020", "演歌", "3/12"},
        {repeated("長い題", 510), "Artist", "Album", repeated("長い説明", 1020), "1999", "Rock", "5"},
    };
    const std::string data(5000, '\x89'), picture = "\0image/png\0\3cover\0"s + data, sound = mpegFrames(400);
    const struct {
        const char* name;
        unsigned version;
        std::string before;
    } files[] = {
        {"bare", 3, ""},
        {"2.2", 2, id3v2(2, frame2("TT2", "\0old"s) + frame2("PIC", "\0PNG\3c\0"s + data))},
        {"2.3", 3, id3v2(3, frame3("APIC", picture) + frame3("TIT2", "\0old"s) + frame3("TXXX", "\0key\0value"s))},
        {"2.4", 4, id3v2(4, frame4("TIT2", "\3old"s) + frame4("APIC", picture) + frame4("TXXX", "\3key\0value"s))},
    };
    const vbmp3::test::TempDir folder;
    for (const Fields& fields : samples) {
        for (const auto& file : files) {
            SCOPED_TRACE(file.name + " "s + fields.title);
            const std::string path = folder.write("a.mp3", file.before + sound);
            const vbmp3_Tag tag = record(fields);
            ASSERT_EQ(vbmp3_writeTag(path.c_str(), VBMP3_TAG_ID3V2, &tag), 1);
            TagLib::MPEG::File read(path.c_str());
            ASSERT_TRUE(read.hasID3v2Tag());
            const TagLib::ID3v2::Tag& other = *read.ID3v2Tag();
            EXPECT_EQ(other.header()->majorVersion(), file.version);
            const Fields got = readByTagLib(other);
            EXPECT_EQ(got, fields) << got.title << "|" << got.comment << "|" << got.year << "|" << got.genre;
            EXPECT_EQ(vbmp3::test::readFile(path).substr(other.header()->completeTagSize()), sound);
            if (file.before.empty()) continue;
            const auto* kept = dynamic_cast<TagLib::ID3v2::AttachedPictureFrame*>(other.frameList("APIC").front());
            ASSERT_NE(kept, nullptr);
            EXPECT_EQ(std::string(kept->picture().data(), kept->picture().size()), data);
            if (file.version == 2) continue;
            const auto* text = TagLib::ID3v2::UserTextIdentificationFrame::find(read.ID3v2Tag(), "key");
            ASSERT_NE(text, nullptr);
            EXPECT_EQ(text->fieldList().back(), "value");
        }
    }
}
