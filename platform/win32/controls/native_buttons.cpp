// Labels, frames and the kinds of buttons.
#include <algorithm>
#include <vector>

#include "forms/form.h"
#include "platform/win32/controls/native_control.h"
#include "platform/win32/dark_paint.h"

namespace quenlox::win32 {
namespace {

class NativeLabel : public NativeControl {
  public:
    NativeLabel(ControlHost& host, Label& label)
        : NativeControl(host, label, {WC_STATICW, StyleOf(label)}), label_(label) {}
    Size wish() const override {
        const Size text = textSize(Wide(label_.caption()));
        return {text.width + 2, std::max(text.height, vertical(8))};
    }
    void command(WORD code, WORD) override {
        if (code == STN_CLICKED && label_.onClick) label_.onClick();
    }
    bool isTransparent() const override { return true; }

  private:
    // Only one that wants to be notified is found under the pointer, by a tip too.
    static DWORD StyleOf(const Label& label) {
        DWORD style = SS_NOTIFY | (label.centred ? SS_CENTER : SS_LEFT);
        if (label.shows != Label::Shows::Caption) style |= SS_NOPREFIX;
        if (label.shows == Label::Shows::Path) style |= SS_PATHELLIPSIS;
        return style;
    }

    Label& label_;
};

class NativeFrame : public NativeControl {
  public:
    NativeFrame(ControlHost& host, Control& frame)
        : NativeControl(host, frame, {WC_BUTTONW, BS_GROUPBOX, WS_EX_TRANSPARENT}) {
        subclass();
    }
    Size wish() const override { return {textSize(Wide(control().caption())).width + horizontal(8), vertical(9)}; }
    bool isTransparent() const override { return true; }

  protected:
    bool paintsItself() const override { return true; }
    void paint(HDC dc, const Palette& palette) const override { PaintGroupBox(window(), dc, palette); }
};

class NativeCommandButton : public NativeControl {
  public:
    NativeCommandButton(ControlHost& host, CommandButton& button)
        : NativeControl(
              host, button,
              {WC_BUTTONW, static_cast<DWORD>(WS_TABSTOP | (button.isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON))}),
          button_(button) {}
    Size wish() const override {
        return {std::max(textSize(Wide(button_.caption())).width + horizontal(10), horizontal(50)), vertical(14)};
    }
    void command(WORD code, WORD) override {
        if (code == BN_CLICKED) button_.click();
    }
    std::optional<LRESULT> notify(NMHDR& header) override {
        if (header.code != static_cast<UINT>(NM_CUSTOMDRAW) || !palette()) return {};
        PaintPushButton(reinterpret_cast<const NMCUSTOMDRAW&>(header), button_.isDefault, *palette());
        return CDRF_SKIPDEFAULT;
    }
    bool pressed() override {
        button_.click();
        return true;
    }

  private:
    CommandButton& button_;
};

// A tick or a dot with its text.
class NativeMarkButton : public NativeControl {
  public:
    NativeMarkButton(ControlHost& host, Control& button, DWORD style)
        : NativeControl(host, button, {WC_BUTTONW, style}) {}
    Size wish() const override { return {textSize(Wide(control().caption())).width + horizontal(13), vertical(10)}; }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Value) showMark();
    }
    std::optional<LRESULT> notify(NMHDR& header) override {
        if (header.code != static_cast<UINT>(NM_CUSTOMDRAW) || !palette()) return {};
        const Mark mark = dynamic_cast<OptionButton*>(&control()) ? Mark::Dot : Mark::Tick;
        PaintMarkButton(reinterpret_cast<const NMCUSTOMDRAW&>(header), mark, *palette());
        return CDRF_SKIPDEFAULT;
    }
    bool isTransparent() const override { return true; }

  protected:
    virtual bool mark() const = 0;
    void showMark() { send(BM_SETCHECK, mark() ? BST_CHECKED : BST_UNCHECKED); }
};

class NativeCheckBox : public NativeMarkButton {
  public:
    NativeCheckBox(ControlHost& host, CheckBox& box)
        : NativeMarkButton(host, box, WS_TABSTOP | BS_AUTOCHECKBOX), box_(box) {
        showMark();
    }
    void command(WORD code, WORD) override {
        if (code != BN_CLICKED) return;
        box_.setValue(send(BM_GETCHECK) == BST_CHECKED ? 1 : 0);
        if (alive()) showMark();
    }

  protected:
    bool mark() const override { return box_.checked(); }

  private:
    CheckBox& box_;
};

class NativeOptionButton : public NativeMarkButton {
  public:
    NativeOptionButton(ControlHost& host, OptionButton& button)
        : NativeMarkButton(host, button, BS_AUTORADIOBUTTON), button_(button) {
        send(BM_SETDONTCLICK, TRUE);  // the keyboard that comes here chooses nothing yet
        showMark();
        showStop();
    }
    void changed(Property property) override {
        NativeMarkButton::changed(property);
        if (property == Property::Value || property == Property::Visible) showStop();
    }
    void command(WORD code, WORD) override {
        if (code != BN_CLICKED || send(BM_GETCHECK) != BST_CHECKED) return;
        button_.setValue(true);
        if (alive()) showMark();
    }

  protected:
    bool mark() const override { return button_.value(); }

  private:
    // The Tab key stops at the chosen one of a group. While none is, it stops at the first, or nobody could reach them.
    void showStop() {
        const OptionButton* stop = nullptr;
        std::vector<const OptionButton*> group;
        for (const Control* control : button_.form().controls()) {
            const auto* button = dynamic_cast<const OptionButton*>(control);
            if (!button || button->name() != button_.name()) continue;
            group.push_back(button);
            if (button->visible() && (!stop || button->value())) stop = button;
        }
        for (const OptionButton* button : group) {
            HWND other = button == &button_ ? window() : host().windowOf(*button);
            if (!other) continue;  // it is still to come
            const LONG_PTR style = GetWindowLongPtrW(other, GWL_STYLE) & ~LONG_PTR{WS_TABSTOP};
            SetWindowLongPtrW(other, GWL_STYLE, style | (button == stop ? WS_TABSTOP : 0));
        }
    }

    OptionButton& button_;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeButton(ControlHost& host, Control& control) {
    if (auto* label = dynamic_cast<Label*>(&control)) return std::make_unique<NativeLabel>(host, *label);
    if (dynamic_cast<Frame*>(&control)) return std::make_unique<NativeFrame>(host, control);
    if (auto* button = dynamic_cast<CommandButton*>(&control))
        return std::make_unique<NativeCommandButton>(host, *button);
    if (auto* box = dynamic_cast<CheckBox*>(&control)) return std::make_unique<NativeCheckBox>(host, *box);
    if (auto* option = dynamic_cast<OptionButton*>(&control))
        return std::make_unique<NativeOptionButton>(host, *option);
    return nullptr;
}

}  // namespace quenlox::win32
