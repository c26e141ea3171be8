// The icon of the program in the notification area: put there, taken away, its tip, and what happens at it. On the
// user-interface thread. Without such an area the program never hides itself.
#pragma once

#include <functional>
#include <string>

#include "platform/shell.h"

namespace quenlox {

class TrayIcon {
  public:
    // `owner` is the window that the system tells of what happens at the icon; `tip` what the icon says at the moment.
    TrayIcon(Form& owner, Shell& shell, std::function<std::string()> tip);

    std::function<void()> onClick;  // the left button
    std::function<void()> onMenu;   // the right one
    std::function<void()> onLost;   // there is no icon any more, and nobody takes another

    bool put();  // false when there is no notification area
    void take();
    bool shown() const { return shown_; }
    // Tells the tip anew when it has become another one.
    void renewTip();
    // A message of the system: 512 the pointer is there, 514 left button up, 516 right button down.
    void event(int message);

  private:
    Form& owner_;
    Shell& shell_;
    std::function<std::string()> tip_;
    std::string told_;
    bool shown_ = false;
};

}  // namespace quenlox
