#include <algorithm>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

#include "libraries/vbmp3/tags/tag_edit.h"

using namespace vbmp3;

namespace {

std::vector<uint8_t> CarriedOut(const Recipe& recipe, const ByteSource& source) {
    std::vector<uint8_t> out;
    const bool whole = recipe.carryOut(source, [&](std::span<const uint8_t> part) {
        out.insert(out.end(), part.begin(), part.end());
        return true;
    });
    if (!whole || static_cast<int64_t>(out.size()) != recipe.size()) std::abort();
    return out;
}

}  // namespace

// Editing any file as a RIFF file keeps its sound, and the fields are read back.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemorySource source({data, size});
    HeadTailReader reader(source);
    const FileLayout layout = ScanFileLayout(reader);
    const TagFields fields{"title", "夜曲", "🎵", "comment", "2001", "Rock", "5", 17};
    for (const auto& plan : {PlanRmp(reader, layout), PlanMp3(reader, layout), PlanRemove(reader, layout, kTagAll)})
        if (plan) CarriedOut(*plan, source);
    if (layout.container == Container::None || layout.data.empty() || layout.wide) return 0;
    // A chunk with such a name is taken for the tag when it happens to begin where that would.
    for (const RiffChunk& chunk : layout.chunks)
        if (std::string_view(chunk.id.data(), 3) == "TAG") return 0;
    const auto plan = PlanWrite(reader, layout, kTagSi, fields);
    if (!plan) std::abort();
    const auto edited = CarriedOut(*plan, source);
    const MemorySource again(edited);
    HeadTailReader editedReader(again);
    const FileLayout editedLayout = ScanFileLayout(editedReader);
    if (ReadTagKind(editedReader, editedLayout, kTagSi) != fields) std::abort();
    // An ID3v1 tag in the data chunk moves to the list; the sound before it does not change.
    const auto sound = [](const uint8_t* bytes, const ByteRange& range) {
        return std::span(bytes + range.begin, static_cast<size_t>(range.size()));
    };
    const auto before = sound(data, layout.audio), after = sound(edited.data(), editedLayout.audio);
    if (!std::equal(before.begin(), before.end(), after.begin(), after.end())) std::abort();
    return 0;
}
