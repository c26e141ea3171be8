#include <cstdlib>

#include "libraries/vbmp3/tags/tag_reader.h"

using namespace vbmp3;

// Whatever a file claims, every range lies in it, and reading its tags ends.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemorySource source({data, size});
    HeadTailReader reader(source);
    const FileLayout layout = ScanFileLayout(reader);
    const auto inside = [&](const ByteRange& range) {
        if (range.begin < 0 || range.end < range.begin || range.end > layout.fileSize) std::abort();
    };
    for (const TagBlock& tag : layout.tags) inside(tag.range);
    for (const RiffChunk& chunk : layout.chunks) inside(chunk.body);
    for (const RiffChunk& chunk : layout.info) inside(chunk.body);
    inside(layout.audio);
    inside(layout.data);
    inside(layout.riff);
    inside(layout.id3v1());
    ReadTags(reader, layout);
    for (const int kind : {kTagId3v1, kTagId3v2, kTagSi}) ReadTagKind(reader, layout, kind);
    return 0;
}
