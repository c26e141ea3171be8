// What the fields of an ID3v1 tag can hold; those of the others hold any text. Fields are numbered as in the editor:
// title, artist, album, genre, year, track, comment. Pure functions.
#pragma once

#include <string_view>

namespace quenlox {

// ID3v1: 30 bytes of Shift-JIS for title, artist and album, 4 for the year, 30 for the comment, of which a track number
// (1 to 255) takes two. A genre is a number: what the list does not have is lost, which the caller sees.
bool FitsId3v1(int field, std::string_view text, bool withTrack);

}  // namespace quenlox
