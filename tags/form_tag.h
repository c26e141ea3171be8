// The tag editor window. On the user-interface thread.
#pragma once

#include "forms/form.h"

namespace quenlox {

struct GlobalState;

class FormTag : public Form {
  public:
    explicit FormTag(GlobalState& state) : Form("FormTag", Kind::Dialog), state_(state) {}

    // Closed by the user it is only hidden: its place is saved at the end of the program.
    void Form_Unload(bool& cancel) override;

  private:
    GlobalState& state_;
};

}  // namespace quenlox
