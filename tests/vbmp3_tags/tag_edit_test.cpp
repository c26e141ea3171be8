#include "libraries/vbmp3/tags/tag_edit.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;
using namespace std::string_literals;

namespace {

using Plan = std::optional<Recipe>(HeadTailReader&, const FileLayout&);

std::string carriedOut(const std::string& file, const std::function<Plan>& plan) {
    const MemorySource source(bytes(file));
    HeadTailReader reader(source);
    const auto recipe = plan(reader, scanFileLayout(reader));
    if (!recipe) return "refused";
    std::string out;
    EXPECT_TRUE(recipe->carryOut(source, [&](std::span<const uint8_t> part) {
        out.append(reinterpret_cast<const char*>(part.data()), part.size());
        return true;
    }));
    EXPECT_EQ(static_cast<int64_t>(out.size()), recipe->size());
    return out;
}
std::string write(const std::string& file, int kinds, const TagFields& fields) {
    return carriedOut(file, [&](auto& reader, const auto& layout) { return planWrite(reader, layout, kinds, fields); });
}
std::string strip(const std::string& file, int kinds) {
    return carriedOut(file, [&](auto& reader, const auto& layout) { return planRemove(reader, layout, kinds); });
}
std::string toRmp(const std::string& file) { return carriedOut(file, planRmp); }
std::string toMp3(const std::string& file) { return carriedOut(file, planMp3); }

TagFields read(const std::string& file, int kind) {
    const MemorySource source(bytes(file));
    HeadTailReader reader(source);
    const FileLayout layout = scanFileLayout(reader);
    return kind == 0 ? readTags(reader, layout) : readTagKind(reader, layout, kind);
}
int present(const std::string& file) { return presentTags(scanFileLayout(MemorySource(bytes(file)))); }
std::string soundOf(const std::string& file) {
    const FileLayout layout = scanFileLayout(MemorySource(bytes(file)));
    return file.substr(static_cast<size_t>(layout.audio.begin), static_cast<size_t>(layout.audio.size()));
}

const std::string kSound = mpegFrames(50), kOddSound = mpegFrames(51);
const std::string kPicture = frame3("APIC", "\0image/png\0\3\0"s + std::string(3000, '\xFF'));
const std::string kLyrics = lyrics3v2("LYR00007[00:01]"), kApe = ape(apeItem("Replay", "1 dB"), 1);

const TagFields kPlain{"title", "artist", "album", "comment", "1999", "Rock", "5", 17};
const TagFields kJapanese{"夜曲", "歌手 太郎", "アルバム", "説明", "2001", "JPop", "12", 146};
const TagFields kEmoji{"夜曲🎵", "한국", "Ä🙂", "a\r\nb", "平成五年", "演歌", "1/20", kNoGenre};
TagFields longFields() {
    TagFields fields = kJapanese;
    for (int i = 0; i < 200; ++i) fields.title += "長い題", fields.comment += "🎵 long ";
    fields.comment.pop_back();
    return fields;
}

}  // namespace

TEST(TagEdit, FieldsAreReadBackAndEverythingElseStays) {
    struct {
        const char* what;
        std::string file;
        int kinds;
    } cases[] = {
        {"bare", kSound, kTagId3v1 | kTagId3v2},
        {"tags all around", id3v2(3, kPicture + frame3("TIT2", "\0old"s)) + kSound + kApe + kLyrics + id3v1("old"),
         kTagId3v1 | kTagId3v2},
        {"2.4", id3v2(4, frame4("TIT2", "\0old"s)) + kOddSound, kTagId3v2},
        {"2.2", id3v2(2, frame2("TT2", "\0old"s)) + kOddSound, kTagId3v2},
        {"appended 2.4", kSound + id3v2(4, frame4("TIT2", "\0old"s) + frame4("TXXX", "\0a\0b"s), 0x10) + id3v1("old"),
         kTagId3v2},
        {"RMP without list", riff("RMP3", chunk("data", kOddSound)), kTagSi | kTagId3v2},
        {"RMP with everything",
         riff("RMP3",
              chunk("data", id3v2(3, kPicture) + kOddSound + kLyrics) +
                  chunk("LIST", "INFO" + chunk("INAM", "old") + chunk("ISFT", "tool") + chunk("IID3", id3v1("old"))) +
                  chunk("bext", "abc")),
         kTagSi | kTagId3v1 | kTagId3v2},
        {"RMP without padding",
         riff("RMP3", chunk("data", kOddSound, false) +
                          chunk("LIST", "INFO" + chunk("INAM", "old", false) + chunk("IART", "x", false), false)),
         kTagSi},
        {"RMP in tags", id3v2(3, kPicture) + riff("RMP3", chunk("data", kSound)) + id3v1("old"),
         kTagSi | kTagId3v1 | kTagId3v2},
        {"MP3 in WAVE", riff("WAVE", chunk("fmt ", waveFormat(0x55)) + chunk("data", kSound)), kTagSi | kTagId3v2},
        {"WAVE",
         riff("WAVE", chunk("fmt ", waveFormat()) + chunk("data", std::string(777, '\x55')) + chunk("cue ", "abcd")),
         kTagSi},
    };
    for (const auto& c : cases) {
        for (const TagFields& fields : {kPlain, kJapanese, kEmoji, longFields()}) {
            const std::string edited = write(c.file, c.kinds, fields);
            for (const int kind : {kTagId3v2, kTagSi}) {
                if ((c.kinds & kind) == 0) continue;
                EXPECT_EQ(read(edited, kind), fields) << c.what << kind;
            }
            EXPECT_EQ(soundOf(edited), soundOf(c.file)) << c.what;
            for (const std::string& kept :
                 {kPicture, kLyrics, kApe, "TXXX"s, "ISFT\4\0\0\0tool"s, "bext\3\0\0\0abc"s, "cue \4\0\0\0abcd"s}) {
                if (c.file.find(kept) != std::string::npos) {
                    EXPECT_NE(edited.find(kept), std::string::npos) << c.what;
                }
            }
            // Writing the same again changes nothing.
            EXPECT_EQ(write(edited, c.kinds, fields), edited) << c.what;
            const FileLayout layout = scanFileLayout(MemorySource(bytes(edited)));
            if (layout.container != Container::None) {
                EXPECT_EQ(layout.riff.end - layout.riff.begin,
                          8 + static_cast<uint8_t>(edited[static_cast<size_t>(layout.riff.begin) + 4]) +
                              (static_cast<uint8_t>(edited[static_cast<size_t>(layout.riff.begin) + 5]) << 8))
                    << c.what;
                for (const RiffChunk& part : layout.chunks)
                    EXPECT_EQ(part.body.begin % 2, layout.riff.begin % 2) << c.what;
            }
            // In an RMP ID3v1 keeps step with the SI fields, as the end of the file.
            if (layout.container == Container::Rmp && (c.kinds & kTagSi) != 0) {
                EXPECT_EQ(edited.substr(edited.size() - 128, 3), "TAG") << c.what;
                EXPECT_EQ(layout.id3v1().end, layout.fileSize) << c.what;
                EXPECT_NE(layout.findInfo("IID3"), nullptr) << c.what;
                EXPECT_EQ(read(edited, kTagId3v1).artist.substr(0, 2), fields.artist.substr(0, 2)) << c.what;
            }
        }
    }
}

TEST(TagEdit, TagsAreTakenOffAlone) {
    const std::string head = id3v2(3, kPicture + frame3("TIT2", "\0old"s)), v1 = id3v1("old");
    const std::string all = head + kOddSound + kApe + kLyrics + v1;
    EXPECT_EQ(strip(all, kTagId3v1), head + kOddSound + kApe + kLyrics);
    EXPECT_EQ(strip(all, kTagId3v2), kOddSound + kApe + kLyrics + v1);
    EXPECT_EQ(strip(all, kTagAll), kOddSound + kApe + kLyrics);
    EXPECT_EQ(strip(kSound, kTagAll), kSound);
    EXPECT_EQ(strip(kSound + id3v1("a") + id3v1("b"), kTagId3v1), kSound);

    const std::string tool = chunk("ISFT", "tool");
    const std::string rmp = riff("RMP3", chunk("data", head + kOddSound) +
                                             chunk("LIST", "INFO" + chunk("INAM", "x") + tool + chunk("IID3", v1)));
    const auto wrapped = [&](const std::string& data, const std::string& info) {
        return riff("RMP3", chunk("data", data) + (info.empty() ? "" : chunk("LIST", "INFO" + info)));
    };
    EXPECT_EQ(strip(rmp, kTagSi), wrapped(head + kOddSound, tool + chunk("IID3", v1)));
    EXPECT_EQ(strip(rmp, kTagId3v1), wrapped(head + kOddSound, chunk("INAM", "x") + tool));
    EXPECT_EQ(strip(rmp, kTagId3v2), wrapped(kOddSound, chunk("INAM", "x") + tool + chunk("IID3", v1)));
    EXPECT_EQ(strip(wrapped(kOddSound, chunk("INAM", "x") + chunk("IID3", v1)), kTagAll), wrapped(kOddSound, ""));
}

TEST(TagEdit, ATagIsRefusedWhereItDoesNotBelong) {
    const std::string wave = riff("WAVE", chunk("fmt ", waveFormat()) + chunk("data", "abcd"));
    EXPECT_EQ(write(kSound, kTagSi, kPlain), "refused");
    EXPECT_EQ(write(wave, kTagId3v1, kPlain), "refused");
    EXPECT_EQ(write(wave, kTagId3v2, kPlain), "refused");
    EXPECT_EQ(toRmp(wave), "refused");
    EXPECT_EQ(toMp3(wave), "refused");
    EXPECT_EQ(toMp3(kSound), "refused");
    EXPECT_EQ(toRmp(riff("RMP3", chunk("data", kSound))), "refused");
}

TEST(TagEdit, Mp3ToRmpAndBackGivesTheSameFile) {
    const std::string v2 = id3v2(3, kPicture + frame3("TIT2", "\0a very long title that does not fit ID3v1 at all"s) +
                                        frame3("TPE1", "\0a\0b"s));
    for (const std::string& sound : {kSound, kOddSound}) {
        for (const std::string& file :
             {sound + id3v1("t", "a", "b", "1999", "c", 5, 17), v2 + sound + id3v1("a very long tit"),
              v2 + sound + kApe + kLyrics + id3v1("t"), sound + kLyrics + id3v1("\x96\xE9"), sound, sound + kLyrics,
              sound + kApe + id3v1("Caf\xE9"), sound + id3v1("")}) {
            const std::string rmp = toRmp(file);
            EXPECT_EQ(soundOf(rmp), sound);
            EXPECT_EQ(read(rmp, 0), read(file, 0));
            EXPECT_EQ(toMp3(rmp), file);
        }
        // Without ID3v1 the RMP gets one, and it stays.
        const std::string rmp = toRmp(v2 + sound);
        EXPECT_EQ(rmp.substr(rmp.size() - 128, 3), "TAG");
        EXPECT_EQ(toMp3(rmp), v2 + sound + rmp.substr(rmp.size() - 128));
    }
}

TEST(TagEdit, WhatWasEditedInAnRmpIsInTheMp3) {
    const TagFields all = longFields();
    const std::string v2 = id3v2(4, frame4("TXXX", "\0a\0b"s) + frame4("TIT2", "\0old"s));
    for (const std::string& file :
         {kOddSound, v2 + kOddSound, kOddSound + id3v1("old"), v2 + kSound + kLyrics + id3v1("old")}) {
        const std::string mp3 = toMp3(write(toRmp(file), kTagSi, all));
        EXPECT_EQ(read(mp3, kTagId3v2), all);
        EXPECT_EQ(read(mp3, kTagId3v1).artist, all.artist);
        EXPECT_EQ(soundOf(mp3), soundOf(file));
        EXPECT_EQ(mp3.find("TXXX") != std::string::npos, file.find("TXXX") != std::string::npos);
        EXPECT_EQ(mp3.find(kLyrics) != std::string::npos, file.find(kLyrics) != std::string::npos);
        // What fits ID3v1 needs no more than that.
        const std::string small = toMp3(write(toRmp(kSound), kTagSi, kPlain));
        EXPECT_EQ(present(small), kTagId3v1);
        EXPECT_EQ(read(small, kTagId3v1), kPlain);
    }
    const std::string inWave = riff("WAVE", chunk("fmt ", waveFormat(0x55)) + chunk("data", kSound + id3v1("v1")) +
                                                chunk("LIST", "INFO" + chunk("INAM", "si")));
    EXPECT_EQ(toMp3(inWave), kSound + id3v1("si"));
    EXPECT_EQ(read(toRmp(inWave), kTagSi).title, "si");
    EXPECT_EQ(soundOf(toRmp(inWave)), kSound);
}
