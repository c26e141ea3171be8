#include "skin/form_top.h"

#include <algorithm>
#include <cstdlib>

#include "platform/dialogs.h"
#include "playback/media_engine.h"
#include "playback/pitch_control.h"
#include "playback/play_state_monitor.h"
#include "playback/transport.h"
#include "playback/volume_control.h"
#include "state/media_formats.h"
#include "text/paths.h"

namespace quenlox {
namespace {

constexpr int kLeft = 1, kRight = 2;      // mouse buttons
constexpr int kAlt = 4;                   // shift state
constexpr int kDragThreshold = 3;         // pixels that the pointer moves before the title drags the window
constexpr int kWheelStep = 5;             // percent of volume for one notch

enum Key : int { kLeftKey = 37, kUpKey = 38, kRightKey = 39, kDownKey = 40 };
enum AppCommand : int {
    kMediaNext = 11,
    kMediaPrevious = 12,
    kMediaStop = 13,
    kMediaPlayPause = 14,
    kMediaPlay = 46,
    kMediaPause = 47
};

Point Within(const Control& control, Point at) { return {at.x - control.bounds().left, at.y - control.bounds().top}; }

bool InsidePicture(const PictureBox& box, Point at) {
    return Rect{0, 0, box.bounds().width, box.bounds().height}.contains(at);
}

constexpr const char* kPlaybackHints[kButtonCount] = {"再生／停止", "一時停止", "前の曲", "次の曲", "音程を下げる", "音程を上げる", "速度変更"};
constexpr const char* kCommandHints[kButtonCount] = {"プレイリスト", "オプション", "タグ情報", "ファイル変換", "ヘルプ", "通知領域に入れる", "終了"};

}  // namespace

FormTop::FormTop(GlobalState& state, OptionStore& options, FileSystem& files, Dialogs& dialogs, Shell& shell,
                 TextPainter& painter, SplitValues& splitValues)
    : Form("FormTop", Kind::Skinned),
      state_(state),
      options_(options),
      files_(files),
      dialogs_(dialogs),
      shell_(shell),
      painter_(painter),
      splitValues_(splitValues),
      packages_(files, dialogs) {
    cmdPicture.fill(*this, "cmdPicture", 0, kButtonCount - 1);
    cmdPicture.fill(*this, "cmdPicture", kPressed, kPressed + kButtonCount - 1);
    taskPicture.fill(*this, "taskPicture", 0, kButtonCount - 1);
    taskPicture.fill(*this, "taskPicture", kPressed, kPressed + kButtonCount - 1);
    mainLabel.fill(*this, "mainLabel", 0, kLabelCount - 1);
    for (int n = 0; n < kButtonCount; ++n) {
        cmdPicture[n + kPressed].setVisible(false);
        taskPicture[n + kPressed].setVisible(false);
        cmdPicture[n].setTooltip(kPlaybackHints[n]);
        taskPicture[n].setTooltip(kCommandHints[n]);
    }
    mainLabel[kPlayModeLabel].setTooltip("クリックで再生モードを変更");
    mainLabel[kTimeLabel].setTooltip("クリックで経過／残り時間");
    mainLabel[kLengthLabel].setTooltip("クリックで経過／残り時間");
    mainLabel[kTitleLabel].setTooltip("ダブルクリックで曲名／ファイル名");
    SeekBar.setTooltip("再生位置");
    VolumeBar.setTooltip("音量");

    Timer5.setEnabled(false);
    Timer7.setEnabled(false);
    TimerTitle.setEnabled(false);
    Timer1.onTimer = [this] { playback_.monitor->Timer1_Timer(); };
    Timer2.onTimer = [this] {
        if (hooks_.drawPanel) hooks_.drawPanel();
    };
    Timer3.onTimer = [this] {
        playback_.engine->status().ShowStatus();
        showFigures();
    };
    Timer4.onTimer = [this] {
        playback_.volume->refresh();  // another program may have changed it
        if (hooks_.idle) hooks_.idle();
    };
    Timer5.onTimer = [this] { playback_.monitor->Timer5_Timer(); };
    Timer6.onTimer = [this] {
        if (hooks_.updateLyrics) hooks_.updateLyrics();
    };
    Timer7.onTimer = [this] {
        if (hooks_.pollConverter) hooks_.pollConverter();
    };
    TimerTitle.onTimer = [this] { titleTick(); };
}

void FormTop::connect(const Playback& playback, const Windows& windows, const Hooks& hooks) {
    playback_ = playback;
    windows_ = windows;
    hooks_ = hooks;
    playback_.volume->onChange = [this] { drawVolumeLevel(); };
    shell_.onTrayIconLost = [this] { restoreFromTray(); };
}

// What the playback shows.

void FormTop::showKind(const std::string& name) { mainLabel[kKindLabel].setCaption(name); }
void FormTop::showInformation(const std::string& text) { mainLabel[kInformationLabel].setCaption(text); }
void FormTop::showLength(const std::string& text) { mainLabel[kLengthLabel].setCaption(text); }
void FormTop::showPlayMode(const std::string& word) { mainLabel[kPlayModeLabel].setCaption(word); }
void FormTop::showTime(const std::string& text) { mainLabel[kTimeLabel].setCaption(text); }

void FormTop::showTitle(const std::string& title, const std::string& artist) {
    mainLabel[kArtistLabel].setCaption(artist);
    if (mainLabel[kTitleLabel].caption() == title) return;
    mainLabel[kTitleLabel].setCaption(title);
    restartTitle();
    renewTrayTip();
}

void FormTop::showStatus(const std::string& word) {
    mainLabel[kStatusLabel].setCaption(word);
    Timer5.setEnabled(state_.PlayerStatus == kWait);
}

void FormTop::showBar(double fraction) {
    fraction = std::clamp(fraction, 0.0, 1.0);
    const int before = filledWidth();
    barFraction_ = fraction;
    if (filledWidth() == before) return;
    repaint(SeekBar.bounds());
    tellPart(SeekBar, PartChange::Value);
}

void FormTop::refreshDisplay() {
    showFigures();
    repaint(composed_.rect());
}

// Labels.

void FormTop::PlayModeLabel_Click(int button) {
    if (button == kLeft) playback_.transport->StepPlayMode();
}

void FormTop::TimeLabel_Click(int index, int button) {
    if (button == kLeft && (index == kTimeLabel || index == kLengthLabel)) playback_.transport->StepTimeMode();
}

void FormTop::TitleLabel_DblClick() { playback_.engine->ToggleTitleMode(); }

// Buttons.

void FormTop::press(ControlArray<PictureBox>& array, int index, bool onPanel) {
    if (!playback_.transport->mayAct()) return;
    pressed_ = Pressed{&array, index, onPanel};
    repaint(onPanel ? DisplayA.bounds() : array[index].bounds());
}

void FormTop::release() {
    if (!pressed_) return;
    const Rect where = pressed_->onPanel ? DisplayA.bounds() : (*pressed_->array)[pressed_->index].bounds();
    pressed_.reset();
    repaint(where);
    state_.ButtonHeld = false;
}

void FormTop::cmdPicture_MouseDown(int index, int button, int, Point) {
    if (button == kLeft) press(cmdPicture, index, false);
}

void FormTop::taskPicture_MouseDown(int index, int button, int, Point) {
    if (button == kLeft) press(taskPicture, index, false);
}

void FormTop::cmdPicture_MouseUp(int index, int button, int, Point at) {
    if (button == kLeft && InsidePicture(cmdPicture[index], at)) {
        state_.ButtonHeld = true;
        performPlayback(index);
    }
    release();
    state_.ButtonHeld = false;
}

void FormTop::taskPicture_MouseUp(int index, int button, int, Point at) {
    // Released before the action: closing and hiding leave no window to restore.
    const bool acts = playback_.transport->mayAct() && button == kLeft && InsidePicture(taskPicture[index], at);
    release();
    if (acts) performCommand(index);
}

void FormTop::performPlayback(int index) {
    Transport& transport = *playback_.transport;
    if (!transport.mayAct()) return;
    switch (index) {
        case kPlayButton: transport.playOrStop(); break;
        case kPauseButton: transport.pause(); break;
        case kBackButton: transport.PreviousTrack(); break;
        case kNextButton: transport.NextTrack(); break;
        case kLowButton: playback_.pitch->Low(); break;
        case kHighButton: playback_.pitch->High(); break;
        case kDoubleButton: playback_.pitch->Double(); break;
        default: break;
    }
}

void FormTop::performCommand(int index) {
    switch (index) {
        case kListCommand:
            toggleWindow(windows_.list);
            break;
        case kOptCommand:
            toggleWindow(windows_.options);
            break;
        case kTagCommand:
            if (windows_.tag && !windows_.tag->visible() && hooks_.fillTagWindow) hooks_.fillTagWindow();
            toggleWindow(windows_.tag);
            break;
        case kConvCommand:
            if (windows_.convert) showWindow(*windows_.convert);
            break;
        case kHelpCommand:
            if (hooks_.help) hooks_.help();
            break;
        case kMiniCommand:
            moveToTray();
            break;
        case kCloseCommand:
            unload();
            break;
        default:
            break;
    }
}

// Mouse on the window.

Rect FormTop::panelColumn(int index) const {
    const int width = DisplayA.bounds().width;
    const int left = width * index / kButtonCount;
    return {left, 0, width * (index + 1) / kButtonCount - left, DisplayA.bounds().height};
}

int FormTop::panelColumnAt(Point at) const {
    for (int n = 0; n < kButtonCount; ++n) {
        if (panelColumn(n).contains(at)) return n;
    }
    return -1;
}

Control* FormTop::controlAt(Point at) {
    const auto hit = [&](const Control& control) { return control.visible() && control.bounds().contains(at); };
    for (int n = 0; n < kButtonCount; ++n) {
        if (hit(taskPicture[n])) return &taskPicture[n];
        if (hit(cmdPicture[n])) return &cmdPicture[n];
    }
    for (int n = 0; n < kLabelCount; ++n) {
        if (hit(mainLabel[n])) return &mainLabel[n];
    }
    // Display D lies over the volume bar and takes no clicks itself.
    for (PictureBox* box : {&VolumeBar, &SeekBar, &DisplayA, &DisplayB, &LyricsPicture, &DisplayC}) {
        if (hit(*box)) return box;
    }
    return nullptr;
}

void FormTop::Form_MouseDown(int button, int shift, Point at) {
    Control* control = controlAt(at);
    if (control == &DisplayB) {
        if (hooks_.panelClicked) hooks_.panelClicked(button);
        return;
    }
    if (button == kRight) {
        Form_ContextMenu(at);
        return;
    }
    if (button != kLeft) return;
    if (host() && control) host()->captureMouse(true);
    if (control) {
        const Point inside = Within(*control, at);
        if (control->name() == "cmdPicture") return cmdPicture_MouseDown(control->index(), button, shift, inside);
        if (control->name() == "taskPicture") return taskPicture_MouseDown(control->index(), button, shift, inside);
        if (control == &SeekBar) return SeekBar_MouseDown(button, shift, inside);
        if (control == &VolumeBar) return VolumeBar_MouseDown(button, shift, inside);
        if (control == &DisplayA) return press(cmdPicture, panelColumnAt(inside), true);
        if (control == &mainLabel[kPlayModeLabel]) return PlayModeLabel_Click(button);
        if (control == &mainLabel[kTimeLabel] || control == &mainLabel[kLengthLabel]) {
            return TimeLabel_Click(control->index(), button);
        }
        if (control == &mainLabel[kTitleLabel]) {
            titleHeld_ = at;  // a double click must reach the title, so it drags only when the pointer moves
            return;
        }
    }
    if (host()) {
        host()->captureMouse(false);
        host()->beginDrag();
    }
}

void FormTop::Form_MouseMove(int button, int shift, Point at) {
    if (inTray_) return trayEvent(at.x);
    if (button != kLeft) {
        draggingVolume_ = false;
        titleHeld_.reset();
        return;
    }
    if (draggingVolume_) return VolumeBar_MouseMove(button, shift, Within(VolumeBar, at));
    if (titleHeld_ && std::max(std::abs(at.x - titleHeld_->x), std::abs(at.y - titleHeld_->y)) > kDragThreshold) {
        titleHeld_.reset();
        if (host()) {
            host()->captureMouse(false);
            host()->beginDrag();
        }
    }
}

void FormTop::Form_MouseUp(int button, int shift, Point at) {
    if (host()) host()->captureMouse(false);
    draggingVolume_ = false;
    titleHeld_.reset();
    if (!pressed_) return;
    const Pressed pressed = *pressed_;
    if (pressed.onPanel) {
        const bool acts = panelColumnAt(Within(DisplayA, at)) == pressed.index;
        release();
        if (acts) performPlayback(pressed.index);
    } else if (pressed.array == &cmdPicture) {
        cmdPicture_MouseUp(pressed.index, button, shift, Within(cmdPicture[pressed.index], at));
    } else {
        taskPicture_MouseUp(pressed.index, button, shift, Within(taskPicture[pressed.index], at));
    }
}

void FormTop::Form_DoubleClick(int button, int shift, Point at) {
    Control* control = controlAt(at);
    if (control == &mainLabel[kTitleLabel] && button == kLeft) return TitleLabel_DblClick();
    if (control == &DisplayB) {
        if (hooks_.panelClicked) hooks_.panelClicked(kRight);
        return;
    }
    // For everything else the second press of a double click is a press like the first.
    Form_MouseDown(button, shift, at);
}

void FormTop::SeekBar_MouseDown(int button, int, Point at) {
    const int width = SeekBar.bounds().width;
    if (button != kLeft || at.x < 0 || at.x > width || width == 0) return;
    playback_.transport->seek(static_cast<double>(at.x) / width);
}

void FormTop::VolumeBar_MouseDown(int button, int, Point at) {
    draggingVolume_ = button == kLeft;
    if (draggingVolume_) setVolumeFrom(at);
}

void FormTop::VolumeBar_MouseMove(int button, int, Point at) {
    if (button == kLeft) setVolumeFrom(at);
}

void FormTop::setVolumeFrom(Point at) {
    playback_.volume->setFromBar(at.y, VolumeBar.bounds().height);
}

void FormTop::Form_Wheel(int notches, Point) {
    playback_.volume->setPercent(state_.VolumePercent + notches * kWheelStep);
}

std::string FormTop::Form_TooltipAt(Point at) {
    const Control* control = controlAt(at);
    if (!control) return {};
    if (control == &DisplayA) {
        const int column = panelColumnAt(Within(*control, at));
        return column < 0 ? std::string() : cmdPicture[column].tooltip();
    }
    if (control == &VolumeBar) return "音量 " + std::to_string(state_.VolumePercent) + "%";
    return control->tooltip();
}

// Keys.

void FormTop::Form_KeyDown(int key, int shift) {
    const bool handled = key == kUpKey || key == kDownKey || key == kRightKey || key == kLeftKey;
    Transport& transport = *playback_.transport;
    if (shift != kAlt || state_.KeyLatch || !handled || !transport.mayAct()) return;
    // Set first: opening a file handles messages, and a key that is let go meanwhile must find it.
    state_.KeyLatch = true;
    switch (key) {
        case kUpKey: transport.play(); break;
        case kDownKey:
            if (state_.PlayerStatus == kPlay) transport.stop();
            break;
        case kRightKey: transport.NextTrack(); break;
        default: transport.PreviousTrack(); break;
    }
}

void FormTop::Form_KeyUp(int, int) { state_.KeyLatch = false; }

bool FormTop::Form_AppCommand(int command) {
    Transport& transport = *playback_.transport;
    switch (command) {
        case kMediaNext: return transport.NextTrack();
        case kMediaPrevious: return transport.PreviousTrack();
        case kMediaStop: return transport.stop();
        case kMediaPlay:
        case kMediaPlayPause:
            if (state_.PlayerStatus < kPlay) return transport.play();
            return command == kMediaPlay && state_.PlayerStatus == kPlay ? transport.mayAct() : transport.pause();
        case kMediaPause: return state_.PlayerStatus == kPlay ? transport.pause() : transport.mayAct();
        default: return false;
    }
}

// Files.

void FormTop::Form_FilesDropped(const std::vector<std::string>& files, Point) {
    if (files.empty() || !MatchesMediaFilter(files.front())) return;
    if (playback_.transport->open({files.front()}, kNoIntent, Transport::Start::Play) == OpenResult::Busy) {
        dialogs_.message("ファイル変換中は再生できません", MessageIcon::Information);
    }
}

void FormTop::Form_Unload(bool& cancel) {
    cancel = false;
    if (inTray_) shell_.deleteTrayIcon({this, {}});
    for (Timer* timer : {&Timer1, &Timer2, &Timer3, &Timer4, &Timer5, &Timer6, &Timer7, &TimerTitle}) {
        timer->setEnabled(false);
    }
    if (hooks_.unload) hooks_.unload();
}

}  // namespace quenlox
