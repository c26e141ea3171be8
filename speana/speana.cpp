#include "speana/speana.h"

#include "speana/drawing.h"

namespace quenlox {
namespace {

constexpr int kStep = 11;  // has no divisor in common with 60

bool IsView(int viewType) { return viewType >= 0 && viewType < kPanelViews; }

}  // namespace

int NextVariant(int viewType) {
    if (!IsView(viewType)) return 0;
    return viewType / kPanelVariants * kPanelVariants + (viewType % kPanelVariants + 1) % kPanelVariants;
}

int NextGroup(int viewType) {
    return IsView(viewType) ? (viewType / kPanelVariants + 1) % kPanelGroups * kPanelVariants : 0;
}

int NextByItself(int viewType) { return IsView(viewType) ? (viewType + kStep) % kPanelViews : 0; }

void Speana::setAccent(Color accent) {
    if (accent != canvas_.colors.accent()) canvas_.colors = PanelColors(accent);
}

void Speana::draw(int viewType, const SoundFrame& sound) {
    static constexpr void (*kProcedures[kPanelGroups])(PanelCanvas&, int) = {DrawShapes, DrawTrails, DrawRibbons,
                                                                             DrawBars,   DrawBoth,   DrawMirrors};
    if (viewType != view_) {
        view_ = viewType;
        canvas_.clear();
    }
    if (!IsView(viewType)) return;
    canvas_.listen(sound);
    kProcedures[viewType / kPanelVariants](canvas_, viewType % kPanelVariants);
    ++canvas_.tick;
}

}  // namespace quenlox
