// The window of a skinned form: without a frame, in the shape of its region, showing the form's picture, which is drawn
// for the screen. Region and pointer are brought to the form's own pixels and back.
#pragma once

#include "forms/accessible_part.h"
#include "forms/surface.h"
#include "platform/win32/windows/accessible.h"
#include "platform/win32/windows/form_window.h"

namespace quenlox::win32 {

class SkinnedWindow : public FormWindow {
  public:
    using FormWindow::FormWindow;
    ~SkinnedWindow() override;
    void create() override;
    void realised() override;
    void formChanged(FormProperty property) override;
    void setRegion(const Region& region) override;
    void setOpacity(const Surface* opacity) override;
    void setScale(Scale scale) override;
    void invalidate(const Rect& where) override;
    void paint(const Rect& where) override;
    void partChanged(int part, PartChange change) override;
    void showTip(const std::string& text, Point at) override;
    void beginDrag() override;

    // For assistive programs: the parts of the form, none when it has gone. An action runs after the message that
    // asked.
    std::vector<AccessiblePart> parts() const;
    void later(std::function<void()> action);
    Rect onScreen(const Rect& where) const;

  protected:
    Result answer(UINT message, WPARAM w, LPARAM l) override;
    Size windowSize() const override;
    Size formSize(Size window) const override;
    Scale scale() const override { return scale_; }
    void sized() override;

  private:
    Result mouse(UINT message, WPARAM w, LPARAM l);
    void press(int button, Point at, bool twice);
    void release(int button, Point at);
    void letGo();
    void applyRegion();
    void paintLayer(const Rect& where);
    bool fitLayer(Size size);
    void makeTooltip();
    TTTOOLINFOW toolOf(bool standing) const;
    void relayToTooltip(UINT message, WPARAM w, LPARAM l);
    bool isTrayEvent(WPARAM w, LPARAM l) const;

    Scale scale_;
    // With an opacity the window is a layer that the system mixes with what lies behind it: it has no region, and is
    // handed over as a picture instead of being painted.
    const Surface* opacity_ = nullptr;
    OwnedBitmap layer_;
    Surface::Pixel* layerPixels_ = nullptr;  // red, green and blue times the opacity, which stands above them
    Size layerSize_;
    Rect layerStale_;
    bool hasRegion_ = false;
    Region region_;
    int held_ = 0;  // the button that was pressed over the window and has not been released
    HWND tooltip_ = nullptr;
    AccessiblePointer accessible_;  // made when an assistive program asks for it
    std::wstring tip_;
    std::wstring standingTip_;  // of showTip; empty while there is none
};

}  // namespace quenlox::win32
