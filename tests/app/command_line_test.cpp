#include "app/command_line.h"

#include <gtest/gtest.h>

#include "state/global_state.h"
#include "playback/status_display.h"
#include "tests/fakes/fake_display.h"

namespace quenlox {
namespace {

TEST(CommandLine, NamesAFileAndSwitchesBehindTheFirstSlash) {
    const struct {
        const char* text;
        const char* file;   // with "old" as the remembered one
        int result;
        int mode;           // with 2 as the stored one
        const char* cut;    // what is left of the text
    } cases[] = {
        {"", "old", 0, 2, ""},
        {"\"C:\\my music\\a.mp3\" /pm3", "C:\\my music\\a.mp3", 1, 3, "/pm3"},
        {"C:\\a.mp3", "C:\\a.mp3", 1, 2, "C:\\a.mp3"},
        {" C:\\a.mp3 ", " C:\\a.mp3 ", 1, 2, " C:\\a.mp3 "},      // blanks are dropped before a switch only
        {" C:\\a.mp3 /t", "C:\\a.mp3", 11, 2, "/t"},
        {"/p", "old", 1, 2, "/p"},
        {"/T /P", "old", 11, 2, "/T /P"},
        {"/tt", "old", 10, 2, "/tt"},
        {"/m7", "old", 0, 2, "/m7"},
        {"/m0", "old", 0, 0, "/m0"},
        {"/M1m2", "old", 0, 2, "/M1m2"},
        {"/m", "old", 0, 2, "/m"},
        {"/mp", "old", 1, 2, "/mp"},                                 // no digit: the mode stays and "p" counts
        {"\"\" /x", "old", 0, 2, "/x"},
        {"   ", "   ", 1, 2, "   "},
    };
    for (const auto& c : cases) {
        GlobalState state;
        state.PlayMode = 2;
        FakeDisplay display;
        StatusDisplay status(state, display);
        std::string text = c.text, file = "old";
        EXPECT_EQ(ParseCommandLine(text, file, state, status), c.result) << c.text;
        EXPECT_EQ(file, c.file) << c.text;
        EXPECT_EQ(state.PlayMode, c.mode) << c.text;
        if (c.mode != 2) {
            EXPECT_EQ(display.playMode, PlayModeWord(c.mode)) << c.text;
        }
        EXPECT_EQ(text, c.cut) << c.text;
    }
}

}  // namespace
}  // namespace quenlox
