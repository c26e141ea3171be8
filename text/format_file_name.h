// The small language in which file names are written: "*T" stands for the title, "*N" for the artist, "*B" for the
// album and "*G" for the genre, in either case; every other character stands for itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

enum class FormatField { Literal, Title, Artist, Album, Genre };

struct FormatPart {
    FormatField field = FormatField::Literal;
    std::string literal;
    bool operator==(const FormatPart&) const = default;
};

// The parts of a format in their order, never two literal ones in a row. Blanks around the format do not count. A "*"
// before any other letter is dropped; at the end it stands for itself.
std::vector<FormatPart> ParseFileNameFormat(std::string_view format);

// The file name, without extension, that a format gives. Fields are inserted as they are: nothing is trimmed, replaced
// or checked. An empty format gives an empty name.
std::string FormatFileName(std::string_view format, std::string_view title, std::string_view artist,
                           std::string_view album, std::string_view genre);

}  // namespace quenlox
