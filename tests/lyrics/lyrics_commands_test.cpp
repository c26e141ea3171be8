#include "lyrics/lyrics_commands.h"

#include <gtest/gtest.h>

#include "forms/keys.h"
#include "lyrics/lyrics_offset.h"
#include "tests/fakes/fake_services.h"

namespace quenlox {
namespace {

using namespace std::literals;

TEST(LyricsOffset, OnlyTheOffsetOfTheFileChanges) {
    const struct {
        std::string before;
        int later;
        bool atMark;
        std::optional<std::string> after;
    } cases[] = {
        {"[00:01.00]a\n", 300, false, "[offset:-300]\n[00:01.00]a\n"},
        {"[ti:x]\r\n[Offset: +500 ]\r\n[00:01.00]\x83\x5B\r\n", 200, false,
         "[ti:x]\r\n[Offset:300]\r\n[00:01.00]\x83\x5B\r\n"},
        {"[ti:x][offset:-100][00:01.00]a", -100, false, "[ti:x][offset:0][00:01.00]a"},
        {"@Title=x\r@offset=40\r[00:01:00]a", -100, true, "@Title=x\r@offset=-60\r[00:01:00]a"},
        {"[00:01:00]a\r[00:02:00]b", 100, true, "@Offset=100\r[00:01:00]a\r[00:02:00]b"},
        {"\xEF\xBB\xBF[00:01]a", 100, false, "\xEF\xBB\xBF[offset:-100]\r\n[00:01]a"},
        {"\xFF\xFE[\0o\0f\0f\0s\0e\0t\0:\0"
         "5\0]\0\n\0\x42\x30"s,
         5, false,
         "\xFF\xFE[\0o\0f\0f\0s\0e\0t\0:\0"
         "0\0]\0\n\0\x42\x30"s},
        {"\xFE\xFF\x30\x42"s, -7, true,
         "\xFE\xFF\0@\0O\0f\0f\0s\0e\0t\0=\0-\0"
         "7\0\r\0\n\x30\x42"s},
        {"[offset:5] is sung[00:01]", 100, false, "[offset:-100]\r\n[offset:5] is sung[00:01]"},
        {"[\0"
         "0\0",
         100, false, std::nullopt},
        {"[offset:3600000]", -100, false, std::nullopt},
    };
    for (auto c : cases) {
        if (!c.after) c.before += "\0"s;
        EXPECT_EQ(ShiftLyrics(c.before, c.later, c.atMark), c.after) << c.before;
    }
}

TEST(LyricsCommands, TimingIsTheTracksUntilItIsSavedIntoItsFile) {
    struct Room : FakeServices {
    } room;
    const std::string words = "C:\\music\\a.lrc";
    room.files.add("C:\\music\\a.mp3", "x");
    room.vbmp3.addFile("C:\\music\\a.mp3", FileType{.mpeg = true, .lyrics = true});
    room.files.add(words, "[00:01.00]a");
    room.vbmp3.lyricsFiles = {words};
    room.vbmp3.timeTag = true;
    Application application(room.all(), "C:\\music\\a.mp3");
    application.load();
    FormLyrics& form = application.lyrics();
    const auto menu = [&] { return LyricsMenu(form.facts(), form.onCommand).items; };
    const auto item = [&](std::string_view name) {
        const auto items = menu();
        return *std::ranges::find_if(items, [&](const MenuItem& one) { return one.caption.starts_with(name); });
    };
    EXPECT_FALSE(item("ずらした時間を戻す").enabled);
    for (int i = 0; i < 3; ++i) form.Form_KeyDown(kKeyRight, kControl);
    form.Form_KeyDown(kKeyLeft, kControl);
    EXPECT_EQ(form.caption(), "歌詞（0.2秒遅く）");
    EXPECT_EQ(room.vbmp3.count("lyricsShift 200"), 2);
    item("ずらした時間を歌詞ファイルに保存").click();
    EXPECT_EQ(room.files.bytesOf(words), "[offset:-200]\r\n[00:01.00]a");
    EXPECT_EQ(form.caption(), "歌詞");
    EXPECT_EQ(room.vbmp3.calls.back(), "lyricsFile " + words) << "it is read anew";

    form.Form_KeyDown(kKeyLeft, kControl);
    room.files.lookUp(words)->readOnly = true;
    form.Form_KeyDown(kKeyS, kControl);
    ASSERT_EQ(room.dialogs.messages.size(), 1u);
    EXPECT_EQ(form.caption(), "歌詞（0.1秒早く）") << "not lost";
    form.Form_KeyDown(kKey0, kControl);
    EXPECT_EQ(form.caption(), "歌詞");
    item("行数").items[1].click();
    EXPECT_EQ(application.options().LyricsLine, 3);
    item("配色").items[7].click();
    EXPECT_EQ(form.Picture7.backColor(), (Color{0, 0, 0}));
    application.top().unload();
}

}  // namespace
}  // namespace quenlox
