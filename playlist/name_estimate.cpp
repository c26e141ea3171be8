#include "playlist/name_estimate.h"

#include "text/format_file_name.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {

std::optional<NameEstimate> EstimateFromFileName(std::string_view path, std::string_view format) {
    const std::string name = BaseNameOf(path);
    if (CharacterCount(TrimBlanks(format)) < 2) return std::nullopt;
    const auto fields = MatchFileName(name, ParseFileNameFormat(format));
    if (!fields) return NameEstimate{name, {}, {}};
    const auto field = [&](FormatField which) { return std::string((*fields)[static_cast<std::size_t>(which)]); };
    return NameEstimate{field(FormatField::Title), field(FormatField::Artist), field(FormatField::Album)};
}

}  // namespace quenlox
