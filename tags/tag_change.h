// What is done to the tags of many files alike: one field given to all, tracks numbered, upper and lower case, two
// fields swapped, fields told from the name of the file; and how it is taken back. Holds no state: any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/vbmp3.h"

namespace quenlox {

enum class TagAction { SetField, Number, UpperCase, LowerCase, Capitals, Swap, FromName };

struct TagChange {
    TagAction action = TagAction::SetField;
    std::string TrackTexts::*field = &TrackTexts::title;   // of Number always the track
    std::string TrackTexts::*other = &TrackTexts::artist;  // Swap: the one it changes places with
    // SetField: the text. Number: the first number, with zeros in front as many digits ("01"), with a "/" behind it
    // also how many there are ("1/"). FromName: the format of the names.
    std::string value;
};

// What becomes of a file's texts, the file being number `position` (from 0) of `count`; nothing: the change has nothing
// to say about it, because its name does not fit the format.
std::optional<TrackTexts> Changed(const TagChange& change, TrackTexts texts, const std::string& path,
                                  std::size_t position, std::size_t count);

// The texts of the tags that a file has, by their kinds.
struct TagsBefore {
    std::string path;
    std::vector<std::pair<int, TrackTexts>> tags;
};

// The richest tag of these kinds, and what only the others know. `present` is the mask of those there are.
TrackTexts ReadFields(Vbmp3& vbmp3, const std::string& path, int kinds, int& present);
TagsBefore ReadTags(Vbmp3& vbmp3, const std::string& path);
int GenreNumberOf(Vbmp3& vbmp3, const std::string& genre);  // kNoGenre: none of the list

// Each kind of tag keeps its other fields. `before` is set when something has been written.
LibraryError ChangeTags(Vbmp3& vbmp3, const TagChange& change, const std::string& path, std::size_t position,
                        std::size_t count, std::optional<TagsBefore>& before);
// Gives every tag the texts it had, and takes off those that were not there.
LibraryError RestoreTags(Vbmp3& vbmp3, const TagsBefore& before);

}  // namespace quenlox
