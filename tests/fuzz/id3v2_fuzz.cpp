#include <algorithm>
#include <cstdlib>

#include "libraries/vbmp3/tags/id3v2.h"

using namespace vbmp3;

// Any bytes are read as a tag; what can be read whole can be edited, no picture is lost by it nor what is no frame, and
// the edit is read back.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemorySource source({data, size});
    HeadTailReader reader(source);
    const ByteRange all{0, static_cast<int64_t>(size)};
    ReadId3v2(reader, all);
    auto tag = ParseId3v2(reader, all);
    if (!tag) return 0;
    TagFields fields{"title", "夜曲", "🎵", "comment", "2001", "Rock", "5", 17};
    const int pictures = ExtrasOf(*tag).pictures;
    const auto carriedOut = [&](const Recipe& recipe) {
        std::vector<uint8_t> out;
        recipe.carryOut(source, [&](auto part) { return out.insert(out.end(), part.begin(), part.end()), true; });
        return out;
    };
    const auto rest = carriedOut(tag->rest);
    SetFields(*tag, fields);
    if (ExtrasOf(*tag).pictures != pictures) std::abort();
    const auto recipe = MakeId3v2(*tag);
    if (!recipe) return 0;
    const auto bytes = carriedOut(*recipe);
    if (!std::equal(rest.rbegin(), rest.rend(), bytes.rbegin())) std::abort();
    // What is no frame may look like one to who does not know where it began.
    if (!rest.empty()) return 0;
    const MemorySource edited(bytes);
    HeadTailReader again(edited);
    if (ReadId3v2(again, {0, edited.size()}) != fields) std::abort();
    return 0;
}
