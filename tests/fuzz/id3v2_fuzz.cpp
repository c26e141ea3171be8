#include <cstdlib>

#include "libraries/vbmp3/tags/id3v2.h"

using namespace vbmp3;

// Any bytes are read as a tag; what can be read whole can be edited, and the edit is read back.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemorySource source({data, size});
    HeadTailReader reader(source);
    const ByteRange all{0, static_cast<int64_t>(size)};
    readId3v2(reader, all);
    auto tag = parseId3v2(reader, all);
    if (!tag) return 0;
    TagFields fields{"title", "夜曲", "🎵", "comment", "2001", "Rock", "5", 17};
    setFields(*tag, fields);
    const auto bytes = makeId3v2(*tag);
    if (!bytes) return 0;
    const MemorySource edited(*bytes);
    HeadTailReader again(edited);
    if (readId3v2(again, {0, edited.size()}) != fields) std::abort();
    return 0;
}
