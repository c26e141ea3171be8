#include "skin/form_top.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/dialogs.h"
#include "playback/media_engine.h"
#include "playback/play_state_monitor.h"
#include "playback/transport.h"
#include "playback/volume_control.h"
#include "skin/skin_report.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kLeft = 1, kRight = 2;  // mouse buttons
constexpr int kNoticeTicks = 15;      // of the status timer: six seconds

constexpr const char* kHowToBegin = "曲をここへドロップ（Ctrl+Oで開く）";

}  // namespace

FormTop::FormTop(GlobalState& state, OptionStore& options, FileSystem& files, Dialogs& dialogs, Shell& shell,
                 TextPainter& painter, SplitValues& splitValues)
    : Form("FormTop", Kind::Skinned),
      TopControls(static_cast<Form&>(*this)),
      state_(state),
      options_(options),
      files_(files),
      dialogs_(dialogs),
      shell_(shell),
      splitValues_(splitValues),
      packages_(files, dialogs),
      view_(*this, *this, painter),
      tray_(*this, shell, [this] { return trayTip(); }),
      accessible_(*this, view_, buttons_, state) {
    begin();
    Timer1.onTimer = [this] { Timer1_Timer(); };
    Timer2.onTimer = [this] { Timer2_Timer(); };
    Timer3.onTimer = [this] { Timer3_Timer(); };
    Timer4.onTimer = [this] { Timer4_Timer(); };
    Timer5.onTimer = [this] { Timer5_Timer(); };
    Timer6.onTimer = [this] { Timer6_Timer(); };
    Timer7.onTimer = [this] { Timer7_Timer(); };
    TimerTitle.onTimer = [this] { view_.moveTitle(); };
    tray_.onClick = [this] { restoreFromTray(); };
    tray_.onMenu = [this] { popupTrayMenu(); };
    tray_.onLost = [this] { comeBack(); };
}

void FormTop::connect(const Playback& playback, const Windows& windows, const Hooks& hooks) {
    playback_ = playback;
    windows_ = windows;
    hooks_ = hooks;
    buttons_.connect(*playback.transport, *playback.pitch);
    playback_.volume->onChange = [this] { volumeChanged(); };
}

void FormTop::Timer1_Timer() { playback_.monitor->poll(); }

void FormTop::Timer2_Timer() {
    if (hooks_.drawPanel) hooks_.drawPanel();
}

void FormTop::Timer3_Timer() {
    StatusDisplay& status = playback_.engine->status();
    status.ShowStatus();
    showFigures();
    if (noticeTicks_ > 0 && --noticeTicks_ == 0) status.showNotice({});
}

void FormTop::Timer4_Timer() {
    playback_.volume->refresh();  // another program may have changed it
    if (hooks_.idle) hooks_.idle();
}

void FormTop::Timer5_Timer() { playback_.monitor->retry(); }

void FormTop::Timer6_Timer() {
    if (hooks_.updateLyrics) hooks_.updateLyrics();
}

void FormTop::Timer7_Timer() {
    if (hooks_.pollConverter) hooks_.pollConverter();
}

// What the playback shows.

void FormTop::showKind(const std::string& name) { mainLabel[kKindLabel].setCaption(name); }
void FormTop::showInformation(const std::string& text) { mainLabel[kInformationLabel].setCaption(text); }
void FormTop::showLength(const std::string& text) { mainLabel[kLengthLabel].setCaption(text); }
void FormTop::showPlayMode(const std::string& word) { mainLabel[kPlayModeLabel].setCaption(word); }
void FormTop::showTime(const std::string& text) { mainLabel[kTimeLabel].setCaption(text); }

void FormTop::showTitle(const std::string& title, const std::string& artist) {
    mainLabel[kArtistLabel].setCaption(artist);
    const std::string shown = state_.CurrentFile.empty() && title.empty() ? kHowToBegin : title;
    if (mainLabel[kTitleLabel].caption() == shown) return;
    mainLabel[kTitleLabel].setCaption(shown);
    view_.restartTitle();
    tray_.renewTip();
}

void FormTop::showStatus(const std::string& word) {
    mainLabel[kStatusLabel].setCaption(word);
    Timer5.setEnabled(state_.PlayerStatus == kWait);
}

void FormTop::showBar(double fraction) {
    if (draggedBar_) return;  // it stays where the pointer is
    const int before = view_.filledWidth();
    view_.setBar(fraction);
    if (view_.filledWidth() != before) accessible_.tell(TopPart::Kind::SeekBar, 0, PartChange::Value);
}

void FormTop::refreshDisplay() {
    showFigures();
    view_.repaintAll();
}

void FormTop::showFigures() {
    const Figures figures = hooks_.figures ? hooks_.figures() : Figures{};
    mainLabel[kListLabel].setCaption(figures.listPlace);
    view_.setFigures(figures.listPlace + "  " + figures.clock);
}

void FormTop::volumeChanged() {
    view_.setVolume(state_.VolumePercent);
    accessible_.tell(TopPart::Kind::VolumeBar, 0, PartChange::Value);
}

void FormTop::controlChangedHere(Control& control, Property property) {
    view_.controlChanged(control, property);
    if (property != Property::Caption) return;
    if (&control == &LyricsPicture) accessible_.tell(TopPart::Kind::Lyrics, 0, PartChange::Name);
    for (int n = 0; n < kLabelCount; ++n) {
        if (&control == &mainLabel[n]) accessible_.tell(TopPart::Kind::Label, n, PartChange::Name);
    }
}

// Skins.

void FormTop::LoadSkinNamed(const std::string& skinName) {
    const std::string standard = packages_.defaultDefinitionFile();
    if (!load(skinName.empty() ? standard : packages_.definitionFileOf(skinName))) load(standard);
}

void FormTop::LoadSkin(const std::string& skinFile) { load(skinFile); }

void FormTop::skinName_Click(int index) {
    // The first item is the default skin, which the menu always has.
    const std::string name = index == 0 ? "default" : skinNames_.at(static_cast<std::size_t>(index - 1));
    const std::string file = packages_.definitionFileOf(name);
    if (file.empty() || !load(file)) return;
    state_.SkinName = name;
    show();
    if (packages_.firstStart() && !EqualsNoCase(folderNameOfSkin(), name)) {
        playback_.engine->status().showNotice("スキンは次回の起動から変わります");
        noticeTicks_ = kNoticeTicks;
    }
}

// For authors: the package as it is on the disk now, and folders that have come.
void FormTop::reloadSkin() {
    ListSkins();
    if (load(state_.CurrentSkinFile)) show();
}

void FormTop::checkSkin() {
    constexpr int kMostNotes = 20;
    const SkinNotes notes = CheckSkin(files_, state_.CurrentSkinFile);
    dialogs_.message(ReportOf(notes, kMostNotes), notes.empty() ? MessageIcon::Information : MessageIcon::Warning,
                     "スキンの点検 - " + folderNameOfSkin());
}

// False when there was too little memory for it: everything is as it was.
bool FormTop::load(const std::string& skinFile) {
    SplitValues values = splitValues_;
    std::string file;
    std::optional<PreparedSkin> skin;
    try {
        file = packages_.choose(skinFile);
        skin = PrepareSkin(files_, file, values, twips(), wantedScale());
        view_.makeRoomFor(*skin);
    } catch (const std::exception&) {
        return false;
    }
    splitValues_ = values;
    state_.CurrentSkinFile = file;
    state_.Actions.note("skin", folderNameOfSkin());
    takeOver(std::move(*skin));
    return true;
}

void FormTop::takeOver(PreparedSkin skin) {
    const Size size = skin.definition.size;
    const Scale scale = skin.scale;
    const std::optional<Region> region = std::move(skin.definition.region);
    const bool outlineMissing = skin.definition.regionFileMissing;
    if (const auto& lyrics = skin.definition.lyrics) {
        state_.LyricsColors[kSkinLyricsFirst] = static_cast<int>(Surface::ToPixel(lyrics->first));
        state_.LyricsColors[kSkinLyricsSecond] = static_cast<int>(Surface::ToPixel(lyrics->second));
    }
    state_.SkinLacksLyricsArea = !skin.definition.lyrics;
    view_.takeOver(std::move(skin), look());
    view_.setVolume(state_.VolumePercent);
    if (host()) {
        host()->setOpacity(view_.opacity());
        host()->setScale(scale);
    }
    setSize(PixelsToTwips(size.width, twips().x), PixelsToTwips(size.height, twips().y));
    if (region && host()) host()->setRegion(*region);
    formChanged(FormProperty::Picture);
    if (host()) host()->partChanged(0, PartChange::All);
    tellSkin();
    if (outlineMissing) dialogs_.message("Skinの矩形データが見つかりません", MessageIcon::Stop);
}

// To those who offer what the skin has a place for, now that it is shown as a whole.
void FormTop::tellSkin() {
    options_.setAvailable(&Options::LyricsShown, state_.SkinLacksLyricsArea);
    options_.setAvailable(&Options::LyricsLine, state_.SkinLacksLyricsArea);
    if (hooks_.lyricsDisplayMode) hooks_.lyricsDisplayMode(state_.SkinLacksLyricsArea);
    if (!view_.hasOperationPanel()) options_.set(&Options::OperationPanel, false);
    options_.setAvailable(&Options::OperationPanel, view_.hasOperationPanel());
    options_.setAvailable(&Options::SpectrumShown, view_.hasSpectrum());
}

SkinView::Look FormTop::look() const {
    return {options_->OperationPanel, options_->SpectrumShown, options_->TitleAnimation, options_->TitleAnimationSpeed};
}

void FormTop::optionsChanged() {
    view_.setLook(look());
    followScale();
}

std::string FormTop::folderNameOfSkin() const {
    const std::string folder = FolderOf(state_.CurrentSkinFile);
    return folder.empty() ? std::string() : FileNameOf(folder.substr(0, folder.size() - 1));
}

Scale FormTop::wantedScale() const {
    return options_->SkinZoom == kZoomOfMonitor ? Scale::Of(twips()) : Scale(options_->SkinZoom);
}

void FormTop::followScale() {
    if (state_.CurrentSkinFile.empty()) return;
    const Scale scale = FittingScale(wantedScale(), view_.size());
    if (scale == view_.scale()) return;
    if (!view_.hasPicturesFor(scale)) {
        load(state_.CurrentSkinFile);
        return;
    }
    try {
        view_.setScale(scale);
    } catch (const std::exception&) {
        return;  // too little memory for it
    }
    if (host()) {
        host()->setOpacity(view_.opacity());
        host()->setScale(scale);
    }
    if (hooks_.updateLyrics) hooks_.updateLyrics();
}

// Also when the window comes to a monitor of another resolution.
void FormTop::Form_Resize(Size) {
    if (!host()) return;
    view_.setTwips(twips().x);
    followScale();
}

// Menus.

Menu FormTop::menuMain() {
    const auto shown = [](const Form* form) { return form && form->visible(); };
    const MainMenuFacts facts{alwaysOnTop_,
                              options_->OperationPanel,
                              view_.hasOperationPanel(),
                              options_->TitleAnimation,
                              options_->SpectrumShown,
                              view_.hasSpectrum(),
                              shown(windows_.equalizer),
                              shown(windows_.list),
                              shown(windows_.options),
                              options_->LyricsShown,
                              playback_.volume->muted(),
                              state_.ViewType,
                              options_->SkinZoom,
                              folderNameOfSkin(),
                              skinNames_};
    return MainMenu(facts, [this](TopCommand command, int index) { perform(command, index); });
}

Menu FormTop::menuTray() {
    return TrayMenu(state_.PlayerStatus == kPlay, state_.PlayerStatus == kPause,
                    [this](TopCommand command, int index) { perform(command, index); });
}

void FormTop::perform(TopCommand command, int index) {
    switch (command) {
        case TopCommand::AlwaysOnTop: setAlwaysOnTop(!alwaysOnTop_); break;
        case TopCommand::OperationPanel: options_.set(&Options::OperationPanel, !options_->OperationPanel); break;
        case TopCommand::Skin: skinName_Click(index); break;
        case TopCommand::ReloadSkin: reloadSkin(); break;
        case TopCommand::CheckSkin: checkSkin(); break;
        case TopCommand::TitleAnimation: options_.set(&Options::TitleAnimation, !options_->TitleAnimation); break;
        case TopCommand::Spectrum: options_.set(&Options::SpectrumShown, !options_->SpectrumShown); break;
        case TopCommand::Equalizer: toggleWindow(windows_.equalizer); break;
        case TopCommand::About:
            if (windows_.about) showWindow(*windows_.about);
            break;
        case TopCommand::Lyrics: options_.set(&Options::LyricsShown, !options_->LyricsShown); break;
        case TopCommand::Command: performCommand(index); break;
        case TopCommand::Playback: buttons_.perform(index); break;
        case TopCommand::PlayMode: PlayModeLabel_Click(kLeft); break;
        case TopCommand::TimeMode: TimeLabel_Click(kTimeLabel, kLeft); break;
        case TopCommand::TitleMode: TitleLabel_DblClick(); break;
        case TopCommand::Scale: options_.set(&Options::SkinZoom, index); break;
        case TopCommand::OpenFile: openFile(); break;
        case TopCommand::OpenFolder:
            if (hooks_.openFolder) hooks_.openFolder();
            break;
        case TopCommand::Seek: playback_.transport->seekBy(index); break;
        case TopCommand::Volume: setVolumePercent(state_.VolumePercent + index); break;
        case TopCommand::Mute: playback_.volume->mute(); break;
        case TopCommand::NextView: DisplayB_MouseDown(kLeft); break;
        case TopCommand::NextGroup: DisplayB_MouseDown(kRight); break;
        case TopCommand::View: showView(index); break;
        case TopCommand::Restore: restoreFromTray(); break;
        case TopCommand::Quit: unload(); break;
    }
}

void FormTop::performCommand(int index) {
    switch (index) {
        case kListCommand: toggleWindow(windows_.list); break;
        case kOptCommand: toggleWindow(windows_.options); break;
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
        case kMiniCommand: moveToTray(); break;
        case kCloseCommand: unload(); break;
        default: break;
    }
}

void FormTop::Form_ContextMenu(Point at) {
    if (!buttons_.mayAct()) return;
    popup(menuMain(), at);
}

// Windows, above others.

void FormTop::setAlwaysOnTop(bool on) {
    alwaysOnTop_ = on;
    setTopmost(on);
    for (Form* form : {windows_.list, windows_.options, windows_.lyrics, windows_.equalizer, windows_.tag,
                       windows_.convert, windows_.about}) {
        if (form && form->visible()) form->setTopmost(on);
    }
}

void FormTop::showWindow(Form& form, bool activate) {
    state_.Actions.note("show", form.name());
    form.setTopmost(alwaysOnTop_);
    form.show(activate);
    if (&form == windows_.list) state_.ListShown = true;
}

void FormTop::toggleWindow(Form* form) {
    if (!form) return;
    if (!form->visible() || form->minimised()) return showWindow(*form);
    form->hide();
    if (form == windows_.list) state_.ListShown = false;
}

// The notification area.

std::string FormTop::trayTip() const {
    const std::string& title = mainLabel[kTitleLabel].caption();
    if (state_.CurrentFile.empty()) return "Quenlox";
    if (state_.PlayerStatus != kPlay) return title;
    return title + "／" + mainLabel[kTimeLabel].caption();
}

void FormTop::moveToTray() {
    if (tray_.shown() || !tray_.put()) return;
    hide();
    view_.setOnScreen(false);
}

void FormTop::restoreFromTray() {
    if (!tray_.shown()) return;
    tray_.take();
    comeBack();
}

void FormTop::comeBack() {
    view_.setOnScreen(true);
    show();
    // Started in the notification area it has not been shown yet.
    if (state_.ListShown && windows_.list && !windows_.list->visible()) showWindow(*windows_.list, false);
    if (!alwaysOnTop_) return;
    setTopmost(true);
    for (Form* form : {windows_.list, windows_.lyrics}) {
        if (form && form->visible()) form->setTopmost(true);
    }
}

void FormTop::popupTrayMenu() {
    if (!host()) return;
    host()->bringToFront();
    // The menu is wanted at the pointer, wherever the hidden window lies.
    popup(menuTray(), host()->fromScreen(shell_.cursor()));
}

void FormTop::Form_Unload(bool& cancel) {
    cancel = false;
    tray_.take();
    for (Timer* timer : {&Timer1, &Timer2, &Timer3, &Timer4, &Timer5, &Timer6, &Timer7, &TimerTitle}) {
        timer->setEnabled(false);
    }
    if (hooks_.unload) hooks_.unload();
}

}  // namespace quenlox
