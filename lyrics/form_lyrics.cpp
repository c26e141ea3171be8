#include "lyrics/form_lyrics.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "state/global_state.h"
#include "state/options.h"

namespace quenlox {
namespace {

constexpr std::array<LyricsScheme, 8> kSchemes{{
    {{0, 0, 0}, {255, 255, 255}},
    {{255, 255, 255}, {0, 0, 0}},
    {{0, 0, 0}, {255, 255, 240}},
    {{255, 255, 240}, {0, 0, 0}},
    {{0, 0, 0}, {240, 255, 240}},
    {{240, 255, 240}, {0, 0, 0}},
    {{0, 0, 0}, {240, 240, 255}},
    {{240, 240, 255}, {0, 0, 0}},
}};
constexpr int kTwipsPerLine = 300;
constexpr int kFrameTwips = 405;
constexpr int kMostLines = 5;
constexpr double kTextPoints = 11;  // of the text box
constexpr double kMoveMs = 300;     // from one line to the next
constexpr const char* kTitle = "歌詞";

}  // namespace

std::span<const LyricsScheme> LyricsSchemes() { return kSchemes; }

double LyricsMovement(double ms) {
    const double left = 1 - std::clamp(ms / kMoveMs, 0.0, 1.0);
    return 1 - left * left * left;
}

int LyricsFontPoints(int height, int lines) {
    const int half = height / lines / 2;
    return half - RoundHalfToEven(half / 3.2);
}

FormLyrics::FormLyrics(GlobalState& state, const Options& options, TextPainter& painter)
    : Form("FormLyrics", Kind::Sizeable), state_(state), options_(options), painter_(painter) {
    setCaption(kTitle);
    Text2.setVisible(false);
    Text2.formMenu = true;
    Picture7.onDoubleClick = [this] { Picture7_DblClick(); };
    Text2.onDoubleClick = [this] { Text2_DblClick(); };
    Picture7.onResize = [this] { draw(); };
}

int FormLyrics::lines() const { return std::clamp(options_.LyricsLine, 1, kMostLines); }

void FormLyrics::Picture7_DblClick() {
    const int scheme = state_.LyricsColors[kLyricsScheme];
    chooseScheme(scheme < 1 || scheme >= static_cast<int>(kSchemes.size()) ? 1 : scheme + 1);
}

void FormLyrics::chooseScheme(int number) {
    state_.LyricsColors[kLyricsScheme] = number;
    const LyricsScheme& colors = kSchemes[static_cast<std::size_t>(number - 1)];
    for (Control* control : {static_cast<Control*>(&Picture7), static_cast<Control*>(&Text2)}) {
        control->setForeColor(colors.text);
        control->setBackColor(colors.back);
    }
    draw();
}

LyricsLook FormLyrics::look() const {
    LyricsLook look;
    look.font = Picture7.font();
    look.font.bold = options_.LyricsBold;
    look.text = Picture7.foreColor();
    look.back = Picture7.backColor();
    look.lines = lines();
    look.stamps = options_.TimeTagShown;
    if (!background_.empty()) look.behind = &background_;
    return look;
}

void FormLyrics::showLines(const LyricsLines& lines) {
    const bool sameLines = lines == lines_ && !moving();
    if (options_.LyricsSmooth && lines.current >= 0 && lines.current == lines_.current + 1) {
        before_ = lines_;
        began_ = std::chrono::steady_clock::now();
        move_ = 0;
    } else if (lines.current != lines_.current) {
        move_ = 1;
    }
    lines_ = lines;
    if (drawn_.lines != this->lines() || Picture7.font().face != options_.LyricsFont) {
        const Rect& box = Picture7.bounds();
        Form_Resize({box.width, box.height});
    } else if (!sameLines || look() != drawn_) {
        draw();
    }
}

void FormLyrics::setNotice(const LyricsNotice& notice) {
    if (notice == notice_) return;
    notice_ = notice;
    draw();
}

void FormLyrics::showShift(int milliseconds) {
    const int tenths = std::abs(milliseconds) / 100;
    const std::string seconds = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    setCaption(tenths == 0 ? kTitle : kTitle + ("（" + seconds + (milliseconds < 0 ? "秒早く）" : "秒遅く）")));
}

void FormLyrics::setShowsText(bool text) {
    Text2.setVisible(text);
    Picture7.setVisible(!text);
}

void FormLyrics::setPicture(Surface picture) {
    if (picture.empty() && picture_.empty()) return;
    picture_ = std::move(picture);
    background_ = {};
    draw();
}

void FormLyrics::makeBackground() {
    const Surface& on = Picture7.surface();
    if (picture_.empty()) return;
    if (background_.width() == on.width() && background_.height() == on.height() &&
        backgroundColor_ == Picture7.backColor())
        return;
    backgroundColor_ = Picture7.backColor();
    background_ = LyricsBackground(picture_, {on.width(), on.height()}, backgroundColor_);
}

void FormLyrics::draw() {
    makeBackground();
    drawn_ = look();
    const bool notice = lines_.total == 0 && notice_ != LyricsNotice{};
    if (notice) {
        DrawLyricsNotice(Picture7.surface(), painter_, notice_, drawn_);
    } else {
        using Milliseconds = std::chrono::duration<double, std::milli>;
        if (moving()) move_ = LyricsMovement(Milliseconds(std::chrono::steady_clock::now() - began_).count());
        DrawLyricsWindow(Picture7.surface(), painter_, lines_, drawn_, {&before_, move_});
    }
    Picture7.setCaption(notice ? notice_.title + "\n" + notice_.text : CurrentLyricsLine(lines_));
    Picture7.refresh();
}

Size FormLyrics::minimumTwips() const { return {1500, lines() * kTwipsPerLine + kFrameTwips}; }

void FormLyrics::Form_Resize(Size client) {
    if (client.width <= 0 || client.height <= 0) return;  // minimised
    const int least = minimumTwips().height;
    if (height() < least) {
        const double perPixel = host() ? host()->twipsPerPixel().y : 15;
        client.height += TwipsToPixels(least - height(), perPixel);
        setSize(width(), least);
    }
    Picture7.setBounds({0, 0, client.width, client.height});
    Text2.setBounds({0, 0, client.width, client.height});
    if (Picture7.surface().width() != client.width || Picture7.surface().height() != client.height) {
        Picture7.surface().resize(client.width, client.height, Picture7.backColor());
    }
    fitType(client.height);
    draw();
}

void FormLyrics::fitType(int height) {
    Font font = Picture7.font();
    font.face = options_.LyricsFont;
    font.points = std::max(LyricsFontPoints(height, lines()), 1);
    Picture7.setFont(font);
    font.points = kTextPoints;
    Text2.setFont(font);
}

void FormLyrics::Form_Shown() {
    if (onShown) onShown();
}

void FormLyrics::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    if (onClosedByUser) onClosedByUser();
    hide();
}

void FormLyrics::Form_KeyDown(int key, int shift) {
    const LyricsCommand command = LyricsCommandOfKey(key, shift);
    const bool caret = Text2.visible() && command != LyricsCommand::Reread;  // the box has the keyboard
    keyTaken = command != LyricsCommand::None && !caret && onCommand;
    if (keyTaken) return onCommand(command, 0);
    if (onKeyDown) onKeyDown(key, shift);
}

void FormLyrics::Form_KeyUp(int key, int shift) {
    if (onKeyUp) onKeyUp(key, shift);
}

void FormLyrics::Form_ContextMenu(Point at) {
    if (facts && onCommand) popup(LyricsMenu(facts(), onCommand), at);
}

}  // namespace quenlox
