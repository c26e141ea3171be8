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

TEST(FormatFileName, IsReadBackFromANameThatFitsIt) {
    const std::string longName = std::string(100000, '-') + "x";
    const struct {
        std::string format, name;
        const char *title, *artist, *track;  // no title: it does not fit
    } cases[] = {
        {"*K *T", "01 Song", "Song", "", "01"},
        {"*k*t", "12Song", "Song", "", "12"},
        {"*N - *B - *K - *T", "A - B - 3 - C - D", "C - D", "A", "3"},
        {"*- *T", "anything Song", "Song", "", ""},
        {"*K *T", "Song 01", nullptr, "", ""},  // no number
        {"(*N) *T", "Song", nullptr, "", ""},
        {"Song", "Song", nullptr, "", ""},      // no field
        {"", "Song", nullptr, "", ""},
        {"**", "*", nullptr, "", ""},
        {"*-*-*T", "a", "", "", ""},
        {"*N-*T", longName, longName.c_str() + 1, "", ""},
        {"*N\xFF*T", "a\xFF\xE3", "\xE3", "a", ""},  // ill-formed bytes are bytes
    };
    for (const auto& c : cases) {
        const auto fields = FieldsOfFileName(c.name, c.format);
        ASSERT_EQ(fields.has_value(), c.title != nullptr) << c.format;
        const auto field = [&](FormatField which) { return (*fields)[static_cast<std::size_t>(which)]; };
        if (!fields) continue;
        EXPECT_EQ(field(FormatField::Title), c.title) << c.format;
        EXPECT_EQ(field(FormatField::Artist), c.artist) << c.format;
        EXPECT_EQ(field(FormatField::Track), c.track) << c.format;
    }
}

}  // namespace
}  // namespace quenlox
