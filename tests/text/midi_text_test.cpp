#include "text/midi_text.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

using namespace std::string_literals;

std::string Chunk(const std::string& name, const std::string& content) {
    const auto length = static_cast<std::uint32_t>(content.size());
    std::string chunk = name;
    for (const int shift : {24, 16, 8, 0}) chunk += static_cast<char>(length >> shift & 0xFF);
    return chunk + content;
}

std::string Meta(int type, const std::string& text) {
    return "\0\xFF"s + static_cast<char>(type) + static_cast<char>(text.size()) + text;
}

const std::string kEnd = "\0\xFF\x2F\0"s;
const std::string kHead = Chunk("MThd", "\0\1\0\2\0\x60"s);

std::string Riff(const std::string& midi) {
    std::string file = "RIFF\0\0\0\0RMIDLIST\5\0\0\0"s + "12345" + "\0"s + "data"s;
    for (const int shift : {0, 8, 16, 24}) file += static_cast<char>(midi.size() >> shift & 0xFF);
    return file + midi;
}

TEST(MidiTitle, IsTheNameOfTheFirstTrackElseItsTextElseALaterName) {
    const struct {
        const char* what;
        std::string file;
        std::string title;
    } cases[] = {
        {"name", kHead + Chunk("MTrk", Meta(3, "Song") + kEnd), "Song"},
        {"name wins over an earlier text", kHead + Chunk("MTrk", Meta(1, "by me") + Meta(3, "Song") + kEnd), "Song"},
        {"text of the first track wins over a later name",
         kHead + Chunk("MTrk", Meta(1, "Words") + kEnd) + Chunk("MTrk", Meta(3, "Piano") + kEnd), "Words"},
        {"later name", kHead + Chunk("MTrk", kEnd) + Chunk("MTrk", Meta(3, "Piano") + kEnd), "Piano"},
        {"Shift-JIS", kHead + Chunk("MTrk", Meta(3, "\x8B\xC8\x96\xBC") + kEnd), "曲名"},
        {"blanks and NULs", kHead + Chunk("MTrk", Meta(3, " a\tb \0c"s) + kEnd), "a b"},
        {"behind notes in running status, a system message and a program change",
         kHead +
             Chunk("MTrk", "\0\xC0\x05"s + "\x81\x40\x90\x3C\x40"s + "\x10\x3C\0"s + "\0\xF0\3abc"s + Meta(3, "Song")),
         "Song"},
        {"unknown chunk between", kHead + Chunk("XFIH", "zz") + Chunk("MTrk", Meta(3, "Song")), "Song"},
        {"in RIFF", Riff(kHead + Chunk("MTrk", Meta(3, "Song") + kEnd)), "Song"},
        {"nothing after the end of the track", kHead + Chunk("MTrk", kEnd + Meta(3, "Song")), ""},
        {"no MIDI file", "hello", ""},
        {"empty", "", ""},
        {"text longer than the track", kHead + Chunk("MTrk", "\0\xFF\3\x7F"s + "short"), ""},
        {"chunk longer than the file", kHead + "MTrk\xFF\xFF\xFF\xFF"s + Meta(3, "Song"), "Song"},
        {"endless number", kHead + Chunk("MTrk", std::string(100, '\xFF')), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(MidiTitle(c.file), c.title) << c.what;
}

}  // namespace
}  // namespace quenlox
