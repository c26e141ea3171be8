// The ID3v1 and ID3v1.1 tag: 128 bytes with fields of fixed length. Its texts have no declared encoding: Japanese
// files hold Shift-JIS, others Latin-1.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "libraries/vbmp3/tags/tag_fields.h"

namespace vbmp3 {

constexpr size_t kId3v1Size = 128;

// Empty fields when the bytes are no ID3v1 tag.
TagFields ReadId3v1(std::span<const uint8_t> block);

// The tag that holds as much of the fields as it can: texts are cut at a character border, the comment has 28 bytes
// when there is a track number (1 to 255), a genre that is not in the list is 255.
std::array<uint8_t, kId3v1Size> MakeId3v1(const TagFields& fields);

// The bytes for a field of an old tag: Shift-JIS; when the text does not fit Shift-JIS or would be read back as
// something else, Latin-1, then UTF-8; when all of that fails, Shift-JIS without the characters that it lacks.
// At most `limit` bytes. `lossless` (may be null) tells whether the whole text is in it.
std::string EncodeLegacyField(std::string_view utf8, size_t limit, bool* lossless = nullptr);

}  // namespace vbmp3
