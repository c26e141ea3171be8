// The portable model of a window's controls. A control is plain state; a change of it is reported to the host of the
// form, which brings it to the screen, and the user's doing comes back through the same state and the control's event.
// Changing a value from code raises the same event as the user does. All on the user-interface thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/geometry.h"
#include "forms/surface.h"

namespace quenlox {

class Form;

// The letter behind the "&" of a caption, in upper case: Alt with it leads to the control. 0: none; "&&" is a plain
// "&".
char AccessKeyOf(std::string_view caption);

struct Font {
    std::string face = "ＭＳ Ｐゴシック";
    double points = 9;
    bool bold = false;
    bool operator==(const Font&) const = default;
};

enum class Property {
    Caption,
    Bounds,
    Visible,
    Enabled,
    Value,
    Range,
    Items,
    Selection,
    Font,
    Color,
    Picture,
    Focus,
    Tooltip,
    Scroll,
    Copy
};

class Control {
  public:
    static constexpr int kNoIndex = -1;

    // `name` is the documented name; `index` the place in a control array. The form must outlive the control.
    Control(Form& form, std::string name, int index = kNoIndex);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return name_; }
    int index() const { return index_; }
    Form& form() const { return form_; }

    // Of a control that shows none: what assistive programs call it.
    const std::string& caption() const { return caption_; }
    const std::string& tooltip() const { return tooltip_; }
    const Rect& bounds() const { return bounds_; }  // pixels of the form's client area
    bool visible() const { return visible_; }
    bool enabled() const { return enabled_; }
    const Font& font() const { return font_; }
    Color foreColor() const { return foreColor_; }
    Color backColor() const { return backColor_; }

    void setCaption(std::string caption);
    void setTooltip(std::string tooltip);
    void setBounds(const Rect& bounds);
    void move(int left, int top) { setBounds({left, top, bounds_.width, bounds_.height}); }
    void setVisible(bool visible);
    void setEnabled(bool enabled);
    void setFont(const Font& font);
    void setForeColor(Color color);
    void setBackColor(Color color);
    void focus();  // asks for the keyboard

  protected:
    void changed(Property property);

  private:
    Form& form_;
    std::string name_;
    int index_;
    std::string caption_;
    std::string tooltip_;
    Rect bounds_;
    bool visible_ = true;
    bool enabled_ = true;
    Font font_;
    Color foreColor_{0, 0, 0};
    Color backColor_{255, 255, 255};
};

class Label : public Control {
  public:
    // In an ordinary form; set before the form is realised.
    enum class Shows {
        Caption,  // "&" marks the access key of the control behind it
        Text,     // of a file or of the user: "&" stands for itself
        Path      // the same; where there is too little room the folders make way, not the name of the file
    };

    using Control::Control;
    Shows shows = Shows::Caption;
    bool centred = false;
    std::function<void()> onClick;
};

// A frame with a caption around the controls that a layout puts into it.
class Frame : public Control {
  public:
    using Control::Control;
};

class CommandButton : public Control {
  public:
    using Control::Control;
    std::function<void()> onClick;
    bool isDefault =
        false;  // pressed by Enter while the keyboard is on another control; set before the form is realised
    void click() {
        if (enabled() && onClick) onClick();
    }
};

class CheckBox : public Control {
  public:
    using Control::Control;
    std::function<void()> onClick;  // after every change of the value, by the user or from code

    int value() const { return value_; }  // 0 off, 1 on; a number from the settings file is kept as it stands
    bool checked() const { return value_ != 0; }
    void setValue(int value);

  private:
    int value_ = 0;
};

// One of a group: the option buttons of a form that share a name. Choosing one clears the others.
class OptionButton : public Control {
  public:
    using Control::Control;
    std::function<void()> onClick;  // when it becomes chosen

    bool value() const { return value_; }
    void setValue(bool value);

  private:
    bool value_ = false;
};

class ScrollBar : public Control {
  public:
    enum class Direction { Horizontal, Vertical };

    ScrollBar(Form& form, std::string name, Direction direction, int minimum = 0, int maximum = 0,
              int index = kNoIndex);
    std::function<void()> onChange;       // the value has changed
    std::function<void()> onScroll;       // while the knob is dragged, before onChange
    std::function<void()> onDoubleClick;  // on the knob
    // A step finer than those of the value, 1 towards the minimum: Ctrl with an arrow key or the wheel.
    std::function<void(int step)> onFineStep;

    Direction direction() const { return direction_; }
    int minimum() const { return minimum_; }
    int maximum() const { return maximum_; }
    int value() const { return value_; }
    void setRange(int minimum, int maximum);
    void setValue(int value);  // brought into the range
    void drag(int value);      // as setValue, by the user's drag: onScroll comes first
    int largeChange = 10;      // step of a click beside the knob
    std::optional<int> mark;   // a value that a line tells from the others; set before the form is realised

  private:
    Direction direction_;
    int minimum_;
    int maximum_;
    int value_;
};

class TextBox : public Control {
  public:
    TextBox(Form& form, std::string name, bool multiLine = false, bool readOnly = false);
    std::function<void()> onChange;
    std::function<void()> onLeave;  // the keyboard has gone from the box
    std::function<void()> onDoubleClick;
    bool focused = false;   // it has the keyboard; kept by the host
    bool formMenu = false;  // a right click opens the form's context menu and not one of the box

    const std::string& text() const { return text_; }
    void setText(std::string text);
    void copy() { changed(Property::Copy); }  // what is selected, or all of it, to the clipboard
    bool multiLine() const { return multiLine_; }
    bool readOnly() const { return readOnly_; }

  private:
    std::string text_;
    bool multiLine_;
    bool readOnly_;
};

// A drop-down list; `data` is the number that goes with an item.
class ComboBox : public Control {
  public:
    struct Item {
        std::string text;
        int data = 0;
        bool operator==(const Item&) const = default;
    };

    ComboBox(Form& form, std::string name, bool editable = false);
    std::function<void()> onClick;  // another item has become the chosen one
    std::function<void()> onEdit;   // the text of an editable box has changed

    const std::vector<Item>& items() const { return items_; }
    void setItems(std::vector<Item> items);       // nothing is chosen afterwards
    int listIndex() const { return listIndex_; }  // -1 none
    void setListIndex(int index);
    int data() const { return listIndex_ < 0 ? 0 : items_[static_cast<std::size_t>(listIndex_)].data; }
    bool editable() const { return editable_; }
    std::string text() const;
    void setText(std::string text);  // editable: any text; else chooses the item of that text, if there is one

  private:
    std::vector<Item> items_;
    int listIndex_ = -1;
    bool editable_;
    std::string text_;
};

class ProgressBar : public Control {
  public:
    using Control::Control;
    static constexpr int kEndless = -1;   // something goes on, nobody knows how long
    int value() const { return value_; }  // 0 to 1000, or kEndless
    void setValue(int value);

  private:
    int value_ = 0;
};

// A picture that the program draws. In a skinned form it has no window of its own; in an ordinary form it is a child
// window. Draw on surface(), then call refresh().
class PictureBox : public Control {
  public:
    using Control::Control;
    std::function<void(int button, int shift, Point at)> onMouseDown;  // button 1 left, 2 right; at in its own pixels
    std::function<void(int button, int shift, Point at)> onMouseMove;  // button 0: none held
    std::function<void(int button, int shift, Point at)> onMouseUp;
    std::function<void()> onDoubleClick;
    std::function<void()> onResize;

    Surface& surface() { return surface_; }
    const Surface& surface() const { return surface_; }
    void refresh() { changed(Property::Picture); }

  private:
    Surface surface_;
};

// A row of tabs; the pages are the controls that the layout puts under it.
class TabStrip : public Control {
  public:
    TabStrip(Form& form, std::string name, std::vector<std::string> tabs);
    std::function<void()> onClick;
    const std::vector<std::string>& tabs() const { return tabs_; }
    int value() const { return value_; }
    void setValue(int tab);

  private:
    std::vector<std::string> tabs_;
    int value_ = 0;
};

struct ToolbarButton {
    std::string key;      // what the handler is told
    std::string caption;  // also the accessible name
    std::string tooltip;
    bool separator = false;
    bool enabled = true;
    bool checked = false;
};

class Toolbar : public Control {
  public:
    using Control::Control;
    std::function<void(const std::string& key)> onButton;
    const std::vector<ToolbarButton>& buttons() const { return buttons_; }
    void setButtons(std::vector<ToolbarButton> buttons);
    void setButtonEnabled(const std::string& key, bool enabled);
    void setButtonChecked(const std::string& key, bool checked);

  private:
    std::vector<ToolbarButton> buttons_;
};

// A window timer. It runs while it is enabled and its interval is above 0.
class Timer : public Control {
  public:
    Timer(Form& form, std::string name, int intervalMs);
    std::function<void()> onTimer;
    int interval() const { return interval_; }
    void setInterval(int milliseconds);

  private:
    int interval_;
};

}  // namespace quenlox
