// What the fields of the tags can hold. Fields are numbered as in the editor: title, artist, album, genre, year, track,
// comment. Pure functions.
#pragma once

#include <string_view>

namespace quenlox {

// ID3v1: 30 bytes of Shift-JIS for title, artist and album, 4 for the year, 30 for the comment, of which a track number
// (1 to 255) takes two. A genre is a number: what the list does not have is lost, which the caller sees.
bool FitsId3v1(int field, std::string_view text, bool withTrack);
// The records of the decoding library: 511 bytes of UTF-8, comment 1023, genre 127, year and track 31.
bool FitsTagField(int field, std::string_view text);

}  // namespace quenlox
