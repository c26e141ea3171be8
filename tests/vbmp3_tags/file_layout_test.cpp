#include "libraries/formats/file_layout.h"

#include <gtest/gtest.h>

#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;

namespace {

FileLayout Scan(const std::string& file) { return ScanFileLayout(MemorySource(BytesOf(file))); }

std::string Part(const std::string& file, const ByteRange& range) {
    return file.substr(static_cast<size_t>(range.begin), static_cast<size_t>(range.size()));
}

std::string Kinds(const FileLayout& layout) {
    constexpr const char* names[] = {"id3v2", "appended", "chunk", "ape", "lyrics3", "tag+", "id3v1"};
    std::string text;
    for (const TagBlock& tag : layout.tags)
        text += std::string(text.empty() ? "" : " ") + names[static_cast<int>(tag.kind)] + std::to_string(tag.version) +
                (tag.inData ? "!" : "");
    return text;
}

const std::string kV2 = Id3v2(3, Frame3("TIT2", std::string("\0a", 2)) + std::string(20, '\0'));
const std::string kV24Footer = Id3v2(4, Frame4("TIT2", std::string("\0a", 2)), 0x10);
const std::string kApe = Ape(ApeItem("Title", "t"), 1), kApe1 = Ape(ApeItem("Title", "t"), 1, false);
const std::string kLyr1 = Lyrics3v1("[00:01]a\r\n"), kLyr2 = Lyrics3v2("IND0000200LYR00001a");
const std::string kV1 = Id3v1("t");

}  // namespace

TEST(FileLayout, TagsAtHeadAndTailAreFoundInAnyOrder) {
    struct {
        std::string head, tail, found;
    } cases[] = {
        {"", "", ""},
        {kV2, kV1, "id3v23 id3v11"},
        {kV2 + kV24Footer, "", "id3v23 id3v24"},
        {kApe, "", "ape2"},
        {"", kApe + kV1, "id3v11 ape2"},
        {"", kV1 + kApe, "ape2 id3v11"},
        {"", kApe1 + kLyr1 + kV1, "id3v11 lyrics31 ape1"},
        {"", kApe + kLyr2 + TagPlus() + kV1, "id3v11 tag+1 lyrics32 ape2"},
        {"", kLyr2 + kApe + kV1, "id3v11 ape2 lyrics32"},
        {"", kLyr2, "lyrics32"},
        {kV2, kV24Footer + kV1, "id3v23 id3v11 appended4"},
        {"", Id3v1("a") + Id3v1("b"), "id3v11 id3v11"},
        // An APE tag whose "APETAGEX" stands so that its "TAG" looks like ID3v1.
        {"", Ape(ApeItem("Title", std::string(131 - 64 - 14, 'x')), 1), "ape2"},
    };
    for (const int frames : {3, 60}) {  // in one read, and with head and tail read apart
        for (const auto& c : cases) {
            const std::string sound = MpegFrames(frames), file = c.head + sound + c.tail;
            const FileLayout layout = Scan(file);
            EXPECT_EQ(Kinds(layout), c.found);
            EXPECT_EQ(layout.audio.begin, static_cast<int64_t>(c.head.size())) << c.found;
            EXPECT_EQ(layout.audio.size(), static_cast<int64_t>(sound.size())) << c.found;
        }
    }
}

TEST(FileLayout, TagsAroundARiffFileBelongToNoChunk) {
    const std::string body = Riff("RMP3", Chunk("data", MpegFrames(40)) + Chunk("LIST", "INFO" + Chunk("INAM", "x")));
    const std::string file = kV2 + body + kLyr2 + kV1;
    const FileLayout layout = Scan(file);
    EXPECT_EQ(Kinds(layout), "id3v23 id3v11 lyrics32");
    EXPECT_EQ(layout.container, Container::Rmp);
    EXPECT_EQ(Part(file, layout.riff), body);
    EXPECT_EQ(layout.chunks.size(), 2u);
    EXPECT_EQ(Part(file, layout.audio), MpegFrames(40));
}

TEST(FileLayout, WavesKeepTheirSoundWhateverTheirHeadSays) {
    // Unfinished ones.
    const std::string samples(5000, '\1'), format = Chunk("fmt ", FmtBody());
    for (const uint32_t size : {0u, 0xFFFFFFFFu, 70000u, 5000u}) {
        const std::string file = "RIFF" + Le32(0) + "WAVE" + format + "data" + Le32(size) + samples;
        const FileLayout layout = Scan(file);
        EXPECT_EQ(layout.container, Container::Wave);
        EXPECT_EQ(Part(file, layout.audio), samples) << size;
    }
    // Long ones tell their length in a chunk of its own.
    for (const char* form : {"RF64", "BW64"}) {
        SCOPED_TRACE(form);
        const std::string ds64 = Chunk("ds64", Padded(Le32(0) + Le32(0) + Le32(5000), 28));
        const std::string file = form + Le32(0xFFFFFFFF) + "WAVE" + ds64 + format + "data" + Le32(0xFFFFFFFF) +
                                 samples + Chunk("LIST", "INFO" + Chunk("INAM", "long"));
        const FileLayout layout = Scan(file);
        EXPECT_EQ(layout.container, Container::Wave);
        EXPECT_EQ(Part(file, layout.data), samples);
        EXPECT_NE(layout.findInfo("INAM"), nullptr);
        EXPECT_TRUE(layout.wide);
    }
}
