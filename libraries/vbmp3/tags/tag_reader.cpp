#include "libraries/vbmp3/tags/tag_reader.h"

#include <algorithm>

#include "libraries/vbmp3/tags/ape.h"
#include "libraries/vbmp3/tags/id3v1.h"
#include "libraries/vbmp3/tags/id3v2.h"
#include "libraries/vbmp3/tags/riff_info.h"

namespace vbmp3 {

const TagBlock* FindId3v2(const FileLayout& layout) {
    for (const TagKind kind : {TagKind::Id3v2, TagKind::Id3v2Appended, TagKind::Id3v2Chunk})
        if (const TagBlock* block = layout.find(kind)) return block;
    return nullptr;
}

int PresentTags(const FileLayout& layout) {
    const bool si =
        std::any_of(layout.info.begin(), layout.info.end(), [](const RiffChunk& chunk) { return !chunk.is("IID3"); });
    return (layout.id3v1().empty() ? 0 : kTagId3v1) | (FindId3v2(layout) == nullptr ? 0 : kTagId3v2) |
           (si ? kTagSi : 0) | (layout.find(TagKind::Ape) == nullptr ? 0 : kTagApe);
}

TagFields ReadTagKind(HeadTailReader& reader, const FileLayout& layout, int kind) {
    switch (kind) {
        case kTagId3v1: return ReadId3v1(reader.view(layout.id3v1().begin, static_cast<size_t>(layout.id3v1().size())));
        case kTagId3v2: {
            const TagBlock* block = FindId3v2(layout);
            return block != nullptr ? ReadId3v2(reader, block->range) : TagFields{};
        }
        case kTagSi: return ReadRiffInfo(reader, layout);
        case kTagApe: {
            const TagBlock* block = layout.find(TagKind::Ape);
            return block != nullptr ? ReadApe(reader, block->range) : TagFields{};
        }
        default: return {};
    }
}

TagExtras ReadTagExtras(HeadTailReader& reader, const FileLayout& layout, int kind) {
    TagExtras all;
    const auto add = [&](const TagExtras& extras) {
        all.pictures += extras.pictures;
        all.others += extras.others;
    };
    for (const TagBlock& block : layout.tags) {
        const bool id3v2 =
            block.kind == TagKind::Id3v2 || block.kind == TagKind::Id3v2Appended || block.kind == TagKind::Id3v2Chunk;
        if (kind == kTagId3v2 && id3v2) {
            const auto tag = ParseId3v2(reader, block.range);
            add(tag ? ExtrasOf(*tag) : TagExtras{0, 1});
        }
        if (kind == kTagApe && block.kind == TagKind::Ape) add(ReadApeExtras(reader, block.range));
    }
    return all;
}

TagFields ReadTagsOfSound(HeadTailReader& reader, const FileLayout& layout) {
    TagFields fields = ReadTagKind(reader, layout, kTagId3v2);
    AddMissing(fields, ReadTagKind(reader, layout, kTagId3v1));
    AddMissing(fields, ReadTagKind(reader, layout, kTagApe));
    return fields;
}

TagFields ReadTags(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.info.empty()) return ReadTagsOfSound(reader, layout);
    TagFields fields = ReadRiffInfo(reader, layout);
    AddMissing(fields, ReadTagsOfSound(reader, layout));
    return fields;
}

}  // namespace vbmp3
