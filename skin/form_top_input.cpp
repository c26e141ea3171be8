// What the user does with mouse and keys on the main window.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "forms/keys.h"
#include "platform/dialogs.h"
#include "playback/media_engine.h"
#include "playback/transport.h"
#include "playback/volume_control.h"
#include "skin/form_top.h"
#include "state/media_formats.h"
#include "text/numbers.h"
#include "text/paths.h"

namespace quenlox {
namespace {

using PartKind = TopPart::Kind;

constexpr int kLeft = 1, kRight = 2;         // mouse buttons
constexpr int kDragThreshold = 3;            // pixels that the pointer moves before the title drags the window
constexpr int kWheelSeconds = 5;             // of one notch over the seek bar
constexpr int kShortWay = 5, kLongWay = 30;  // seconds that a key goes

enum AppCommand : int {
    kMediaNext = 11,
    kMediaPrevious = 12,
    kMediaStop = 13,
    kMediaPlayPause = 14,
    kMediaPlay = 46,
    kMediaPause = 47
};

Point Within(const Rect& bounds, Point at) { return {at.x - bounds.left, at.y - bounds.top}; }

bool InsidePicture(const PictureBox& box, Point at) {
    return Rect{0, 0, box.bounds().width, box.bounds().height}.contains(at);
}

}  // namespace

// Labels.

void FormTop::PlayModeLabel_Click(int button) {
    if (button == kLeft) playback_.transport->StepPlayMode();
}

void FormTop::TimeLabel_Click(int index, int button) {
    if (button == kLeft && (index == kTimeLabel || index == kLengthLabel)) playback_.transport->StepTimeMode();
}

void FormTop::TitleLabel_DblClick() { playback_.engine->ToggleTitleMode(); }

// Buttons.

void FormTop::cmdPicture_MouseDown(int index, int button, int, Point) {
    if (button == kLeft) buttons_.press({PartKind::Playback, index});
}

void FormTop::taskPicture_MouseDown(int index, int button, int, Point) {
    if (button == kLeft) buttons_.press({PartKind::Command, index});
}

void FormTop::cmdPicture_MouseUp(int index, int button, int, Point at) {
    if (button == kLeft && InsidePicture(cmdPicture[index], at)) {
        state_.ButtonHeld = true;
        buttons_.perform(index);
    }
    buttons_.release();
    state_.ButtonHeld = false;
}

void FormTop::taskPicture_MouseUp(int index, int button, int, Point at) {
    // Released before the action: closing and hiding leave no window to restore.
    const bool acts = buttons_.mayAct() && button == kLeft && InsidePicture(taskPicture[index], at);
    buttons_.release();
    if (acts) performCommand(index);
}

// Bars and display B.

void FormTop::SeekBar_MouseDown(int button, int, Point at) {
    const int width = SeekBar.bounds().width;
    if (button != kLeft || at.x < 0 || at.x > width || width == 0) return;
    playback_.transport->seek(static_cast<double>(at.x) / width);
}

// Dragged: the bar and the time follow the pointer, the track goes there when the button is let go.
void FormTop::SeekBar_MouseMove(int button, Point at) {
    if (button == kLeft && draggedBar_) {
        const double fraction = std::clamp(static_cast<double>(at.x) / SeekBar.bounds().width, 0.0, 1.0);
        draggedBar_.reset();
        showBar(fraction);
        draggedBar_ = fraction;
    }
    showTimeAt(at);
}

void FormTop::SeekBar_MouseUp() {
    const double there = std::exchange(draggedBar_, std::nullopt).value_or(0);
    if (host()) host()->showTip("", {});
    if (canSeek()) playback_.transport->seek(there);
}

bool FormTop::canSeek() const {
    return (state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause) && state_.TotalSeconds > 0 &&
           SeekBar.bounds().width > 0;
}

// The time of the track at a place of the seek bar, in a tip above the bar: the buttons mostly lie below it.
void FormTop::showTimeAt(Point at) {
    if (!host() || !canSeek()) return;
    const Rect& bar = SeekBar.bounds();
    const int x = std::clamp(at.x, 0, bar.width);
    const int seconds = RoundHalfToEven(static_cast<double>(x) / bar.width * state_.TotalSeconds);
    host()->showTip(MinutesAndSeconds(seconds), {bar.left + x, bar.top});
}

void FormTop::VolumeBar_MouseDown(int button, int shift, Point at) {
    draggingVolume_ = button == kLeft;
    VolumeBar_MouseMove(button, shift, at);
}

void FormTop::VolumeBar_MouseMove(int button, int, Point at) {
    if (button == kLeft) playback_.volume->setFromBar(at.y, VolumeBar.bounds().height);
}

void FormTop::setVolumePercent(int percent) { playback_.volume->setPercent(percent); }

void FormTop::Form_Wheel(int notches, Point at) {
    if (partAt(at).kind == PartKind::SeekBar && canSeek()) {
        playback_.transport->seekBy(notches * kWheelSeconds);
        return;
    }
    setVolumePercent(state_.VolumePercent + notches * kVolumeStep);
}

void FormTop::DisplayB_MouseDown(int button) {
    if (hooks_.panelClicked) hooks_.panelClicked(button);
}

void FormTop::showView(int view) {
    state_.ViewType = view;
    options_.set(&Options::SpectrumShown, true);
}

// Mouse on the window.

void FormTop::Form_MouseDown(int button, int shift, Point at) {
    const TopPart part = partAt(at);
    if (part.kind == PartKind::DisplayB) return DisplayB_MouseDown(button);
    if (button == kLeft && inEmptyRecess(at)) return options_.set(&Options::SpectrumShown, true);
    if (button == kRight) return Form_ContextMenu(at);
    if (button != kLeft) return;
    if (host() && part.kind != PartKind::None) host()->captureMouse(true);
    const Point inside = Within(part.bounds, at);
    switch (part.kind) {
        case PartKind::Playback: return cmdPicture_MouseDown(part.index, button, shift, inside);
        case PartKind::Command: return taskPicture_MouseDown(part.index, button, shift, inside);
        case PartKind::Column: return buttons_.press({part.kind, part.index});
        case PartKind::SeekBar:
            SeekBar_MouseDown(button, shift, inside);
            if (canSeek()) draggedBar_ = static_cast<double>(inside.x) / SeekBar.bounds().width;
            return showTimeAt(inside);
        case PartKind::VolumeBar: return VolumeBar_MouseDown(button, shift, inside);
        case PartKind::Label:
            if (pressLabel(part.index, at)) return;
            break;
        default: break;
    }
    beginDrag();
}

// False for a label that does nothing.
bool FormTop::pressLabel(int index, Point at) {
    switch (index) {
        case kPlayModeLabel: PlayModeLabel_Click(kLeft); return true;
        case kTimeLabel:
        case kLengthLabel: TimeLabel_Click(index, kLeft); return true;
        case kTitleLabel:
            titleHeld_ = at;  // a double click must reach the title, so it drags only when the pointer moves
            return true;
        default: return false;
    }
}

void FormTop::beginDrag() {
    if (!host()) return;
    host()->captureMouse(false);
    host()->beginDrag();
}

void FormTop::Form_MouseMove(int button, int shift, Point at) {
    const bool overBar = partAt(at).kind == PartKind::SeekBar;
    if (button != kLeft) {
        draggingVolume_ = false;
        titleHeld_.reset();
        draggedBar_.reset();
        if (overBar) {
            SeekBar_MouseMove(button, Within(SeekBar.bounds(), at));
        } else if (host()) {
            host()->showTip("", {});
        }
        return;
    }
    if (draggedBar_) return SeekBar_MouseMove(button, Within(SeekBar.bounds(), at));
    if (draggingVolume_) return VolumeBar_MouseMove(button, shift, Within(VolumeBar.bounds(), at));
    if (titleHeld_ && std::max(std::abs(at.x - titleHeld_->x), std::abs(at.y - titleHeld_->y)) > kDragThreshold) {
        titleHeld_.reset();
        beginDrag();
    }
}

void FormTop::Form_MouseUp(int button, int shift, Point at) {
    if (host()) host()->captureMouse(false);
    draggingVolume_ = false;
    titleHeld_.reset();
    if (draggedBar_) SeekBar_MouseUp();
    if (!buttons_.held()) return;
    const HeldButton held = *buttons_.held();
    if (held.kind == PartKind::Column) {
        buttons_.release();
        if (column(held.index).contains(at)) buttons_.perform(held.index);
    } else if (held.kind == PartKind::Playback) {
        cmdPicture_MouseUp(held.index, button, shift, Within(cmdPicture[held.index].bounds(), at));
    } else {
        taskPicture_MouseUp(held.index, button, shift, Within(taskPicture[held.index].bounds(), at));
    }
}

void FormTop::Form_DoubleClick(int button, int shift, Point at) {
    const TopPart part = partAt(at);
    const bool onTitle = part.kind == PartKind::Label && part.index == kTitleLabel;
    if (onTitle && button == kLeft) return TitleLabel_DblClick();
    // For everything else the second press of a double click is a press like the first.
    Form_MouseDown(button, shift, at);
}

std::string FormTop::Form_TooltipAt(Point at) {
    const TopPart part = partAt(at);
    switch (part.kind) {
        case PartKind::Playback:
        case PartKind::Column: return cmdPicture[part.index].tooltip();
        case PartKind::Command: return taskPicture[part.index].tooltip();
        case PartKind::Label: return mainLabel[part.index].tooltip();
        case PartKind::SeekBar: return canSeek() ? std::string() : SeekBar.tooltip();  // else it shows a time
        case PartKind::VolumeBar: return "音量 " + std::to_string(state_.VolumePercent) + "%";
        default: return inEmptyRecess(at) ? "クリックで波形とスペクトルを表示" : "";
    }
}

// The place of the panel, while it is not shown.
bool FormTop::inEmptyRecess(Point at) const {
    return view_.hasSpectrum() && !DisplayB.visible() && DisplayB.bounds().contains(at) &&
           partAt(at).kind == PartKind::None;
}

// Keys.

void FormTop::Form_KeyDown(int key, int shift) {
    if (!ownKey(key, shift)) playbackKey(key, shift);
}

bool FormTop::ownKey(int key, int shift) {
    struct Key {
        int key, shift;
        TopCommand command;
        int index = 0;
    };
    static constexpr Key kKeys[] = {{kKeyO, kControl, TopCommand::OpenFile},
                                    {kKeyO, kControl + kShift, TopCommand::OpenFolder},
                                    {kKeyUp, 0, TopCommand::Volume, kVolumeStep},
                                    {kKeyDown, 0, TopCommand::Volume, -kVolumeStep},
                                    {kKeyM, 0, TopCommand::Mute},
                                    {kKeyRight, 0, TopCommand::Seek, kShortWay},
                                    {kKeyLeft, 0, TopCommand::Seek, -kShortWay},
                                    {kKeyRight, kControl, TopCommand::Seek, kLongWay},
                                    {kKeyLeft, kControl, TopCommand::Seek, -kLongWay},
                                    {kKeySpace, 0, TopCommand::Playback, kPauseButton},
                                    {kKeyV, 0, TopCommand::NextView},
                                    {kKeyV, kShift, TopCommand::NextGroup},
                                    {kKeyR, 0, TopCommand::PlayMode},
                                    {kKeyT, 0, TopCommand::TimeMode},
                                    {kKeyF, 0, TopCommand::TitleMode},
                                    {kKeyF1, 0, TopCommand::Command, kHelpCommand},
                                    {kKeyF5, 0, TopCommand::ReloadSkin}};
    for (const Key& known : kKeys) {
        if (known.key != key || known.shift != shift) continue;
        if (buttons_.mayAct()) perform(known.command, known.index);
        return true;
    }
    return false;
}

void FormTop::playbackKey(int key, int shift) {
    const bool handled = key == kKeyUp || key == kKeyDown || key == kKeyRight || key == kKeyLeft;
    Transport& transport = *playback_.transport;
    if (shift != kAlt || state_.KeyLatch || !handled || !transport.mayAct()) return;
    // Set first: opening a file handles messages, and a key that is let go meanwhile must find it.
    state_.KeyLatch = true;
    switch (key) {
        case kKeyUp: transport.play(); break;
        case kKeyDown:
            if (state_.PlayerStatus == kPlay) transport.stop();
            break;
        case kKeyRight: transport.NextTrack(); break;
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

void FormTop::openFile() {
    FileDialog dialog;
    dialog.title = "開く";
    dialog.filterName = "音楽ファイル";
    dialog.filter = MediaFilter();
    dialog.folder = FolderOf(state_.CurrentFile);
    if (const auto file = dialogs_.openFile(dialog)) Form_FilesDropped({*file}, {});
}

void FormTop::Form_FilesDropped(const std::vector<std::string>& files, Point) {
    if (files.empty() || !MatchesMediaFilter(files.front())) return;
    if (playback_.transport->open({files.front()}, kNoIntent, Transport::Start::Play) == OpenResult::Busy) {
        dialogs_.message("ファイル変換中は再生できません", MessageIcon::Information);
    }
}

}  // namespace quenlox
