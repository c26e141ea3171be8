#include "speana/speana.h"

#include <gtest/gtest.h>

#include <set>

#include "speana/pixel_font.h"
#include "tests/speana/sound.h"

namespace quenlox {
namespace {

// FNV-1a of the pixels.
std::uint32_t Checksum(const Surface& surface) {
    std::uint32_t sum = 2166136261u;
    for (const Surface::Pixel pixel : surface.pixels()) {
        for (int shift = 0; shift < 24; shift += 8) sum = (sum ^ (pixel >> shift & 255)) * 16777619u;
    }
    return sum;
}

Surface FrameOf(int view, int frames = 12, int bands = 21) {
    Speana speana;
    for (int n = 0; n < frames; ++n) speana.draw(view, SoundOf(n, bands));
    return speana.frame();
}

int Lit(const Surface& surface) {
    const auto back = Surface::ToPixel(PanelColors::kBack);
    return static_cast<int>(std::ranges::count_if(surface.pixels(), [back](auto pixel) { return pixel != back; }));
}

// After twelve frames of the stored sound. A picture that is meant to change is looked at (bench/panel_sheet) and then
// stored anew: a failing run prints the row.
constexpr std::uint32_t kGolden[kPanelGroups][kPanelVariants] = {
#include "tests/speana/golden_frames.inc"
};

TEST(Speana, EveryViewDrawsItsStoredFrame) {
    for (int group = 0; group < kPanelGroups; ++group) {
        std::string row;
        bool same = true;
        for (int variant = 0; variant < kPanelVariants; ++variant) {
            const std::uint32_t sum = Checksum(FrameOf(group * 10 + variant));
            char text[16];
            std::snprintf(text, sizeof text, "0x%08x,%s", sum, variant == 9 ? "" : " ");
            row += text;
            same = same && sum == kGolden[group][variant];
        }
        EXPECT_TRUE(same) << "{" << row << "},";
    }
}

TEST(Speana, ANumberThatStandsForNoViewDrawsNothing) {
    for (const int view : {-1, -10, 60, 65, 99, 32767}) EXPECT_EQ(Lit(FrameOf(view)), 0) << view;
}

TEST(Speana, SoftMusicFillsThePictureAsLoudMusicDoes) {
    for (int view = 0; view < kPanelViews; ++view) {
        Speana loud, soft;
        for (int n = 0; n < 12; ++n) {
            SoundFrame sound = SoundOf(n);
            loud.draw(view, sound);
            for (auto* side : {&sound.left, &sound.right}) {
                for (auto& sample : *side) sample /= 6;
            }
            for (auto& level : sound.levels) level = std::max(0, level - 200);
            soft.draw(view, sound);
        }
        EXPECT_GE(Lit(soft.frame()), Lit(loud.frame()) * 7 / 10) << PanelViewName(view);
    }
}

TEST(Speana, APictureFollowsFromTheSoundAloneAlsoAfterAnotherView) {
    for (int view = 0; view < kPanelViews; ++view) {
        Speana speana;
        for (int n = 0; n < 5; ++n) speana.draw((view + 7) % kPanelViews, SoundOf(n + 50));
        for (int n = 0; n < 12; ++n) speana.draw(view, SoundOf(n));
        EXPECT_EQ(speana.frame(), FrameOf(view)) << view;
    }
}

bool ShowsWord(const Surface& frame, const char* word) {
    Surface mask(PixelTextWidth(word), kPixelTextHeight);
    DrawPixelText(mask, {0, 0}, word, {255, 255, 255});
    const int left = (frame.width() - mask.width()) / 2, top = (frame.height() - mask.height()) / 2;
    std::set<Surface::Pixel> colors;
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            if (mask.at(x, y) != 0) colors.insert(frame.at(left + x, top + y));
        }
    }
    return colors.size() == 1;
}

TEST(Speana, WordsGoThroughTheLastGroupNowAndThen) {
    for (const bool loud : {false, true}) {
        Speana speana, other;
        int lucky = 0, fever = 0, elsewhere = 0;
        for (int n = 0; n < 800; ++n) {
            SoundFrame sound = SoundOf(n);
            for (auto* side : {&sound.left, &sound.right}) {
                for (auto& sample : *side) sample = static_cast<std::int16_t>(loud ? sample / 4 * 5 : sample / 5);
            }
            speana.draw(52, sound);
            other.draw(42, sound);
            lucky += ShowsWord(speana.frame(), "= LUCKY =");
            fever += ShowsWord(speana.frame(), "= FEVER =");
            elsewhere += ShowsWord(other.frame(), "= LUCKY =") || ShowsWord(other.frame(), "= FEVER =");
        }
        EXPECT_GT(loud ? fever : lucky, 40);
        EXPECT_LT(loud ? fever : lucky, 200);
        EXPECT_EQ(loud ? lucky : fever, 0);
        EXPECT_EQ(elsewhere, 0);
    }
}

TEST(Speana, TheColoursFollowTheSkinAndTheRecessStaysDark) {
    for (const Color accent : {Color{255, 190, 128}, Color{32, 66, 146}, Color{128, 128, 128}, Color{0, 0, 0}}) {
        const PanelColors colors(accent);
        EXPECT_EQ(colors.shade(0), PanelColors::kBack);
        const auto light = [](Color c) { return c.red + c.green + c.blue; };
        int last = 0;
        for (int i = 0; i < 256; i += 15) {
            EXPECT_GE(light(colors.shade(i)), last) << i;
            last = light(colors.shade(i));
        }
        EXPECT_GT(last, 600);  // a dark label colour does not make a dark picture
    }
    const PanelColors amber({255, 190, 128}), blue({32, 66, 146});
    EXPECT_GT(amber.shade(150).red, amber.shade(150).blue);
    EXPECT_GT(blue.shade(150).blue, blue.shade(150).red);
}

TEST(Speana, ClicksWalkThroughVariantsAndGroups) {
    struct Case {
        int view, variant, group;
    };
    for (const Case& c : {Case{0, 1, 10}, Case{9, 0, 10}, Case{37, 38, 40}, Case{59, 50, 0}, Case{60, 0, 0}, Case{-3, 0, 0}}) {
        EXPECT_EQ(NextVariant(c.view), c.variant) << c.view;
        EXPECT_EQ(NextGroup(c.view), c.group) << c.view;
    }
    std::set<int> seen;
    for (int view = 0, n = 0; n < kPanelViews; ++n) {
        seen.insert(view);
        const int next = NextByItself(view);
        EXPECT_NE(next / 10, view / 10);
        view = next;
    }
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(kPanelViews));
}

}  // namespace
}  // namespace quenlox
