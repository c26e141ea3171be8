// Which sound files there are, by their extensions: for lists, drops, browser, dialogs, converter and the choice of
// what plays a file. Pure functions over the table in media_formats.inc; none fails.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "state/media_kind.h"

namespace quenlox {

enum class MediaFamily {
#define MEDIA_FAMILY(name, ...) name,
#define MEDIA_FORMAT(...)
#include "state/media_formats.inc"
#undef MEDIA_FAMILY
#undef MEDIA_FORMAT
};

// The last four characters of a path in lower case (".mp3") are what an extension is told from everywhere below.

// Nothing for an extension that is not known.
std::optional<MediaFamily> FamilyOf(std::string_view lastFour);

// The kind that the extension alone decides on: MIDI, a track of an audio CD, WMA. Everything else is unknown until the
// decoding library has looked into it.
MediaKind KindOfExtension(std::string_view lastFour);
// The kind of a file that the decoding library refuses: media control may know it still.
MediaKind KindOfRefused(std::string_view lastFour);

// The media files that lists, drops and the browser take: "*.mp1;*.mp2;...".
const std::string& MediaFilter();
// True when the last four characters occur in the filter, whatever their case.
bool MatchesMediaFilter(std::string_view path);

struct MediaGroup {
    std::string name;                     // "MPEG (mp1;mp2;mp3;mpg;rmp)"
    std::vector<std::string> extensions;  // ".mp1"
};
// The groups that the browser can be limited to.
std::vector<MediaGroup> MediaGroups();

}  // namespace quenlox
