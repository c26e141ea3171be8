// Pop-up menus as plain trees of items.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quenlox {

struct MenuItem {
    std::string caption;  // "&" before a letter makes it the key of the item; "-" is a separator
    bool checked = false;
    bool enabled = true;
    bool visible = true;
    bool radio = false;   // a dot instead of a tick
    std::function<void()> onClick;
    std::vector<MenuItem> items;  // a sub-menu when not empty

    void click() const {
        if (enabled && onClick) onClick();
    }
};

struct Menu {
    std::string name;
    std::vector<MenuItem> items;
};

}  // namespace quenlox
