// The fields of a file from whichever tags it carries. Reads head and tail; decodes nothing.
#pragma once

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/tag_fields.h"

namespace vbmp3 {

// Kinds of tag that can be read; the numbers are those of VBMP3_TAG_*. APE is never written, but can be taken off.
enum : int { kTagId3v1 = 1, kTagId3v2 = 2, kTagSi = 4, kTagAll = 7, kTagApe = 8 };

int PresentTags(const FileLayout& layout);  // bit mask
// The fields of one kind; empty when the file does not carry it. Of several ID3v2 tags the first counts.
TagFields ReadTagKind(HeadTailReader& reader, const FileLayout& layout, int kind);
// What one kind holds beyond its fields, all tags of that kind taken together. A tag that cannot be read counts as one.
TagExtras ReadTagExtras(HeadTailReader& reader, const FileLayout& layout, int kind);
// What to show of a file. The SI fields of a RIFF file come first, then ID3v2, ID3v1 and APE, each filling what is
// missing.
TagFields ReadTags(HeadTailReader& reader, const FileLayout& layout);
// The same without the SI fields.
TagFields ReadTagsOfSound(HeadTailReader& reader, const FileLayout& layout);

// The ID3v2 block that counts: at the head, else appended, else in a chunk of a RIFF file; null when there is none.
const TagBlock* FindId3v2(const FileLayout& layout);

}  // namespace vbmp3
