// The small language in which file names are written: "*T" stands for the title, "*N" for the artist, "*B" for the
// album and "*G" for the genre, in either case; every other character stands for itself.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

// The last three are of names that are read only.
enum class FormatField { Literal, Title, Artist, Album, Genre, Track, Year, Passed };
inline constexpr std::size_t kFormatFields = 8;

struct FormatPart {
    FormatField field = FormatField::Literal;
    std::string literal;
    bool operator==(const FormatPart&) const = default;
};

// The parts of a format in their order, never two literal ones in a row. Blanks around the format do not count. A "*"
// before any other letter is dropped; at the end it stands for itself.
std::vector<FormatPart> ParseFileNameFormat(std::string_view format, bool readOnly = false);

// The fields of a name, by FormatField, as `parts` cut it: the text between the literal ones falls to the fields in
// their order. A field ends at the first place where the literal text behind it occurs; the last field takes the rest.
// Two fields without literal text between them: the first one takes everything, a number its digits. Blanks around a
// field are dropped; of one that occurs twice the first that is not empty counts. Nothing when the name does not fit.
using NameFields = std::array<std::string_view, kFormatFields>;
std::optional<NameFields> MatchFileName(std::string_view name, const std::vector<FormatPart>& parts);
// The same of a format that may also have "*K" for the track, "*Y" for the year, both of digits alone, and "*-" for
// what is passed over. Nothing for one without a field either.
std::optional<NameFields> FieldsOfFileName(std::string_view name, std::string_view format);

// The file name, without extension, that a format gives. Fields are inserted as they are: nothing is trimmed, replaced
// or checked. An empty format gives an empty name.
std::string FormatFileName(std::string_view format, std::string_view title, std::string_view artist,
                           std::string_view album, std::string_view genre);

}  // namespace quenlox
