// Files dragged between a list and other windows, those of other programs included, by the means of the system (OLE).
// They are copied there, never moved. On the user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

// Lets the user drag them to wherever the button is let go; handles messages meanwhile. True when the pointer has come
// back to the window `home` with the button held: then nothing was dropped, and the caller goes on. Null: it never
// does.
bool DragFiles(const std::vector<std::string>& files, HWND home);

// Lets a window take files while it lives. `over` is told where they would be dropped, in pixels of the window, with a
// null when they have gone; `drop` where they have been.
class FileDropTarget {
  public:
    using Over = std::function<void(const POINT* at)>;
    using Drop = std::function<void(const std::vector<std::string>& files, POINT at)>;
    // Where the system does not let it (a program with more rights than others), nothing is taken.
    FileDropTarget(HWND window, Over over, Drop drop);
    ~FileDropTarget();
    FileDropTarget(const FileDropTarget&) = delete;
    FileDropTarget& operator=(const FileDropTarget&) = delete;

  private:
    class Target;
    HWND window_;
    Target* target_;
};

}  // namespace quenlox::win32
