#include "playlist/name_estimate.h"

#include <array>
#include <vector>

#include "text/format_file_name.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

using Fields = std::array<std::string_view, 5>;  // by FormatField

// The fields of a name, or nothing when it does not fit the format.
std::optional<Fields> Match(std::string_view name, const std::vector<FormatPart>& parts) {
    Fields fields;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const FormatPart& part = parts[i];
        if (part.field == FormatField::Literal) {
            if (!name.starts_with(part.literal)) return std::nullopt;
            name.remove_prefix(part.literal.size());
            continue;
        }
        std::size_t length = name.size();
        if (i + 1 < parts.size() && parts[i + 1].field == FormatField::Literal) {
            const std::string& literal = parts[i + 1].literal;
            // The literal text that ends the format must end the name.
            if (i + 2 < parts.size()) {
                length = name.find(literal);
            } else {
                length = name.ends_with(literal) ? name.size() - literal.size() : std::string_view::npos;
            }
            if (length == std::string_view::npos) return std::nullopt;
        }
        std::string_view& field = fields[static_cast<std::size_t>(part.field)];
        if (field.empty()) field = TrimBlanks(name.substr(0, length));
        name.remove_prefix(length);
    }
    if (!name.empty()) return std::nullopt;
    return fields;
}

}  // namespace

std::optional<NameEstimate> EstimateFromFileName(std::string_view path, std::string_view format) {
    const std::string name = BaseNameOf(path);
    if (CharacterCount(TrimBlanks(format)) < 2) return std::nullopt;
    const std::optional<Fields> fields = Match(name, ParseFileNameFormat(format));
    if (!fields) return NameEstimate{name, {}, {}};
    const auto field = [&](FormatField which) { return std::string((*fields)[static_cast<std::size_t>(which)]); };
    return NameEstimate{field(FormatField::Title), field(FormatField::Artist), field(FormatField::Album)};
}

}  // namespace quenlox
