// The list INFO of RIFF files (Microsoft and IBM: Multimedia Programming Interface, chapter 2): the "SI" fields
// of RMP and WAVE, with the sub-chunk IID3, an ID3v1 tag, that RMP files carry as the last 128 bytes of the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/tag_fields.h"

namespace vbmp3 {

// The fields of the list; a field that it lacks is not taken from IID3.
TagFields ReadRiffInfo(HeadTailReader& reader, const FileLayout& layout);

// The text of an INFO field: Shift-JIS when it fits and is read back the same, else UTF-8, with a byte-order mark where
// it would otherwise be taken for Shift-JIS.
std::string EncodeInfoField(std::string_view utf8);

// The body of a list ("INFO" and its sub-chunks) with these fields. Sub-chunks that hold no field are kept in their
// order, and what is no sub-chunk as one of the name JUNK; a field that reads the same as in `shown` (null: as in the
// file) keeps its bytes; IID3 comes last when `id3v1` is not empty. "INFO" alone when nothing is in it. Nothing when a
// sub-chunk is larger than 16 MiB.
std::optional<std::vector<uint8_t>> MakeRiffInfo(HeadTailReader& reader, const FileLayout& layout,
                                                 const TagFields& fields, const TagFields* shown,
                                                 const std::vector<uint8_t>& id3v1);

}  // namespace vbmp3
