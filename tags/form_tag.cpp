#include "tags/form_tag.h"

#include "app/global_state.h"

namespace quenlox {

void FormTag::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    hide();
}

}  // namespace quenlox
