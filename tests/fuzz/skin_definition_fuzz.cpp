// The text file of a skin package, whatever it holds: every place and size stays within what a window can have, and
// what is read stays within its memory.
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "skin/prepared_skin.h"
#include "tests/fakes/fake_file_system.h"

using namespace quenlox;

namespace {

constexpr std::int64_t kMostMemory = 4 << 20;  // bytes, without pictures
constexpr const char* kFile = "C:\\Quenlox\\skin\\x\\x.tsk";

std::int64_t held = 0, most = 0;

void Demand(bool holds) {
    if (!holds) std::abort();
}

bool Within(int value, int low, int high) { return value >= low && value <= high; }
void CheckPlace(Point at) { Demand(Within(at.x, 0, kLongestSide) && Within(at.y, -kLongestSide, kLongestSide)); }
void CheckArea(const Rect& area, int points) {
    CheckPlace({area.left, area.top});
    Demand(Within(area.width, 0, kLongestSide) && Within(area.height, 0, kLongestSide) &&
           Within(points, 0, kLargestType));
}

void Check(const SkinDefinition& skin) {
    const Rect window{0, 0, skin.size.width, skin.size.height};
    Demand(Within(window.width, 1, kLongestSide) && Within(window.height, 1, kMostWindowPixels / window.width));
    if (skin.lyrics) {
        CheckArea(skin.lyrics->bounds, skin.lyrics->fontField);
        Demand(Unite(skin.lyrics->bounds, window) == window);
    }
    for (const auto& label : skin.labels) {
        if (label) CheckArea(label->bounds, label->fontField);
    }
    for (const auto& display : {skin.displayC, skin.displayD}) {
        if (display) CheckArea(display->bounds, 0);
    }
    for (const auto& points : {skin.buttons, skin.commands, {skin.displayA, skin.displayB, skin.bar, skin.volume}}) {
        for (const auto& point : points) CheckPlace(point.value_or(Point{}));
    }
    for (const Size picture : {Size{0, 0}, Size{1, 1}, Size{5000, 5000}}) {
        const Point bar = PlaceOfBar(skin, picture), volume = PlaceOfVolume(skin, picture);
        CheckPlace(bar), CheckPlace(volume);
        // A bar that the package places itself may lie anywhere; one placed for it lies inside the window.
        if (!skin.bar) Demand(bar.x <= window.width && bar.y >= 0 && bar.y <= window.height);
        if (!skin.volume) Demand(volume.x <= window.width && volume.y >= 0 && volume.y <= window.height);
    }
}

}  // namespace

// What counts the memory gives it back by another name than the sanitizer knows.
extern "C" const char* __asan_default_options() { return "alloc_dealloc_mismatch=0"; }

void* operator new(std::size_t size) {
    void* made = std::malloc(size);
    if (!made) throw std::bad_alloc();
    most = std::max(most, held += static_cast<std::int64_t>(malloc_usable_size(made)));
    return made;
}
void operator delete(void* made) noexcept {
    held -= static_cast<std::int64_t>(malloc_usable_size(made));
    std::free(made);
}
void operator delete(void* made, std::size_t) noexcept { operator delete(made); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FakeFileSystem files;
    files.add(kFile, std::string(reinterpret_cast<const char*>(data), size));
    SplitValues values;
    const std::int64_t before = most = held;
    const PreparedSkin skin = PrepareSkin(files, kFile, values, {}, Scale(static_cast<int>(size % 400)));
    Demand(most - before <= kMostMemory);
    Check(skin.definition);
    return 0;
}
