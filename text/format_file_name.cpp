#include "text/format_file_name.h"

#include "text/strings.h"

namespace quenlox {
namespace {

FormatField FieldOf(char letter) {
    switch (letter) {
        case 'T': case 't': return FormatField::Title;
        case 'N': case 'n': return FormatField::Artist;
        case 'B': case 'b': return FormatField::Album;
        case 'G': case 'g': return FormatField::Genre;
        default: return FormatField::Literal;
    }
}

}  // namespace

std::vector<FormatPart> ParseFileNameFormat(std::string_view format) {
    format = TrimBlanks(format);
    std::vector<FormatPart> parts;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '*' && i + 1 < format.size()) {
            ++i;
            if (const FormatField field = FieldOf(format[i]); field != FormatField::Literal) {
                parts.push_back({field, {}});
                continue;
            }
        }
        if (parts.empty() || parts.back().field != FormatField::Literal) parts.emplace_back();
        parts.back().literal += format[i];
    }
    return parts;
}

std::string FormatFileName(std::string_view format, std::string_view title, std::string_view artist,
                           std::string_view album, std::string_view genre) {
    std::string name;
    for (const FormatPart& part : ParseFileNameFormat(format)) {
        switch (part.field) {
            case FormatField::Literal: name += part.literal; break;
            case FormatField::Title: name += title; break;
            case FormatField::Artist: name += artist; break;
            case FormatField::Album: name += album; break;
            case FormatField::Genre: name += genre; break;
        }
    }
    return name;
}

}  // namespace quenlox
