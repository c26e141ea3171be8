// Dragging the selected rows of a list view to another place in it, with a mark where they would go, or to a tab of the
// same window. The list scrolls while the pointer is held beyond its ends.
#pragma once

#include <functional>
#include <optional>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

// The border between two rows that is nearest to a point of the list, as the row behind it.
int BorderAt(HWND list, POINT at);

class NativeListDrag {
  public:
    struct Target {
        int before = -1;      // the row before which the rows go
        HWND tabs = nullptr;  // or the tabs that they have been dragged to
        int tab = -1;
    };
    // `drop` is told where the selected rows go: to another place in the list, or to a tab, as far as allowed.
    void begin(HWND list, bool inList, bool toTabs, std::function<void(const Target& target)> drop);
    bool active() const { return list_ != nullptr; }
    // Messages of the list while rows are being dragged.
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l);
    void paintMark(HDC dc) const;

  private:
    void follow(POINT at);
    void findTab(POINT at);
    void setMark(int before);
    void end(bool dropped);
    int markHeight(int before) const;  // in pixels of the list

    HWND list_ = nullptr;
    Target target_;
    bool inList_ = true, toTabs_ = false;
    std::function<void(const Target&)> drop_;
};

}  // namespace quenlox::win32
