// The lyrics window: the timed lines on a picture, or a whole text in a box, in one of several colour schemes. On the
// user-interface thread.
#pragma once

#include <functional>
#include <span>

#include "forms/form.h"
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

    PictureBox Picture7{*this, "Picture7"};           // the timed lines
    TextBox Text2{*this, "Text2", true, true};        // lyrics without time tags

    std::function<void()> onClosedByUser;             // the check box of the options window goes off
    std::function<void()> onShown;                    // it has become visible
    // Keys that this window leaves to the main window.
    std::function<void(int key, int shift)> onKeyDown;
    std::function<void(int key, int shift)> onKeyUp;

    // Draws the rows when they or the options have changed.
    void showLines(const LyricsLines& lines);
    void setText(const std::string& text) { Text2.setText(text); }
    // What lies behind the timed lines; an empty picture: the colour alone.
    void setPicture(Surface picture);
    // The text box or the picture is what one sees.
    void setShowsText(bool text);

    // Steps LyricsColors[0] on, the last scheme back to 1, and applies the scheme.
    void Picture7_DblClick();
    void Text2_DblClick() { Picture7_DblClick(); }
    // Fits the controls and the size of the type to the window; called as well when the number of lines has changed.
    void Form_Resize(Size client) override;
    void Form_Shown() override;
    void Form_Unload(bool& cancel) override;
    void Form_KeyDown(int key, int shift) override;
    void Form_KeyUp(int key, int shift) override;
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
    Surface picture_;
    Surface background_;        // made of it for the present size and colour
    Color backgroundColor_;
};

// Points of the type for a picture of that height in pixels.
int LyricsFontPoints(int height, int lines);

}  // namespace quenlox
