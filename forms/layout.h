// How the controls of an ordinary window are arranged: rows and columns, sizes in dialog units (a quarter of the
// average character width, an eighth of the character height), so that a window follows the font and the monitor's
// resolution.
#pragma once

#include <functional>
#include <vector>

#include "forms/geometry.h"

namespace quenlox {

class Control;

struct Layout {
    enum class Kind { None, Control, Row, Column, Space, Group, Pages };

    Kind kind = Kind::None;
    quenlox::Control* control = nullptr;  // Control: itself; Group: its Frame; Pages: its TabStrip
    int width = 0;                        // dialog units; 0: as wide as the content or the control wants
    int height = 0;
    int grow = 0;  // share of the room that is left over along the parent's direction
    int gap = 4;   // between the items
    std::vector<Layout> items;
};

// Shorthands: Row({Item(label, 60), Item(box, 0, 14, 1)}).
Layout Item(Control& control, int width = 0, int height = 0, int grow = 0);
Layout Row(std::vector<Layout> items, int grow = 0);
Layout Column(std::vector<Layout> items, int grow = 0);
Layout Space(int width, int height, int grow = 0);
Layout Group(Control& frame, Layout content, int grow = 0);            // a frame with its content
Layout Pages(Control& tabs, std::vector<Layout> pages, int grow = 0);  // one page a tab; all lie over each other

struct DialogUnits {
    double x = 1.75;  // pixels for one horizontal unit
    double y = 1.875;
};

// The controls in the order in which they are read, which is that of the Tab key: a row from its left end, a column
// from its top, a frame and a row of tabs before what is in them.
std::vector<Control*> ReadingOrder(const Layout& layout);
// The size that a layout needs, in pixels. `wish` tells what a control wants where the layout leaves 0.
Size Measure(const Layout& layout, DialogUnits units, const std::function<Size(const Control&)>& wish);
// Gives every control of the layout its bounds within `area`.
void Arrange(const Layout& layout, const Rect& area, DialogUnits units,
             const std::function<Size(const Control&)>& wish);

}  // namespace quenlox
