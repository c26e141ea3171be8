#include "text/format_file_name.h"

#include <algorithm>

#include "text/strings.h"

namespace quenlox {
namespace {

FormatField FieldOf(char letter, bool readOnly) {
    switch (letter) {
        case 'T': case 't': return FormatField::Title;
        case 'N': case 'n': return FormatField::Artist;
        case 'B': case 'b': return FormatField::Album;
        case 'G': case 'g': return FormatField::Genre;
        case 'K': case 'k': return readOnly ? FormatField::Track : FormatField::Literal;
        case 'Y': case 'y': return readOnly ? FormatField::Year : FormatField::Literal;
        case '-': return readOnly ? FormatField::Passed : FormatField::Literal;
        default: return FormatField::Literal;
    }
}

constexpr std::string_view kDigits = "0123456789";

bool IsNumber(FormatField field) { return field == FormatField::Track || field == FormatField::Year; }

// How much of the name falls to part `i`, a field; npos: the name does not fit.
std::size_t LengthOfField(std::string_view name, const std::vector<FormatPart>& parts, std::size_t i) {
    const bool last = i + 1 == parts.size();
    if (last || parts[i + 1].field != FormatField::Literal) {
        return IsNumber(parts[i].field) ? std::min(name.find_first_not_of(kDigits), name.size()) : name.size();
    }
    const std::string& literal = parts[i + 1].literal;
    if (i + 2 < parts.size()) return name.find(literal);
    // The literal text that ends the format must end the name.
    return name.ends_with(literal) ? name.size() - literal.size() : std::string_view::npos;
}

}  // namespace

std::vector<FormatPart> ParseFileNameFormat(std::string_view format, bool readOnly) {
    format = TrimBlanks(format);
    std::vector<FormatPart> parts;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '*' && i + 1 < format.size()) {
            ++i;
            if (const FormatField field = FieldOf(format[i], readOnly); field != FormatField::Literal) {
                parts.push_back({field, {}});
                continue;
            }
        }
        if (parts.empty() || parts.back().field != FormatField::Literal) parts.emplace_back();
        parts.back().literal += format[i];
    }
    return parts;
}

std::optional<NameFields> MatchFileName(std::string_view name, const std::vector<FormatPart>& parts) {
    NameFields fields;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const FormatPart& part = parts[i];
        if (part.field == FormatField::Literal) {
            if (!name.starts_with(part.literal)) return std::nullopt;
            name.remove_prefix(part.literal.size());
            continue;
        }
        const std::size_t length = LengthOfField(name, parts, i);
        if (length == std::string_view::npos) return std::nullopt;
        const std::string_view found = TrimBlanks(name.substr(0, length));
        const bool isNumber = !found.empty() && found.find_first_not_of(kDigits) == found.npos;
        if (IsNumber(part.field) && !isNumber) return std::nullopt;
        std::string_view& field = fields[static_cast<std::size_t>(part.field)];
        if (field.empty()) field = found;
        name.remove_prefix(length);
    }
    if (!name.empty()) return std::nullopt;
    return fields;
}

std::optional<NameFields> FieldsOfFileName(std::string_view name, std::string_view format) {
    const auto parts = ParseFileNameFormat(format, true);
    const auto isField = [](const FormatPart& part) { return part.field != FormatField::Literal; };
    return std::ranges::any_of(parts, isField) ? MatchFileName(name, parts) : std::nullopt;
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
            default: break;
        }
    }
    return name;
}

}  // namespace quenlox
