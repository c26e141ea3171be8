#include "libraries/vbmp3/tags/tag_reader.h"

#include <algorithm>

#include "libraries/vbmp3/tags/ape.h"
#include "libraries/vbmp3/tags/id3v1.h"
#include "libraries/vbmp3/tags/id3v2.h"
#include "libraries/vbmp3/tags/riff_info.h"

namespace vbmp3 {

const TagBlock* findId3v2(const FileLayout& layout) {
    for (const TagKind kind : {TagKind::Id3v2, TagKind::Id3v2Appended, TagKind::Id3v2Chunk})
        if (const TagBlock* block = layout.find(kind)) return block;
    return nullptr;
}

int presentTags(const FileLayout& layout) {
    const bool si =
        std::any_of(layout.info.begin(), layout.info.end(), [](const RiffChunk& chunk) { return !chunk.is("IID3"); });
    return (layout.id3v1().empty() ? 0 : kTagId3v1) | (findId3v2(layout) == nullptr ? 0 : kTagId3v2) |
           (si ? kTagSi : 0) | (layout.find(TagKind::Ape) == nullptr ? 0 : kTagApe);
}

TagFields readTagKind(HeadTailReader& reader, const FileLayout& layout, int kind) {
    switch (kind) {
        case kTagId3v1: return readId3v1(reader.view(layout.id3v1().begin, static_cast<size_t>(layout.id3v1().size())));
        case kTagId3v2: {
            const TagBlock* block = findId3v2(layout);
            return block != nullptr ? readId3v2(reader, block->range) : TagFields{};
        }
        case kTagSi: return readRiffInfo(reader, layout);
        case kTagApe: {
            const TagBlock* block = layout.find(TagKind::Ape);
            return block != nullptr ? readApe(reader, block->range) : TagFields{};
        }
        default: return {};
    }
}

TagExtras readTagExtras(HeadTailReader& reader, const FileLayout& layout, int kind) {
    TagExtras all;
    const auto add = [&](const TagExtras& extras) {
        all.pictures += extras.pictures;
        all.others += extras.others;
    };
    for (const TagBlock& block : layout.tags) {
        const bool id3v2 = block.kind == TagKind::Id3v2 || block.kind == TagKind::Id3v2Appended ||
                           block.kind == TagKind::Id3v2Chunk;
        if (kind == kTagId3v2 && id3v2) {
            const auto tag = parseId3v2(reader, block.range);
            add(tag ? extrasOf(*tag) : TagExtras{0, 1});
        }
        if (kind == kTagApe && block.kind == TagKind::Ape) add(readApeExtras(reader, block.range));
    }
    return all;
}

TagFields readTagsOfSound(HeadTailReader& reader, const FileLayout& layout) {
    TagFields fields = readTagKind(reader, layout, kTagId3v2);
    addMissing(fields, readTagKind(reader, layout, kTagId3v1));
    addMissing(fields, readTagKind(reader, layout, kTagApe));
    return fields;
}

TagFields readTags(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.info.empty()) return readTagsOfSound(reader, layout);
    TagFields fields = readRiffInfo(reader, layout);
    addMissing(fields, readTagsOfSound(reader, layout));
    return fields;
}

}  // namespace vbmp3
