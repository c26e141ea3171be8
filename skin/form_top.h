// The main window. It has no frame; its outline, pictures and places come from a skin, and it is composed on one
// Surface from its controls. It turns what the user does into calls of the playback and shows what the playback tells
// it. On the user-interface thread; it never decides what is played.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "state/global_state.h"
#include "skin/main_window_handlers.h"
#include "state/option_store.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "platform/shell.h"
#include "platform/text_painter.h"
#include "playback/main_display.h"
#include "skin/skin_definition.h"
#include "skin/skin_packages.h"
#include "skin/title_animation.h"

namespace quenlox {

class MediaEngine;
class PitchControl;
class PlayStateMonitor;
class Transport;
class VolumeControl;

// Indexes of the main labels.
enum MainLabel : int {
    kTitleLabel = 0, kInformationLabel = 1, kTimeLabel = 2, kLengthLabel = 3, kStatusLabel = 4, kPlayModeLabel = 5,
    kKindLabel = 6, kListLabel = 7, kArtistLabel = 8
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

class FormTop : public Form, public MainDisplay, public MainWindowHandlers {
  public:
    // The windows that this one shows and hides. Any may be null while it does not exist.
    struct Windows {
        Form* list = nullptr;
        Form* options = nullptr;
        Form* tag = nullptr;
        Form* convert = nullptr;
        Form* equalizer = nullptr;
        Form* lyrics = nullptr;
        Form* about = nullptr;
    };
    struct Playback {
        Transport* transport = nullptr;
        MediaEngine* engine = nullptr;
        PlayStateMonitor* monitor = nullptr;
        PitchControl* pitch = nullptr;
        VolumeControl* volume = nullptr;
    };
    // Figures that change by themselves, asked for with every refresh of the status.
    struct Figures {
        std::string listPlace;  // "A 3/120"
        std::string clock;      // "21:40"
    };
    // What the main window sets going and others do; each may be empty.
    struct Hooks {
        std::function<void()> fillTagWindow;
        std::function<void(bool inWindow)> lyricsDisplayMode;  // a skin has been loaded; true: it has no lyrics area
        std::function<void()> drawPanel;                   // one frame of the panel animation into display B
        std::function<void(int button)> panelClicked;      // 1 left: next variant; 2 right or double: next group
        std::function<void()> pollConverter, updateLyrics, idle;
        std::function<void()> help;
        std::function<void()> unload;                      // the program ends: stop, save, release
        std::function<Figures()> figures;
    };

    FormTop(GlobalState& state, OptionStore& options, FileSystem& files, Dialogs& dialogs, Shell& shell,
            TextPainter& painter, SplitValues& splitValues);
    void connect(const Playback& playback, const Windows& windows, const Hooks& hooks);

    // Skins.
    void LoadSkin(const std::string& skinFile);
    void LoadSkinNamed(const std::string& skinName);  // at the start; empty is the default skin
    void ListSkins();
    void skinName_Click(int index);
    // Screen pixels for one pixel of the skin, 1 to 4.
    void setScale(int factor);
    int scale() const { return scale_; }

    // MainDisplay.
    void showKind(const std::string& name) override;
    void showInformation(const std::string& text) override;
    void showTitle(const std::string& title, const std::string& artist) override;
    void showLength(const std::string& text) override;
    void showStatus(const std::string& word) override;
    void showPlayMode(const std::string& word) override;
    void showTime(const std::string& text) override;
    void showBar(double fraction) override;
    void refreshDisplay() override;

    // MainWindowHandlers: also called while the settings are read.
    void PlayModeLabel_Click(int button) override;
    void TitleLabel_DblClick() override;
    void TimeLabel_Click(int index, int button) override;
    void moveTo(int left, int top) override { move(left, top); }
    int leftTwips() const override { return left(); }
    int topTwips() const override { return top(); }

    // Buttons and bars; places are pixels of the control itself.
    void cmdPicture_MouseDown(int index, int button, int shift, Point at);
    void cmdPicture_MouseUp(int index, int button, int shift, Point at);
    void taskPicture_MouseDown(int index, int button, int shift, Point at);
    void taskPicture_MouseUp(int index, int button, int shift, Point at);
    void SeekBar_MouseDown(int button, int shift, Point at);
    void VolumeBar_MouseDown(int button, int shift, Point at);
    void VolumeBar_MouseMove(int button, int shift, Point at);

    // Menus and the notification area.
    Menu menuMain();
    Menu menuTray();
    bool alwaysOnTop() const override { return alwaysOnTop_; }
    void setAlwaysOnTop(bool on) override;
    void showWindow(Form& form, bool activate = true);  // shows it, topmost when the main window is
    void toggleWindow(Form* form);
    void moveToTray();
    void restoreFromTray();
    bool inTray() const { return inTray_; }

    // The options window has changed something that is seen here.
    void optionsChanged();
    void drawVolumeLevel();  // display D and the bar, after the volume has changed

    // Form.
    void Form_Unload(bool& cancel) override;
    void Form_KeyDown(int key, int shift) override;
    void Form_KeyUp(int key, int shift) override;
    void Form_MouseDown(int button, int shift, Point at) override;
    void Form_MouseMove(int button, int shift, Point at) override;
    void Form_MouseUp(int button, int shift, Point at) override;
    void Form_DoubleClick(int button, int shift, Point at) override;
    void Form_Resize(Size client) override;
    void Form_FilesDropped(const std::vector<std::string>& files, Point at) override;
    void Form_Wheel(int notches, Point at) override;
    void Form_ContextMenu(Point at) override;
    bool Form_AppCommand(int command) override;
    std::string Form_TooltipAt(Point at) override;
    const Surface* picture() override;
    std::vector<AccessiblePart> accessibleParts() override;

    // Controls. Elements n + kPressed of the two button arrays are hidden and hold the pressed pictures.
    static constexpr int kPressed = 10;
    ControlArray<PictureBox> cmdPicture, taskPicture;
    ControlArray<Label> mainLabel;
    PictureBox SeekBar{*this, "SeekBar"};
    PictureBox VolumeBar{*this, "VolumeBar"};
    PictureBox LyricsPicture{*this, "LyricsPicture"};
    PictureBox DisplayA{*this, "DisplayA"};
    PictureBox DisplayB{*this, "DisplayB"};
    PictureBox DisplayC{*this, "DisplayC"};
    PictureBox DisplayD{*this, "DisplayD"};
    Timer Timer1{*this, "Timer1", 1000};  // play state
    Timer Timer2{*this, "Timer2", 80};    // panel animation
    Timer Timer3{*this, "Timer3", 400};   // status display
    Timer Timer4{*this, "Timer4", 2000};  // idle work
    Timer Timer5{*this, "Timer5", 1000};  // starts play, while the device is waited for
    Timer Timer6{*this, "Timer6", 500};   // lyrics
    Timer Timer7{*this, "Timer7", 500};   // converter
    Timer TimerTitle{*this, "TimerTitle", 60};

  protected:
    void controlChangedHere(Control& control, Property property) override;

  private:
    struct Pressed {
        ControlArray<PictureBox>* array;
        int index;
        bool onPanel;  // a column of display A
    };

    // form_top_skin.cpp
    void apply(SkinDefinition skin);
    void applyLabels(const SkinDefinition& skin);
    void applyButtons(const SkinDefinition& skin);
    void applyDisplays(const SkinDefinition& skin);
    void applyPictures(SkinDefinition& skin);
    void applyOutline(const SkinDefinition& skin);
    void placeBars(const SkinDefinition& skin);
    void showButtonsOrPanel();
    void showPanelDisplay();

    // form_top_picture.cpp
    void repaint(const Rect& where);
    void animate(const Rect& where);
    void markStale(const Rect& where);
    void compose(Rect where);
    void drawLabel(const Label& label);
    void drawPressed();
    int filledWidth() const { return RoundHalfToEven(barFraction_ * SeekBar.bounds().width); }
    TextStyle labelStyle(const Label& label) const;
    void showFigures();
    void renderDisplayC();

    // form_top_access.cpp
    struct Part {
        Control* control;
        int column = -1;  // of display A, which is a row of buttons
    };
    std::vector<Part> partsInOrder();
    AccessiblePart describe(const Part& part);
    AccessiblePart describeButton(ControlArray<PictureBox>& array, int index, const Rect& bounds);
    AccessiblePart describeLabel(int index);
    void tellPart(const Control& control, PartChange change);

    // form_top.cpp
    void press(ControlArray<PictureBox>& array, int index, bool onPanel);
    void release();
    void performPlayback(int index);
    void performCommand(int index);
    Rect panelColumn(int index) const;
    int panelColumnAt(Point at) const;
    Control* controlAt(Point at);
    void seekTo(Point at);
    void setVolumeFrom(Point at);
    void restartTitle();
    void titleTick();
    std::string trayTip() const;
    void renewTrayTip();
    void trayEvent(int message);
    std::string FolderNameOfSkin() const;

    GlobalState& state_;
    OptionStore& options_;
    FileSystem& files_;
    Dialogs& dialogs_;
    Shell& shell_;
    TextPainter& painter_;
    SplitValues& splitValues_;
    SkinPackages packages_;
    Playback playback_;
    Windows windows_;
    Hooks hooks_;

    Color background_;
    Surface levelPicture_;         // display D at full volume
    Surface backPicture_;
    Surface base_;                 // background colour and picture
    Surface composed_;
    std::vector<Rect> stale_;      // what of composed_ is out of date
    double barFraction_ = 0;
    std::optional<Pressed> pressed_;
    bool draggingVolume_ = false;
    std::optional<Point> titleHeld_;  // left button went down on the title here
    std::vector<std::string> skinNames_;
    TitleAnimation titleAnimation_;
    Surface titleStrip_;              // the letters of the running title, white on black; empty until they are needed
    std::string displayCText_;
    std::string trayTip_;            // what the icon says
    // What the skin has a place for, whether it is shown at the moment or not.
    std::array<bool, kButtonCount> hasButton_{};
    bool hasDisplayA_ = false;
    bool hasDisplayB_ = false;
    bool alwaysOnTop_ = false;
    bool inTray_ = false;
    int scale_ = 1;
    double fontTwips_ = 15;           // twips of a pixel that the type of the labels is made for
};

}  // namespace quenlox
