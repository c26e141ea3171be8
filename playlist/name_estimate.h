// Title, artist and album told from the name of a file by the standard format of file names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quenlox {

struct NameEstimate {
    std::string title;
    std::string artist;
    std::string album;
    bool operator==(const NameEstimate&) const = default;
};

// `path` loses its folder and extension; what is left is cut at the literal parts of `format`, and the parts between
// them fall to the fields in their order: "(*N) *T" reads "(Artist) Title". A field ends at the first place where the
// literal text behind it occurs; the last field takes the rest. Two fields without literal text between them: the first
// one takes everything. Blanks around a field are dropped. A name that does not fit is a title as
// it stands. Nothing for a format of fewer than 2 characters: it is not used.
std::optional<NameEstimate> EstimateFromFileName(std::string_view path, std::string_view format);

}  // namespace quenlox
