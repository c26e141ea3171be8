// Writes the files that check_with_mutagen.py reads: every field in every kind of tag, through the C interface.
// Usage: write_samples <folder>. Prints nothing; a failed call ends it with 1.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace tagbytes;
using namespace std::string_literals;

namespace {

struct Sample {
    const char* name;
    const char *title, *artist, *album, *comment, *year, *genre, *track;
};
// The same texts stand in check_with_mutagen.py.
constexpr Sample kSamples[] = {
    {"plain", "Title", "Artist", "Album", "A comment", "1999", "Rock", "5"},
    {"japanese", "夜曲", "歌手 太郎", "日本語のアルバム", "説明文", "2001", "JPop", "12"},
    {"emoji", "夜曲🎵", "한국", "Ä🙂", "行一\n行二", "2020", "演歌", "3/12"},
    {"long", nullptr, "Artist", "Album", nullptr, "1999", "Rock", "5"},
};

bool put(const std::string& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary);
    out << contents;
    return out.good();
}

vbmp3_Tag tagOf(const Sample& sample) {
    std::string longTitle, longComment;
    for (int i = 0; i < 50; ++i) longTitle += "長い題";
    for (int i = 0; i < 100; ++i) longComment += "長い説明";
    longTitle.resize(longTitle.size() < 510 ? longTitle.size() : 510);
    longComment.resize(longComment.size() < 1020 ? longComment.size() : 1020);
    vbmp3_Tag tag{};
    tag.size = sizeof tag;
    tag.genreNumber = 255;
    const auto copy = [](char* to, size_t size, const std::string& text) {
        std::memcpy(to, text.data(), text.size() < size ? text.size() : size - 1);
    };
    copy(tag.title, sizeof tag.title, sample.title != nullptr ? sample.title : longTitle);
    copy(tag.artist, sizeof tag.artist, sample.artist);
    copy(tag.album, sizeof tag.album, sample.album);
    copy(tag.comment, sizeof tag.comment, sample.comment != nullptr ? sample.comment : longComment);
    copy(tag.year, sizeof tag.year, sample.year);
    copy(tag.genre, sizeof tag.genre, sample.genre);
    copy(tag.track, sizeof tag.track, sample.track);
    return tag;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string folder = std::string(argv[1]) + "/";
    std::filesystem::create_directories(folder);
    const std::string picture = "\0image/png\0\3cover\0"s + std::string(5000, '\x89');
    const std::string sound = mpegFrames(400);
    for (const Sample& sample : kSamples) {
        const vbmp3_Tag tag = tagOf(sample);
        const struct {
            const char* kind;
            std::string before;
            int kinds;
        } kinds[] = {
            {"v1", sound, VBMP3_TAG_ID3V1},
            {"v23", sound, VBMP3_TAG_ID3V2},
            {"v22",
             id3v2(2, frame2("TT2", "\0old"s) + frame2("PIC", "\0PNG\3c\0"s + std::string(5000, '\x89'))) + sound,
             VBMP3_TAG_ID3V2},
            {"v23picture",
             id3v2(3, frame3("APIC", picture) + frame3("TIT2", "\0old"s) + frame3("TXXX", "\0key\0value"s)) + sound,
             VBMP3_TAG_ID3V2 | VBMP3_TAG_ID3V1},
            {"v24",
             id3v2(4, frame4("TIT2", "\3old"s) + frame4("APIC", picture) + frame4("TXXX", "\3key\0value"s)) + sound,
             VBMP3_TAG_ID3V2},
            {"si", riff("RMP3", chunk("data", sound)), VBMP3_TAG_SI},
        };
        for (const auto& kind : kinds) {
            const bool si = (kind.kinds & VBMP3_TAG_SI) != 0;
            const std::string path = folder + sample.name + "-" + kind.kind + (si ? ".rmp" : ".mp3");
            if (!put(path, kind.before) || vbmp3_writeTag(path.c_str(), kind.kinds, &tag) == 0) return 1;
            // The SI fields as an independent reader sees them: through the MP3 that is made of them, and raw.
            if (si && vbmp3_convertToMp3(path.c_str(), (folder + sample.name + "-fromsi.mp3").c_str()) == 0) return 1;
            if (!si && vbmp3_convertToRmp(path.c_str(), (path + ".rmp").c_str()) == 0) return 1;
            if (!si && vbmp3_convertToMp3((path + ".rmp").c_str(), (path + ".back.mp3").c_str()) == 0) return 1;
        }
    }
    return put(folder + "sound", sound) ? 0 : 1;
}
