// The six drawing procedures of the panel. Each draws one frame over the last one; `variant` is 0 to 9.
#pragma once

namespace quenlox {

class PanelCanvas;

void DrawShapes(PanelCanvas& canvas, int variant);   // wave: ellipses and lines
void DrawTrails(PanelCanvas& canvas, int variant);   // wave: single pixels on a picture that flows away
void DrawRibbons(PanelCanvas& canvas, int variant);  // wave: pieces of pictures put where the sound is
void DrawBars(PanelCanvas& canvas, int variant);     // spectrum
void DrawBoth(PanelCanvas& canvas, int variant);     // spectrum and wave
void DrawMirrors(PanelCanvas& canvas, int variant);  // wave: the picture stretched into itself, with words now and then

}  // namespace quenlox
