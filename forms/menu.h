// Pop-up menus as plain trees of items.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quenlox {

struct MenuItem {
    std::string caption;  // "&" before a letter makes it the key of the item; "-" is a separator
    bool checked = false;
    bool enabled = true;
    bool visible = true;
    bool radio = false;  // a dot instead of a tick
    std::function<void()> onClick;
    std::vector<MenuItem> items;  // a sub-menu when not empty

    void click() const {
        if (enabled && onClick) onClick();
    }
};

inline MenuItem MenuCommand(std::string caption, std::function<void()> onClick, bool enabled = true) {
    MenuItem item;
    item.caption = std::move(caption);
    item.enabled = enabled;
    item.onClick = std::move(onClick);
    return item;
}

// A command with a tick, or with a dot where one of several is chosen.
inline MenuItem MenuChoice(std::string caption, bool checked, std::function<void()> onClick, bool radio = false) {
    MenuItem item = MenuCommand(std::move(caption), std::move(onClick));
    item.checked = checked;
    item.radio = radio;
    return item;
}

inline MenuItem SubMenu(std::string caption, std::vector<MenuItem> items) {
    MenuItem item;
    item.caption = std::move(caption);
    item.items = std::move(items);
    return item;
}

inline MenuItem MenuSeparator() { return MenuCommand("-", {}); }

struct Menu {
    std::string name;
    std::vector<MenuItem> items;
};

}  // namespace quenlox
