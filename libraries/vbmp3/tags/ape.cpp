#include "libraries/vbmp3/tags/ape.h"

#include <algorithm>
#include <string_view>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/legacy_text.h"

namespace vbmp3 {
namespace {

constexpr size_t kMostText = 1 << 16, kMostKey = 255;
constexpr int kMostItems = 1000;

struct Key {
    std::string_view name;  // in lower case
    std::string TagFields::*field;
};
constexpr Key kKeys[] = {
    {"title", &TagFields::title},     {"artist", &TagFields::artist}, {"album", &TagFields::album},
    {"comment", &TagFields::comment}, {"year", &TagFields::year},     {"genre", &TagFields::genre},
    {"track", &TagFields::track},
};

}  // namespace

TagFields readApe(HeadTailReader& reader, ByteRange range) {
    TagFields fields;
    int64_t at = range.begin;
    if (startsWith(reader.view(at, 8), "APETAGEX")) at += 32;
    for (int n = 0; n < kMostItems && at + 10 < range.end; ++n) {
        const auto bytes = reader.view(at, static_cast<size_t>(std::min<int64_t>(range.end - at, 8 + kMostKey + 1)));
        if (bytes.size() < 10 || startsWith(bytes, "APETAGEX")) break;
        const int64_t size = littleEndian32(bytes.data());
        const bool isText = (bytes[4] >> 1 & 3) == 0;
        const auto end = std::find(bytes.begin() + 8, bytes.end(), uint8_t{0});
        if (end == bytes.end()) break;
        std::string key(bytes.begin() + 8, end);
        for (char& c : key)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
        const int64_t value = at + 8 + static_cast<int64_t>(key.size()) + 1;
        if (size > range.end - value) break;
        for (const Key& known : kKeys) {
            if (known.name != key || !isText || !(fields.*(known.field)).empty()) continue;
            std::string& text = fields.*(known.field);
            for (auto rest = reader.view(value, static_cast<size_t>(std::min<int64_t>(size, kMostText)));
                 !rest.empty();) {
                const auto part =
                    rest.first(static_cast<size_t>(std::find(rest.begin(), rest.end(), uint8_t{0}) - rest.begin()));
                const std::string one = legacyText(part);  // version 1 has no encoding of its own
                if (!one.empty()) text += (text.empty() ? "" : " / ") + one;
                rest = rest.subspan(std::min(rest.size(), part.size() + 1));
            }
        }
        at = value + size;
    }
    fields.genreNumber = findGenre(fields.genre);
    return fields;
}

}  // namespace vbmp3
