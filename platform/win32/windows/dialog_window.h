// The window of an ordinary form: a frame, native controls arranged by the form's layout in dialog units of the
// monitor it is on, and the keyboard of a dialog.
#pragma once

#include <map>
#include <memory>
#include <unordered_map>

#include "forms/layout.h"
#include "platform/win32/controls/native_control.h"
#include "platform/win32/windows/form_window.h"

namespace quenlox::win32 {

class DialogWindow : public FormWindow, public ControlHost {
  public:
    using FormWindow::FormWindow;
    ~DialogWindow() override;
    void create() override;
    void realised() override;
    void formChanged(FormProperty property) override;
    void controlChanged(Control& control, Property property) override;
    void controlRemoved(Control& control) override;
    bool preview(MSG& message) override;

    HWND hostWindow() const override { return handle(); }
    UINT dpi() const override { return GetDpiForWindow(handle()); }
    HFONT font() const override { return font_.get(); }
    HFONT fontFor(const Font& font) override;
    const Palette* palette() const override { return palette_; }
    DialogUnits units() const override { return units_; }
    bool onShownPage(const Control& control) const override;
    HWND windowOf(const Control& control) const override;
    HWND tooltips() const override { return tooltips_; }
    bool alive() const override { return attached(); }
    std::shared_ptr<const void> keepAlive() override { return shared_from_this(); }

  protected:
    Result answer(UINT message, WPARAM w, LPARAM l) override;
    Size windowSize() const override;
    Size formSize(Size window) const override;
    void sized() override { arrange(); }

  private:
    NativeControl* native(const Control& control) const;
    NativeControl* nativeOf(HWND window) const;
    void makeControl(Control& control);
    void makeFonts();
    void followPalette();
    void arrange();
    void orderControls(const Layout& layout);
    void fitToLayout();
    Size frameFor(Size client) const;
    Rect content() const;
    void collectPages(const Layout& layout);
    void showPages();
    void setMenuBar();
    void dpiChanged(const RECT& suggested);
    void limitSize(MINMAXINFO& info) const;
    Result contextMenu(HWND window, LPARAM l);
    Result command(WPARAM w, LPARAM l);
    Result color(HDC dc, HWND window) const;
    Result focusChanged(UINT message, WPARAM w);
    void focusNext(WPARAM w, bool isWindow);
    bool pressDefault();
    bool switchTab(bool back);
    bool accessTab(wchar_t letter);
    Size wish(const Control& control) const;

    struct Page {
        const Control* tabs;
        int number;
    };

    OwnedFont font_;
    std::map<std::pair<std::string, std::pair<double, bool>>, OwnedFont> fonts_;
    const Palette* palette_ = nullptr;
    DialogUnits units_;
    HWND tooltips_ = nullptr;
    OwnedMenu menu_;
    std::unordered_map<const Control*, std::unique_ptr<NativeControl>> natives_;
    // Controls that the form has removed while one of their messages was being handled.
    std::vector<std::unique_ptr<NativeControl>> removed_;
    std::unordered_map<const Control*, Page> pages_;
    std::vector<Control*> order_;  // of the Tab key
    HWND lastFocus_ = nullptr;
    bool arranging_ = false;
};

}  // namespace quenlox::win32
