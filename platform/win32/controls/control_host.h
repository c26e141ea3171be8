// What a native control needs of the window that it stands in. On the user-interface thread; none of it fails.
#pragma once

#include <memory>

#include "forms/control.h"
#include "forms/layout.h"
#include "platform/win32/palette.h"

namespace quenlox::win32 {

class ControlHost {
  public:
    virtual HWND hostWindow() const = 0;
    virtual UINT dpi() const = 0;                 // of the monitor that the window is on
    virtual HFONT font() const = 0;               // that of the system's messages
    virtual HFONT fontFor(const Font& font) = 0;  // one of the form's own choice, at the monitor's resolution
    virtual const Palette* palette() const = 0;   // null: the system's colours
    virtual DialogUnits units() const = 0;        // pixels
    virtual bool onShownPage(const Control& control) const = 0;
    virtual HWND windowOf(const Control& control) const = 0;  // null while it has none
    virtual HWND tooltips() const = 0;
    virtual bool alive() const = 0;                       // the form has not let go of the window
    virtual std::shared_ptr<const void> keepAlive() = 0;  // while a message of a control is being handled

  protected:
    ~ControlHost() = default;
};

}  // namespace quenlox::win32
