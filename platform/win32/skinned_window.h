// The window of a skinned form: without a frame, in the shape of its region, showing the form's picture with every
// pixel as a square of 1 to 4 pixels of the screen. Picture, region and pointer scale together.
#pragma once

#include "platform/win32/form_window.h"

namespace quenlox::win32 {

class SkinnedWindow : public FormWindow {
  public:
    using FormWindow::FormWindow;
    ~SkinnedWindow() override;
    void create() override;
    void realised() override;
    void formChanged(FormProperty property) override;
    void controlChanged(Control& control, Property property) override;
    void setRegion(const Region& region) override;
    void setScale(int factor) override;
    void beginDrag() override;

  protected:
    Result answer(UINT message, WPARAM w, LPARAM l) override;
    Size windowSize() const override;
    Size formSize(Size window) const override;
    int scale() const override { return scale_; }
    void sized() override;

  private:
    Result mouse(UINT message, WPARAM w, LPARAM l);
    void press(int button, Point at, bool twice);
    void release(int button, Point at);
    void letGo();
    void applyRegion();
    void makeTooltip();
    void relayToTooltip(UINT message, WPARAM w, LPARAM l);
    bool isTrayEvent(WPARAM w, LPARAM l) const;

    int scale_ = 1;
    bool hasRegion_ = false;
    Region region_;
    int held_ = 0;  // the button that was pressed over the window and has not been released
    HWND tooltip_ = nullptr;
    std::wstring tip_;
};

}  // namespace quenlox::win32
