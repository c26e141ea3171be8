#include "libraries/formats/file_layout.h"

#include <gtest/gtest.h>

#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;

namespace {

FileLayout scan(const std::string& file) { return scanFileLayout(MemorySource(bytes(file))); }

std::string part(const std::string& file, const ByteRange& range) {
    return file.substr(static_cast<size_t>(range.begin), static_cast<size_t>(range.size()));
}

std::string kinds(const FileLayout& layout) {
    constexpr const char* names[] = {"id3v2", "appended", "chunk", "ape", "lyrics3", "tag+", "id3v1"};
    std::string text;
    for (const TagBlock& tag : layout.tags)
        text += std::string(text.empty() ? "" : " ") + names[static_cast<int>(tag.kind)] + std::to_string(tag.version) +
                (tag.inData ? "!" : "");
    return text;
}

const std::string kV2 = id3v2(3, frame3("TIT2", std::string("\0a", 2)) + std::string(20, '\0'));
const std::string kV24Footer = id3v2(4, frame4("TIT2", std::string("\0a", 2)), 0x10);
const std::string kApe = ape(apeItem("Title", "t"), 1), kApe1 = ape(apeItem("Title", "t"), 1, false);
const std::string kLyr1 = lyrics3v1("[00:01]a\r\n"), kLyr2 = lyrics3v2("IND0000200LYR00001a");
const std::string kV1 = id3v1("t");

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
        {"", kApe + kLyr2 + tagPlus() + kV1, "id3v11 tag+1 lyrics32 ape2"},
        {"", kLyr2 + kApe + kV1, "id3v11 ape2 lyrics32"},
        {"", kLyr2, "lyrics32"},
        {kV2, kV24Footer + kV1, "id3v23 id3v11 appended4"},
        {"", id3v1("a") + id3v1("b"), "id3v11 id3v11"},
        // An APE tag whose "APETAGEX" stands so that its "TAG" looks like ID3v1.
        {"", ape(apeItem("Title", std::string(131 - 64 - 14, 'x')), 1), "ape2"},
    };
    for (const int frames : {3, 60}) {  // in one read, and with head and tail read apart
        for (const auto& c : cases) {
            const std::string sound = mpegFrames(frames), file = c.head + sound + c.tail;
            const FileLayout layout = scan(file);
            EXPECT_EQ(kinds(layout), c.found);
            EXPECT_EQ(layout.audio.begin, static_cast<int64_t>(c.head.size())) << c.found;
            EXPECT_EQ(layout.audio.size(), static_cast<int64_t>(sound.size())) << c.found;
        }
    }
}

TEST(FileLayout, TagsAroundARiffFileBelongToNoChunk) {
    const std::string body = riff("RMP3", chunk("data", mpegFrames(40)) + chunk("LIST", "INFO" + chunk("INAM", "x")));
    const std::string file = kV2 + body + kLyr2 + kV1;
    const FileLayout layout = scan(file);
    EXPECT_EQ(kinds(layout), "id3v23 id3v11 lyrics32");
    EXPECT_EQ(layout.container, Container::Rmp);
    EXPECT_EQ(part(file, layout.riff), body);
    EXPECT_EQ(layout.chunks.size(), 2u);
    EXPECT_EQ(part(file, layout.audio), mpegFrames(40));
}

TEST(FileLayout, WavesKeepTheirSoundWhateverTheirHeadSays) {
    // Unfinished ones.
    const std::string samples(5000, '\1'), format = chunk("fmt ", waveFormat());
    for (const uint32_t size : {0u, 0xFFFFFFFFu, 70000u, 5000u}) {
        const std::string file = "RIFF" + le32(0) + "WAVE" + format + "data" + le32(size) + samples;
        const FileLayout layout = scan(file);
        EXPECT_EQ(layout.container, Container::Wave);
        EXPECT_EQ(part(file, layout.audio), samples) << size;
    }
    // Long ones tell their length in a chunk of its own.
    for (const char* form : {"RF64", "BW64"}) {
        SCOPED_TRACE(form);
        const std::string ds64 = chunk("ds64", padded(le32(0) + le32(0) + le32(5000), 28));
        const std::string file = form + le32(0xFFFFFFFF) + "WAVE" + ds64 + format + "data" + le32(0xFFFFFFFF) +
                                 samples + chunk("LIST", "INFO" + chunk("INAM", "long"));
        const FileLayout layout = scan(file);
        EXPECT_EQ(layout.container, Container::Wave);
        EXPECT_EQ(part(file, layout.data), samples);
        EXPECT_NE(layout.findInfo("INAM"), nullptr);
        EXPECT_TRUE(layout.wide);
    }
}
