// The fields that every kind of tag has in common, as UTF-8 texts without padding. An empty text is a missing field.
#pragma once

#include <string>

namespace vbmp3 {

constexpr int kNoGenre = 255;

struct TagFields {
    std::string title, artist, album, comment, year, genre, track;  // track: "5" or "5/12"
    int genreNumber = kNoGenre;                                     // ID3v1 number of `genre` when it has one

    bool operator==(const TagFields&) const = default;
};

// What a tag holds beyond these fields.
struct TagExtras {
    int pictures = 0, others = 0;
};

// All text fields, for what is done to each of them alike.
constexpr std::string TagFields::*kTextFields[] = {&TagFields::title,   &TagFields::artist, &TagFields::album,
                                                   &TagFields::comment, &TagFields::year,   &TagFields::genre,
                                                   &TagFields::track};

// Takes over what `to` lacks.
inline void AddMissing(TagFields& to, const TagFields& from) {
    if (to.genre.empty()) to.genreNumber = from.genreNumber;
    for (const auto field : kTextFields)
        if ((to.*field).empty()) to.*field = from.*field;
}

}  // namespace vbmp3
