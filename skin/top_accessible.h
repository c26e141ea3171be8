// What the main window tells assistive programs of: it has no child windows, so it names what it draws. Buttons and
// labels act through the handlers that a click calls. On the user-interface thread.
#pragma once

#include <vector>

#include "forms/accessible_part.h"
#include "skin/top_controls.h"

namespace quenlox {

class FormTop;
class SkinView;
class TransportButtons;
struct GlobalState;

class TopAccessible {
  public:
    TopAccessible(FormTop& top, const SkinView& view, const TransportButtons& buttons, const GlobalState& state)
        : top_(top), view_(view), buttons_(buttons), state_(state) {}

    std::vector<AccessiblePart> parts() const;
    void tell(TopPart::Kind kind, int index, PartChange change) const;  // nothing for a part that is not to be seen

  private:
    AccessiblePart describe(const TopPart& part) const;
    AccessiblePart describeButton(const TopPart& part) const;
    AccessiblePart describeLabel(const TopPart& part) const;
    AccessiblePart describeBar(const TopPart& part) const;

    FormTop& top_;
    const SkinView& view_;
    const TransportButtons& buttons_;
    const GlobalState& state_;
};

}  // namespace quenlox
