// Services of the desktop: notification area, help, links, single instance. On the user-interface thread.
#pragma once

#include <functional>
#include <string>

#include "forms/geometry.h"

namespace quenlox {

class Form;

// The icon of the program in the notification area. What happens at it comes to Form::Form_TrayIcon of the owner.
struct TrayIconData {
    Form* owner = nullptr;
    std::string tip;
};

class Shell {
  public:
    virtual ~Shell() = default;
    // False: there is no notification area, or its owner has no window; no icon comes up later.
    virtual bool addTrayIcon(const TrayIconData& icon) = 0;
    // Without an icon there, or when the system does not take it as changed: false, and the icon is put there anew.
    virtual bool changeTrayIcon(const TrayIconData& icon) = 0;
    // The icon was lost, perhaps with the taskbar, and for seconds nobody has taken it again: it is gone.
    std::function<void()> onTrayIconLost;
    virtual bool deleteTrayIcon(const TrayIconData& icon) = 0;  // false: there is none
    virtual bool WinHelp(Form& owner, const std::string& helpFile, int command, int data) = 0;  // false: not shown
    // A file or an address, with the user's program for it; false when there is none. Returns before it is shown.
    virtual bool openInBrowser(const std::string& target) = 0;
    virtual Point cursor() = 0;  // pixels of the screen
    // Asked once at start; claims the name when none runs. True also when the system does not let it ask.
    virtual bool anotherInstanceRuns() = 0;
};

}  // namespace quenlox
