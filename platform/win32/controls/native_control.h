// A control of an ordinary form as a window of the system. The state of the form's control is the truth: a change of it
// is brought to the window, and what the user does at the window goes into it. What the program itself brings to the
// window is not taken for the user's doing.
#pragma once

#include <memory>
#include <optional>

#include "platform/win32/controls/control_host.h"

namespace quenlox::win32 {

class NativeControl {
  public:
    virtual ~NativeControl();
    NativeControl(const NativeControl&) = delete;
    NativeControl& operator=(const NativeControl&) = delete;

    HWND window() const { return window_; }
    Control& control() const { return control_; }

    // A change of the control's state. A class handles what is special to it and leaves the rest to this one.
    virtual void changed(Property property);
    // Size in pixels where the layout names none.
    virtual Size wish() const = 0;
    virtual void command(WORD code, WORD id) { (void)code, (void)id; }  // WM_COMMAND
    virtual std::optional<LRESULT> notify(NMHDR& header) { return (void)header, std::nullopt; }
    virtual void scrolled(WORD code) { (void)code; }                        // WM_HSCROLL, WM_VSCROLL
    virtual void draw(const DRAWITEMSTRUCT& item) { (void)item; }           // WM_DRAWITEM
    virtual bool takesKey(WPARAM key) const { return (void)key, false; }    // a key that the dialog would take
    virtual bool pressed() { return false; }                                // Enter on a button
    virtual bool contextMenu(POINT screen) { return (void)screen, false; }  // (-1, -1): by a key. False: the form's
    virtual void fontChanged();
    virtual void paletteChanged();                        // also the system's own colours may be others
    virtual bool isTransparent() const { return false; }  // lies on the background of the window
    void place(HDWP* moves);
    // Takes its turn behind another window in the order of the Tab key, HWND_TOP for the first; the arrow keys stay
    // within the controls from one that begins a group to the next. Returns its last window.
    HWND follow(HWND before, bool beginsGroup);
    bool shown() const;
    bool alive() const;  // the form still has this control
    void removed();      // the form has it no longer, perhaps while one of its messages is being handled

  protected:
    // What becomes of the control's caption. Where nobody sees it, it is the control's name: assistive programs take
    // it from the text of the window or from the label before that, by the window's class, so it stands in both; in the
    // label alone where the text of the window is a value.
    enum class CaptionUse { Shown, Name, NameBesideValue };
    virtual CaptionUse captionUse() const { return CaptionUse::Shown; }

    struct Style {
        const wchar_t* className;
        DWORD style = 0;
        DWORD extended = 0;
    };
    NativeControl(ControlHost& host, Control& control, Style style);

    // While one of these lives, messages of the window are echoes of the program's own doing.
    class Applying {
      public:
        explicit Applying(NativeControl& native) : native_(native), before_(native.applying_) {
            native.applying_ = true;
        }
        ~Applying() { native_.applying_ = before_; }
        Applying(const Applying&) = delete;
        Applying& operator=(const Applying&) = delete;

      private:
        NativeControl& native_;
        bool before_;
    };
    bool applying() const { return applying_; }

    ControlHost& host() const { return host_; }
    HFONT font() const;
    LRESULT send(UINT message, WPARAM w = 0, LPARAM l = 0) const { return SendMessageW(window_, message, w, l); }
    LRESULT send(UINT message, WPARAM w, const void* l) const { return send(message, w, reinterpret_cast<LPARAM>(l)); }
    std::wstring windowText() const;
    Size textSize(const std::wstring& text, int width = 0) const;  // width: where lines are broken
    int horizontal(int units) const;                               // dialog units to pixels
    int vertical(int units) const;
    void subclass();  // messages of the window then come to intercept()
    virtual std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l) {
        return (void)message, (void)w, (void)l, std::nullopt;
    }

    // A control that has no colours to be told is drawn here while there is a palette; it must be subclassed.
    virtual bool paintsItself() const { return false; }
    virtual void paint(HDC dc, const Palette& palette) const { (void)dc, (void)palette; }
    const Palette* palette() const { return host_.palette(); }

  private:
    std::optional<LRESULT> interceptPaint(UINT message, WPARAM w, LPARAM l);
    static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                     DWORD_PTR data) noexcept;
    void setTooltip();
    void showCaption();

    ControlHost& host_;
    Control& control_;
    HWND window_ = nullptr;
    OwnedWindow nameLabel_;  // without size, in front of the window
    bool applying_ = false;
    bool removed_ = false;
    bool hasTooltip_ = false;
};

// Null for what has no window: timers.
std::unique_ptr<NativeControl> MakeNativeControl(ControlHost& host, Control& control);

// One maker for each kind, beside its class; null when the control is of another kind.
std::unique_ptr<NativeControl> MakeNativeButton(ControlHost& host, Control& control);  // also labels and frames
std::unique_ptr<NativeControl> MakeNativeText(ControlHost& host, Control& control);    // text and combo boxes
std::unique_ptr<NativeControl> MakeNativeSlider(ControlHost& host, Control& control);  // also the progress bar
std::unique_ptr<NativeControl> MakeNativePicture(ControlHost& host, Control& control);
std::unique_ptr<NativeControl> MakeNativeBar(ControlHost& host, Control& control);  // toolbar and tabs
std::unique_ptr<NativeControl> MakeNativeDriveBox(ControlHost& host, Control& control);
std::unique_ptr<NativeControl> MakeNativeListView(ControlHost& host, Control& control);

}  // namespace quenlox::win32
