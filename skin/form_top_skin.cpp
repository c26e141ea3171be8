// Loading a skin and applying it to the main window, in the order in which the format is defined.
#include "skin/form_top.h"

#include "text/paths.h"

namespace quenlox {
namespace {


Font ScaledFont(int fontField, TwipsPerPixel twips) {
    Font font;
    // The field is right on a monitor of 96 dots per inch, where a pixel has 15 twips.
    font.points = fontField * twips.x / 15.0;
    return font;
}

void PutPicture(PictureBox& box, std::optional<Surface>& picture) {
    if (!picture) return;  // a missing picture leaves the one that was there
    box.surface() = std::move(*picture);
    box.setBounds({box.bounds().left, box.bounds().top, box.surface().width(), box.surface().height()});
    box.refresh();
}

}  // namespace

void FormTop::LoadSkinNamed(const std::string& skinName) {
    if (skinName.empty()) return LoadSkin(packages_.defaultDefinitionFile());
    LoadSkin(packages_.definitionFileOf(skinName));
}

void FormTop::LoadSkin(const std::string& skinFile) {
    state_.CurrentSkinFile = packages_.choose(skinFile);
    state_.Actions.note("skin", FolderNameOfSkin());
    apply(ReadSkin(files_, state_.CurrentSkinFile, splitValues_));
}

void FormTop::ListSkins() { skinNames_ = packages_.ListSkins(); }

void FormTop::skinName_Click(int index) {
    // The first item is the default skin, which the menu always has.
    const std::string name = index == 0 ? "default" : skinNames_.at(static_cast<std::size_t>(index - 1));
    const std::string file = packages_.definitionFileOf(name);
    if (file.empty()) return;
    LoadSkin(file);
    state_.SkinName = name;
    show();
}

void FormTop::apply(SkinDefinition skin) {
    const TwipsPerPixel twips = host() ? host()->twipsPerPixel() : TwipsPerPixel{};
    setSize(PixelsToTwips(skin.size.width, twips.x), PixelsToTwips(skin.size.height, twips.y));
    background_ = skin.background;
    applyLabels(skin);
    applyButtons(skin);
    applyDisplays(skin);
    applyPictures(skin);

    base_.resize(skin.size.width, skin.size.height, background_);
    base_.copy(backPicture_, {0, 0});
    composed_ = base_;
    applyOutline(skin);
    drawVolumeLevel();
    repaint(composed_.rect());
    restartTitle();
    formChanged(FormProperty::Picture);
    if (host()) host()->partChanged(0, PartChange::All);
}

void FormTop::applyLabels(const SkinDefinition& skin) {
    const TwipsPerPixel twips = host() ? host()->twipsPerPixel() : TwipsPerPixel{};
    fontTwips_ = twips.x;
    for (int n = 0; n < kLabelCount; ++n) {
        Label& label = mainLabel[n];
        const auto& place = skin.labels[static_cast<std::size_t>(n)];
        label.setVisible(place.has_value());
        if (!place) continue;
        label.setBounds(place->bounds);
        label.setFont(ScaledFont(place->fontField, twips));
        label.setForeColor(place->color);
    }
    LyricsPicture.setVisible(skin.lyrics.has_value());
    options_.setAvailable(&Options::LyricsShown, !skin.lyrics);
    options_.setAvailable(&Options::LyricsLine, !skin.lyrics);
    state_.SkinLacksLyricsArea = !skin.lyrics;
    if (skin.lyrics) {
        LyricsPicture.setBounds(skin.lyrics->bounds);
        LyricsPicture.setFont(ScaledFont(skin.lyrics->fontField, twips));
        LyricsPicture.setBackColor(skin.lyrics->background);
        LyricsPicture.surface().resize(skin.lyrics->bounds.width, skin.lyrics->bounds.height, skin.lyrics->background);
        state_.LyricsColors[kSkinLyricsFirst] = static_cast<int>(Surface::ToPixel(skin.lyrics->first));
        state_.LyricsColors[kSkinLyricsSecond] = static_cast<int>(Surface::ToPixel(skin.lyrics->second));
    }
    if (hooks_.lyricsDisplayMode) hooks_.lyricsDisplayMode(state_.SkinLacksLyricsArea);
}

// On a monitor of another resolution type stays as many pixels high as the skin wants it.
void FormTop::Form_Resize(Size) {
    const double twips = host() ? host()->twipsPerPixel().x : fontTwips_;
    if (twips == fontTwips_) return;
    const auto adapt = [&](Control& control) {
        Font font = control.font();
        font.points *= twips / fontTwips_;
        control.setFont(font);
    };
    for (int n = 0; n < kLabelCount; ++n) adapt(mainLabel[n]);
    adapt(LyricsPicture);
    fontTwips_ = twips;
    restartTitle();
}

void FormTop::applyButtons(const SkinDefinition& skin) {
    const auto place = [](PictureBox& button, const std::optional<Point>& at, bool shown) {
        button.setVisible(at && shown);
        if (at) button.move(at->x, at->y);
    };
    for (int n = 0; n < kButtonCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        hasButton_[i] = skin.buttons[i].has_value();
        place(cmdPicture[n], skin.buttons[i], !options_->OperationPanel);
    }
    hasDisplayA_ = skin.displayA.has_value();
    if (skin.displayA) DisplayA.move(skin.displayA->x, skin.displayA->y);
    DisplayA.setVisible(skin.displayA && options_->OperationPanel);
    if (!skin.displayA) options_.set(&Options::OperationPanel, false);
    options_.setAvailable(&Options::OperationPanel, skin.displayA.has_value());
    showButtonsOrPanel();
    for (int n = 0; n < kButtonCount; ++n) place(taskPicture[n], skin.commands[static_cast<std::size_t>(n)], true);
}

void FormTop::showButtonsOrPanel() {
    const bool panel = hasDisplayA_ && options_->OperationPanel;
    for (int n = 0; n < kButtonCount; ++n) cmdPicture[n].setVisible(hasButton_[static_cast<std::size_t>(n)] && !panel);
    DisplayA.setVisible(panel);
}

void FormTop::applyDisplays(const SkinDefinition& skin) {
    hasDisplayB_ = skin.displayB.has_value();
    options_.setAvailable(&Options::SpectrumShown, hasDisplayB_);
    DisplayB.setBounds({skin.displayB ? skin.displayB->x : DisplayB.bounds().left,
                        skin.displayB ? skin.displayB->y : DisplayB.bounds().top, kPanelDisplay.width,
                        kPanelDisplay.height});
    DisplayB.surface().resize(kPanelDisplay.width, kPanelDisplay.height);
    showPanelDisplay();
    const auto place = [](PictureBox& box, const std::optional<SkinDefinition::Display>& display) {
        box.setVisible(display.has_value());
        if (!display) return;
        box.setBounds(display->bounds);
        box.setBackColor(display->background);
        box.surface().resize(display->bounds.width, display->bounds.height, display->background);
    };
    place(DisplayC, skin.displayC);
    place(DisplayD, skin.displayD);
}

void FormTop::showPanelDisplay() {
    const bool shown = hasDisplayB_ && options_->SpectrumShown;
    DisplayB.setVisible(shown);
    // Nothing animates while nobody can see it.
    Timer2.setEnabled(shown && !inTray_);
}

void FormTop::applyPictures(SkinDefinition& skin) {
    if (skin.back) backPicture_ = std::move(*skin.back);
    PutPicture(SeekBar, skin.barPicture);
    const bool newVolume = skin.volumePicture.has_value();
    PutPicture(VolumeBar, skin.volumePicture);
    if (skin.levelPicture) {
        levelPicture_ = std::move(*skin.levelPicture);
    } else if (newVolume) {
        levelPicture_ = VolumeBar.surface();
    }
    PutPicture(DisplayA, skin.panel);
    placeBars(skin);
    for (int n = 0; n < kButtonCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        PutPicture(cmdPicture[n], skin.buttonPictures[i].released);
        PutPicture(cmdPicture[n + kPressed], skin.buttonPictures[i].pressed);
        PutPicture(taskPicture[n], skin.commandPictures[i].released);
        PutPicture(taskPicture[n + kPressed], skin.commandPictures[i].pressed);
    }
    renderDisplayC();
}

void FormTop::placeBars(const SkinDefinition& skin) {
    const auto place = [](PictureBox& box, Point at, bool hidden) {
        box.setVisible(!hidden && !box.surface().empty());
        box.move(at.x, at.y);
    };
    const auto sizeOf = [](const PictureBox& box) { return Size{box.surface().width(), box.surface().height()}; };
    place(SeekBar, PlaceOfBar(skin, sizeOf(SeekBar)), skin.barHidden);
    place(VolumeBar, PlaceOfVolume(skin, sizeOf(VolumeBar)), skin.volumeHidden);
}

void FormTop::applyOutline(const SkinDefinition& skin) {
    if (skin.box) {
        if (host()) host()->setRegion({{0, 0, skin.size.width, skin.size.height}});
    } else if (skin.regionFileMissing) {
        dialogs_.message("Skinの矩形データが見つかりません", MessageIcon::Stop);
    } else if (skin.region && host()) {
        host()->setRegion(*skin.region);
    }
}

}  // namespace quenlox
