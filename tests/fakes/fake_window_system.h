// A window system without a screen: one FakeFormHost for each form, and the posted tasks run with pumpMessages().
#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "forms/form.h"
#include "forms/window_host.h"

namespace quenlox {

class FakeFormHost : public FormHost {
  public:
    std::vector<FormProperty> formChanges;
    std::vector<std::pair<std::string, Property>> controlChanges;
    std::vector<Region> regions;
    std::vector<Rect> invalidated;
    std::vector<std::pair<int, PartChange>> partChanges;
    std::vector<std::string> popups;          // names of the menus
    std::function<void(const Menu&)> onPopup; // chooses an item
    Scale scale;
    const Surface* opacity = nullptr;
    std::string tip;                          // that stands at a place
    int drags = 0;
    bool captured = false;
    Size client{300, 200};
    TwipsPerPixel twips;

    void formChanged(FormProperty property) override { formChanges.push_back(property); }
    void controlChanged(Control& control, Property property) override {
        controlChanges.emplace_back(control.name(), property);
    }
    void controlRemoved(Control&) override {}
    void setRegion(const Region& region) override { regions.push_back(region); }
    void setOpacity(const Surface* to) override { opacity = to; }
    void setScale(Scale to) override { scale = to; }
    void invalidate(const Rect& where) override { invalidated.push_back(where); }
    void partChanged(int part, PartChange change) override { partChanges.emplace_back(part, change); }
    void showTip(const std::string& text, Point) override { tip = text; }
    void beginDrag() override { ++drags; }
    void popup(const Menu& menu, Point) override {
        popups.push_back(menu.name);
        if (onPopup) onPopup(menu);
    }
    void bringToFront() override {}
    Size clientSize() const override { return client; }
    TwipsPerPixel twipsPerPixel() const override { return twips; }
    void captureMouse(bool on) override { captured = on; }
    std::uintptr_t nativeHandle() const override { return 1; }
};

class FakeWindowSystem : public WindowSystem {
  public:
    std::vector<std::pair<Form*, FakeFormHost*>> hosts;  // a host lives as long as its form
    std::deque<std::function<void()>> tasks;
    std::function<void()> onPump;                         // what the user does while messages are handled
    TwipsPerPixel twips;
    Rect area{0, 0, 1920, 1040};
    int pumps = 0;
    bool hasQuit = false;
    bool held = false;

    FakeFormHost* hostOf(const Form& form) const {
        for (const auto& [of, host] : hosts) {
            if (of == &form) return host;
        }
        return nullptr;
    }

    std::shared_ptr<FormHost> realise(Form& form) override {
        auto host = std::make_shared<FakeFormHost>();
        host->twips = twips;
        hosts.emplace_back(&form, host.get());
        return host;
    }
    TwipsPerPixel twipsPerPixel() const override { return twips; }
    Rect workArea(const Rect&) const override { return area; }
    bool mouseHeld() const override { return held; }
    void pumpMessages() override {
        ++pumps;
        if (onPump) onPump();
        while (!tasks.empty()) {
            const auto task = std::move(tasks.front());
            tasks.pop_front();
            task();
        }
    }
    bool runAside(std::function<void()> work, const std::function<bool()>& wanted) override {
        work();
        pumpMessages();
        return wanted();
    }
    bool worksAside() const override { return false; }
    void post(std::function<void()> task) override { tasks.push_back(std::move(task)); }
    int run() override {
        pumpMessages();
        return 0;
    }
    void quit() override { hasQuit = true; }
    void exitProcess() override { hasQuit = true; }
};

}  // namespace quenlox
