// What an assistive program, such as a screen reader, is told of one thing in a window that the form draws itself.
#pragma once

#include <functional>
#include <string>

#include "forms/geometry.h"

namespace quenlox {

struct AccessiblePart {
    enum class Role { Button, Slider, Text, Picture };

    Role role = Role::Text;
    std::string name;         // of a text: the text itself
    std::string value;        // of a slider: "80%"
    std::string description;
    std::string shortcut;     // "Alt+↑"
    Rect bounds;              // pixels of the form
    bool enabled = true;
    bool pressed = false;
    std::string action;       // what act() does, for a person; empty when there is nothing to do
    std::function<void()> act;
    std::function<void(int percent)> setPercent;  // of a slider that can be moved
};

}  // namespace quenlox
