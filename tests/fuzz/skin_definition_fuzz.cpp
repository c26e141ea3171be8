// The text file of a skin package, whatever it holds: every place and size stays within what a window can have.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "skin/skin_definition.h"

using namespace quenlox;

namespace {

bool IsSize(int value) { return value >= 0 && value <= 4096; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SplitValues values;
    const SkinDefinition skin = ReadDefinition(IniDocument::Parse({reinterpret_cast<const char*>(data), size}), values);
    if (!IsSize(skin.size.width) || !IsSize(skin.size.height)) std::abort();
    for (const auto& label : skin.labels) {
        if (label && (label->bounds.width < 0 || label->bounds.height < 0)) std::abort();
    }
    for (const Size picture : {Size{0, 0}, Size{1, 1}, Size{5000, 5000}}) {
        for (const Point at : {PlaceOfBar(skin, picture), PlaceOfVolume(skin, picture)}) {
            // A bar that the package places itself may lie anywhere; one placed for it lies inside the window.
            if (!skin.bar && !skin.volume && (at.x < 0 || at.y < 0 || at.x > skin.size.width || at.y > skin.size.height)) std::abort();
        }
    }
    return 0;
}
