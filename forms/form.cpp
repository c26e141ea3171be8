#include "forms/form.h"

#include <algorithm>
#include <utility>

namespace quenlox {

Form::Form(std::string name, Kind kind) : name_(std::move(name)), kind_(kind) {}

Form::~Form() {
    // The host goes first: it refers to the form and its controls.
    if (host_) host_->detach();
    host_.reset();
}

void Form::realise(WindowSystem& system) {
    if (host_) return;
    system_ = &system;
    host_ = system.realise(*this);
    if (host_) host_->realised();
}

void Form::formChanged(FormProperty property) {
    if (host_) host_->formChanged(property);
}

void Form::controlChanged(Control& control, Property property) {
    controlChangedHere(control, property);
    if (host_) host_->controlChanged(control, property);
}

void Form::add(Control& control) { controls_.push_back(&control); }

void Form::remove(Control& control) {
    if (host_) host_->controlRemoved(control);
    std::erase(controls_, &control);
}

void Form::move(int left, int top) {
    if (left == left_ && top == top_) return;
    suggested_ = false;
    left_ = left;
    top_ = top;
    formChanged(FormProperty::Place);
}

void Form::setSize(int width, int height) {
    width = std::max(width, 0);
    height = std::max(height, 0);
    if (width == width_ && height == height_) return;
    width_ = width;
    height_ = height;
    formChanged(FormProperty::Place);
}

void Form::placedByUser(int left, int top, int width, int height) {
    suggested_ = suggested_ && left == left_ && top == top_;
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
}

void Form::setCaption(std::string caption) {
    if (caption == caption_) return;
    caption_ = std::move(caption);
    formChanged(FormProperty::Caption);
}

void Form::show(bool activate) {
    if (unloaded_) return;
    if (visible_) {
        if (host_ && activate) host_->bringToFront();
        return;
    }
    activates_ = activate;
    if (!host_ && system_) realise(*system_);
    visible_ = true;
    formChanged(FormProperty::Visible);
    Form_Shown();
}

void Form::hide() {
    if (!visible_) return;
    visible_ = false;
    formChanged(FormProperty::Visible);
}

void Form::setTopmost(bool topmost) {
    if (topmost == topmost_) return;
    topmost_ = topmost;
    formChanged(FormProperty::Topmost);
}

bool Form::unload() {
    if (unloaded_) return true;
    bool cancel = false;
    Form_Unload(cancel);
    if (cancel) return false;
    unloaded_ = true;
    visible_ = false;
    formChanged(FormProperty::Visible);
    return true;
}

void Form::moveToMiddleOnce() {
    if (placed_ || !host_) return;
    placed_ = true;
    const TwipsPerPixel twips = host_->twipsPerPixel();
    const Rect area = system_->workArea({TwipsToPixels(left_, twips.x), TwipsToPixels(top_, twips.y),
                                         TwipsToPixels(width_, twips.x), TwipsToPixels(height_, twips.y)});
    move(PixelsToTwips(area.left, twips.x) + (PixelsToTwips(area.width, twips.x) - width_) / 2,
         PixelsToTwips(area.top, twips.y) + (PixelsToTwips(area.height, twips.y) - height_) / 2);
}

void Form::suggestPlace(int left, int top) {
    move(left, top);
    suggested_ = true;
}

void Form::popup(const Menu& menu, Point at) {
    if (host_) host_->popup(menu, at);
}

}  // namespace quenlox
