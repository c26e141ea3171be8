// Text boxes and combo boxes.
#include <algorithm>

#include "platform/win32/controls/native_control.h"
#include "platform/win32/dark_paint.h"

namespace quenlox::win32 {
namespace {

// An edit control parts lines with CR LF.
std::wstring WithSystemLines(const std::string& text) {
    std::wstring lines;
    const std::wstring wide = Wide(text);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        if (wide[i] == L'\n' && (i == 0 || wide[i - 1] != L'\r')) lines += L'\r';
        lines += wide[i];
        if (wide[i] == L'\r' && (i + 1 == wide.size() || wide[i + 1] != L'\n')) lines += L'\n';
    }
    return lines;
}

class NativeTextBox : public NativeControl {
  public:
    NativeTextBox(ControlHost& host, TextBox& box)
        : NativeControl(host, box, {WC_EDITW, StyleOf(box), WS_EX_CLIENTEDGE}), box_(box) {
        send(EM_SETLIMITTEXT, 0);  // as much as there is memory for
        subclass();
        showText();
    }
    Size wish() const override { return {horizontal(100), vertical(box_.multiLine() ? 60 : 14)}; }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Value) showText();
        if (property == Property::Copy) copy();
    }
    void command(WORD code, WORD) override {
        if (code == EN_SETFOCUS || code == EN_KILLFOCUS) box_.focused = code == EN_SETFOCUS;
        if (palette() && (code == EN_SETFOCUS || code == EN_KILLFOCUS))
            RedrawWindow(window(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
        if (code == EN_KILLFOCUS && box_.onLeave) box_.onLeave();
        if (code != EN_CHANGE || applying()) return;
        const Applying guard(*this);  // what the user types is not brought back, or the caret would jump
        box_.setText(Narrow(windowText()));
    }

  protected:
    CaptionUse captionUse() const override { return CaptionUse::NameBesideValue; }
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l) override {
        if (message == WM_LBUTTONDBLCLK && box_.onDoubleClick) {
            box_.onDoubleClick();
            return 0;
        }
        if (message == WM_KEYDOWN && w == 'A' && ShiftState() == 2) {
            send(EM_SETSEL, 0, LPARAM{-1});
            return 0;
        }
        if (message == WM_CONTEXTMENU && box_.formMenu) return DefWindowProcW(window(), message, w, l);
        return {};
    }

  private:
    void copy() {
        DWORD begin = 0, end = 0;
        send(EM_GETSEL, reinterpret_cast<WPARAM>(&begin), &end);
        if (begin == end) send(EM_SETSEL, 0, LPARAM{-1});
        send(WM_COPY);
    }
    static DWORD StyleOf(const TextBox& box) {
        DWORD style = WS_TABSTOP;
        style |= box.multiLine() ? ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL | (box.readOnly() ? 0 : ES_WANTRETURN)
                                 : ES_AUTOHSCROLL;
        return style | (box.readOnly() ? ES_READONLY : 0);
    }
    void showText() {
        const std::wstring text = WithSystemLines(box_.text());
        if (text == windowText()) return;
        const Applying guard(*this);
        SetWindowTextW(window(), text.c_str());
    }

    TextBox& box_;
};

class NativeComboBox : public NativeControl {
  public:
    NativeComboBox(ControlHost& host, ComboBox& box)
        : NativeControl(host, box,
                        {WC_COMBOBOXW, static_cast<DWORD>(WS_TABSTOP | WS_VSCROLL | CBS_AUTOHSCROLL | CBS_HASSTRINGS |
                                                          (box.editable() ? CBS_DROPDOWN : CBS_DROPDOWNLIST))}),
          box_(box) {
        subclass();
        showItems();
    }
    Size wish() const override {
        int width = 0;
        for (const ComboBox::Item& item : box_.items()) width = std::max(width, textSize(Wide(item.text)).width);
        return {std::clamp(width + horizontal(20), horizontal(50), horizontal(200)), vertical(14)};
    }
    void changed(Property property) override {
        if (property == Property::Items) {
            showItems();
        } else if (property == Property::Value) {
            showValue();
        } else {
            NativeControl::changed(property);
        }
    }
    void command(WORD code, WORD) override {
        if (applying()) return;
        if (code == CBN_SELCHANGE) {
            box_.setListIndex(static_cast<int>(send(CB_GETCURSEL)));
        } else if (code == CBN_EDITCHANGE) {
            const Applying guard(*this);
            box_.setText(Narrow(windowText()));
        }
    }

  protected:
    CaptionUse captionUse() const override { return CaptionUse::NameBesideValue; }
    bool paintsItself() const override { return true; }
    void paint(HDC dc, const Palette& palette) const override { PaintComboBox(window(), dc, palette); }

  private:
    void showItems() {
        const Applying guard(*this);
        send(WM_SETREDRAW, FALSE);
        send(CB_RESETCONTENT);
        for (const ComboBox::Item& item : box_.items()) send(CB_ADDSTRING, 0, Wide(item.text).c_str());
        send(CB_SETMINVISIBLE, 20);
        send(WM_SETREDRAW, TRUE);
        InvalidateRect(window(), nullptr, TRUE);
        showValue();
    }
    void showValue() {
        const Applying guard(*this);
        if (send(CB_GETCURSEL) != box_.listIndex()) send(CB_SETCURSEL, static_cast<WPARAM>(box_.listIndex()));
        if (!box_.editable()) return;
        const std::wstring text = Wide(box_.text());
        if (text != windowText()) SetWindowTextW(window(), text.c_str());
    }

    ComboBox& box_;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeText(ControlHost& host, Control& control) {
    if (auto* box = dynamic_cast<TextBox*>(&control)) return std::make_unique<NativeTextBox>(host, *box);
    if (auto* box = dynamic_cast<ComboBox*>(&control)) return std::make_unique<NativeComboBox>(host, *box);
    return nullptr;
}

}  // namespace quenlox::win32
