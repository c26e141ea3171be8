#include "lyrics/form_lyrics.h"

#include <gtest/gtest.h>

#include "state/global_state.h"
#include "state/options.h"
#include "tests/fakes/fake_text_painter.h"

namespace quenlox {
namespace {

struct LyricsWindow {
    GlobalState state;
    Options options;
    FakeTextPainter painter;
    FormLyrics form{state, options, painter};
};

struct FormLyricsTest : testing::Test, LyricsWindow {};

TEST_F(FormLyricsTest, ADoubleClickGoesThroughEveryColourSchemeAndAround) {
    const int schemes = static_cast<int>(LyricsSchemes().size());
    for (int i = 1; i <= schemes; ++i) {
        form.Picture7.onDoubleClick();
        EXPECT_EQ(state.LyricsColors[0], i);
        const LyricsScheme& scheme = LyricsSchemes()[static_cast<std::size_t>(i - 1)];
        EXPECT_EQ(form.Picture7.foreColor(), scheme.text);
        EXPECT_EQ(form.Text2.backColor(), scheme.back);
        for (const std::uint8_t part : {scheme.back.red, scheme.back.green, scheme.back.blue}) {
            EXPECT_TRUE(part == 0 || part == 240 || part == 255);
        }
    }
    form.Text2.onDoubleClick();
    EXPECT_EQ(state.LyricsColors[0], 1);
}

TEST_F(FormLyricsTest, StaysHighEnoughForItsLinesAndFitsTheType) {
    const struct {
        int lines, height, heightAfter, clientHeight, clientAfter;
        double points;
    } cases[] = {
        {5, 3000, 3000, 173, 173, 12},  // a line is 34 pixels, half of it 17, less 5
        {5, 1000, 1905, 40, 100, 7},    // 60 more pixels; 10 - 3
        {1, 1000, 1000, 40, 40, 14},    // 20 - 6
        {3, 1305, 1305, 60, 60, 7},     // 10 - 3
        {0, 705, 705, 20, 20, 7},       // a number of lines from a broken file
    };
    for (const auto& c : cases) {
        LyricsWindow w;
        w.options.LyricsLine = c.lines;
        w.options.LyricsFont = "メイリオ";
        w.form.setSize(4500, c.height);
        w.form.Form_Resize({290, c.clientHeight});
        EXPECT_EQ(w.form.height(), c.heightAfter) << c.lines << ' ' << c.height;
        EXPECT_EQ(w.form.Picture7.bounds(), (Rect{0, 0, 290, c.clientAfter}));
        EXPECT_EQ(w.form.Text2.bounds(), w.form.Picture7.bounds());
        EXPECT_EQ(w.form.Picture7.font().points, c.points) << c.lines << ' ' << c.height;
        EXPECT_EQ(w.form.Picture7.font().face, "メイリオ");
    }
}

TEST_F(FormLyricsTest, ClosedByTheUserItIsHiddenAndItsOptionGoesOff) {
    form.onClosedByUser = [&] { options.LyricsShown = false; };
    form.show();
    EXPECT_FALSE(form.unload());
    EXPECT_FALSE(form.visible());
    EXPECT_FALSE(options.LyricsShown);
    options.LyricsShown = true;
    state.ShuttingDown = true;
    EXPECT_TRUE(form.unload());
    EXPECT_TRUE(options.LyricsShown);
}

}  // namespace
}  // namespace quenlox
