#include "crash/crash_note.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "crash/action_log.h"

namespace quenlox {
namespace {

std::vector<std::string> Texts(const ActionLog& log) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < log.count(); ++i) texts.emplace_back(log.entry(i).text.data());
    return texts;
}

TEST(ActionLog, KeepsTheNewestInOrderAndNothingOfAFileButItsKind) {
    ActionLog log;
    log.note("next");
    log.note("list add", 12);
    log.note("skin", "hakuji");
    log.note("skin", "白磁");
    log.note("a text that is far too long to be kept whole", "and more");
    for (const char* path : {"C:\\secret\\Name.MP3", "C:\\secret.dir\\name", "x.wav", "my.private name", "a.very long", "", "."}) {
        log.noteFile("open", path);
    }
    EXPECT_THAT(Texts(log), testing::ElementsAre("next", "list add 12", "skin hakuji", "skin ??????", "a text that is far too long to ",
                                                 "open mp3", "open -", "open wav", "open -", "open -", "open -", "open -"));

    for (int i = 0; i < 1000; ++i) log.note("seek", i);
    const auto texts = Texts(log);
    EXPECT_EQ(texts.size(), ActionLog::kEntries - 1);
    EXPECT_EQ(texts.front(), "seek " + std::to_string(1001 - ActionLog::kEntries));
    EXPECT_EQ(texts.back(), "seek 999");
}

TEST(CrashNote, TellsVersionTimeFaultAndActions) {
    ActionLog log;
    log.note("play");
    CrashFacts facts{"1.2.3", "0123abcd", 2026, 1, 2, 3, 4, 5, 0xC0000005, "", {"vbmp3.dll", 0x1F20}, true, true, 0x10, true};
    std::vector<char> buffer(2000);
    NoteText note(buffer);
    WriteCrashNote(note, facts, &log);
    EXPECT_THAT(std::string(note.view()), testing::MatchesRegex("Quenlox 1\\.2\\.3 ended unexpectedly\r\n"
                                                                "commit  0123abcd\r\n"
                                                                "time    2026-01-02 03:04:05\r\n"
                                                                "code    0xC0000005 access violation, writing 0x10\r\n"
                                                                "place   vbmp3\\.dll\\+0x1F20\r\n"
                                                                "thread  user interface\r\n"
                                                                "last actions, milliseconds before the end\r\n"
                                                                "  [0-9]+  play\r\n"));

    // A buffer of any size is never overrun.
    for (std::size_t size = 0; size < 300; ++size) {
        std::vector<char> small(size);
        NoteText cut(small);
        WriteCrashNote(cut, facts, nullptr);
        EXPECT_LE(cut.view().size(), size);
    }
}

}  // namespace
}  // namespace quenlox
