#include "state/media_formats.h"

#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

struct Family {
    MediaFamily family;
    BaseKind byExtension, whenRefused;
    std::string_view group;
};
constexpr Family kFamilies[] = {
#define MEDIA_FAMILY(name, byExtension, whenRefused, group, ...) {MediaFamily::name, byExtension, whenRefused, group},
#define MEDIA_FORMAT(...)
#include "state/media_formats.inc"
#undef MEDIA_FAMILY
#undef MEDIA_FORMAT
};

struct Format {
    std::string_view extension;
    MediaFamily family;
};
constexpr Format kFormats[] = {
#define MEDIA_FAMILY(...)
#define MEDIA_FORMAT(extension, family, ...) {"." #extension, MediaFamily::family},
#include "state/media_formats.inc"
#undef MEDIA_FAMILY
#undef MEDIA_FORMAT
};

// Null for an extension that is not known.
const Family* Find(std::string_view lastFour) {
    for (const Format& format : kFormats) {
        if (format.extension == lastFour) return &kFamilies[static_cast<std::size_t>(format.family)];
    }
    return nullptr;
}

std::string MakeFilter() {
    std::string filter;
    for (const Format& format : kFormats) {
        filter += filter.empty() ? "*" : ";*";
        filter += format.extension;
    }
    return filter;
}

}  // namespace

std::optional<MediaFamily> FamilyOf(std::string_view lastFour) {
    const Family* family = Find(lastFour);
    return family ? std::optional(family->family) : std::nullopt;
}

MediaKind KindOfExtension(std::string_view lastFour) {
    const Family* family = Find(lastFour);
    return {family ? family->byExtension : kUnknownKind};
}

MediaKind KindOfRefused(std::string_view lastFour) {
    const Family* family = Find(lastFour);
    return {family ? family->whenRefused : kUnknownKind};
}

const std::string& MediaFilter() {
    static const std::string filter = MakeFilter();
    return filter;
}

bool MatchesMediaFilter(std::string_view path) {
    const std::string lastFour = LastFour(path);
    return CharacterCount(lastFour) == 4 && MediaFilter().find(lastFour) != std::string::npos;
}

std::vector<MediaGroup> MediaGroups() {
    std::vector<MediaGroup> groups;
    std::string_view last;
    for (const Format& format : kFormats) {
        const std::string_view group = kFamilies[static_cast<std::size_t>(format.family)].group;
        if (group != last) groups.push_back({std::string(group) + " (", {}});
        last = group;
        MediaGroup& into = groups.back();
        if (!into.extensions.empty()) into.name += ';';
        into.name += format.extension.substr(1);
        into.extensions.emplace_back(format.extension);
    }
    for (MediaGroup& group : groups) group.name += ')';
    return groups;
}

}  // namespace quenlox
