#include "forms/control.h"

#include <algorithm>
#include <utility>

#include "forms/form.h"

namespace quenlox {

char AccessKeyOf(std::string_view caption) {
    for (std::size_t at = 0; (at = caption.find('&', at)) != std::string_view::npos && at + 1 < caption.size();
         at += 2) {
        const char letter = caption[at + 1];
        if (letter == '&') continue;
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return 0;
}

Control::Control(Form& form, std::string name, int index) : form_(form), name_(std::move(name)), index_(index) {
    form_.add(*this);
}

Control::~Control() { form_.remove(*this); }

void Control::changed(Property property) { form_.controlChanged(*this, property); }

void Control::setCaption(std::string caption) {
    if (caption == caption_) return;
    caption_ = std::move(caption);
    changed(Property::Caption);
}

void Control::setTooltip(std::string tooltip) {
    if (tooltip == tooltip_) return;
    tooltip_ = std::move(tooltip);
    changed(Property::Tooltip);
}

void Control::setBounds(const Rect& bounds) {
    if (bounds == bounds_) return;
    bounds_ = bounds;
    changed(Property::Bounds);
}

void Control::setVisible(bool visible) {
    if (visible == visible_) return;
    visible_ = visible;
    changed(Property::Visible);
}

void Control::setEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    changed(Property::Enabled);
}

void Control::setFont(const Font& font) {
    if (font == font_) return;
    font_ = font;
    changed(Property::Font);
}

void Control::setForeColor(Color color) {
    if (color == foreColor_) return;
    foreColor_ = color;
    changed(Property::Color);
}

void Control::setBackColor(Color color) {
    if (color == backColor_) return;
    backColor_ = color;
    changed(Property::Color);
}

void Control::focus() { changed(Property::Focus); }

void CheckBox::setValue(int value) {
    if (value == value_) return;
    value_ = value;
    changed(Property::Value);
    if (onClick) onClick();
}

void OptionButton::setValue(bool value) {
    if (value == value_) return;
    value_ = value;
    changed(Property::Value);
    if (!value) return;
    for (Control* other : form().controls()) {
        if (other == this || other->name() != name()) continue;
        if (auto* button = dynamic_cast<OptionButton*>(other)) button->setValue(false);
    }
    if (onClick) onClick();
}

ScrollBar::ScrollBar(Form& form, std::string name, Direction direction, int minimum, int maximum, int index)
    : Control(form, std::move(name), index),
      direction_(direction),
      minimum_(minimum),
      maximum_(std::max(minimum, maximum)),
      value_(minimum) {}

void ScrollBar::setRange(int minimum, int maximum) {
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    changed(Property::Range);
    setValue(value_);
}

void ScrollBar::setValue(int value) {
    value = std::clamp(value, minimum_, maximum_);
    if (value == value_) return;
    value_ = value;
    changed(Property::Value);
    if (onChange) onChange();
}

void ScrollBar::drag(int value) {
    value = std::clamp(value, minimum_, maximum_);
    if (value == value_) return;
    value_ = value;
    changed(Property::Value);
    if (onScroll) onScroll();
    if (onChange) onChange();
}

TextBox::TextBox(Form& form, std::string name, bool multiLine, bool readOnly)
    : Control(form, std::move(name)), multiLine_(multiLine), readOnly_(readOnly) {}

void TextBox::setText(std::string text) {
    if (text == text_) return;
    text_ = std::move(text);
    changed(Property::Value);
    if (onChange) onChange();
}

ComboBox::ComboBox(Form& form, std::string name, bool editable) : Control(form, std::move(name)), editable_(editable) {}

void ComboBox::setItems(std::vector<Item> items) {
    items_ = std::move(items);
    listIndex_ = -1;
    changed(Property::Items);
}

void ComboBox::setListIndex(int index) {
    if (index < -1 || index >= static_cast<int>(items_.size()) || index == listIndex_) return;
    listIndex_ = index;
    if (editable_ && index >= 0) text_ = items_[static_cast<std::size_t>(index)].text;
    changed(Property::Value);
    if (onClick) onClick();
}

std::string ComboBox::text() const {
    if (editable_) return text_;
    return listIndex_ < 0 ? std::string() : items_[static_cast<std::size_t>(listIndex_)].text;
}

void ComboBox::setText(std::string text) {
    const auto found = std::find_if(items_.begin(), items_.end(), [&](const Item& item) { return item.text == text; });
    const int index = found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
    if (!editable_) {
        if (index >= 0) setListIndex(index);
        return;
    }
    if (text == text_) return;
    text_ = std::move(text);
    listIndex_ = index;
    changed(Property::Value);
    if (onEdit) onEdit();
}

void ProgressBar::setValue(int value) {
    value = std::clamp(value, kEndless, 1000);
    if (value == value_) return;
    value_ = value;
    changed(Property::Value);
}

TabStrip::TabStrip(Form& form, std::string name, std::vector<std::string> tabs)
    : Control(form, std::move(name)), tabs_(std::move(tabs)) {}

void TabStrip::setValue(int tab) {
    if (tab < 0 || tab >= static_cast<int>(tabs_.size()) || tab == value_) return;
    value_ = tab;
    changed(Property::Value);
    if (onClick) onClick();
}

void Toolbar::setButtons(std::vector<ToolbarButton> buttons) {
    buttons_ = std::move(buttons);
    changed(Property::Items);
}

void Toolbar::setButtonEnabled(const std::string& key, bool enabled) {
    for (ToolbarButton& button : buttons_) {
        if (button.key != key || button.enabled == enabled) continue;
        button.enabled = enabled;
        changed(Property::Value);
    }
}

void Toolbar::setButtonChecked(const std::string& key, bool checked) {
    for (ToolbarButton& button : buttons_) {
        if (button.key != key || button.checked == checked) continue;
        button.checked = checked;
        changed(Property::Value);
    }
}

Timer::Timer(Form& form, std::string name, int intervalMs) : Control(form, std::move(name)), interval_(intervalMs) {}

void Timer::setInterval(int milliseconds) {
    if (milliseconds == interval_) return;
    interval_ = milliseconds;
    changed(Property::Range);
}

}  // namespace quenlox
