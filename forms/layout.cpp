#include "forms/layout.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "forms/control.h"
#include "forms/list_view.h"

namespace quenlox {
namespace {

using Wish = std::function<Size(const Control&)>;

// Room between a frame and its content, in dialog units.
constexpr int kFrameSide = 6;
constexpr int kFrameTop = 11;
constexpr int kFrameBottom = 6;
// Between a row of tabs and its page.
constexpr int kTabGap = 5;

int Horizontal(int units, DialogUnits scale) { return RoundHalfToEven(units * scale.x); }
int Vertical(int units, DialogUnits scale) { return RoundHalfToEven(units * scale.y); }

// Controls that use all the height of their row; every other keeps the height it wants and is centred.
bool FillsHeight(const Control& control) {
    if (const auto* text = dynamic_cast<const TextBox*>(&control)) return text->multiLine();
    if (const auto* bar = dynamic_cast<const ScrollBar*>(&control)) {
        return bar->direction() == ScrollBar::Direction::Vertical;
    }
    return dynamic_cast<const ListView*>(&control) || dynamic_cast<const PictureBox*>(&control);
}

// Lengths of the items along the direction of their row or column: each its own length and, of what is left over, its
// share by `grow`. When there is too little room the growing ones give way first.
std::vector<int> Divide(const std::vector<int>& natural, const std::vector<int>& grow, int room) {
    std::vector<int> lengths = natural;
    const int shares = std::accumulate(grow.begin(), grow.end(), 0);
    if (shares == 0) return lengths;
    const int spare = room - std::accumulate(natural.begin(), natural.end(), 0);
    if (spare >= 0) {
        int sharesGiven = 0, spareGiven = 0;
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            sharesGiven += grow[i];
            const int upToHere = static_cast<int>(std::int64_t{spare} * sharesGiven / shares);
            lengths[i] += upToHere - spareGiven;
            spareGiven = upToHere;
        }
        return lengths;
    }
    std::int64_t growing = 0;
    for (std::size_t i = 0; i < lengths.size(); ++i) growing += grow[i] > 0 ? natural[i] : 0;
    const std::int64_t kept = std::max<std::int64_t>(0, growing + spare);
    std::int64_t naturalPassed = 0, given = 0;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        if (grow[i] == 0 || growing == 0) continue;
        naturalPassed += natural[i];
        const std::int64_t upToHere = kept * naturalPassed / growing;
        lengths[i] = static_cast<int>(upToHere - given);
        given = upToHere;
    }
    return lengths;
}

Size MeasureContent(const Layout& layout, DialogUnits units, const Wish& wish) {
    Size total;
    const auto count = static_cast<int>(layout.items.size());
    switch (layout.kind) {
        case Layout::Kind::None:
        case Layout::Kind::Space: return {};
        case Layout::Kind::Control:
            if (layout.width > 0 && layout.height > 0) return {};
            return wish(*layout.control);
        case Layout::Kind::Row:
        case Layout::Kind::Column: {
            const bool row = layout.kind == Layout::Kind::Row;
            int along = std::max(count - 1, 0) * (row ? Horizontal(layout.gap, units) : Vertical(layout.gap, units)),
                across = 0;
            for (const Layout& item : layout.items) {
                const Size size = Measure(item, units, wish);
                along += row ? size.width : size.height;
                across = std::max(across, row ? size.height : size.width);
            }
            return row ? Size{along, across} : Size{across, along};
        }
        case Layout::Kind::Group:
            if (count > 0) total = Measure(layout.items.front(), units, wish);
            total.width = std::max(total.width, wish(*layout.control).width) + 2 * Horizontal(kFrameSide, units);
            total.height += Vertical(kFrameTop, units) + Vertical(kFrameBottom, units);
            return total;
        case Layout::Kind::Pages: {
            for (const Layout& page : layout.items) {
                const Size size = Measure(page, units, wish);
                total = {std::max(total.width, size.width), std::max(total.height, size.height)};
            }
            const Size tabs = wish(*layout.control);
            return {std::max(total.width, tabs.width), total.height + tabs.height + Vertical(kTabGap, units)};
        }
    }
    return total;
}

// The place of an item in the room that its row or column gives it across their direction.
Rect Fit(const Layout& item, Rect room, bool inRow, DialogUnits units, const Wish& wish) {
    const bool single = item.kind == Layout::Kind::Control;
    if (inRow && (single ? item.height > 0 || !FillsHeight(*item.control) : item.height > 0)) {
        const int height = std::min(Measure(item, units, wish).height, room.height);
        room.top += (room.height - height) / 2;
        room.height = height;
    }
    if (!inRow && item.width > 0) room.width = std::min(room.width, Horizontal(item.width, units));
    return room;
}

void ArrangeLine(const Layout& layout, const Rect& area, DialogUnits units, const Wish& wish) {
    const bool row = layout.kind == Layout::Kind::Row;
    const int gap = row ? Horizontal(layout.gap, units) : Vertical(layout.gap, units);
    std::vector<int> natural, grow;
    for (const Layout& item : layout.items) {
        const Size size = Measure(item, units, wish);
        natural.push_back(row ? size.width : size.height);
        grow.push_back(std::max(item.grow, 0));
    }
    const int gaps = layout.items.empty() ? 0 : gap * static_cast<int>(layout.items.size() - 1);
    const std::vector<int> lengths = Divide(natural, grow, (row ? area.width : area.height) - gaps);
    int at = row ? area.left : area.top;
    for (std::size_t i = 0; i < layout.items.size(); ++i) {
        const Rect room =
            row ? Rect{at, area.top, lengths[i], area.height} : Rect{area.left, at, area.width, lengths[i]};
        Arrange(layout.items[i], Fit(layout.items[i], room, row, units, wish), units, wish);
        at += lengths[i] + gap;
    }
}

}  // namespace

Layout Item(Control& control, int width, int height, int grow) {
    Layout item;
    item.kind = Layout::Kind::Control;
    item.control = &control;
    item.width = width;
    item.height = height;
    item.grow = grow;
    return item;
}

Layout Row(std::vector<Layout> items, int grow) {
    Layout row;
    row.kind = Layout::Kind::Row;
    row.grow = grow;
    row.items = std::move(items);
    return row;
}

Layout Column(std::vector<Layout> items, int grow) {
    Layout column = Row(std::move(items), grow);
    column.kind = Layout::Kind::Column;
    return column;
}

Layout Space(int width, int height, int grow) {
    Layout space;
    space.kind = Layout::Kind::Space;
    space.width = width;
    space.height = height;
    space.grow = grow;
    return space;
}

Layout Group(Control& frame, Layout content, int grow) {
    Layout group = Item(frame, 0, 0, grow);
    group.kind = Layout::Kind::Group;
    group.items.push_back(std::move(content));
    return group;
}

Layout Pages(Control& tabs, std::vector<Layout> pages, int grow) {
    Layout result = Item(tabs, 0, 0, grow);
    result.kind = Layout::Kind::Pages;
    result.items = std::move(pages);
    return result;
}

std::vector<Control*> ReadingOrder(const Layout& layout) {
    std::vector<Control*> order;
    if (layout.control) order.push_back(layout.control);
    for (const Layout& item : layout.items) {
        const std::vector<Control*> inside = ReadingOrder(item);
        order.insert(order.end(), inside.begin(), inside.end());
    }
    return order;
}

Size Measure(const Layout& layout, DialogUnits units, const Wish& wish) {
    Size size = MeasureContent(layout, units, wish);
    if (layout.width > 0) size.width = Horizontal(layout.width, units);
    if (layout.height > 0) size.height = Vertical(layout.height, units);
    return size;
}

void Arrange(const Layout& layout, const Rect& area, DialogUnits units, const Wish& wish) {
    switch (layout.kind) {
        case Layout::Kind::None:
        case Layout::Kind::Space: return;
        case Layout::Kind::Control:
            layout.control->setBounds({area.left, area.top, std::max(area.width, 0), std::max(area.height, 0)});
            return;
        case Layout::Kind::Row:
        case Layout::Kind::Column: return ArrangeLine(layout, area, units, wish);
        case Layout::Kind::Group: {
            layout.control->setBounds(area);
            const int side = Horizontal(kFrameSide, units), top = Vertical(kFrameTop, units);
            const Rect inside{area.left + side, area.top + top, area.width - 2 * side,
                              area.height - top - Vertical(kFrameBottom, units)};
            for (const Layout& content : layout.items) Arrange(content, inside, units, wish);
            return;
        }
        case Layout::Kind::Pages: {
            const int tabs = wish(*layout.control).height;
            layout.control->setBounds({area.left, area.top, area.width, tabs});
            const int top = tabs + Vertical(kTabGap, units);
            for (const Layout& page : layout.items) {
                Arrange(page, {area.left, area.top + top, area.width, area.height - top}, units, wish);
            }
            return;
        }
    }
}

}  // namespace quenlox
