#include "skin/skin_view.h"

#include <algorithm>
#include <utility>

namespace quenlox {
namespace {

Point Corner(const Rect& r) { return {r.left, r.top}; }

std::size_t Area(Size size) { return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height); }

}  // namespace

SkinView::SkinView(Form& form, TopControls& controls, TextPainter& painter)
    : form_(form),
      controls_(controls),
      painter_(painter),
      title_(controls.mainLabel[kTitleLabel], controls.TimerTitle, painter) {}

// A skin is put in its place.

void SkinView::makeRoomFor(const PreparedSkin& skin) {
    const SkinDefinition& definition = skin.definition;
    const Rect lyrics = definition.lyrics ? definition.lyrics->bounds : Rect{};
    makeRoom(definition.size, lyrics, skin.scale, definition.fineness);
}

// What was drawn before keeps its room and its pixels.
void SkinView::makeRoom(Size window, const Rect& lyrics, Scale scale, int fineness) {
    composed_.reserve(Area(scale.out(window)));
    if (scale.percent() != 100 * fineness) pictures_.reserve(Area({window.width * fineness, window.height * fineness}));
    const Rect shown = scale.out(lyrics);
    controls_.LyricsPicture.surface().reserve(Area({shown.width, shown.height}));
}

void SkinView::takeOver(PreparedSkin skin, const Look& look) {
    placing_ = true;
    SkinDefinition& definition = skin.definition;
    look_ = look;
    look_.operationPanel = look.operationPanel && definition.displayA;
    twips_ = skin.twips;
    scale_ = skin.scale;
    size_ = definition.size;
    fineness_ = definition.fineness;
    finer_ = std::move(definition.finer);
    softShape_ = definition.opacity ? std::move(*definition.opacity) : Surface();
    opacity_ = std::move(skin.opacity);
    background_ = definition.background;
    placeTexts(skin);
    placeButtons(definition);
    placeDisplays(definition);
    takePictures(definition);
    placeBars(definition);
    showParts();
    makeSurfaces();
    placing_ = false;
    repaintAll();
    restartTitle();
}

void SkinView::makeSurfaces() {
    const Size shown = scale_.out(size_);
    composed_.resize(shown.width, shown.height);
    if (&pictures() == &pictures_) pictures_.resize(size_.width * fineness_, size_.height * fineness_);
    PictureBox& lyrics = controls_.LyricsPicture;
    const Rect area = scale_.out(lyrics.bounds());
    if (lyrics.visible()) lyrics.surface().resize(area.width, area.height, lyrics.backColor());
    stale_.clear();
}

void SkinView::setScale(Scale scale) {
    makeRoom(size_, controls_.LyricsPicture.bounds(), scale, fineness_);
    opacity_ = OpacityOnScreen(softShape_, fineness_, size_, scale);
    scale_ = scale;
    makeSurfaces();
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
    const Point b = skin.displayB.value_or(Corner(controls_.DisplayB.bounds()));
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
    if (skin.back) std::swap(back_, *skin.back), backFineness_ = fineness_;
    if (skin.levelPicture) std::swap(level_, *skin.levelPicture), levelFineness_ = fineness_;
    const auto take = [&](PictureBox& box, std::optional<Surface>& picture) {
        if (!picture) return;
        std::swap(box.surface(), *picture);
        const Point at = Corner(box.bounds());
        box.setBounds({at.x, at.y, box.surface().width() / fineness_, box.surface().height() / fineness_});
    };
    take(controls_.SeekBar, skin.barPicture);
    take(controls_.VolumeBar, skin.volumePicture);
    take(controls_.DisplayA, skin.panel);
    for (int n = 0; n < kButtonCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        take(controls_.cmdPicture[n], skin.buttonPictures[i].released);
        take(controls_.cmdPicture[n + TopControls::kPressed], skin.buttonPictures[i].pressed);
        take(controls_.taskPicture[n], skin.commandPictures[i].released);
        take(controls_.taskPicture[n + TopControls::kPressed], skin.commandPictures[i].pressed);
    }
}

void SkinView::placeBars(const SkinDefinition& skin) {
    const auto place = [&](PictureBox& box, Point (*placeOf)(const SkinDefinition&, Size), bool hidden) {
        const Size size{box.bounds().width, box.bounds().height};
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
    title_.restart(styleOf(title), scale_, look_.titleRuns && onScreen_);
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
    if (markStale(where) && form_.host()) form_.host()->invalidate(Intersect(scale_.covering(where), composed_.rect()));
}

void SkinView::repaintAll() { repaint({0, 0, size_.width, size_.height}); }

// Many times a second: brought to the screen at once.
void SkinView::animate(const Rect& where) {
    const bool seen = form_.host() && form_.visible();
    if (markStale(where) && seen) form_.host()->paint(Intersect(scale_.covering(where), composed_.rect()));
}

// Apart from each other: the time and the seek bar change together, and what lies between them does not. False when
// nothing of it is in the window.
bool SkinView::markStale(const Rect& place) {
    const Rect where = Intersect(scale_.covering(place), composed_.rect());
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
            if (!control->visible()) continue;
            const Rect shown = Intersect(scale_.covering(control->bounds()), composed_.rect());
            if (Intersect(shown, where).empty() || Unite(shown, where) == where) continue;
            where = Unite(shown, where);
            grown = true;
        }
    }
    drawPictures(scale_.behind(where));
    if (&pictures() == &pictures_) {
        composed_.enlarge(pictures_, {}, RatioTo(scale_, fineness_), where);
    }
    drawScreens(where);
    drawLabels(where);
}

// A place of the skin on its pictures.
Rect SkinView::finely(const Rect& r) const {
    return {r.left * fineness_, r.top * fineness_, r.width * fineness_, r.height * fineness_};
}

SkinView::FinePicture SkinView::pictureOf(const PictureBox& box, Point at) {
    return {box.surface(), std::max(1, box.surface().width() / std::max(1, box.bounds().width)), at};
}

// `where` is a part of the pictures.
void SkinView::put(const FinePicture& picture, const Rect& where) {
    const auto& [pixels, fineness, at] = picture;
    if (fineness != fineness_) {
        const Point corner{at.x * fineness, at.y * fineness};
        return pictures().enlarge(pixels, corner, {fineness_, fineness}, where);
    }
    const Rect part = Intersect(where, {at.x * fineness_, at.y * fineness_, pixels.width(), pixels.height()});
    pictures().copy(pixels, {part.left - at.x * fineness_, part.top - at.y * fineness_, part.width, part.height},
                    Corner(part));
}

// The pixel that stands at a place of the pictures.
Surface::Pixel SkinView::pixelOf(const FinePicture& picture, Point at) const {
    const auto& [pixels, fineness, corner] = picture;
    return pixels.at(at.x * fineness / fineness_ - corner.x * fineness,
                     at.y * fineness / fineness_ - corner.y * fineness);
}

void SkinView::drawPictures(const Rect& where) {
    const Rect part = Intersect(finely(where), pictures().rect());
    const Rect ground = finely({0, 0, back_.width() / backFineness_, back_.height() / backFineness_});
    if (Intersect(part, ground) != part) pictures().fillRect(part, background_);
    put({back_, backFineness_, {}}, part);
    const auto touched = [&](const Control& control) {
        return control.visible() && !Intersect(control.bounds(), where).empty();
    };
    const auto draw = [&](const PictureBox& box) {
        if (touched(box)) put(pictureOf(box, Corner(box.bounds())), finely(box.bounds()));
    };
    draw(controls_.DisplayA);
    for (int n = 0; n < kButtonCount; ++n) {
        draw(controls_.cmdPicture[n]);
        draw(controls_.taskPicture[n]);
    }
    drawHeld(where);
    draw(controls_.VolumeBar);
    if (touched(controls_.SeekBar)) {
        Rect filled = finely(controls_.SeekBar.bounds());
        filled.width = filledWidth();
        put(pictureOf(controls_.SeekBar, Corner(controls_.SeekBar.bounds())), filled);
    }
}

// The pictures that change by themselves, in the order in which they lie over each other.
void SkinView::drawScreens(const Rect& where) {
    const auto touched = [&](const Control& control) {
        return control.visible() && !Intersect(scale_.covering(control.bounds()), where).empty();
    };
    const PictureBox &lyrics = controls_.LyricsPicture, &panel = controls_.DisplayB;
    if (touched(lyrics)) composed_.copy(lyrics.surface(), Corner(scale_.out(lyrics.bounds())));
    if (touched(panel)) {
        composed_.enlarge(panel.surface(), Corner(panel.bounds()), RatioTo(scale_, 1), scale_.covering(panel.bounds()));
    }
    if (touched(controls_.DisplayC)) drawFigures();
    if (touched(controls_.DisplayD)) drawLevel();
}

void SkinView::drawHeld(const Rect& where) {
    if (!held_) return;
    const bool column = held_->kind == TopPart::Kind::Column;
    const auto& row = held_->kind == TopPart::Kind::Command ? controls_.taskPicture : controls_.cmdPicture;
    const PictureBox& button = column ? controls_.DisplayA : row[held_->index];
    if (!button.visible() || Intersect(button.bounds(), where).empty()) return;
    if (column) return drawDarkColumn(finely(controls_.column(held_->index)));
    put(pictureOf(row[held_->index + TopControls::kPressed], Corner(button.bounds())), finely(button.bounds()));
}

// Only what the panel's picture draws gets darker, not the background that it repeats around it.
void SkinView::drawDarkColumn(const Rect& column) {
    const FinePicture panel = pictureOf(controls_.DisplayA, Corner(controls_.DisplayA.bounds()));
    const FinePicture back{back_, backFineness_, {}};
    const Rect ground = finely({0, 0, back_.width() / backFineness_, back_.height() / backFineness_});
    for (int y = column.top; y < column.bottom(); ++y) {
        for (int x = column.left; x < column.right(); ++x) {
            const auto under = ground.contains({x, y}) ? pixelOf(back, {x, y}) : Surface::ToPixel(background_);
            if (pixelOf(panel, {x, y}) != under) pictures().blend({x, y, 1, 1}, {0, 0, 0}, 0.4);
        }
    }
}

void SkinView::drawFigures() {
    const Rect place = scale_.out(controls_.DisplayC.bounds());
    composed_.fillRect(place, controls_.DisplayC.backColor());
    TextStyle style = styleOf(controls_.mainLabel[kInformationLabel]);
    style.centred = true;
    painter_.draw(composed_, place, figures_, style);
}

// The picture is that of the whole volume; its part for the present one stands at the bottom of the display.
void SkinView::drawLevel() {
    const Rect& place = controls_.DisplayD.bounds();
    const double loud = volume_ / 100.0;
    const int top = RoundHalfToEven(place.height * levelFineness_ * (1 - loud));
    const Rect shown = scale_.out(place);
    composed_.fillRect(shown, controls_.DisplayD.backColor());
    composed_.enlarge(level_, {place.left * levelFineness_, place.top * levelFineness_ + top},
                      RatioTo(scale_, levelFineness_), shown);
}

void SkinView::drawLabels(const Rect& where) {
    for (int n = 0; n < kLabelCount; ++n) {
        const Label& label = controls_.mainLabel[n];
        if (!label.visible() || Intersect(scale_.covering(label.bounds()), where).empty()) continue;
        TextStyle style = styleOf(label);
        const Rect place = scale_.out(label.bounds());
        if (n == kTitleLabel) {
            title_.draw(composed_, style);
            continue;
        }
        style.ellipsis = n == kArtistLabel;
        painter_.draw(composed_, place, label.caption(), style);
    }
}

TextStyle SkinView::styleOf(const Label& label) const {
    TextStyle style;
    style.font = label.font();
    style.color = label.foreColor();
    style.dotsPerInch = 1440.0 / (form_.host() ? form_.host()->twipsPerPixel().x : 15.0) * scale_.factor();
    style.vertically = true;
    return style;
}

}  // namespace quenlox
