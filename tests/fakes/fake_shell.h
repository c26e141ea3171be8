// A desktop that only remembers.
#pragma once

#include <string>
#include <vector>

#include "platform/shell.h"

namespace quenlox {

class FakeShell : public Shell {
  public:
    bool trayIconShown = false;
    std::string trayTip;
    std::vector<std::string> helps;    // "C:\\Quenlox\\Quenlox.hlp 11 1"
    std::vector<std::string> opened;
    bool works = true;

    bool addTrayIcon(const TrayIconData& icon) override {
        trayTip = icon.tip;
        return trayIconShown = works;
    }
    bool changeTrayIcon(const TrayIconData& icon) override {
        trayTip = icon.tip;
        return works && trayIconShown;
    }
    bool deleteTrayIcon(const TrayIconData&) override {
        trayIconShown = false;
        return works;
    }
    bool WinHelp(Form&, const std::string& helpFile, int command, int data) override {
        helps.push_back(helpFile + " " + std::to_string(command) + " " + std::to_string(data));
        return works;
    }
    bool openInBrowser(const std::string& target) override {
        opened.push_back(target);
        return works;
    }
    Point cursor() override { return {}; }
    bool anotherInstanceRuns() override { return false; }
};

}  // namespace quenlox
