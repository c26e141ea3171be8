// The main window. It has no frame; its outline, pictures and places come from a skin. Here its parts are put together:
// what the user does becomes calls of the playback, what the playback tells is shown. On the user-interface thread; it
// never decides what is played.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "playback/main_display.h"
#include "skin/main_window_handlers.h"
#include "skin/skin_packages.h"
#include "skin/skin_view.h"
#include "skin/top_accessible.h"
#include "skin/top_menus.h"
#include "skin/transport_buttons.h"
#include "skin/tray_icon.h"
#include "state/global_state.h"
#include "state/option_store.h"

namespace quenlox {

class MediaEngine;
class PlayStateMonitor;
class VolumeControl;

class FormTop : public Form, public TopControls, public MainDisplay, public MainWindowHandlers {
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
        std::function<void()> drawPanel;                       // one frame of the panel animation into display B
        std::function<void(int button)> panelClicked;          // 1 left: next variant; 2 right: next group
        std::function<void()> openFolder;                      // asks which, and shows it
        std::function<void()> pollConverter, updateLyrics, idle;
        std::function<void()> help;
        std::function<void()> unload;  // the program ends: stop, save, release
        std::function<Figures()> figures;
    };

    FormTop(GlobalState& state, OptionStore& options, FileSystem& files, Dialogs& dialogs, Shell& shell,
            TextPainter& painter, SplitValues& splitValues);
    void connect(const Playback& playback, const Windows& windows, const Hooks& hooks);

    // Skins. A package is read as a whole and then put in place of the one that is shown, which stays as it was when
    // anything fails meanwhile.
    void LoadSkin(const std::string& skinFile);
    void LoadSkinNamed(const std::string& skinName);  // at the start; empty is the default skin
    void ListSkins() { skinNames_ = packages_.ListSkins(); }
    void skinName_Click(int index);
    // At which the skin is shown; follows the option, or the monitor.
    Scale scale() const { return view_.scale(); }
    void followScale();

    // A key that plays, stops or changes the track, on this window and on those that have no use of their own for it.
    void playbackKey(int key, int shift);

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

    // Buttons, bars and display B; places are pixels of the control itself.
    void cmdPicture_MouseDown(int index, int button, int shift, Point at);
    void cmdPicture_MouseUp(int index, int button, int shift, Point at);
    void taskPicture_MouseDown(int index, int button, int shift, Point at);
    void taskPicture_MouseUp(int index, int button, int shift, Point at);
    void SeekBar_MouseDown(int button, int shift, Point at);
    void SeekBar_MouseMove(int button, Point at);
    void SeekBar_MouseUp();
    void VolumeBar_MouseDown(int button, int shift, Point at);
    void VolumeBar_MouseMove(int button, int shift, Point at);
    void DisplayB_MouseDown(int button);
    void setVolumePercent(int percent);

    void Timer1_Timer();
    void Timer2_Timer();
    void Timer3_Timer();
    void Timer4_Timer();
    void Timer5_Timer();
    void Timer6_Timer();
    void Timer7_Timer();

    // Menus and the notification area.
    Menu menuMain();
    Menu menuTray();
    void perform(TopCommand command, int index = 0);
    bool alwaysOnTop() const override { return alwaysOnTop_; }
    void setAlwaysOnTop(bool on) override;
    void showWindow(Form& form, bool activate = true);  // shows it, topmost when the main window is
    void toggleWindow(Form* form);
    void moveToTray();
    void restoreFromTray();
    bool inTray() const { return tray_.shown(); }

    // The options window has changed something that is seen here.
    void optionsChanged();

    // Form.
    void Form_Unload(bool& cancel) override;
    void Form_KeyDown(int key, int shift) override;
    void Form_KeyUp(int key, int shift) override;
    void Form_MouseDown(int button, int shift, Point at) override;
    void Form_MouseMove(int button, int shift, Point at) override;
    void Form_MouseUp(int button, int shift, Point at) override;
    void Form_DoubleClick(int button, int shift, Point at) override;
    void Form_TrayIcon(int message) override { tray_.event(message); }
    void Form_Resize(Size client) override;
    void Form_FilesDropped(const std::vector<std::string>& files, Point at) override;
    void Form_Wheel(int notches, Point at) override;
    void Form_ContextMenu(Point at) override;
    bool Form_AppCommand(int command) override;
    std::string Form_TooltipAt(Point at) override;
    const Surface* picture() override { return &view_.picture(); }
    std::vector<AccessiblePart> accessibleParts() override { return accessible_.parts(); }

  protected:
    void controlChangedHere(Control& control, Property property) override;

  private:
    bool load(const std::string& skinFile);
    void takeOver(PreparedSkin skin);
    void reloadSkin();
    void checkSkin();
    void tellSkin();
    SkinView::Look look() const;
    Scale wantedScale() const;
    std::string folderNameOfSkin() const;
    TwipsPerPixel twips() const { return host() ? host()->twipsPerPixel() : TwipsPerPixel{}; }
    void performCommand(int index);
    bool pressLabel(int index, Point at);
    void beginDrag();
    bool ownKey(int key, int shift);
    void openFile();
    void showView(int view);
    bool canSeek() const;
    bool inEmptyRecess(Point at) const;
    void showTimeAt(Point at);
    void volumeChanged();
    void showFigures();
    std::string trayTip() const;
    void popupTrayMenu();
    void comeBack();

    GlobalState& state_;
    OptionStore& options_;
    FileSystem& files_;
    Dialogs& dialogs_;
    Shell& shell_;
    SplitValues& splitValues_;
    SkinPackages packages_;
    SkinView view_;
    TransportButtons buttons_{view_};
    TrayIcon tray_;
    TopAccessible accessible_;
    Playback playback_;
    Windows windows_;
    Hooks hooks_;

    std::vector<std::string> skinNames_;
    bool draggingVolume_ = false;
    std::optional<double> draggedBar_;  // the seek bar is held: the part of the track that the pointer is at
    std::optional<Point> titleHeld_;  // left button went down on the title here
    bool alwaysOnTop_ = false;
    int noticeTicks_ = 0;  // of the status timer, until a notice goes
};

}  // namespace quenlox
