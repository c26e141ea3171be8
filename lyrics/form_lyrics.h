// The lyrics window: the timed lines on a picture, or a whole text in a box, in one of several colour schemes. On the
// user-interface thread.
#pragma once

#include <chrono>
#include <functional>
#include <span>

#include "forms/form.h"
#include "lyrics/lyrics_menu.h"
#include "lyrics/lyrics_picture.h"

namespace quenlox {

struct Options;
struct GlobalState;

struct LyricsScheme {
    Color text;
    Color back;
};
// Scheme n of the settings file is element n - 1.
std::span<const LyricsScheme> LyricsSchemes();

class FormLyrics : public Form {
  public:
    FormLyrics(GlobalState& state, const Options& options, TextPainter& painter);

    PictureBox Picture7{*this, "Picture7"};     // the timed lines
    TextBox Text2{*this, "Text2", true, true};  // lyrics without time tags

    std::function<void()> onClosedByUser;    // the check box of the options window goes off
    std::function<void()> onShown;           // it has become visible
    std::function<LyricsMenuFacts()> facts;  // for the context menu
    LyricsPerform onCommand;                 // of the menu or a key
    // Keys that this window leaves to the main window.
    std::function<void(int key, int shift)> onKeyDown;
    std::function<void(int key, int shift)> onKeyUp;

    // Draws the rows when they or the options have changed. The next line comes up smoothly when the option says so:
    // then the rows are to be shown again and again while they are moving.
    void showLines(const LyricsLines& lines);
    bool moving() const { return move_ < 1; }
    // What stands there while there are no rows.
    void setNotice(const LyricsNotice& notice);
    // Of all lines against their own times; the title tells it. Below 0: sooner.
    void showShift(int milliseconds);
    void setText(const std::string& text) { Text2.setText(text); }
    // What lies behind the timed lines; an empty picture: the colour alone.
    void setPicture(Surface picture);
    // The text box or the picture is what one sees.
    void setShowsText(bool text);

    // Steps LyricsColors[0] on, the last scheme back to 1, and applies the scheme.
    void Picture7_DblClick();
    void chooseScheme(int number);  // from 1
    void Text2_DblClick() { Picture7_DblClick(); }
    // Fits the controls and the size of the type to the window; called as well when the number of lines has changed.
    void Form_Resize(Size client) override;
    void Form_Shown() override;
    void Form_Unload(bool& cancel) override;
    void Form_KeyDown(int key, int shift) override;
    void Form_KeyUp(int key, int shift) override;
    void Form_ContextMenu(Point at) override;
    Size minimumTwips() const override;

  private:
    int lines() const;
    LyricsLook look() const;
    void fitType(int height);
    void makeBackground();
    void draw();

    GlobalState& state_;
    const Options& options_;
    TextPainter& painter_;
    LyricsLines lines_;
    LyricsLook drawn_;
    LyricsNotice notice_;
    LyricsLines before_;  // where the rows are moving from
    std::chrono::steady_clock::time_point began_;
    double move_ = 1;  // how far they are on their way, 1 at rest
    Surface picture_;
    Surface background_;  // made of it for the present size and colour
    Color backgroundColor_;
};

// How far rows have come that began to move `ms` milliseconds ago, 0 to 1: fast first, then slower.
double LyricsMovement(double ms);

// Points of the type for a picture of that height in pixels.
int LyricsFontPoints(int height, int lines);

}  // namespace quenlox
