// The picture of the panel: one of sixty views of the sound, in six groups of ten. Portable and without a clock: a
// frame follows from the sound given and the frames before it.
#pragma once

#include "forms/surface.h"
#include "speana/panel_canvas.h"
#include "speana/sound_frame.h"
#include "state/panel_views.h"

namespace quenlox {

// The view after `viewType` when the panel is clicked: its next variant, or the next group from its first variant on.
// From a number that stands for no view it goes to the first one.
int NextVariant(int viewType);
int NextGroup(int viewType);
// The view to change to by itself: always of another group, and each of the sixty once in a round.
int NextByItself(int viewType);

class Speana {
  public:
    // One more frame. `viewType` / 10 is the group and % 10 the variant; another view begins with an empty picture, and
    // a number that stands for no view draws nothing.
    void draw(int viewType, const SoundFrame& sound);
    void setAccent(Color accent);  // the colour of the skin that the panel's colours follow
    const Surface& frame() const { return canvas_.picture; }

  private:
    PanelCanvas canvas_;
    int view_ = -1;
};

}  // namespace quenlox
