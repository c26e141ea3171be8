#include "skin/skin_view.h"

#include <algorithm>
#include <utility>

namespace quenlox {
namespace {

void Take(PictureBox& box, std::optional<Surface>& picture) {
    if (!picture) return;
    std::swap(box.surface(), *picture);
    box.setBounds({box.bounds().left, box.bounds().top, box.surface().width(), box.surface().height()});
}

Point Corner(const Control& control) { return {control.bounds().left, control.bounds().top}; }

}  // namespace

SkinView::SkinView(Form& form, TopControls& controls, TextPainter& painter)
    : form_(form),
      controls_(controls),
      painter_(painter),
      title_(controls.mainLabel[kTitleLabel], controls.TimerTitle, painter) {
    // What is drawn has the room that the largest skin wants: two of them need not be held while one replaces the
    // other.
    composed_.reserve(kMostWindowPixels);
    controls.LyricsPicture.surface().reserve(kMostWindowPixels);
}

// A skin is put in its place.

void SkinView::takeOver(PreparedSkin skin, const Look& look) {
    placing_ = true;
    SkinDefinition& definition = skin.definition;
    look_ = look;
    look_.operationPanel = look.operationPanel && definition.displayA;
    twips_ = skin.twips;
    background_ = definition.background;
    placeTexts(skin);
    placeButtons(definition);
    placeDisplays(definition);
    takePictures(definition);
    placeBars(definition);
    showParts();
    composed_.resize(definition.size.width, definition.size.height);
    stale_.clear();
    placing_ = false;
    repaintAll();
    restartTitle();
}

void SkinView::placeTexts(const PreparedSkin& skin) {
    for (int n = 0; n < kLabelCount; ++n) {
        Label& label = controls_.mainLabel[n];
        const auto& text = skin.definition.labels[static_cast<std::size_t>(n)];
        label.setVisible(text.has_value());
        if (!text) continue;
        label.setBounds(text->bounds);
        label.setFont(skin.labelFonts[static_cast<std::size_t>(n)]);
        label.setForeColor(text->color);
    }
    PictureBox& lyrics = controls_.LyricsPicture;
    const auto& area = skin.definition.lyrics;
    lyrics.setVisible(area.has_value());
    if (!area) return;
    lyrics.setBounds(area->bounds);
    lyrics.setFont(skin.lyricsFont);
    lyrics.setBackColor(area->background);
    lyrics.surface().resize(area->bounds.width, area->bounds.height, area->background);
}

void SkinView::placeButtons(const SkinDefinition& skin) {
    for (int n = 0; n < kButtonCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        hasButton_[i] = skin.buttons[i].has_value();
        if (skin.buttons[i]) controls_.cmdPicture[n].move(skin.buttons[i]->x, skin.buttons[i]->y);
        controls_.taskPicture[n].setVisible(skin.commands[i].has_value());
        if (skin.commands[i]) controls_.taskPicture[n].move(skin.commands[i]->x, skin.commands[i]->y);
    }
}

void SkinView::placeDisplays(const SkinDefinition& skin) {
    hasDisplayA_ = skin.displayA.has_value();
    if (skin.displayA) controls_.DisplayA.move(skin.displayA->x, skin.displayA->y);
    hasDisplayB_ = skin.displayB.has_value();
    const Point b = skin.displayB.value_or(Corner(controls_.DisplayB));
    controls_.DisplayB.setBounds({b.x, b.y, kPanelDisplay.width, kPanelDisplay.height});
    controls_.DisplayB.surface().fill({});
    const auto place = [](PictureBox& box, const std::optional<SkinDefinition::Display>& display) {
        box.setVisible(display.has_value());
        if (!display) return;
        box.setBounds(display->bounds);
        box.setBackColor(display->background);
    };
    place(controls_.DisplayC, skin.displayC);
    place(controls_.DisplayD, skin.displayD);
}

void SkinView::takePictures(SkinDefinition& skin) {
    if (skin.back) std::swap(back_, *skin.back);
    if (skin.levelPicture) std::swap(level_, *skin.levelPicture);
    Take(controls_.SeekBar, skin.barPicture);
    Take(controls_.VolumeBar, skin.volumePicture);
    Take(controls_.DisplayA, skin.panel);
    for (int n = 0; n < kButtonCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        Take(controls_.cmdPicture[n], skin.buttonPictures[i].released);
        Take(controls_.cmdPicture[n + TopControls::kPressed], skin.buttonPictures[i].pressed);
        Take(controls_.taskPicture[n], skin.commandPictures[i].released);
        Take(controls_.taskPicture[n + TopControls::kPressed], skin.commandPictures[i].pressed);
    }
}

void SkinView::placeBars(const SkinDefinition& skin) {
    const auto place = [&](PictureBox& box, Point (*placeOf)(const SkinDefinition&, Size), bool hidden) {
        const Size size{box.surface().width(), box.surface().height()};
        box.setVisible(!hidden && !box.surface().empty());
        const Point at = placeOf(skin, size);
        box.move(at.x, at.y);
    };
    place(controls_.SeekBar, PlaceOfBar, skin.barHidden);
    place(controls_.VolumeBar, PlaceOfVolume, skin.volumeHidden);
}

// What is to be seen.

void SkinView::setLook(const Look& look) {
    look_ = look;
    showParts();
    restartTitle();
}

void SkinView::setOnScreen(bool on) {
    onScreen_ = on;
    showParts();
    restartTitle();
}

void SkinView::showParts() {
    const bool panel = hasDisplayA_ && look_.operationPanel;
    for (int n = 0; n < kButtonCount; ++n) {
        controls_.cmdPicture[n].setVisible(hasButton_[static_cast<std::size_t>(n)] && !panel);
    }
    controls_.DisplayA.setVisible(panel);
    const bool spectrum = hasDisplayB_ && look_.spectrumShown;
    controls_.DisplayB.setVisible(spectrum);
    controls_.Timer2.setEnabled(spectrum && onScreen_);
}

void SkinView::setTwips(double twips) {
    if (twips == twips_) return;
    const auto adapt = [&](Control& control) {
        Font font = control.font();
        font.points *= twips / twips_;
        control.setFont(font);
    };
    for (int n = 0; n < kLabelCount; ++n) adapt(controls_.mainLabel[n]);
    adapt(controls_.LyricsPicture);
    twips_ = twips;
    restartTitle();
}

void SkinView::setBar(double fraction) {
    const int before = filledWidth();
    bar_ = std::clamp(fraction, 0.0, 1.0);
    if (filledWidth() != before) repaint(controls_.SeekBar.bounds());
}

void SkinView::setVolume(int percent) {
    volume_ = percent;
    if (controls_.DisplayD.visible()) repaint(controls_.DisplayD.bounds());
}

void SkinView::setFigures(const std::string& text) {
    if (text == figures_) return;
    figures_ = text;
    if (controls_.DisplayC.visible()) repaint(controls_.DisplayC.bounds());
}

void SkinView::setHeld(const std::optional<HeldButton>& held) {
    const auto show = [this](const std::optional<HeldButton>& button) {
        if (!button) return;
        const bool column = button->kind == TopPart::Kind::Column;
        const auto& row = button->kind == TopPart::Kind::Command ? controls_.taskPicture : controls_.cmdPicture;
        repaint(column ? controls_.DisplayA.bounds() : row[button->index].bounds());
    };
    show(std::exchange(held_, held));
    show(held_);
}

void SkinView::restartTitle() {
    const Label& title = controls_.mainLabel[kTitleLabel];
    title_.restart(styleOf(title), look_.titleRuns && onScreen_);
    repaint(title.bounds());
}

void SkinView::moveTitle() {
    if (title_.tick(look_.titleSpeed)) animate(controls_.mainLabel[kTitleLabel].bounds());
}

void SkinView::controlChanged(const Control& control, Property property) {
    if (placing_ || property == Property::Tooltip) return;
    if (property == Property::Bounds) return repaintAll();  // the old place is not known any more
    if (&control == &controls_.DisplayB && property == Property::Picture) return animate(control.bounds());
    repaint(control.bounds());
}

// Bringing it to the screen.

void SkinView::repaint(const Rect& where) {
    if (markStale(where) && form_.host()) form_.host()->invalidate(Intersect(where, composed_.rect()));
}

// Many times a second: brought to the screen at once.
void SkinView::animate(const Rect& where) {
    const bool seen = form_.host() && form_.visible();
    if (markStale(where) && seen) form_.host()->paint(Intersect(where, composed_.rect()));
}

// Apart from each other: the time and the seek bar change together, and what lies between them does not. False when
// nothing of it is in the window.
bool SkinView::markStale(const Rect& place) {
    const Rect where = Intersect(place, composed_.rect());
    if (placing_ || where.empty()) return false;
    for (const Rect& stale : stale_) {
        if (Unite(stale, where) == stale) return true;
    }
    std::erase_if(stale_, [&](const Rect& stale) { return Unite(stale, where) == where; });
    stale_.push_back(where);
    return true;
}

const Surface& SkinView::picture() {
    for (const Rect& where : std::exchange(stale_, {})) compose(where);
    return composed_;
}

// Composing.

void SkinView::compose(Rect where) {
    // A control is drawn whole, so the part to draw grows until no control stands across its border.
    for (bool grown = true; grown;) {
        grown = false;
        for (const Control* control : form_.controls()) {
            const Rect shown = control->visible() ? Intersect(control->bounds(), composed_.rect()) : Rect{};
            if (Intersect(shown, where).empty() || Unite(shown, where) == where) continue;
            where = Unite(shown, where);
            grown = true;
        }
    }
    drawGround(where);
    drawBoxes(where);
    drawLabels(where);
}

void SkinView::drawGround(const Rect& where) {
    if (Intersect(where, back_.rect()) != where) composed_.fillRect(where, background_);
    composed_.copy(back_, where, {where.left, where.top});
}

void SkinView::drawBoxes(const Rect& where) {
    const auto touched = [&](const Control& control) {
        return control.visible() && !Intersect(control.bounds(), where).empty();
    };
    const auto draw = [&](const PictureBox& box) {
        if (touched(box)) composed_.copy(box.surface(), Corner(box));
    };
    draw(controls_.DisplayA);
    for (int n = 0; n < kButtonCount; ++n) {
        draw(controls_.cmdPicture[n]);
        draw(controls_.taskPicture[n]);
    }
    drawHeld(where);
    draw(controls_.VolumeBar);
    if (touched(controls_.SeekBar)) {
        const Rect& bar = controls_.SeekBar.bounds();
        composed_.copy(controls_.SeekBar.surface(), {0, 0, filledWidth(), bar.height}, {bar.left, bar.top});
    }
    draw(controls_.LyricsPicture);
    draw(controls_.DisplayB);
    if (touched(controls_.DisplayC)) drawFigures();
    if (touched(controls_.DisplayD)) drawLevel();
}

void SkinView::drawHeld(const Rect& where) {
    if (!held_) return;
    const bool column = held_->kind == TopPart::Kind::Column;
    const auto& row = held_->kind == TopPart::Kind::Command ? controls_.taskPicture : controls_.cmdPicture;
    const PictureBox& button = column ? controls_.DisplayA : row[held_->index];
    if (!button.visible() || Intersect(button.bounds(), where).empty()) return;
    if (column) return drawDarkColumn(controls_.column(held_->index));
    composed_.copy(row[held_->index + TopControls::kPressed].surface(), Corner(button));
}

// Only what the panel's picture draws gets darker, not the background that it repeats around it.
void SkinView::drawDarkColumn(const Rect& column) {
    const Surface& panel = controls_.DisplayA.surface();
    const Point corner = Corner(controls_.DisplayA);
    for (int y = column.top; y < column.bottom(); ++y) {
        for (int x = column.left; x < column.right(); ++x) {
            const auto ground = back_.rect().contains({x, y}) ? back_.at(x, y) : Surface::ToPixel(background_);
            if (panel.at(x - corner.x, y - corner.y) != ground) composed_.blend({x, y, 1, 1}, {0, 0, 0}, 0.4);
        }
    }
}

void SkinView::drawFigures() {
    const Rect& place = controls_.DisplayC.bounds();
    composed_.fillRect(place, controls_.DisplayC.backColor());
    TextStyle style = styleOf(controls_.mainLabel[kInformationLabel]);
    style.centred = true;
    painter_.draw(composed_, place, figures_, style);
}

void SkinView::drawLevel() {
    const Rect& place = controls_.DisplayD.bounds();
    const double loud = volume_ / 100.0;
    const int top = RoundHalfToEven(place.height * (1 - loud));
    const int height = std::min(RoundHalfToEven(place.height * loud), place.height - top);
    composed_.fillRect(place, controls_.DisplayD.backColor());
    composed_.copy(level_, {0, 0, place.width, height}, {place.left, place.top + top});
}

void SkinView::drawLabels(const Rect& where) {
    for (int n = 0; n < kLabelCount; ++n) {
        const Label& label = controls_.mainLabel[n];
        if (!label.visible() || Intersect(label.bounds(), where).empty()) continue;
        TextStyle style = styleOf(label);
        if (n == kTitleLabel) {
            title_.draw(composed_, style);
            continue;
        }
        style.ellipsis = n == kArtistLabel;
        painter_.draw(composed_, label.bounds(), label.caption(), style);
    }
}

TextStyle SkinView::styleOf(const Label& label) const {
    TextStyle style;
    style.font = label.font();
    style.color = label.foreColor();
    style.dotsPerInch = 1440.0 / (form_.host() ? form_.host()->twipsPerPixel().x : 15.0);
    style.vertically = true;
    return style;
}

}  // namespace quenlox
