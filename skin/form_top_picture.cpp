// What the main window looks like: the kept background, and over it the controls that lie in the part that has changed.
#include <algorithm>
#include <utility>

#include "skin/form_top.h"

namespace quenlox {
void FormTop::controlChangedHere(Control& control, Property property) {
    if (property == Property::Tooltip) return;
    if (property == Property::Bounds) return repaint(composed_.rect());  // the old place is not known any more
    if (&control == &DisplayB && property == Property::Picture) return animate(control.bounds());
    repaint(control.bounds());
    if (property == Property::Caption) tellPart(control, PartChange::Name);
}

void FormTop::repaint(const Rect& where) {
    const Rect inside = Intersect(where, composed_.rect());
    if (inside.empty()) return;
    markStale(inside);
    if (host()) host()->invalidate(inside);
}

// Many times a second: brought to the screen at once.
void FormTop::animate(const Rect& where) {
    const Rect inside = Intersect(where, composed_.rect());
    if (inside.empty()) return;
    markStale(inside);
    if (host() && visible()) host()->paint(inside);
}

const Surface* FormTop::picture() {
    for (const Rect& where : std::exchange(stale_, {})) compose(where);
    return &composed_;
}

// Apart from each other: the time and the seek bar change together, and what lies between them does not.
void FormTop::markStale(const Rect& where) {
    for (const Rect& stale : stale_) {
        if (Unite(stale, where) == stale) return;
    }
    std::erase_if(stale_, [&](const Rect& stale) { return Unite(stale, where) == where; });
    stale_.push_back(where);
}

void FormTop::compose(Rect where) {
    // A control is drawn whole, so the part to draw grows until no control stands across its border.
    for (bool grown = true; grown;) {
        grown = false;
        for (const Control* control : controls()) {
            const Rect shown = control->visible() ? Intersect(control->bounds(), composed_.rect()) : Rect{};
            if (Intersect(shown, where).empty() || Unite(shown, where) == where) continue;
            where = Unite(shown, where);
            grown = true;
        }
    }
    composed_.copy(base_, where, {where.left, where.top});
    const auto touched = [&](const Control& control) {
        return control.visible() && !Intersect(control.bounds(), where).empty();
    };
    const auto draw = [&](const PictureBox& box) {
        if (touched(box)) composed_.copy(box.surface(), {box.bounds().left, box.bounds().top});
    };
    draw(DisplayA);
    for (int n = 0; n < kButtonCount; ++n) {
        draw(cmdPicture[n]);
        draw(taskPicture[n]);
    }
    if (pressed_) drawPressed();
    draw(VolumeBar);
    if (touched(SeekBar)) {
        const Rect& bar = SeekBar.bounds();
        composed_.copy(SeekBar.surface(), {0, 0, filledWidth(), bar.height}, {bar.left, bar.top});
    }
    draw(LyricsPicture);
    draw(DisplayB);
    draw(DisplayC);
    draw(DisplayD);
    for (int n = 0; n < kLabelCount; ++n) {
        if (touched(mainLabel[n])) drawLabel(mainLabel[n]);
    }
}

TextStyle FormTop::labelStyle(const Label& label) const {
    TextStyle style;
    style.font = label.font();
    style.color = label.foreColor();
    style.dotsPerInch = 1440.0 / (host() ? host()->twipsPerPixel().x : 15.0);
    style.vertically = true;
    return style;
}

void FormTop::drawLabel(const Label& label) {
    TextStyle style = labelStyle(label);
    const Rect& place = label.bounds();
    if (&label != &mainLabel[kTitleLabel] || !titleAnimation_.moves() || !options_->TitleAnimation) {
        style.ellipsis = &label == &mainLabel[kTitleLabel] || &label == &mainLabel[kArtistLabel];
        painter_.draw(composed_, place, label.caption(), style);
        return;
    }
    if (titleStrip_.empty()) {
        // Letters are made once; a step of the animation only puts another part of them on the background.
        titleStrip_.resize(titleAnimation_.period(), place.height);
        TextStyle white = style;
        white.color = {255, 255, 255};
        painter_.draw(titleStrip_, titleStrip_.rect(), label.caption(), white);
    }
    const int offset = titleAnimation_.offset(), rest = titleAnimation_.period() - offset;
    composed_.stamp(titleStrip_, {offset, 0, std::min(rest, place.width), place.height}, {place.left, place.top},
                    style.color);
    composed_.stamp(titleStrip_, {0, 0, place.width - rest, place.height}, {place.left + rest, place.top}, style.color);
}

void FormTop::drawPressed() {
    if (pressed_->onPanel) {
        // Only what the panel's picture draws gets darker, not the background that it repeats around it.
        const Rect column = panelColumn(pressed_->index);
        const Surface& panel = DisplayA.surface();
        for (int y = column.top; y < column.bottom(); ++y) {
            for (int x = column.left; x < column.right(); ++x) {
                const Point at{DisplayA.bounds().left + x, DisplayA.bounds().top + y};
                if (panel.at(x, y) != base_.at(at.x, at.y)) composed_.blend({at.x, at.y, 1, 1}, {0, 0, 0}, 0.4);
            }
        }
        return;
    }
    const PictureBox& button = (*pressed_->array)[pressed_->index];
    const PictureBox& image = (*pressed_->array)[pressed_->index + kPressed];
    if (button.visible()) composed_.copy(image.surface(), {button.bounds().left, button.bounds().top});
}

void FormTop::drawVolumeLevel() {
    tellPart(VolumeBar, PartChange::Value);
    if (!DisplayD.visible()) return;
    const int width = DisplayD.bounds().width, height = DisplayD.bounds().height;
    const double loud = state_.VolumePercent / 100.0;
    Surface& surface = DisplayD.surface();
    surface.fill(DisplayD.backColor());
    surface.copy(levelPicture_, {0, 0, width, RoundHalfToEven(height * loud)},
                 {0, RoundHalfToEven(height * (1 - loud))});
    DisplayD.refresh();
}

void FormTop::showFigures() {
    const Figures figures = hooks_.figures ? hooks_.figures() : Figures{};
    mainLabel[kListLabel].setCaption(figures.listPlace);
    const std::string line = figures.listPlace + "  " + figures.clock;
    if (line == displayCText_) return;
    displayCText_ = line;
    renderDisplayC();
}

void FormTop::renderDisplayC() {
    if (!DisplayC.visible()) return;
    DisplayC.surface().fill(DisplayC.backColor());
    TextStyle style = labelStyle(mainLabel[kInformationLabel]);
    style.centred = true;
    painter_.draw(DisplayC.surface(), DisplayC.surface().rect(), displayCText_, style);
    DisplayC.refresh();
}

void FormTop::restartTitle() {
    const Label& title = mainLabel[kTitleLabel];
    titleStrip_ = {};
    titleAnimation_.begin(painter_.measure(title.caption(), labelStyle(title)).width, title.bounds().width);
    TimerTitle.setEnabled(options_->TitleAnimation && title.visible() && titleAnimation_.moves() && !inTray_);
    repaint(title.bounds());
}

void FormTop::titleTick() {
    if (titleAnimation_.tick(1 + options_->TitleAnimationSpeed)) animate(mainLabel[kTitleLabel].bounds());
}

}  // namespace quenlox
