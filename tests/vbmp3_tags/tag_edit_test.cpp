#include "libraries/vbmp3/tags/tag_edit.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/vbmp3_tags/tag_bytes.h"

using namespace vbmp3;
using namespace tagbytes;
using namespace std::string_literals;

namespace {

using Plan = std::optional<Recipe>(HeadTailReader&, const FileLayout&);

std::string CarriedOut(const std::string& file, const std::function<Plan>& plan) {
    const MemorySource source(BytesOf(file));
    HeadTailReader reader(source);
    const auto recipe = plan(reader, ScanFileLayout(reader));
    if (!recipe) return "refused";
    std::string out;
    EXPECT_TRUE(recipe->carryOut(source, [&](std::span<const uint8_t> part) {
        out.append(reinterpret_cast<const char*>(part.data()), part.size());
        return true;
    }));
    EXPECT_EQ(static_cast<int64_t>(out.size()), recipe->size());
    return out;
}
std::string Write(const std::string& file, int kinds, const TagFields& fields) {
    return CarriedOut(file, [&](auto& reader, const auto& layout) { return PlanWrite(reader, layout, kinds, fields); });
}
std::string Strip(const std::string& file, int kinds) {
    return CarriedOut(file, [&](auto& reader, const auto& layout) { return PlanRemove(reader, layout, kinds); });
}
std::string ToRmp(const std::string& file) { return CarriedOut(file, PlanRmp); }
std::string ToMp3(const std::string& file) { return CarriedOut(file, PlanMp3); }

TagFields Read(const std::string& file, int kind) {
    const MemorySource source(BytesOf(file));
    HeadTailReader reader(source);
    const FileLayout layout = ScanFileLayout(reader);
    return kind == 0 ? ReadTags(reader, layout) : ReadTagKind(reader, layout, kind);
}
int Present(const std::string& file) { return PresentTags(ScanFileLayout(MemorySource(BytesOf(file)))); }
std::string SoundOf(const std::string& file) {
    const FileLayout layout = ScanFileLayout(MemorySource(BytesOf(file)));
    return file.substr(static_cast<size_t>(layout.audio.begin), static_cast<size_t>(layout.audio.size()));
}

const std::string kSound = MpegFrames(50), kOddSound = MpegFrames(51);
const std::string kPicture = Frame3("APIC", "\0image/png\0\3\0"s + std::string(3000, '\xFF'));
const std::string kLyrics = Lyrics3v2("LYR00007[00:01]"), kApe = Ape(ApeItem("Replay", "1 dB"), 1);

const TagFields kPlain{"title", "artist", "album", "comment", "1999", "Rock", "5", 17};
const TagFields kJapanese{"夜曲", "歌手 太郎", "アルバム", "説明", "2001", "JPop", "12", 146};
const TagFields kEmoji{"夜曲🎵", "한국", "Ä🙂", "a\r\nb", "平成五年", "演歌", "1/20", kNoGenre};
TagFields LongFields() {
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
        {"tags all around", Id3v2(3, kPicture + Frame3("TIT2", "\0old"s)) + kSound + kApe + kLyrics + Id3v1("old"),
         kTagId3v1 | kTagId3v2},
        {"2.4", Id3v2(4, Frame4("TIT2", "\0old"s)) + kOddSound, kTagId3v2},
        {"2.2", Id3v2(2, Frame2("TT2", "\0old"s)) + kOddSound, kTagId3v2},
        {"appended 2.4", kSound + Id3v2(4, Frame4("TIT2", "\0old"s) + Frame4("TXXX", "\0a\0b"s), 0x10) + Id3v1("old"),
         kTagId3v2},
        {"RMP without list", Riff("RMP3", Chunk("data", kOddSound)), kTagSi | kTagId3v2},
        {"RMP with everything",
         Riff("RMP3",
              Chunk("data", Id3v2(3, kPicture) + kOddSound + kLyrics) +
                  Chunk("LIST", "INFO" + Chunk("INAM", "old") + Chunk("ISFT", "tool") + Chunk("IID3", Id3v1("old"))) +
                  Chunk("bext", "abc")),
         kTagSi | kTagId3v1 | kTagId3v2},
        {"RMP without padding",
         Riff("RMP3", Chunk("data", kOddSound, false) +
                          Chunk("LIST", "INFO" + Chunk("INAM", "old", false) + Chunk("IART", "x", false), false)),
         kTagSi},
        {"RMP in tags", Id3v2(3, kPicture) + Riff("RMP3", Chunk("data", kSound)) + Id3v1("old"),
         kTagSi | kTagId3v1 | kTagId3v2},
        {"MP3 in WAVE", Riff("WAVE", Chunk("fmt ", FmtBody(0x55)) + Chunk("data", kSound)), kTagSi | kTagId3v2},
        {"WAVE",
         Riff("WAVE", Chunk("fmt ", FmtBody()) + Chunk("data", std::string(777, '\x55')) + Chunk("cue ", "abcd")),
         kTagSi},
    };
    for (const auto& c : cases) {
        for (const TagFields& fields : {kPlain, kJapanese, kEmoji, LongFields()}) {
            const std::string edited = Write(c.file, c.kinds, fields);
            for (const int kind : {kTagId3v2, kTagSi}) {
                if ((c.kinds & kind) == 0) continue;
                EXPECT_EQ(Read(edited, kind), fields) << c.what << kind;
            }
            EXPECT_EQ(SoundOf(edited), SoundOf(c.file)) << c.what;
            for (const std::string& kept :
                 {kPicture, kLyrics, kApe, "TXXX"s, "ISFT\4\0\0\0tool"s, "bext\3\0\0\0abc"s, "cue \4\0\0\0abcd"s}) {
                if (c.file.find(kept) != std::string::npos) {
                    EXPECT_NE(edited.find(kept), std::string::npos) << c.what;
                }
            }
            // Writing the same again changes nothing.
            EXPECT_EQ(Write(edited, c.kinds, fields), edited) << c.what;
            const FileLayout layout = ScanFileLayout(MemorySource(BytesOf(edited)));
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
                EXPECT_EQ(Read(edited, kTagId3v1).artist.substr(0, 2), fields.artist.substr(0, 2)) << c.what;
            }
        }
    }
}

TEST(TagEdit, TagsAreTakenOffAlone) {
    const std::string head = Id3v2(3, kPicture + Frame3("TIT2", "\0old"s)), v1 = Id3v1("old");
    const std::string all = head + kOddSound + kApe + kLyrics + v1;
    EXPECT_EQ(Strip(all, kTagId3v1), head + kOddSound + kApe + kLyrics);
    EXPECT_EQ(Strip(all, kTagId3v2), kOddSound + kApe + kLyrics + v1);
    EXPECT_EQ(Strip(all, kTagAll), kOddSound + kApe + kLyrics);
    EXPECT_EQ(Strip(kSound, kTagAll), kSound);
    EXPECT_EQ(Strip(kSound + Id3v1("a") + Id3v1("b"), kTagId3v1), kSound);

    const std::string tool = Chunk("ISFT", "tool");
    const std::string rmp = Riff("RMP3", Chunk("data", head + kOddSound) +
                                             Chunk("LIST", "INFO" + Chunk("INAM", "x") + tool + Chunk("IID3", v1)));
    const auto wrapped = [&](const std::string& data, const std::string& info) {
        return Riff("RMP3", Chunk("data", data) + (info.empty() ? "" : Chunk("LIST", "INFO" + info)));
    };
    EXPECT_EQ(Strip(rmp, kTagSi), wrapped(head + kOddSound, tool + Chunk("IID3", v1)));
    EXPECT_EQ(Strip(rmp, kTagId3v1), wrapped(head + kOddSound, Chunk("INAM", "x") + tool));
    EXPECT_EQ(Strip(rmp, kTagId3v2), wrapped(kOddSound, Chunk("INAM", "x") + tool + Chunk("IID3", v1)));
    EXPECT_EQ(Strip(wrapped(kOddSound, Chunk("INAM", "x") + Chunk("IID3", v1)), kTagAll), wrapped(kOddSound, ""));
}

TEST(TagEdit, ATagIsRefusedWhereItDoesNotBelong) {
    const std::string wave = Riff("WAVE", Chunk("fmt ", FmtBody()) + Chunk("data", "abcd"));
    EXPECT_EQ(Write(kSound, kTagSi, kPlain), "refused");
    EXPECT_EQ(Write(wave, kTagId3v1, kPlain), "refused");
    EXPECT_EQ(Write(wave, kTagId3v2, kPlain), "refused");
    EXPECT_EQ(ToRmp(wave), "refused");
    EXPECT_EQ(ToMp3(wave), "refused");
    EXPECT_EQ(ToMp3(kSound), "refused");
    EXPECT_EQ(ToRmp(Riff("RMP3", Chunk("data", kSound))), "refused");
}

TEST(TagEdit, Mp3ToRmpAndBackGivesTheSameFile) {
    const std::string v2 = Id3v2(3, kPicture + Frame3("TIT2", "\0a very long title that does not fit ID3v1 at all"s) +
                                        Frame3("TPE1", "\0a\0b"s));
    for (const std::string& sound : {kSound, kOddSound}) {
        for (const std::string& file :
             {sound + Id3v1("t", "a", "b", "1999", "c", 5, 17), v2 + sound + Id3v1("a very long tit"),
              v2 + sound + kApe + kLyrics + Id3v1("t"), sound + kLyrics + Id3v1("\x96\xE9"), sound, sound + kLyrics,
              sound + kApe + Id3v1("Caf\xE9"), sound + Id3v1("")}) {
            const std::string rmp = ToRmp(file);
            EXPECT_EQ(SoundOf(rmp), sound);
            EXPECT_EQ(Read(rmp, 0), Read(file, 0));
            EXPECT_EQ(ToMp3(rmp), file);
        }
        // Without ID3v1 the RMP gets one, and it stays.
        const std::string rmp = ToRmp(v2 + sound);
        EXPECT_EQ(rmp.substr(rmp.size() - 128, 3), "TAG");
        EXPECT_EQ(ToMp3(rmp), v2 + sound + rmp.substr(rmp.size() - 128));
    }
}

TEST(TagEdit, WhatWasEditedInAnRmpIsInTheMp3) {
    const TagFields all = LongFields();
    const std::string v2 = Id3v2(4, Frame4("TXXX", "\0a\0b"s) + Frame4("TIT2", "\0old"s));
    for (const std::string& file :
         {kOddSound, v2 + kOddSound, kOddSound + Id3v1("old"), v2 + kSound + kLyrics + Id3v1("old")}) {
        const std::string mp3 = ToMp3(Write(ToRmp(file), kTagSi, all));
        EXPECT_EQ(Read(mp3, kTagId3v2), all);
        EXPECT_EQ(Read(mp3, kTagId3v1).artist, all.artist);
        EXPECT_EQ(SoundOf(mp3), SoundOf(file));
        EXPECT_EQ(mp3.find("TXXX") != std::string::npos, file.find("TXXX") != std::string::npos);
        EXPECT_EQ(mp3.find(kLyrics) != std::string::npos, file.find(kLyrics) != std::string::npos);
        // What fits ID3v1 needs no more than that.
        const std::string small = ToMp3(Write(ToRmp(kSound), kTagSi, kPlain));
        EXPECT_EQ(Present(small), kTagId3v1);
        EXPECT_EQ(Read(small, kTagId3v1), kPlain);
    }
    const std::string inWave = Riff("WAVE", Chunk("fmt ", FmtBody(0x55)) + Chunk("data", kSound + Id3v1("v1")) +
                                                Chunk("LIST", "INFO" + Chunk("INAM", "si")));
    EXPECT_EQ(ToMp3(inWave), kSound + Id3v1("si"));
    EXPECT_EQ(Read(ToRmp(inWave), kTagSi).title, "si");
    EXPECT_EQ(SoundOf(ToRmp(inWave)), kSound);
}
