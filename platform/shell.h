// Services of the desktop: notification area, help, links, single instance.
#pragma once

#include <functional>
#include <string>

#include "forms/geometry.h"

namespace quenlox {

class Form;

// The icon of the program in the notification area. Its events arrive as mouse moves over the owner's window: the
// horizontal coordinate in pixels carries the message (514 left button up, 516 right button down).
struct TrayIconData {
    Form* owner = nullptr;
    std::string tip;
};

class Shell {
  public:
    virtual ~Shell() = default;
    virtual bool addTrayIcon(const TrayIconData& icon) = 0;
    // The taskbar has been started anew, and for seconds nobody has taken the icon: it is gone.
    std::function<void()> onTrayIconLost;
    virtual bool changeTrayIcon(const TrayIconData& icon) = 0;
    virtual bool deleteTrayIcon(const TrayIconData& icon) = 0;
    virtual bool WinHelp(Form& owner, const std::string& helpFile, int command, int data) = 0;
    virtual bool openInBrowser(const std::string& target) = 0;  // a file or an address, with the user's program for it
    virtual Point cursor() = 0;                                  // pixels of the screen
    virtual bool anotherInstanceRuns() = 0;                      // asked once at start; claims the name when not
};

}  // namespace quenlox
