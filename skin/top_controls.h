// The controls of the main window under their documented names, and what each of them is. On the user-interface thread.
#pragma once

#include <vector>

#include "forms/control_array.h"
#include "forms/form.h"
#include "skin/skin_definition.h"

namespace quenlox {

// Indexes of the main labels.
enum MainLabel : int {
    kTitleLabel = 0,
    kInformationLabel = 1,
    kTimeLabel = 2,
    kLengthLabel = 3,
    kStatusLabel = 4,
    kPlayModeLabel = 5,
    kKindLabel = 6,
    kListLabel = 7,
    kArtistLabel = 8
};
enum PlaybackButton : int {
    kPlayButton,
    kPauseButton,
    kBackButton,
    kNextButton,
    kLowButton,
    kHighButton,
    kDoubleButton
};
enum CommandButtonIndex : int {
    kListCommand,
    kOptCommand,
    kTagCommand,
    kConvCommand,
    kHelpCommand,
    kMiniCommand,
    kCloseCommand
};

// One thing in the main window: a control, or a column of display A, which is a row of seven playback buttons.
struct TopPart {
    enum class Kind { None, Playback, Command, Column, Label, SeekBar, VolumeBar, Lyrics, DisplayB, DisplayC };
    Kind kind = Kind::None;
    int index = 0;  // of a button, a column or a label
    Rect bounds;
    bool operator==(const TopPart&) const = default;
};

struct TopControls {
    explicit TopControls(Form& owner);
    // What they are before a skin is there. The form hears of it, so it has to be whole.
    void begin();

    // The visible part at a place of the window. Display D lies over the volume bar and is no part itself.
    TopPart partAt(Point at) const;
    // All visible parts, in the order of reading.
    std::vector<TopPart> parts() const;
    // The column of display A with that number, in pixels of the window; equal widths, 0 to kButtonCount - 1.
    Rect column(int index) const;

  private:
    Form& form_;

  public:
    // Elements n + kPressed of the two button arrays are hidden and hold the pressed pictures.
    static constexpr int kPressed = 10;
    ControlArray<PictureBox> cmdPicture, taskPicture;
    ControlArray<Label> mainLabel;
    PictureBox SeekBar{form_, "SeekBar"};
    PictureBox VolumeBar{form_, "VolumeBar"};
    PictureBox LyricsPicture{form_, "LyricsPicture"};
    PictureBox DisplayA{form_, "DisplayA"};
    PictureBox DisplayB{form_, "DisplayB"};
    PictureBox DisplayC{form_, "DisplayC"};
    PictureBox DisplayD{form_, "DisplayD"};
    Timer Timer1{form_, "Timer1", 1000};  // play state
    Timer Timer2{form_, "Timer2", 80};    // panel animation
    Timer Timer3{form_, "Timer3", 400};   // status display
    Timer Timer4{form_, "Timer4", 2000};  // idle work
    Timer Timer5{form_, "Timer5", 1000};  // starts play, while the device is waited for
    Timer Timer6{form_, "Timer6", 500};   // lyrics
    Timer Timer7{form_, "Timer7", 500};   // converter
    Timer TimerTitle{form_, "TimerTitle", 60};
};

}  // namespace quenlox
