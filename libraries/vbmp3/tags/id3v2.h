// The ID3v2 tag, versions 2.2, 2.3 and 2.4 (id3.org: id3v2-00, id3v2.3.0, id3v2.4.0-structure and -frames): reading its
// fields without touching pictures, and editing them while every other frame stays as it is.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "libraries/formats/file_layout.h"
#include "libraries/vbmp3/tags/recipe.h"
#include "libraries/vbmp3/tags/tag_fields.h"

namespace vbmp3 {

struct Id3v2Frame {
    std::string id;             // three letters in version 2.2, else four
    uint16_t flags = 0;         // as stored; version 2.2 has none
    std::vector<uint8_t> data;  // as stored, with what the flags announce (length, group) in front
    ByteRange place;            // not empty: where these bytes stand in the file instead, for they are many
};

struct Id3v2Tag {
    int version = 3;              // 2, 3 or 4
    bool unsynchronised = false;  // version 2.4: the header says so of all frames, which are kept as stored
    std::vector<Id3v2Frame> frames;
    Recipe rest;                       // what is no frame, padding aside; it stays behind the frames
    HeadTailReader* reader = nullptr;  // of the file that places count in; it must live as long as it is asked
};

// The fields of the tag in `range`. Reads the frames of the fields and the heads of the others.
TagFields ReadId3v2(HeadTailReader& reader, ByteRange range);
// All of a tag, for editing: the small frames are taken into memory, some MiB of them, the others stay in the file.
// Nothing when it is none, is compressed as a whole (2.2), or is unsynchronised as a whole and too large for memory.
std::optional<Id3v2Tag> ParseId3v2(HeadTailReader& reader, ByteRange range);

TagFields FieldsOf(const Id3v2Tag& tag);
TagExtras ExtrasOf(const Id3v2Tag& tag);
// Gives the tag these fields. A field that the tag has already in these words keeps its frames untouched (several
// values, language, encoding); others are replaced where they stand, an empty one is removed. `shown` is what the
// caller has seen of the tag, which may be less than it holds since his texts have a fixed length; null: all of it. The
// comment is the first one without a description. Those with one (notes of programs, fields of the user's own) and
// those in other languages are neither shown nor touched.
void SetFields(Id3v2Tag& tag, const TagFields& fields, const TagFields* shown = nullptr);
// The whole tag with `padding` zero bytes at the end; a tag with a rest keeps that at its end instead. Nothing when it
// is too large for the format. Without frames and rest: empty.
std::optional<Recipe> MakeId3v2(const Id3v2Tag& tag, size_t padding = 1024);

// Texts of frames, for other readers of the tag (lyrics). `bytes` begins with the byte of the encoding.
std::string Id3v2Text(std::span<const uint8_t> bytes);

}  // namespace vbmp3
