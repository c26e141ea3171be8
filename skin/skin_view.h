// What the main window looks like: the pictures of the skin, and over the background the controls that lie in the part
// that has changed. Pictures are put together at their own resolution and brought to that of the screen; letters,
// lyrics and figures are drawn there. Places are the skin's, what is drawn on and told to be repainted the screen's.
// Reads the controls, never acts for them. On the user-interface thread.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "skin/prepared_skin.h"
#include "skin/title_animation.h"
#include "skin/top_controls.h"

namespace quenlox {

// A button that is held down.
struct HeldButton {
    TopPart::Kind kind;  // Playback, Command, or Column: a playback button on display A
    int index;
    bool operator==(const HeldButton&) const = default;
};

class SkinView {
  public:
    // What the options say of the window.
    struct Look {
        bool operationPanel = false;
        bool spectrumShown = false;
        bool titleRuns = false;
        int titleSpeed = 0;  // 0 or more
    };

    SkinView(Form& form, TopControls& controls, TextPainter& painter);

    // Takes the memory that the skin will need, so that taking it over cannot fail. Throws std::bad_alloc, and then
    // nothing has changed.
    void makeRoomFor(const PreparedSkin& skin);
    // Puts the skin in place of the one that is shown. A picture that it lacks stays the one that was there.
    void takeOver(PreparedSkin skin, const Look& look);
    // Shows the same pictures at another scale. Throws as makeRoomFor does.
    void setScale(Scale scale);
    Scale scale() const { return scale_; }
    Size size() const { return size_; }  // of the skin
    void setLook(const Look& look);
    void setOnScreen(bool on);    // nothing moves while nobody can see it
    void setTwips(double twips);  // of a pixel of the monitor: type stays as many pixels high as the skin wants it

    void setBar(double fraction);  // filled part of the seek bar
    double bar() const { return bar_; }
    int filledWidth() const {
        return RoundHalfToEven(bar_ * controls_.SeekBar.bounds().width * fineness_);
    }  // of its picture
    void setVolume(int percent);
    void setFigures(const std::string& text);  // of display C
    const std::string& figures() const { return figures_; }
    void setHeld(const std::optional<HeldButton>& held);
    const std::optional<HeldButton>& held() const { return held_; }
    void restartTitle();
    void moveTitle();  // one tick of its timer
    void controlChanged(const Control& control, Property property);

    bool hasPicturesFor(Scale scale) const { return FinenessFor(finer_, scale) == fineness_; }
    bool hasOperationPanel() const { return hasDisplayA_; }
    bool hasSpectrum() const { return hasDisplayB_; }
    void repaint(const Rect& where);  // of the skin
    void repaintAll();
    const Surface& picture();  // brought up to date
    const Surface* opacity() const { return opacity_.empty() ? nullptr : &opacity_; }  // of its pixels; null: all

  private:
    void placeTexts(const PreparedSkin& skin);
    void placeButtons(const SkinDefinition& skin);
    void placeDisplays(const SkinDefinition& skin);
    void placeBars(const SkinDefinition& skin);
    void takePictures(SkinDefinition& skin);
    void showParts();
    void animate(const Rect& where);
    void makeRoom(Size window, const Rect& lyrics, Scale scale, int fineness);
    void makeSurfaces();
    bool markStale(const Rect& where);
    void compose(Rect where);
    Surface& pictures() { return scale_.percent() == 100 * fineness_ ? composed_ : pictures_; }
    // A picture that has `fineness` pixels for one of the skin, with its corner at a place of the skin. One that the
    // skin lacks is of another skin, and may be of another set.
    struct FinePicture {
        const Surface& pixels;
        int fineness;
        Point at;
    };
    static FinePicture pictureOf(const PictureBox& box, Point at);
    void put(const FinePicture& picture, const Rect& where);
    Surface::Pixel pixelOf(const FinePicture& picture, Point at) const;
    Rect finely(const Rect& r) const;
    void drawPictures(const Rect& where);
    void drawHeld(const Rect& where);
    void drawDarkColumn(const Rect& column);
    void drawScreens(const Rect& where);
    void drawFigures();
    void drawLevel();
    void drawLabels(const Rect& where);
    TextStyle styleOf(const Label& label) const;

    Form& form_;
    TopControls& controls_;
    TextPainter& painter_;
    RunningTitle title_;
    Look look_;
    bool onScreen_ = true;
    bool placing_ = false;  // a skin is being put in place: it is drawn as a whole at the end
    double twips_ = 15;     // that the type of the labels is made for
    Scale scale_;
    Size size_;         // of the skin
    int fineness_ = 1;  // pixels of a picture for one of the skin
    std::vector<int> finer_;
    Color background_;
    Surface softShape_;  // how opaque the pixels of the background are; empty: all
    Surface opacity_;    // the same on the screen
    Surface back_;
    int backFineness_ = 1;
    Surface level_;  // display D at full volume
    int levelFineness_ = 1;
    Surface pictures_;         // put together at their own resolution, when that is not the screen's
    Surface composed_;         // the window as it is on the screen
    std::vector<Rect> stale_;  // what of composed_ is out of date
    double bar_ = 0;
    int volume_ = 0;
    std::string figures_;
    std::optional<HeldButton> held_;
    // What the skin has a place for, whether it is shown at the moment or not.
    std::array<bool, kButtonCount> hasButton_{};
    bool hasDisplayA_ = false;
    bool hasDisplayB_ = false;
};

}  // namespace quenlox
