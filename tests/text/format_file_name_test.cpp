#include "text/format_file_name.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

TEST(FormatFileName, GivesTheNameThatTheFormatSays) {
    const struct {
        const char *format, *name;
    } cases[] = {
        {"(*N) *T", "(Artist) Title"},
        {"*t - *n [*b] *g", "Title - Artist [Album] Genre"},
        {"  *T  ", "Title"},  // blanks around the format do not count
        {"", ""},
        {"   ", ""},
        {"100*", "100*"},  // a "*" at the end stands for itself
        {"*X", "X"},       // before any other letter it is dropped
        {"**T", "*T"},     // the second "*" is such a letter
        {"*", "*"},
        {"曲*T", "曲Title"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FormatFileName(c.format, "Title", "Artist", "Album", "Genre"), c.name) << c.format;
}

}  // namespace
}  // namespace quenlox
