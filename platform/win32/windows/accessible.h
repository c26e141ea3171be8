// The parts of a skinned window for assistive programs, as an MSAA object (IAccessible) whose children are simple
// elements: number n + 1 is part n of the form. Used on the user-interface thread only; calls from elsewhere are
// brought there by COM.
#pragma once

#include <memory>

#include <oleacc.h>

#include "platform/win32/win32.h"

namespace quenlox::win32 {

class SkinnedWindow;

struct ReleaseAccessible {
    void operator()(IAccessible* object) const { object->Release(); }
};
using AccessiblePointer = std::unique_ptr<IAccessible, ReleaseAccessible>;

// The object outlives the window in the hands of others, and then has nothing to tell.
AccessiblePointer MakeAccessible(const std::shared_ptr<SkinnedWindow>& window);

// The answer to WM_GETOBJECT; 0 when the system has no service for it.
LRESULT AnswerWithObject(WPARAM w, IAccessible* object);

}  // namespace quenlox::win32
