#include "lyrics/lyrics_display.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "lyrics/form_lyrics.h"
#include "lyrics/lyrics_lookup.h"
#include "state/global_state.h"
#include "state/options.h"
#include "tests/fakes/bmp_of.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {
namespace {

// A main window whose panel is 200 pixels wide.
struct FakeScreen : LyricsScreen {
    explicit FakeScreen(FormLyrics& lyrics, FakeWindowSystem& system) : form(lyrics), windows(system) {}
    bool seen() const override { return visible; }
    bool hasPanel() const override { return skinHasPanel; }
    LyricsPanelLook panelLook() const override { return {}; }
    Surface& panel() override { return surface; }
    void panelDrawn(const std::string& text) override { line = text; }
    std::string title() const override { return "春の歌"; }
    void setInterval(int milliseconds) override { interval = milliseconds; }
    void showLyricsWindow() override {
        ++shown;
        form.show(false);
        windows.hostOf(form)->client = {300, 200};
        form.Form_Resize({300, 200});
    }

    FormLyrics& form;
    FakeWindowSystem& windows;
    bool visible = true, skinHasPanel = false;
    Surface surface{200, 40};
    std::string line;
    int interval = 500;
    int shown = 0;
};

class LyricsDisplayTest : public ::testing::Test {
  protected:
    void SetUp() override {
        form.realiseWhenShown(windows);
        state.SkinLacksLyricsArea = true;
        state.PlayerStatus = kPlay;
        vbmp3.lines.total = 3;
        vbmp3.lines.current = 0;
        setLine("窓をあければ");
        form.onClosedByUser = [this] {
            options.LyricsShown = false;
            display.lyricsShownChanged();
        };
    }
    void setLine(const std::string& text) { vbmp3.lines.rows[2] = text; }
    void open(int kind) {
        state.LyricsKind = kind;
        display.trackOpened();
    }
    void useSkinWithLyricsArea() {
        state.SkinLacksLyricsArea = false;
        state.LyricsColors[kSkinLyricsFirst] = 0x0A0B0C;
        state.LyricsColors[kSkinLyricsSecond] = 0xB03428;
        main.skinHasPanel = true;
        display.lyricsDisplayMode(false);
    }
    int tick() {
        painter.drawn.clear();
        display.update();
        return static_cast<int>(painter.drawn.size());
    }

    GlobalState state;
    Options options;
    FakeVbmp3 vbmp3;
    FakeFileSystem files;
    FakeTextPainter painter;
    FakeWindowSystem windows;
    FormLyrics form{state, options, painter};
    FakeScreen main{form, windows};
    LyricsDisplay display{state, options, vbmp3, files, painter, form, main};
};

TEST_F(LyricsDisplayTest, TheWindowComesUpByItselfForTheLyricsThatOnlyItCanShow) {
    const struct {
        bool option;
        int kind;
        bool skinLacksArea, self, comesUp;
    } cases[] = {
        {true, kTimedLyrics, true, false, true},   {true, kPlainLyrics, true, false, true},
        {true, kNoLyrics, true, false, false},     {false, kTimedLyrics, true, false, false},
        {true, kTimedLyrics, false, false, false}, {true, kPlainLyrics, false, false, true},
        {true, kPlainLyrics, false, true, false},  {true, kPlainLyrics, true, true, true},
    };
    for (const auto& c : cases) {
        form.hide();
        options.LyricsShown = c.option;
        options.LyricsSelf = c.self;
        state.SkinLacksLyricsArea = c.skinLacksArea;
        open(c.kind);
        EXPECT_EQ(form.visible(), c.comesUp) << c.option << c.kind << c.skinLacksArea << c.self;
        EXPECT_FALSE(form.visible() && form.activates());
    }
}

TEST_F(LyricsDisplayTest, AStepDrawsOnlyWhatHasChanged) {
    open(kTimedLyrics);
    EXPECT_EQ(tick(), 0);
    setLine("針をおとして");
    EXPECT_EQ(tick(), 1);
    EXPECT_EQ(painter.drawn[0].text, "針をおとして");
    options.LyricsBold = true;
    EXPECT_EQ(tick(), 1);
    EXPECT_TRUE(painter.drawn[0].style.font.bold);
    vbmp3.lines.stampMs[2] = 9600;
    options.TimeTagShown = true;
    EXPECT_EQ(tick(), 2);
    EXPECT_EQ(painter.drawn[0].text, "[00:09] ");
    EXPECT_EQ(tick(), 0);
    windows.hostOf(form)->client = {0, 0};  // minimised
    setLine("x");
    EXPECT_EQ(tick(), 0);
    EXPECT_EQ(main.interval, 500);
}

TEST_F(LyricsDisplayTest, ASkinWithALyricsAreaTakesTheLinesFromTheWindow) {
    open(kTimedLyrics);
    useSkinWithLyricsArea();
    EXPECT_FALSE(form.visible());
    EXPECT_EQ(tick(), 1);
    EXPECT_EQ(painter.drawn[0].style.color, (Color{0x0A, 0x0B, 0x0C}));
    EXPECT_EQ(tick(), 0);
    options.LyricsSecondColor = true;
    EXPECT_EQ(tick(), 1);
    EXPECT_EQ(painter.drawn[0].style.color, (Color{0xB0, 0x34, 0x28}));
    main.visible = false;
    setLine("unseen");
    EXPECT_EQ(tick(), 0);
    main.visible = true;
    state.SkinLacksLyricsArea = true;
    main.skinHasPanel = false;
    display.lyricsDisplayMode(true);
    tick();
    EXPECT_TRUE(form.visible());
}

TEST_F(LyricsDisplayTest, TextWithoutTagsStandsInTheBoxOrRunsByItself) {
    open(kPlainLyrics);
    EXPECT_TRUE(form.Text2.visible());
    EXPECT_FALSE(form.Picture7.visible());
    options.LyricsSelf = true;
    EXPECT_EQ(tick(), 1);
    EXPECT_EQ(vbmp3.count("notTagLyricsLine 1"), 1);
    EXPECT_FALSE(form.Text2.visible());
    options.LyricsSelf = false;
    tick();
    EXPECT_EQ(vbmp3.count("notTagLyricsLine 0"), 1);
    EXPECT_TRUE(form.Text2.visible());
}

TEST_F(LyricsDisplayTest, APictureOfTheTrackLiesBehindTheLinesPaleEnoughToReadThem) {
    files.add("D:\\pic\\a.bmp", BmpOf(Surface(1, 1, {255, 0, 0})));
    files.add("D:\\pic\\album.bmp", BmpOf(Surface(1, 1, {0, 0, 255})));
    files.add("D:\\pic\\broken.bmp", "BM");
    setLine("");
    const auto seen = [this](const std::string& track) {
        state.CurrentFile = "C:\\album\\" + track + ".mp3";
        open(kTimedLyrics);
        const Surface& surface = form.Picture7.surface();
        EXPECT_EQ(surface.at(0, 0), surface.at(299, 199));
        return Surface::ToColor(surface.at(150, 100));
    };
    EXPECT_EQ(seen("a"), (Color{255, 255, 255})) << "no folder is chosen";
    EXPECT_EQ(files.reads, 0);
    options.PictureFolder = "D:\\pic";
    display.picturesChanged();
    const Color red = seen("a"), blue = seen("b"), other = seen("broken");
    EXPECT_EQ(red.red, 255);
    EXPECT_GT(red.green, 140);
    EXPECT_LT(red.green, 200);
    EXPECT_EQ(blue.blue, 255);
    EXPECT_LT(blue.red, 200);
    EXPECT_EQ(other, blue);
    form.Picture7_DblClick(), form.Picture7_DblClick();  // white on black
    EXPECT_LT(seen("b").blue, 110);
    form.hide();
    options.LyricsShown = false;
    const int reads = files.reads;
    state.CurrentFile = "C:\\album\\a.mp3";
    open(kTimedLyrics);
    EXPECT_EQ(files.reads, reads) << "nobody would see it";
}

TEST_F(LyricsDisplayTest, TheTimingOptionShiftsByTenthsOfASecond) {
    for (const auto& [value, call] :
         {std::pair{2, "lyricsShift 100"}, {-49, "lyricsShift -5000"}, {1, "lyricsShift 0"}}) {
        options.LyricsTime = value;
        tick();
        tick();
        EXPECT_EQ(vbmp3.count(call), 1) << call;
    }
}

TEST_F(LyricsDisplayTest, TheNextLineComesUpStepByStepWhenWanted) {
    for (const bool smooth : {false, true}) {
        options.LyricsSmooth = smooth;
        open(kTimedLyrics);
        vbmp3.lines.rows = {"", "", "a", "b", "", "b"};
        vbmp3.lines.current = 4;
        tick();
        vbmp3.lines.rows = {"", "a", "b", "", "", ""};
        vbmp3.lines.current = 5;
        tick();
        const auto b = std::ranges::find(painter.drawn, "b", &FakeTextPainter::Drawn::text);
        ASSERT_NE(b, painter.drawn.end());
        EXPECT_EQ(b->where.top > 85, smooth) << "on its way from the fourth band to the third";
        EXPECT_EQ(main.interval, smooth ? 16 : 500);
    }
    EXPECT_EQ(LyricsMovement(0), 0);
    EXPECT_GT(LyricsMovement(100), 0.5);
    EXPECT_EQ(LyricsMovement(1000), 1);
}

TEST_F(LyricsDisplayTest, WithoutLyricsTheWindowSaysWhoseTheyWouldBeAndHowTheyCome) {
    state.CurrentFile = "C:\\a.mp3";
    state.MediaKind.lyrics = true;
    form.show();
    open(kNoLyrics);
    EXPECT_TRUE(form.Picture7.caption().starts_with("春の歌\n歌詞はありません")) << form.Picture7.caption();
    state.MediaKind.lyrics = false;
    tick();
    EXPECT_TRUE(form.Picture7.caption().ends_with("RMPの曲です"));
}

TEST_F(LyricsDisplayTest, ALineIsDrawnWhenItIsDue) {
    open(kTimedLyrics);
    const struct {
        std::int64_t position;
        int next, progressBytes, status, interval;
    } cases[] = {
        {1000, 5000, -1, kPlay, 500}, {4800, 5000, -1, kPlay, 200},  {4999, 5000, -1, kPlay, 20},
        {5001, 5000, -1, kPlay, 500}, {4800, 5000, -1, kPause, 500}, {1000, 5000, 3, kPlay, 80},
        {1000, -1, 3, kPlay, 80},     {1000, -1, -1, kPlay, 500},
    };
    for (const auto& c : cases) {
        vbmp3.positionMs = c.position;
        vbmp3.lines.stampMs[3] = c.next;
        vbmp3.lines.progressBytes = c.progressBytes;
        state.PlayerStatus = static_cast<PlayStatus>(c.status);
        tick();
        EXPECT_EQ(main.interval, c.interval) << c.position << ' ' << c.next;
    }
}

}  // namespace
}  // namespace quenlox
