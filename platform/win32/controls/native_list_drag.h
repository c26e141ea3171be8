// Dragging the selected rows of a list view to another place in it, with a mark where they would go, to a tab of the
// same window, or out of it. The list scrolls while the pointer is held beyond its ends.
#pragma once

#include <functional>
#include <optional>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

// The border between two rows that is nearest to a point of the list, as the row behind it.
int BorderAt(HWND list, POINT at);

// A line where dragged rows would go. Painted by the list, when all else is.
class InsertionMark {
  public:
    void show(HWND list, int before);  // before that row; -1 takes it away
    bool shown() const { return before_ >= 0; }
    void paint(HDC dc) const;

  private:
    int top() const;  // in pixels of the list
    void invalidate() const;

    HWND list_ = nullptr;
    int before_ = -1;
};

class NativeListDrag {
  public:
    explicit NativeListDrag(InsertionMark& mark) : mark_(mark) {}
    struct Target {
        int before = -1;      // the row before which the rows go
        HWND tabs = nullptr;  // or the tabs that they have been dragged to
        int tab = -1;
    };
    // `drop` is told where the selected rows go: to another place in the list, or to a tab, as far as allowed.
    // `leave`, where there is one, is told when the rows leave the window, and the drag has ended then.
    void begin(HWND list, bool inList, bool toTabs, std::function<void(const Target& target)> drop,
               std::function<void()> leave);
    bool active() const { return list_ != nullptr; }
    // Messages of the list while rows are being dragged.
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l);

  private:
    void follow(POINT at);
    void findTab(POINT at);
    bool leaves(POINT at);
    void setMark(int before);
    void end(bool dropped);

    HWND list_ = nullptr;
    Target target_;
    bool inList_ = true, toTabs_ = false;
    std::function<void(const Target&)> drop_;
    std::function<void()> leave_;
    InsertionMark& mark_;
};

}  // namespace quenlox::win32
