#include "playlist/name_estimate.h"

#include <gtest/gtest.h>

namespace quenlox {
namespace {

TEST(NameEstimate, TextBetweenTheLiteralPartsFallsToTheFieldsInOrder) {
    const struct {
        const char *format, *path;
        NameEstimate estimate;
    } cases[] = {
        {"(*N) *T", "C:\\m\\(Artist) Title.mp3", {"Title", "Artist", ""}},
        {"(*N) *T", "(A (live)) T) U.mp3", {"T) U", "A (live)", ""}},  // the whole literal ends a field
        {"(*N) *T", "() Title.mp3", {"Title", "", ""}},
        {"*n - *b - *t", "A - B - C - D.mp3", {"C - D", "A", "B"}},  // the last field takes the rest
        {"*T [*N]", "C:\\Song [x] [Who].mp3", {"Song", "x] [Who", ""}},
        {"*T _*N_", "曲 _名_.mp3", {"曲", "名", ""}},
        {"*G-*T", "Rock-Song.mp3", {"Song", "", ""}},  // the genre has no column
        {"*T*N", "Song.mp3", {"Song", "", ""}},
        {"*N-*T", "A  -  B.mp3", {"B", "A", ""}},
        {"*T", "a.b.mp3", {"a.b", "", ""}},
        {"(*N) *T", "Plain name.mp3", {"Plain name", "", ""}},      // does not fit
        {"*T [*N]", "Song [Who] x.mp3", {"Song [Who] x", "", ""}},  // what is behind the last literal does not fit
        {"abc", "Song.mp3", {"Song", "", ""}},
    };
    for (const auto& c : cases) {
        const auto estimate = EstimateFromFileName(c.path, c.format);
        ASSERT_TRUE(estimate) << c.format;
        EXPECT_EQ(estimate->title, c.estimate.title) << c.format << " " << c.path;
        EXPECT_EQ(estimate->artist, c.estimate.artist) << c.format << " " << c.path;
        EXPECT_EQ(estimate->album, c.estimate.album) << c.format << " " << c.path;
    }
}

}  // namespace
}  // namespace quenlox
