// Dragging the selected rows of a list view to another place in it, with a mark where they would go. The list scrolls
// while the pointer is held beyond its ends.
#pragma once

#include <functional>
#include <optional>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

class NativeListDrag {
  public:
    // `drop` is told before which row the selected ones go.
    void begin(HWND list, std::function<void(int before)> drop);
    bool active() const { return list_ != nullptr; }
    // Messages of the list while rows are being dragged.
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l);
    void paintMark(HDC dc) const;

  private:
    void follow(POINT at);
    void setMark(int before);
    void end(bool dropped);
    int markHeight(int before) const;  // in pixels of the list

    HWND list_ = nullptr;
    int before_ = -1;
    std::function<void(int)> drop_;
};

}  // namespace quenlox::win32
