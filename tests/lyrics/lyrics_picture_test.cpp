#include "lyrics/lyrics_picture.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fakes/fake_text_painter.h"

namespace quenlox {
namespace {

LyricsLines Lines(const std::vector<std::string>& rows) {
    LyricsLines lines;
    lines.total = 9;
    lines.current = 2;
    std::ranges::copy(rows, lines.rows.begin());
    return lines;
}

const std::vector<std::string> kSong{"窓をあけ", "針", "遠い町", "小さな歌", "まわれ", "小さな歌"};

// The picture as letters, one for a cell of 4 by 8 pixels: "." background, "#" text, "-" pale text, "*" sung.
std::string Letters(const Surface& surface, const LyricsLook& look) {
    std::string out;
    for (int y = 2; y < surface.height(); y += 8) {
        std::string row;
        for (int x = 2; x < surface.width(); x += 4) {
            const Color color = Surface::ToColor(surface.at(x, y));
            row += color == look.back ? '.' : color == look.text ? '#' : color == Color{127, 127, 127} ? '-' : '*';
        }
        out += row + "\n";
    }
    return out;
}

LyricsLook Look(int lines) {
    LyricsLook look;
    look.back = {255, 255, 255};
    look.lines = lines;
    look.font.points = 6;  // 8 pixels high, 4 wide
    return look;
}

TEST(LyricsPicture, OneThreeAndFiveLinesStandInTheirBands) {
    const struct {
        int lines;
        const char* picture;
    } cases[] = {
        {1,
         ".###......\n"
         ".----.....\n"},
        {3,
         ".-........\n"
         "..........\n"
         ".###......\n"
         "..........\n"
         ".----.....\n"
         "..........\n"},
        {5,
         ".----.....\n"
         "..........\n"
         ".-........\n"
         "..........\n"
         ".###......\n"
         "..........\n"
         ".----.....\n"
         "..........\n"
         ".---......\n"
         "..........\n"},
    };
    for (const auto& c : cases) {
        FakeTextPainter painter;
        Surface surface(40, 16 * c.lines);
        const LyricsLook look = Look(c.lines);
        DrawLyricsWindow(surface, painter, Lines(kSong), look);
        EXPECT_EQ(Letters(surface, look), c.picture) << c.lines;
        LyricsLines translated = Lines(kSong);
        translated.rows[5] = "town";
        DrawLyricsWindow(surface, painter, translated, look);
        const auto drawn = std::ranges::find(painter.drawn, "town", &FakeTextPainter::Drawn::text);
        ASSERT_NE(drawn, painter.drawn.end());
        EXPECT_TRUE(drawn->style.color != look.text && drawn->style.color != (Color{127, 127, 127}));
        EXPECT_GT(drawn->where.left, 4) << "and stands behind the line that it translates";
    }
}

TEST(LyricsPicture, WhatHasBeenSungStandsOut) {
    const struct {
        int progress, bytes;
        int width;  // pixels of the sung part; the line has three letters of 4
    } cases[] = {{0, 0, 0}, {167, 0, 2}, {333, 3, 4}, {500, 3, 6}, {667, 6, 8}, {1000, 9, 12}, {400, 6, 8}};
    for (const bool stamps : {false, true}) {
        for (const auto& c : cases) {
            FakeTextPainter painter;
            Surface surface(120, 16);
            LyricsLines lines = Lines({"", "", "遠い町"});
            lines.progress = c.progress;
            lines.progressBytes = c.bytes;
            lines.stampMs[2] = 83450;
            LyricsLook look = Look(1);
            look.stamps = stamps;
            DrawLyricsWindow(surface, painter, lines, look);
            const int stamp = stamps ? 8 * 4 : 0;  // "[01:23] "
            int sung = 0, unsung = 0;
            for (int x = 4 + stamp; x < 120; ++x) {
                const Color color = Surface::ToColor(surface.at(x, 4));
                sung += color != look.back && color != look.text;
                unsung += color == look.text;
            }
            EXPECT_EQ(sung, c.width) << c.progress << stamps;
            EXPECT_EQ(unsung, 12 - c.width) << c.progress << stamps;
            if (stamps) {
                EXPECT_EQ(painter.drawn[0].text, "[01:23] ");
                EXPECT_NE(painter.drawn[0].style.color, look.text);
            }
        }
    }
}

TEST(LyricsPicture, ThePanelShowsTheCurrentLineWrappedAndWhatOfItHasBeenSung) {
    const LyricsPanelLook look{{"", 6, false}, 96, {10, 10, 10}, {200, 0, 0}, {250, 250, 240}};
    FakeTextPainter painter;
    Surface surface(100, 30);
    LyricsLines lines = Lines(kSong);
    DrawLyricsPanel(surface, painter, lines, look);
    ASSERT_EQ(painter.drawn.size(), 1u);
    EXPECT_EQ(painter.drawn[0].text, "遠い町");
    EXPECT_EQ(painter.drawn[0].where, surface.rect());
    EXPECT_TRUE(painter.drawn[0].style.wordBreak);
    EXPECT_EQ(surface.at(50, 20), Surface::ToPixel(look.back));

    lines.progress = 667;
    lines.progressBytes = 6;
    painter.drawn.clear();
    DrawLyricsPanel(surface, painter, lines, look);
    EXPECT_EQ(surface.at(7, 4), Surface::ToPixel(look.sung));
    EXPECT_EQ(surface.at(8, 4), Surface::ToPixel(look.text));

    // Wider than the panel: the words sung so far are written over the others.
    lines = Lines({"", "", "the quick brown fox jumps"});
    lines.progressBytes = 6;
    painter.drawn.clear();
    DrawLyricsPanel(surface, painter, lines, {{"", 12, false}, 96, look.text, look.sung, look.back});
    ASSERT_EQ(painter.drawn.size(), 2u);
    EXPECT_EQ(painter.drawn[1].text, "the quick");
    EXPECT_EQ(painter.drawn[1].style.color, look.sung);
}

}  // namespace
}  // namespace quenlox
